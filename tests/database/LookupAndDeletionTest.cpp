#include "database/Lookups.h"
#include "database/TestDatabase.h"
#include "model/Raised.h"

namespace orv::test {
namespace {

using LookupTest = DatabaseTest;
using DeletionTest = DatabaseTest;

TEST_F(LookupTest, InsertsANameOnceAndFindsItAgain) {
  const auto insert = [&] {
    EXPECT_EQ(database.InsertGroup("Demo", *dc), 1);
    EXPECT_EQ(database.InsertGroup("Other", *dc), 2);
    EXPECT_EQ(database.InsertGroup("DEMO", *dc), 1) << "names compare without regard to case";
    EXPECT_EQ(database.InsertGroup("Gro\u00df", *dc), 3);
    EXPECT_EQ(database.InsertGroup("gross ", *dc), 3) << "as the file's sort order has it";
    EXPECT_EQ(database.InsertFrameType("Wood", *dc), 1);
    EXPECT_EQ(database.InsertSupplier("Maker", *dc), 1);
  };
  EXPECT_EQ(changesOf(insert),
            "Groups + 1|Demo; Groups + 2|Other; Groups + 3|Gro\u00df; FrameTypes + 1|Wood; "
            "Suppliers + 1|Maker");
  addRow(*dc, "Groups", {{"GroupName", "Other"}});
  addRow(*dc, "FrameTypes", {{"FrameTypeName", "Steel"}});
  addRow(*dc, "Suppliers", {{"SupplierName", "b"}});
  EXPECT_EQ(database::GroupNameById(2, *dc), "Other");
  EXPECT_EQ(database::GroupIdByName("other", *dc), 2) << "the first of two";
  EXPECT_EQ(database::FrameTypeNameById(2, *dc), "Steel");
  EXPECT_EQ(database::FrameTypeIdByName("wood", *dc), 1);
  EXPECT_EQ(database::SupplierNameById(2, *dc), "b");
  EXPECT_EQ(database::SupplierIdByName("B", *dc), 2);
  EXPECT_EQ(database::GroupNameById(7, *dc) + database::SupplierNameById(0, *dc), "");
  EXPECT_EQ(database::GroupIdByName("none", *dc), 0);
  EXPECT_EQ(database::GroupNames(*dc),
            (std::vector<std::string>{"Demo", "Gro\u00df", "Other", "Other"}));
  EXPECT_EQ(database::allNames(database::kSuppliers, *dc),
            (std::unordered_map<std::int32_t, std::string>{{1, "Maker"}, {2, "b"}}));
  EXPECT_EQ(
      changesOf([&] { EXPECT_NE(raisedBy([&] { database.InsertGroup("it's", *dc); }).number, 0); }),
      "");
}

TEST_F(DeletionTest, APaneGoesWithItsDetailRowsAndNoOthers) {
  for (const std::int16_t angle : {0, 30}) {
    for (const char* name : {"first", "second"}) {
      const auto pane = makePane(name, angle);
      pane->SpectralData()->Allocate(0);
      pane->SpectralData()->wl(0, 0.4F);
      database.InsertPane(*pane, *dc);
    }
  }
  addRow(*dc, "Pane", {{"name", "bare"}});
  const std::string values = "|0.11|0.12|0.13|0.14|0.15|0.16|0.17|0.18|0.19|0.2|0.21|0.22; ";
  const std::string pane =
      "|1|1|5.7|1|0.84|0.1|0.125|0.25|False|False|False|True|False|False|0||False||";
  EXPECT_EQ(changesOf([&] { database.DeleteGlazing(1, *dc); }),
            "Pane_integrated_data - 1|0" + values + "Pane_integrated_data - 1|30" + values +
                "Pane_spectral_data - 1|0|0|400|0|0|0|0|0; "
                "Pane_spectral_data - 1|30|0|400|0|0|0|0|0; Pane - 1|first|Product first" +
                pane);
  EXPECT_EQ(changesOf([&] { database.DeleteGlazing(3, *dc); }),
            "Pane - 3|bare|Null|Null|Null|Null|Null|Null|Null|Null|Null|False|False|False|False|"
            "False|False|0|Null|False|Null|Null");
  database.InsertPane(*makePane("first"), *dc);
  EXPECT_EQ(rowsOf(*dc, "SELECT PaneID, name FROM Pane"), "2|second 4|first");
}

TEST_F(DeletionTest, OfShadingsAndFramesOnlyTheRowGoes) {
  ShadingDataClass shading;
  shading.name("blind");
  shading.spectrum({ShadingSpectralPoint{.wavelength = 300}});
  shading.integrated({ShadingIntegratedData{.angle = 0}});
  database.InsertShading(shading, *dc);
  database.InsertShading(shading, *dc);
  EXPECT_EQ(shading.id(), 2) << "there may be several of a name";
  FrameDataClass frame;
  frame.name("frame");
  const std::int32_t key = database.InsertFrame(frame, *dc);
  const std::string changes = changesOf([&] {
    database.DeleteShading(2, *dc);
    database.DeleteFrame(key, *dc);
  });
  EXPECT_TRUE(changes.starts_with("Shading - 2|blind|1|")) << changes;
  EXPECT_TRUE(changes.ends_with("; Frame - 1|frame|Null|1|1|0|1|Null|0|")) << changes;
  EXPECT_EQ(std::count(changes.begin(), changes.end(), ';'), 1);
}

TEST_F(DeletionTest, WhatIsNotThereIsToldByKind) {
  const auto expect = [&](const Raised& raised, const char* description) {
    EXPECT_EQ(raised.number, 13);
    EXPECT_EQ(raised.description, description);
  };
  expect(raisedBy([&] { database.DeleteGlazing(9, *dc); }), "Pane could not be found!");
  expect(raisedBy([&] { database.DeleteShading(9, *dc); }), "Shading could not be found!");
  expect(raisedBy([&] { database.DeleteFrame(9, *dc); }), "Frame could not be found!");
}

}  // namespace
}  // namespace orv::test
