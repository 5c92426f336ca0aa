// Measured panes as their makers publish them.
#include <gtest/gtest.h>

#include "support/Corpus.h"
#include "textfile/ORV_TextFileInterface.h"

namespace orv {

namespace {

struct Expected {
  const char* file;
  const char* product;
  const char* supplier;
  std::int32_t nfrc;
  float thickness;
  float eb;
  std::int32_t points;
};

const Expected kPanes[] = {
    {"CLEAR5.LOF", "Optifloat™ Clear", "Pilkington North America", 9803, 4.699F, 0.84F, 369},
    {"CLEAR_3.DAT", "Generic Clear Glass", "Generic", 102, 3.048F, 0.84F, 111},
    {"CLEAR_6.DAT", "Generic Clear Glass", "Generic", 103, 5.715F, 0.84F, 111},
    {"CSR42_3.afg", "Comfort Select R-42™ on Clear", "AGC Glass Co. N.A.", 1042, 3.18F,
     4.657817E-02F, 496},
    {"LOW-E_5.LOF", "Energy Advantage™ Low-E", "Pilkington North America", 9923, 4.7244F, 0.84F,
     392},
};

TEST(Corpus, ReadsWithItsNames) {
  ORV_NEEDS_CORPUS();
  for (const Expected& expected : kPanes) {
    const auto pane =
        ORV_TextFileInterface().ParseSpectralFile(test::corpusFolder() / "panes", expected.file);
    EXPECT_EQ(pane->productname(), expected.product);
    EXPECT_EQ(pane->supplier(), expected.supplier);
    EXPECT_EQ(pane->NFRC_id(), expected.nfrc);
    EXPECT_EQ(pane->Thickness(), expected.thickness);
    EXPECT_EQ(pane->eb(), expected.eb);
    EXPECT_EQ(pane->Acceptance(), "#");
    EXPECT_EQ(pane->SpectralData()->wl(0), 0.3F);
    EXPECT_EQ(pane->SpectralData()->count(), expected.points);
  }
}

}  // namespace

}  // namespace orv
