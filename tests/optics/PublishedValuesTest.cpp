// Values that others publish for products whose spectra are in the corpus.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <sstream>

#include "optics/Integrator.h"
#include "productfile/ProductFile.h"
#include "support/Corpus.h"
#include "textfile/ORV_TextFileInterface.h"

namespace orv::optics {

namespace {

std::shared_ptr<GlazingData> pane(const std::string& file) {
  const auto folder = test::corpusFolder() / (file.ends_with(".json") ? "products" : "panes");
  if (file.ends_with(".json"))
    return productfile::ProductFile::read(folder / file).product("").pane;
  return ORV_TextFileInterface().ParseSpectralFile(folder, file);
}

/// How far a value may be from what is published, relative to it.
double tolerance(std::string_view name) {
  if (name == "ef" || name == "eb") return 2e-5;
  return name.size() == 1 ? 1e-5 : 1e-6;  // the colours have one letter
}

std::vector<std::string> cells(const std::string& line) {
  std::vector<std::string> result;
  std::istringstream stream(line);
  for (std::string cell; std::getline(stream, cell, '\t');) result.push_back(cell);
  return result;
}

TEST(PublishedValues, AreReachedByNfrc300) {
  ORV_NEEDS_CORPUS();
  std::ifstream table(test::corpusFolder() / "products" / "expected-nfrc300.tsv");
  std::vector<std::string> names;
  int compared = 0;
  for (std::string line; std::getline(table, line);) {
    if (line.starts_with('#')) continue;
    const auto row = cells(line);
    if (names.empty()) {
      names = row;
      continue;
    }
    const auto result = Integrator(Standard::nfrc300).integrate(*pane(row[0]));
    for (std::size_t i = 1; i < names.size(); ++i, ++compared) {
      const double published = std::stod(row[i]);
      ASSERT_TRUE(result[names[i]].has_value()) << row[0] << " " << names[i];
      EXPECT_NEAR(*result[names[i]], published, std::abs(published) * tolerance(names[i]))
          << row[0] << " " << names[i];
    }
  }
  EXPECT_EQ(compared, 3 * 24);
  const auto protection = [](const char* file) {
    return *Integrator(Standard::nfrc300).integrate(*pane(file))["Tf_spf"];
  };
  EXPECT_NEAR(protection("igsdb_9817.json"), 1384.424, 1e-3);
  EXPECT_NEAR(protection("nfrc_6046.json"), 76.09425, 5e-5);
}

TEST(PublishedValues, AreReachedByTheOtherStandards) {
  ORV_NEEDS_CORPUS();
  const auto clear = pane("CLEAR_3.DAT");
  const auto en410 = Integrator(Standard::en410).integrate(*clear);
  EXPECT_NEAR(*en410["Tf_sol"], 0.8352268, 5e-8);
  EXPECT_NEAR(*en410["Tf_vis"], 0.8992920, 5e-8);
  EXPECT_NEAR(*en410["Tf_uv"], 0.6281001, 5e-8);
  EXPECT_NEAR(*en410["Rf_sol"], 0.0757446, 5e-8);
  EXPECT_NEAR(*en410["g"], 0.8582355, 5e-8);
  EXPECT_NEAR(*en410["Ra"], 98.8223, 5e-5);
  const auto iso9050 = Integrator(Standard::iso9050).integrate(*clear);
  EXPECT_NEAR(*iso9050["Tf_sol"], 0.8369213, 5e-8);
  EXPECT_NEAR(*iso9050["Tf_df"], 0.8164713, 5e-8);
  EXPECT_NEAR(*iso9050["g"], 0.8595388, 5e-8);
}

}  // namespace

}  // namespace orv::optics
