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

TEST_F(FrameTest, TheSameNameInTheSameGroupIsRefusedAndNothingWritten) {
  FrameDataClass frame = fullFrame();
  database.InsertFrame(frame, *dc);
  FrameDataClass again = fullFrame();
  again.name("FRAME");
  again.supplier("Someone else");
  EXPECT_EQ(raisedBy([&] { database.InsertFrame(again, *dc); }).number, database::kRecordExists);
  EXPECT_EQ(rowCount("Frame"), 1);
  EXPECT_EQ(rowCount("Suppliers"), 1);
}

TEST_F(FrameTest, WithoutKeyAndNameNothingCanBeRetrieved) {
  EXPECT_EQ(raisedBy([&] { database.RetrieveFrameORV_30(*dc, 0, "", "g"); }).number,
            database::kRetrievalFailed);
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
