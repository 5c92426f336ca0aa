// Measured panes as their makers publish them.
#include <gtest/gtest.h>

#include <cstdlib>

#include "model/Raised.h"
#include "textfile/Folder.h"
#include "textfile/ORV_TextFileInterface.h"

namespace orv {

namespace {

class Corpus : public ::testing::Test {
 protected:
  void SetUp() override {
    const char* const corpus = std::getenv("ORV_CORPUS");
    folder_ =
        std::filesystem::path(corpus != nullptr ? corpus : ORV_SOURCE_DIR "/../shared/corpus") /
        "panes";
    if (!std::filesystem::exists(folder_)) {
      GTEST_SKIP() << "the corpus of measured panes is not here";
    }
  }

  std::shared_ptr<GlazingData> parse(const std::string& name) const {
    return text_.ParseSpectralFile(folder_, name);
  }

  std::filesystem::path folder_;
  ORV_TextFileInterface text_;
};

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

TEST_F(Corpus, ReadsWithItsNames) {
  for (const Expected& expected : kPanes) {
    const auto pane = parse(expected.file);
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

TEST_F(Corpus, SurvivesTheWayThroughTheWriter) {
  const test::Folder out;
  for (const Expected& expected : kPanes) {
    const auto pane = parse(expected.file);
    text_.WriteSpectralFile(out.withSeparator(), expected.file, *pane);
    const auto again = text_.ParseSpectralFile(out.path(), expected.file);
    EXPECT_EQ(again->productname(), pane->productname());
    EXPECT_EQ(again->eb(), pane->eb());
    EXPECT_EQ(again->ef_source(), pane->ef_source());
    EXPECT_EQ(again->CoatedSide(), pane->CoatedSide());
    const SpectralData& before = *pane->SpectralData();
    const SpectralData& after = *again->SpectralData();
    ASSERT_EQ(after.count(), before.count());
    for (std::int32_t i = 0; i < before.count(); ++i) {
      ASSERT_EQ(after.wl(i), before.wl(i)) << expected.file << " " << i;
      ASSERT_EQ(after.Tf(i), before.Tf(i)) << expected.file << " " << i;
      ASSERT_EQ(after.Rf(i), before.Rf(i)) << expected.file << " " << i;
      ASSERT_EQ(after.Rb(i), before.Rb(i)) << expected.file << " " << i;
    }
  }
}

TEST_F(Corpus, HasOneSubstrateHereAndOneElsewhere) {
  const auto coated = parse("low-e_5.lof");
  text_.FillFileReferences(folder_, coated);
  ASSERT_TRUE(coated->HasSubstrate());
  EXPECT_EQ(coated->SubstrateReference()->NFRC_id(), 9803);

  const auto other = parse("CSR42_3.afg");
  const auto raised = test::raisedBy([&] { text_.FillFileReferences(folder_, other); });
  EXPECT_EQ(raised.number, kFileNotFound);
  EXPECT_NE(raised.description.find("'CLR_3.afg'"), std::string::npos);
  EXPECT_FALSE(other->HasSubstrate());
}

}  // namespace

}  // namespace orv
