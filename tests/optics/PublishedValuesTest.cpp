// Values that others publish for products whose spectra are in the corpus.
#include <cmath>

#include "optics/Integrator.h"
#include "productfile/ProductFile.h"
#include "support/CaseFile.h"
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
}

TEST(PublishedValues, AreReachedByEachStandard) {
  ORV_NEEDS_CORPUS();
  for (const auto& row : test::casesOf("optics/published.tsv", 5)) {
    const auto standard = std::ranges::find(kStandardNames, row[1], &StandardName::word)->standard;
    const auto result = Integrator(standard).integrate(*pane(row[0]));
    EXPECT_NEAR(*result[row[2]], std::stod(row[3]), std::stod(row[4])) << row[1] << " " << row[2];
  }
}

}  // namespace

}  // namespace orv::optics
