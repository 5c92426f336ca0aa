// The example files read, whole and with the files that they refer to.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "textfile/Folder.h"
#include "textfile/ORV_TextFileInterface.h"
#include "textfile/TextFile.h"

namespace orv {

namespace {

namespace fs = std::filesystem;

const fs::path kExamples = fs::path(ORV_SOURCE_DIR) / "examples";

std::vector<std::string> filesOf(const fs::path& folder) {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::shared_ptr<GlazingData> pane(const std::string& name) {
  return ORV_TextFileInterface().ParseSpectralFile(kExamples / "panes", name);
}

/// No light is made, and wavelengths ascend.
void expectPhysical(const SpectralData& spectrum, const std::string& name) {
  ASSERT_GT(spectrum.count(), 20) << name;
  for (std::int32_t i = 0; i < spectrum.count(); ++i) {
    EXPECT_LE(spectrum.Tf(i) + spectrum.Rf(i), 1) << name << ", point " << i;
    EXPECT_LE(spectrum.Tb(i) + spectrum.Rb(i), 1) << name << ", point " << i;
    EXPECT_TRUE(i == 0 || spectrum.wl(i) > spectrum.wl(i - 1)) << name << ", point " << i;
  }
}

TEST(Examples, OfPanesReadWithTheirReferences) {
  const ORV_TextFileInterface text;
  const auto names = filesOf(kExamples / "panes");
  ASSERT_GE(names.size(), 12U);
  for (const std::string& name : names) {
    SCOPED_TRACE(name);
    const auto glazing = pane(name);
    EXPECT_FALSE(glazing->productname().empty());
    EXPECT_FALSE(glazing->supplier().empty());
    EXPECT_NE(glazing->GlazingType(), kUnknownType);
    expectPhysical(*glazing->SpectralData(), name);
    text.FillFileReferences(kExamples / "panes", glazing);
    const bool onSubstrate =
        (glazing->GlazingType() == kCoated || glazing->GlazingType() == kAppliedFilm) &&
        name != "lowe_4_infrared.txt";
    EXPECT_EQ(glazing->HasSubstrate(), onSubstrate);
  }
}

TEST(Examples, OfPanesShowWhatTheirDescriptionSays) {
  EXPECT_NEAR(pane("bronze_quarter_inch.txt")->ConvertedThickness(kSI), 5.66, 0.01);
  EXPECT_EQ(pane("green_6_nm.txt")->SpectralData()->ConvertedWl(0, kNanometers), 300);
  EXPECT_EQ(pane("suncontrol_6.txt")->productname(), "Solvær® 45 on clear");
  EXPECT_EQ(pane("filmed_6.txt")->FilmFilename(), "film_mist.txt");

  const auto infrared = pane("lowe_4_infrared.txt");
  EXPECT_FALSE(infrared->EfExists());
  EXPECT_EQ(infrared->SpectralData()->wl(infrared->SpectralData()->count() - 1), 25);

  const auto laminate = pane("laminated_8.txt");
  ASSERT_EQ(laminate->StructureCount(), 3);
  EXPECT_EQ(laminate->structure(1)->filename(), "pvb_076.txt");
  EXPECT_TRUE(laminate->structure(2)->Flipped());
}

TEST(Examples, OfShadingsRead) {
  const auto names = filesOf(kExamples / "shadings");
  ASSERT_GE(names.size(), 3U);
  for (const std::string& name : names) {
    SCOPED_TRACE(name);
    const auto shading =
        ORV_TextFileInterface().ParseSpectralFileShading(kExamples / "shadings", name);
    EXPECT_FALSE(shading->productname().empty());
    EXPECT_GT(shading->typeID(), 0);
    for (const ShadingSpectralPoint& point : shading->spectrum()) {
      EXPECT_LE(point.T_out_BB + point.R_out_BB + point.T_out_BD + point.R_out_BD, 1);
      EXPECT_LE(point.T_in_BB + point.R_in_BB + point.T_in_BD + point.R_in_BD, 1);
    }
    ASSERT_EQ(shading->integrated().size(), 1U);
    EXPECT_GT(shading->Sol_refl_slat_surf_outd(), 0);
  }
}

/// The example in the fenced block of this kind.
std::string exampleOf(const std::string& kind) {
  const std::string text = textfile::readText(ORV_SOURCE_DIR "/docs/text-files.md");
  const std::string fence = "```" + kind + "\n";
  const auto start = text.find(fence) + fence.size();
  return text.substr(start, text.find("```", start) - start);
}

TEST(Examples, OfTheDescriptionRead) {
  const test::Folder folder;
  folder.write("pane.txt", exampleOf("pane"));
  const auto pane = ORV_TextFileInterface().ParseSpectralFile(folder.path(), "pane.txt");
  EXPECT_EQ(pane->productname(), "Example laminate");
  EXPECT_EQ(pane->StructureCount(), 3);
  EXPECT_EQ(pane->SpectralData()->count(), 3);

  folder.write("blind.txt", exampleOf("shading"));
  const auto blind = ORV_TextFileInterface().ParseSpectralFileShading(folder.path(), "blind.txt");
  EXPECT_EQ(blind->productname(), "Example blind 25");
  EXPECT_EQ(blind->slat_length(), 25);
  EXPECT_EQ(blind->spectrum().size(), 4U);
  EXPECT_GT(blind->Sol_refl_slat_surf_outd(), 0.5);
}

}  // namespace

}  // namespace orv
