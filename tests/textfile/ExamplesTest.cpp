// The examples of the description read.
#include <gtest/gtest.h>

#include "textfile/Folder.h"
#include "textfile/ORV_TextFileInterface.h"
#include "textfile/TextFile.h"

namespace orv {

namespace {

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
