// Every field of a pane in words, each with a value of its own. Those of frames and shadings are in
// what `orv show` writes.
#include <gtest/gtest.h>

#include "commands/RecordDetails.h"
#include "support/FullRecords.h"
#include "support/ReadFile.h"

namespace orv::test {
namespace {

/// A line a section, "section: name = value unit; ...".
std::string linesOf(const std::vector<commands::DetailField>& fields) {
  std::string text, section;
  for (const commands::DetailField& field : fields) {
    const bool isNew = field.section != section;
    text += isNew ? (text.empty() ? "" : "\n") + (section = field.section) + ": " : "; ";
    text += field.name + " = " + field.value + (field.unit.empty() ? "" : " " + field.unit);
  }
  return text;
}

TEST(RecordDetails, OfAPaneAndOfAFrameWithATextForAPicture) {
  const auto pane = fullPane();
  const auto layer = std::make_shared<GlazingData>();
  layer->productname("Layer");
  layer->supplier("Layer's maker");
  pane->structure(0)->FileGlazingData(layer);
  const auto substrate = pane->SubstrateReference();
  substrate->filename("sub.txt");
  substrate->productname("Below");
  substrate->supplier("Its maker");
  substrate->GlazingType(kMonolithic);
  substrate->Thickness(4.5F);
  substrate->Conductivity(0.75F);
  EXPECT_EQ(linesOf(commands::paneDetails(*pane)) + '\n',
            readFile(ORV_SOURCE_DIR "/tests/commands/pane-details.txt"));
  FrameDataClass frame;
  frame.pictureText("oak.bmp");
  EXPECT_NE(linesOf(commands::frameDetails(frame)).find("; picture = oak.bmp;"), std::string::npos);
  GlazingData bare;
  bare.unit(kIP);
  bare.Thickness(0.25F);
  bare.GlazingType(kAppliedFilm);
  bare.Precalc_Rfsol(-1);
  const std::string lines = linesOf(commands::paneDetails(bare));
  for (const char* part : {"thickness = 0.25 in;", "type = Applied Film;", "coated side = not set;",
                           "emissivity front = not set;",
                           "integrated values = none at this angle\n", "spectral points = 0"}) {
    EXPECT_NE(lines.find(part), std::string::npos) << part;
  }
}

}  // namespace
}  // namespace orv::test
