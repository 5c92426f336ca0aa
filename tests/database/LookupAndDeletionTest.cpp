#include "database/Lookups.h"
#include "database/TestDatabase.h"
#include "model/Raised.h"

namespace orv::test {
namespace {

using LookupTest = DatabaseTest;

TEST_F(LookupTest, InsertsANameOnceAndFindsItAgain) {
  EXPECT_EQ(database.InsertGroup("Demo", *dc), 1);
  EXPECT_EQ(database.InsertGroup("Other", *dc), 2);
  EXPECT_EQ(database.InsertGroup("DEMO", *dc), 1) << "names compare without regard to case";
  EXPECT_EQ(rowCount("Groups"), 2);
  for (const char* name : {"First", "Second", "Third"}) {
    database.InsertFrameType(name, *dc);
    database.InsertSupplier(std::string(name) + " maker", *dc);
  }

  EXPECT_EQ(database::GroupNameById(1, *dc), "Demo") << "the name is not touched";
  EXPECT_EQ(database::GroupNameById(2, *dc), "Other");
  EXPECT_EQ(database::GroupIdByName("other", *dc), 2);
  EXPECT_EQ(database::FrameTypeNameById(2, *dc), "Second");
  EXPECT_EQ(database::FrameTypeIdByName("Third", *dc), 3);
  EXPECT_EQ(database::SupplierNameById(3, *dc), "Third maker");
  EXPECT_EQ(database::SupplierIdByName("second Maker", *dc), 2);
}

TEST_F(LookupTest, WhatIsNotThereIsEmptyOrZero) {
  EXPECT_EQ(database::GroupNameById(7, *dc), "");
  EXPECT_EQ(database::GroupIdByName("none", *dc), 0);
  EXPECT_EQ(database::SupplierNameById(0, *dc), "");
}

TEST_F(LookupTest, TheFirstOfTwoRowsOfOneNameCounts) {
  addRow("Groups", {{"GroupName", "twice"}});
  addRow("Groups", {{"GroupName", "twice"}});
  EXPECT_EQ(database::GroupIdByName("twice", *dc), 1);
}

TEST_F(LookupTest, AnApostropheIsTheStoresError) {
  EXPECT_NE(raisedBy([&] { database.InsertGroup("it's", *dc); }).number, 0);
  EXPECT_EQ(rowCount("Groups"), 0);
}

using DeletionTest = DatabaseTest;

TEST_F(DeletionTest, APaneGoesWithItsDetailRowsAndNoOthers) {
  for (const std::int16_t angle : {0, 30}) {
    database.InsertPane(*makePane("first", angle), *dc);
    database.InsertPane(*makePane("second", angle), *dc);
  }
  database.DeleteGlazing(1, *dc);
  EXPECT_EQ(retrieve(1), nullptr);
  EXPECT_EQ(rowCount("Pane"), 1);
  EXPECT_EQ(rowCount("Pane_integrated_data"), 2);
  EXPECT_EQ(rowCount("Pane_spectral_data"), 10);
  EXPECT_EQ(retrieve(2, 30)->SpectralData()->count(), 5);

  database.InsertPane(*makePane("first"), *dc);
  EXPECT_EQ(rowCount("Pane"), 2) << "a deleted pane can be inserted again";
}

TEST_F(DeletionTest, APaneWithoutDetailRowsGoes) {
  addRow("Pane", {{"name", "bare"}});
  database.DeleteGlazing(1, *dc);
  EXPECT_EQ(rowCount("Pane"), 0);
}

TEST_F(DeletionTest, TheDetailRowsOfAShadingStay) {
  ShadingDataClass shading;
  shading.name("blind");
  shading.spectrum({ShadingSpectralPoint{.wavelength = 300}});
  shading.integrated({ShadingIntegratedData{.angle = 0}});
  database.InsertShading(shading, *dc);
  database.DeleteShading(shading.id(), *dc);
  EXPECT_EQ(rowCount("Shading"), 0);
  EXPECT_EQ(rowCount("Shading_spectral_data"), 1);
  EXPECT_EQ(rowCount("Shading_integrated_data_temp"), 1);
}

TEST_F(DeletionTest, WhatIsNotThereIsToldByKind) {
  database.InsertPane(*makePane("pane"), *dc);
  const auto expect = [&](const Raised& raised, const char* description) {
    EXPECT_EQ(raised.number, 13);
    EXPECT_EQ(raised.description, description);
  };
  expect(raisedBy([&] { database.DeleteGlazing(9, *dc); }), "Pane could not be found!");
  expect(raisedBy([&] { database.DeleteShading(9, *dc); }), "Shading could not be found!");
  expect(raisedBy([&] { database.DeleteFrame(9, *dc); }), "Frame could not be found!");
  EXPECT_EQ(rowCount("Pane_spectral_data"), 5);
}

TEST_F(DeletionTest, AFrameGoes) {
  FrameDataClass frame;
  frame.name("frame");
  database.DeleteFrame(database.InsertFrame(frame, *dc), *dc);
  EXPECT_EQ(rowCount("Frame"), 0);
}

}  // namespace
}  // namespace orv::test
