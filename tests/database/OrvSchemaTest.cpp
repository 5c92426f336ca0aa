#include <fmt/format.h>

#include "database/TestDatabase.h"
#include "model/Raised.h"

namespace orv::test {
namespace {

using OrvSchemaTest = DatabaseTest;

/// Other programs know the tables by these names, and their columns by these.
TEST_F(OrvSchemaTest, TablesHaveTheseColumnsAndIndexes) {
  std::string text;
  for (const std::string& name : dc->tableNames()) {
    text += name + ":";
    for (const store::ColumnInfo& column : dc->table(name).columns) {
      text += fmt::format(" {} {}{}{}{}", column.name, static_cast<int>(column.type),
                          column.size > 0 ? "/" + std::to_string(column.size) : "",
                          column.autoNumber ? "+" : "",
                          column.defaultValue ? "=" + *column.defaultValue : "");
    }
    for (const store::IndexInfo& index : dc->table(name).indexes) {
      text += fmt::format("; {}{}{}{}", index.name, index.primary ? " primary" : "",
                          index.unique ? " unique" : "", index.required ? " required" : "");
      for (const auto& column : index.columns) text += "," + column.name;
    }
    text += '\n';
  }
  EXPECT_EQ(text, readFile(ORV_SOURCE_DIR "/tests/database/schema.txt"));
}

TEST_F(OrvSchemaTest, TheSavedQueriesShowAlsoRecordsWithoutGroupAndSupplier) {
  addRow(*dc, "Pane", {{"name", "pane"}, {"groupID", 77}});
  addRow(*dc, "Frame", {{"name", "frame"}});
  addRow(*dc, "Shading", {{"name", "shading"}});
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

TEST_F(OrvSchemaTest, AFileThatIsThereIsNeverReplaced) {
  EXPECT_NE(raisedBy([&] { database::CreateEmptyDatabase(path); }).number, 0);
  EXPECT_EQ(database.LookupDatabaseVersion(*dc), "3.0.0");
}

}  // namespace
}  // namespace orv::test
