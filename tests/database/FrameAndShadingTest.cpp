#include "database/DatabaseErrors.h"
#include "database/Lookups.h"
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

TEST_F(FrameTest, EmptyNamesOfLookupRowsBecomeUnknown) {
  FrameDataClass frame;
  frame.name("frame");
  database.InsertFrame(frame, *dc);
  EXPECT_EQ(frame.supplier(), "Unknown");
  EXPECT_EQ(frame.group(), "Unknown");
  EXPECT_EQ(frame.frametype(), "Unknown");
  EXPECT_EQ(database::GroupIdByName("unknown", *dc), 1);
  EXPECT_TRUE(valueOf("SELECT picture FROM Frame").isNull());
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

TEST_F(ShadingTest, TheSameShadingCanBeInsertedTwice) {
  ShadingDataClass shading = fullShading();
  database.InsertShading(shading, *dc);
  database.InsertShading(shading, *dc);
  EXPECT_EQ(shading.id(), 2);
  EXPECT_EQ(rowCount("Shading"), 2);
  EXPECT_EQ(rowCount("Shading_spectral_data"), 4);
  EXPECT_EQ(database.RetrieveShading(*dc, 3), nullptr);
}

}  // namespace
}  // namespace orv::test
