#include "database/DatabaseErrors.h"
#include "database/TestDatabase.h"
#include "model/Raised.h"
#include "support/FullRecords.h"

namespace orv::test {
namespace {

using FrameTest = DatabaseTest;

TEST_F(FrameTest, AnyOtherGroupIsUnknown) {
  FrameDataClass frame = fullFrame();
  frame.group("My frames");
  database.InsertFrame(frame, *dc);
  EXPECT_EQ(database.RetrieveFrameORV_30(*dc, 0, "frame", "My frames")->group(), "Unknown");
  EXPECT_EQ(database.RetrieveFrameORV_30(*dc, 0, "frame", "no group"), nullptr);
}

using ShadingTest = DatabaseTest;

TEST_F(ShadingTest, WhatADatabaseHasNoColumnForKeepsItsDefault) {
  const auto old = store::Connection::create((folder.path() / "old.mdb").string());
  old->createTable({"Shading", {{"Shading_id", store::ColumnType::longInteger}, {"name"}}});
  test::addRow(*old, "Shading", {{"Shading_id", 7}, {"name", "blind"}});
  ShadingDataClass expected;
  expected.name("blind");
  expected.group("Unknown");
  expected.supplier("Unknown");
  EXPECT_EQ(whole(*database.RetrieveShading(*old, 7)), whole(expected));
}

}  // namespace
}  // namespace orv::test
