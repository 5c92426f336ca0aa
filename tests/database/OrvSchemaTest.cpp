#include <algorithm>

#include "database/OrvSchema.h"
#include "database/TestDatabase.h"
#include "model/Raised.h"
#include "store/Check.h"

namespace orv::test {
namespace {

using OrvSchemaTest = DatabaseTest;

TEST_F(OrvSchemaTest, NamesAndDetailRowsAreFoundThroughIndexes) {
  const std::vector<std::pair<std::string, std::string>> leading = {
      {"Groups", "GroupName"},
      {"Suppliers", "SupplierName"},
      {"FrameTypes", "FrameTypeName"},
      {"Pane", "name"},
      {"Pane_spectral_data", "PaneID"},
      {"Pane_integrated_data", "PaneID"},
      {"Frame", "name"},
      {"Shading_spectral_data", "Shading_ID"}};
  for (const auto& [table, column] : leading) {
    const auto indexes = dc->table(table).indexes;
    EXPECT_TRUE(std::any_of(indexes.begin(), indexes.end(), [&](const auto& index) {
      return index.columns[0].name == column;
    })) << table;
  }
}

TEST_F(OrvSchemaTest, TheSavedQueriesShowAlsoRecordsWithoutGroupAndSupplier) {
  addRow("Pane", {{"name", "pane"}, {"groupID", 77}});
  addRow("Frame", {{"name", "frame"}});
  addRow("Shading", {{"name", "shading"}});
  for (const auto& [query, key] : {std::pair{"qryPaneImport", "PaneID"},
                                   {"qryFrameImport", "FrameID"},
                                   {"qryShadingImport", "Shading_id"}}) {
    auto rows = dc->openRecordset(query, store::CursorType::static_);
    ASSERT_EQ(rows->recordCount(), 1) << query;
    EXPECT_EQ(rows->fields().front().name, key);
    EXPECT_EQ(rows->value(key), store::Value(1));
    EXPECT_TRUE(rows->value("GroupName").isNull());
  }
}

TEST_F(OrvSchemaTest, DirectionAndFlagsHaveDefaults) {
  addRow("Pane_spectral_data", {{"PaneID", 1}});
  EXPECT_EQ(valueOf("SELECT direction FROM Pane_spectral_data").toLong(), 0);
  addRow("Pane", {{"name", "pane"}});
  EXPECT_FALSE(valueOf("SELECT [0_30_60] FROM Pane").toBoolean());
}

TEST_F(OrvSchemaTest, AFileThatIsThereIsNeverReplaced) {
  EXPECT_NE(raisedBy([&] { database::CreateEmptyDatabase(path); }).number, 0);
  EXPECT_EQ(database.LookupDatabaseVersion(*dc), "3.0.0");
}

TEST_F(OrvSchemaTest, TheCheckerFindsNothingWrong) {
  for (const auto& fault : store::checkFile(path, "").faults) ADD_FAILURE() << fault.toText();
}

}  // namespace
}  // namespace orv::test
