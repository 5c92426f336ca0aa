#include <gmock/gmock.h>

#include "database/DatabaseErrors.h"
#include "database/GlazingDatabase.h"
#include "database/TestDatabase.h"
#include "model/Raised.h"

namespace orv::test {
namespace {

using PaneRetrievalTest = DatabaseTest;

TEST_F(PaneRetrievalTest, LooksUpByKeyElseByNameAndGroup) {
  database.InsertPane(*makePane("a"), *dc);
  const auto other = makePane("a");
  other->group("Other");
  database.InsertPane(*other, *dc);
  const auto find = [&](std::int32_t id, const char* name, const char* group) {
    const auto pane = database.RetrievePaneORV_30(*dc, id, name, group, 0, 0);
    return pane ? pane->id() : 0;
  };
  EXPECT_EQ(find(2, "ignored", "ignored"), 2);
  EXPECT_EQ(find(0, "A", ""), 1) << "names compare without regard to case";
  EXPECT_EQ(find(0, "a", "Other"), 2);
  EXPECT_EQ(find(0, "a", "no such group"), 0);
  EXPECT_EQ(find(9, "", ""), 0);
  EXPECT_EQ(raisedBy([&] { find(0, "", "Demo"); }).number, database::kRetrievalFailed);
  EXPECT_NE(raisedBy([&] { find(0, "it's", ""); }).number, 0);
}

TEST_F(PaneRetrievalTest, WithoutIntegratedDataTheMarkerIsMinusOne) {
  database.InsertPane(*makePane("pane", 0), *dc);
  const auto pane = retrieve(1, 60);
  EXPECT_EQ(pane->Precalc_Rfsol(), -1);
  EXPECT_EQ(pane->Precalc_Tfsol(), 0);
  EXPECT_EQ(pane->SpectralData(), nullptr) << "no rows at this angle";
}

TEST_F(PaneRetrievalTest, DirectionZeroMeansAny) {
  database.InsertPane(*makePane("pane"), *dc);
  addRow("Pane_spectral_data",
         {{"PaneID", 1}, {"angle", 0}, {"direction", 2}, {"wavelength", 350.0}});
  EXPECT_EQ(retrieve(1, 0, 0)->SpectralData()->count(), 6);
  EXPECT_EQ(retrieve(1, 0, 0)->SpectralData()->wl(1), 350);
  EXPECT_EQ(retrieve(1, 0, 2)->SpectralData()->count(), 1);
  EXPECT_EQ(retrieve(1, 0, 3)->SpectralData(), nullptr);
}

TEST_F(PaneRetrievalTest, ADanglingSupplierIsEmpty) {
  addRow("Pane", {{"name", "pane"}, {"supplierID", 77}});
  EXPECT_EQ(retrieve(1)->supplier(), "");
}

TEST_F(PaneRetrievalTest, AnglesComeInTableOrder) {
  for (const std::int16_t angle : {60, 0, 30}) database.InsertPane(*makePane("a", angle), *dc);
  EXPECT_EQ(database.RetrieveAnglesOfPaneDataORV_30(1, *dc),
            (std::vector<std::int16_t>{60, 0, 30}));
  EXPECT_TRUE(database.RetrieveAnglesOfPaneDataORV_30(2, *dc).empty());
}

TEST_F(PaneRetrievalTest, TheIgdbGivesKindsSubstratesAndOneValueForBothSides) {
  const auto igdb = makeGlazingDatabase((folder.path() / "igdb.mdb").string(),
                                        {{{"GlazingID", 3},
                                          {"FileName", "CLEAR.DAT"},
                                          {"Type", "Monolithic"},
                                          {"ProductName", "Clear ®"},
                                          {"Manufacturer", "Maker 3"},
                                          {"Acceptance", "#"},
                                          {"Substrate_FileName", "N/A"},
                                          {"Thickness", 4.5},
                                          {"Conductivity", 1.25},
                                          {"ef", 0.84},
                                          {"eb", 0.75},
                                          {"TIR", 0.125},
                                          {"Precalc_Rfsol", 0.1},
                                          {"Precalc_Rbsol", 0.2},
                                          {"Precalc_Tsol", 0.3},
                                          {"Precalc_Rfvis", 0.4},
                                          {"Precalc_Rbvis", 0.5},
                                          {"Precalc_Tvis", 0.6},
                                          {"Precalc_Tuv", 0.7}},
                                         {{"GlazingID", 4},
                                          {"FileName", "COATED.DAT"},
                                          {"Type", "COATED"},
                                          {"Substrate_FileName", "clear.dat"}},
                                         {{"GlazingID", 5},
                                          {"FileName", "film.dat"},
                                          {"Type", "Applied film"},
                                          {"Substrate_FileName", "gone.dat"}},
                                         {{"GlazingID", 6},
                                          {"FileName", "stack.dat"},
                                          {"Type", "laminate"},
                                          {"Substrate_FileName", "Unknown"}}});
  const auto clear = database.RetrievePaneIGDB(*igdb, "clear.DAT");
  ASSERT_NE(clear, nullptr);
  EXPECT_EQ(clear->id(), 3);
  EXPECT_EQ(clear->filename(), "CLEAR.DAT");
  EXPECT_EQ(clear->GlazingType(), kMonolithic);
  EXPECT_EQ(clear->description(), "Monolithic Appearance: ");
  EXPECT_EQ(clear->group(), "IGDB");
  EXPECT_EQ(clear->supplier(), "Maker 3");
  EXPECT_EQ(clear->productname(), "Clear ®");
  EXPECT_EQ(clear->Acceptance(), "#");
  EXPECT_EQ(clear->ORV_CoatingClass(), "");
  EXPECT_EQ(clear->unit(), kSI);
  EXPECT_EQ(clear->ORV_Angle(), 0);
  EXPECT_EQ(clear->ORV_Direction(), 1);
  EXPECT_TRUE(clear->single_layer() && clear->spectral_pane());
  EXPECT_FALSE(clear->use_estimation() || clear->Use_0_30_60() || clear->ORV_Frozen());
  EXPECT_FALSE(clear->with_and_without_film() || clear->HasSubstrate());
  const float read[] = {clear->Thickness(),     clear->Conductivity(),  clear->TfIR(),
                        clear->TbiR(),          clear->Precalc_Rfsol(), clear->Precalc_RbSol(),
                        clear->Precalc_Tfsol(), clear->Precalc_Tbsol(), clear->Precalc_Rfvis(),
                        clear->Precalc_Rbvis(), clear->Precalc_Tfvis(), clear->Precalc_Tbvis(),
                        clear->Precalc_Rfuv(),  clear->Precalc_Rbuv(),  clear->Precalc_Tfuv(),
                        clear->Precalc_Tbuv()};
  EXPECT_THAT(read, ::testing::ElementsAre(4.5F, 1.25F, 0.125F, 0.125F, 0.1F, 0.2F, 0.3F, 0.3F,
                                           0.4F, 0.5F, 0.6F, 0.6F, 0, 0, 0.7F, 0.7F));
  EXPECT_FLOAT_EQ(static_cast<float>(clear->ORV_Emissivity_front()), 0.84F);
  EXPECT_EQ(clear->ORV_Emissivity_back(), 0.75);
  const SpectralData& spectrum = *clear->SpectralData();
  ASSERT_EQ(spectrum.count(), 3);
  EXPECT_EQ(spectrum.WavelengthUnit(), kMicrons);
  EXPECT_EQ(spectrum.wl(0), 0.3F);
  EXPECT_EQ(spectrum.wl(2), 2.5F);
  EXPECT_FLOAT_EQ(spectrum.Tf(1), 0.155F);
  EXPECT_EQ(spectrum.Tb(1), spectrum.Tf(1));
  EXPECT_FLOAT_EQ(spectrum.Rf(1), 0.0925F);
  EXPECT_FLOAT_EQ(spectrum.Rb(1), 0.06125F);

  const auto coated = database.RetrievePaneIGDB(*igdb, "coated.dat");
  EXPECT_EQ(coated->GlazingType(), kCoated);
  EXPECT_EQ(coated->description(), "Coated Appearance: ");
  EXPECT_TRUE(coated->use_estimation() && !coated->single_layer());
  ASSERT_TRUE(coated->HasSubstrate());
  EXPECT_EQ(coated->SubstrateFilename(), "clear.dat");
  EXPECT_EQ(coated->SubstrateReference()->id(), 3);
  EXPECT_EQ(coated->SubstrateReference()->SpectralData()->Tf(1), spectrum.Tf(1));

  const auto film = database.RetrievePaneIGDB(*igdb, "film.dat");
  EXPECT_EQ(film->GlazingType(), kAppliedFilm);
  EXPECT_EQ(film->description(), "Applied film Appearance: ");
  EXPECT_EQ(film->SubstrateReference()->SpectralData(), nullptr) << "its substrate is not there";
  const auto stack = database.RetrievePaneIGDB(*igdb, "stack.dat");
  EXPECT_EQ(stack->GlazingType(), kLaminate);
  EXPECT_FALSE(stack->HasSubstrate());
  EXPECT_EQ(database.RetrievePaneIGDB(*igdb, "not there"), nullptr);
}

}  // namespace
}  // namespace orv::test
