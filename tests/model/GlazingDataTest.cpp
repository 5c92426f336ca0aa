#include <gtest/gtest.h>

#include "model/GlazingData.h"
#include "model/Raised.h"
#include "support/FullRecords.h"

namespace orv {

namespace {

using test::raisedBy;

std::shared_ptr<GlazingData> paneOfFile(const std::string& filename,
                                        const std::shared_ptr<GlazingData>& parent = nullptr) {
  auto pane = std::make_shared<GlazingData>();
  pane->filename(filename);
  pane->Parent(parent);
  return pane;
}

TEST(GlazingData, ConvertsUnits) {
  GlazingData pane;
  pane.Thickness(4);
  pane.Conductivity(1);
  EXPECT_FLOAT_EQ(pane.ConvertedThickness(kIP), 0.15748031F);
  EXPECT_FLOAT_EQ(pane.ConvertedConductivity(kIP), 0.5778008F);
  EXPECT_EQ(pane.ConvertedThickness(2), 4);
  pane.unit(kIP);
  EXPECT_FLOAT_EQ(pane.ConvertedThickness(kSI), 101.6F);
  EXPECT_FLOAT_EQ(pane.ConvertedConductivity(kSI), 1.7307F);
  pane.Thickness(3e38F);
  EXPECT_EQ(raisedBy([&] { (void)pane.ConvertedThickness(kSI); }).number, kOverflow);
}

TEST(GlazingData, RefusesNegativeQuantitiesByName) {
  GlazingData pane;
  pane.Thickness(3);
  const auto raised = raisedBy([&] { pane.Thickness(-0.5F); });
  EXPECT_EQ(raised.number, kInvalidCall);
  EXPECT_EQ(raised.description, "");
  EXPECT_EQ(raised.source, "Thickness cannot be -0.5");
  EXPECT_EQ(pane.Thickness(), 3);
  EXPECT_EQ(raisedBy([&] { pane.ef(-1); }).number, kInvalidCall);
  EXPECT_EQ(raisedBy([&] { pane.id(-1); }).number, kInvalidCall);
}

TEST(GlazingData, PairsEmissivitiesWithTheirSources) {
  GlazingData pane;
  const auto exist = [&](bool front, bool back) {
    return pane.EfExists() == front && pane.EbExists() == back;
  };
  const auto isBroken = [](auto question) { return raisedBy(question).number == kInvalidCall; };
  EXPECT_TRUE(exist(false, false));
  pane.ef(0.0F);
  EXPECT_TRUE(isBroken([&] { (void)pane.EfExists(); }));
  pane.ef_source(kMaterialSource);
  EXPECT_TRUE(exist(true, false));
  pane.eb_source(kMaterialSource);
  EXPECT_TRUE(isBroken([&] { (void)pane.EbExists(); }));
  pane.eb(1);
  EXPECT_TRUE(exist(true, true));
  pane.ResetEf();
  EXPECT_TRUE(exist(false, true));
  pane.ResetEb();
  EXPECT_TRUE(exist(false, false));
}

TEST(GlazingData, ChecksThePositionsOfItsLists) {
  GlazingData pane;
  pane.AddUse("facade");
  pane.AddAvailability(std::make_shared<Availability>());
  EXPECT_EQ(pane.uses(1), "facade");
  for (const std::int32_t position : {-1, 0, 2}) {
    EXPECT_EQ(raisedBy([&] { (void)pane.uses(position); }).number, kSubscriptOutOfRange);
    EXPECT_EQ(raisedBy([&] { (void)pane.Availability(position); }).number, kSubscriptOutOfRange);
  }
  EXPECT_EQ(pane.StructureCapacity(), 2U);
  for (int i = 0; i < 3; ++i) {
    pane.AddStructure(std::make_shared<GlazingStructure>());
    pane.structure(i)->Thickness(static_cast<float>(i));
    EXPECT_EQ(pane.StructureCapacity(), i < 2 ? 2U : 8U);
  }
  EXPECT_EQ(pane.structure(2)->Thickness(), 2);
  EXPECT_EQ(raisedBy([&] { (void)pane.structure(3); }).number, kSubscriptOutOfRange);
  EXPECT_EQ(raisedBy([&] { (void)pane.structure(-1); }).number, kSubscriptOutOfRange);
  pane.ClearStructures();
  EXPECT_EQ(pane.StructureCount(), 0);
  EXPECT_EQ(pane.StructureCapacity(), 2U);
}

TEST(GlazingData, GivesItsWavelengthUnitToASpectrumThatItIsSet) {
  GlazingData pane;
  pane.WavelengthUnit(kNanometers);
  pane.SpectralData(std::make_shared<SpectralData>());
  EXPECT_EQ(pane.SpectralData()->WavelengthUnit(), kNanometers);
  pane.WavelengthUnit(kMicrons);
  EXPECT_EQ(pane.SpectralData()->WavelengthUnit(), kNanometers);
}

TEST(GlazingData, FindsFileNamesThatRepeatAmongItsParents) {
  const auto top = paneOfFile("A.TXT");
  const auto middle = paneOfFile("b.txt", top);
  EXPECT_TRUE(top->EnsureNoAncestorLoops());
  EXPECT_TRUE(middle->EnsureNoAncestorLoops());
  EXPECT_FALSE(paneOfFile("a.txt", middle)->EnsureNoAncestorLoops());
  top->Parent(middle);  // even a circle of records comes to an end
  EXPECT_FALSE(middle->EnsureNoAncestorLoops());
}

TEST(GlazingData, DoesNotKeepItsParentAlive) {
  auto parent = paneOfFile("a.txt");
  const auto child = paneOfFile("b.txt", parent);
  parent->SubstrateReference(child);
  const std::weak_ptr<GlazingData> watched = parent;
  parent.reset();
  EXPECT_TRUE(watched.expired());
  EXPECT_EQ(child->Parent(), nullptr);
}

/// But for two of its precalculated values and the material of a laminate.
TEST(GlazingData, ClonesItsListsAndSharesItsComponents) {
  const auto pane = test::fullPane();
  const auto parent = paneOfFile("parent.txt");
  pane->Parent(parent);
  pane->LaminateReference(parent);
  pane->structure(0)->FileGlazingData(std::make_shared<GlazingData>());
  const auto copy = pane->ShallowClone();
  EXPECT_EQ(copy->Parent(), parent);
  EXPECT_EQ(copy->LaminateReference(), parent);
  EXPECT_EQ(copy->SubstrateReference(), pane->SubstrateReference());
  EXPECT_NE(copy->Availability(1), pane->Availability(1));
  EXPECT_NE(copy->structure(0), pane->structure(0));
  EXPECT_EQ(copy->structure(0)->FileGlazingData(), pane->structure(0)->FileGlazingData());
  EXPECT_NE(copy->SpectralData(), pane->SpectralData());
  EXPECT_EQ(copy->LaminateMaterial(), "");
  EXPECT_EQ(copy->Precalc_Rfuv(), 0);
  EXPECT_EQ(copy->Precalc_Rbuv(), 0);
  copy->LaminateMaterial(pane->LaminateMaterial());
  copy->Precalc_Rfuv(pane->Precalc_Rfuv());
  copy->Precalc_Rbuv(pane->Precalc_Rbuv());
  EXPECT_EQ(test::whole(*copy), test::whole(*pane));
}

TEST(GlazingData, CannotCloneWhatItsSettersRefuse) {
  GlazingData pane;
  EXPECT_EQ(raisedBy([&] { pane.ShallowClone(); }).source, "id cannot be -1");
  pane.id(1);
  EXPECT_EQ(raisedBy([&] { pane.ShallowClone(); }).source, "ef cannot be -1");
}

}  // namespace

}  // namespace orv
