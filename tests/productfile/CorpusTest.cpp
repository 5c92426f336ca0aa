// The products of the corpus, in all three forms.
#include <gtest/gtest.h>

#include "model/Raised.h"
#include "productfile/ProductFile.h"
#include "support/Corpus.h"

namespace orv::test {
namespace {

using productfile::Product;
using productfile::ProductFile;

Product productIn(const std::string& name) {
  return ProductFile::read(corpusFolder() / "products" / name).product("");
}

struct Expected {
  const char* file;
  const char* name;
  const char* product;
  const char* maker;
  std::int32_t nfrcId;
  std::int32_t type;
  std::int32_t side;
  float thickness;
  float conductivity;
  float ef;
  float eb;
  std::int32_t points;
  float tfsol;
  float tfvis;
  float tuv;
  const char* standard;
};

constexpr Expected kExpected[] = {
    {"igsdb_9817.json", "top11onclearlite_44.2.gvb", "Stratobel iplus Top 1.1 on Clearlite 44.2",
     "AGC Glass Europe", 4289, kLaminate, kBackSide, 8.46F, 0.75F, 0.8411548F, 0.05261958F, 642,
     0.5626929F, 0.884602F, 0.0F, "NFRC"},
    {"igsdb_v1_clear_3.json", "CLEAR_3.DAT", "Generic Clear Glass", "Generic", 102, kMonolithic,
     kNeitherSide, 3.048F, 1.0F, 0.84F, 0.84F, 111, 0.8338478F, 0.89926F, 0.7145357F, "NFRC"},
    {"igsdb_v2_clear_3.json", "clear_3.dat", "Generic Clear Glass", "Generic", 102, kMonolithic,
     kNeitherSide, 3.048F, 0.0F, 0.84F, 0.84F, 111, 0.8338478F, 0.89926F, 0.7145357F, "NFRC"},
    {"21000.json", "SGG DIAMANT 3mm", "SGG DIAMANT 3mm", "Saint-Gobain Glass", 0, kMonolithic,
     kNeitherSide, 3.0F, 1.0F, 0.84F, 0.84F, 462, 0.9034267F, 0.9130077F, 0.8840232F, "NFRC"},
    {"checker_tool_input_example.json", "CGD89_092661-2-Efb.CIG", "CGD89_092661",
     "Cardinal Glass Industries", 18100, kCoated, kBothSides, 2.2F, 1.0F, 0.149F, 0.149F, 462, 0.0F,
     0.0F, 0.0F, ""},
};

TEST(ProductCorpusTest, EachFormFillsTheRecord) {
  ORV_NEEDS_CORPUS();
  for (const Expected& expected : kExpected) {
    SCOPED_TRACE(expected.file);
    const auto product = productIn(expected.file);
    const GlazingData& pane = *product.pane;
    EXPECT_EQ(pane.filename(), expected.name);
    EXPECT_EQ(pane.productname(), expected.product);
    EXPECT_EQ(pane.supplier(), expected.maker);
    EXPECT_EQ(pane.NFRC_id(), expected.nfrcId);
    EXPECT_EQ(pane.GlazingType(), expected.type);
    EXPECT_EQ(pane.CoatedSide(), expected.side);
    EXPECT_FLOAT_EQ(pane.Thickness(), expected.thickness);
    EXPECT_FLOAT_EQ(pane.Conductivity(), expected.conductivity);
    EXPECT_FLOAT_EQ(pane.ef(), expected.ef);
    EXPECT_FLOAT_EQ(pane.eb(), expected.eb);
    EXPECT_EQ(pane.ORV_Emissivity_back(), pane.eb());
    EXPECT_TRUE(pane.spectral_pane());
    EXPECT_EQ(pane.SpectralData()->count(), expected.points);
    EXPECT_EQ(pane.SpectralData()->wl(0), 0.3F);
    EXPECT_EQ(pane.WavelengthUnit(), kMicrons);
    EXPECT_FLOAT_EQ(pane.Precalc_Tfsol(), expected.tfsol);
    EXPECT_FLOAT_EQ(pane.Precalc_Tbvis(), expected.tfvis);
    EXPECT_FLOAT_EQ(pane.Precalc_Tfuv(), expected.tuv);
    EXPECT_EQ(pane.Precalc_StandardName(), expected.standard);
  }
}

TEST(ProductCorpusTest, ABlindIsRefusedByItsName) {
  ORV_NEEDS_CORPUS();
  const auto raised = raisedBy([] { productIn("igsdb_v1_venetian.json"); });
  EXPECT_EQ(raised.description,
            "\"Slim White Open\" is a shading (venetian), and only panes are read from files of "
            "products");
}

}  // namespace
}  // namespace orv::test
