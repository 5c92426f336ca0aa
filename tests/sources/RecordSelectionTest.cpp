#include <gtest/gtest.h>

#include "errors/Error.h"
#include "sources/DataSources.h"
#include "sources/RecordSelection.h"

namespace orv::sources {
namespace {

RecordSelection threeRecords(std::shared_ptr<datasource> node) {
  RecordSelection selection;
  selection.RecordsCount(3);
  selection.DataSourcePtr(std::move(node));
  for (int i = 1; i <= 3; ++i) selection.SelectedRecordID(i, std::to_string(10 * i));
  return selection;
}

TEST(RecordSelectionTest, ANewOneIsEmptyWithOneEmptySlot) {
  const RecordSelection selection;
  EXPECT_EQ(selection.RecordsCount(), 0);
  EXPECT_FALSE(selection.HasRecords());
  EXPECT_EQ(selection.DataSourcePtr(), nullptr);
  EXPECT_EQ(selection.SelectedRecordID(1), "");
  EXPECT_THROW(selection.SelectedRecordID(2), Error);
}

TEST(RecordSelectionTest, SettingTheCountEmptiesTheIdentifiers) {
  RecordSelection selection = threeRecords(nullptr);
  selection.RecordsCount(2);
  EXPECT_EQ(selection.SelectedRecordID(1), "");
  EXPECT_EQ(selection.SelectedRecordID(2), "");
  EXPECT_THROW(selection.SelectedRecordID(3), Error);
  EXPECT_THROW(selection.SelectedRecordID(0), Error);

  selection.RecordsCount(0);
  EXPECT_FALSE(selection.HasRecords());
  EXPECT_EQ(selection.SelectedRecordID(1), "");
  EXPECT_THROW(selection.RecordsCount(-1), Error);
}

TEST(RecordSelectionTest, ACloneGoesItsOwnWay) {
  DataSources top(std::make_shared<KeyCounter>());
  const auto node = top.AddDataSource(DataType::textFolder, "folder", nullptr, "", "");
  RecordSelection original = threeRecords(node);
  RecordSelection clone = original.Clone();
  original.SelectedRecordID(1, "changed");
  clone.SelectedRecordID(3, "other");

  EXPECT_EQ(clone.SelectedRecordID(1), "10");
  EXPECT_EQ(original.SelectedRecordID(3), "30");
  EXPECT_EQ(clone.DataSourcePtr(), node);
  EXPECT_EQ(clone.RecordsCount(), 3);
}

}  // namespace
}  // namespace orv::sources
