// Rows as Access leaves them when columns are added to their table, or deleted.

#include <gtest/gtest.h>

#include <vector>

#include "store/Check.h"
#include "store/jet/catalog/Creation.h"
#include "store/jet/page/DataPage.h"
#include "store/jet/page/Text.h"
#include "support/MemoryFiles.h"

namespace orv::store::jet {
namespace {

using Rows = std::vector<std::vector<Value>>;

class RowForms : public testing::Test {
 protected:
  void create(const TableInfo& design) {
    createTable(*createDatabase(test::kFile), design);
    open();
  }
  void open() {
    database_ = Database::open(test::kFile, "");
    table_ = database_->table("Forms");
  }
  /// Gives the row `number` of the table's only page other bytes.
  void rewriteRow(std::uint8_t number, const Bytes& bytes) {
    const PageNumber page = firstRow_.page;
    DataPageEditor(kJet4, database_->pager().modify(page), page)
        .replace(number, bytes, SlotKind::row);
  }
  void expectRows(const Rows& expected) {
    open();
    Rows found;
    for (TableScan scan = table_->scan(); scan.next();) {
      std::vector<Value>& values = found.emplace_back();
      for (const Column& column : table_->definition().columns) {
        values.push_back(scan.row().value(column));
      }
    }
    EXPECT_EQ(found, expected);
    for (const CheckFinding& fault : checkFile(test::kFile, "").faults) {
      ADD_FAILURE() << fault.toText();
    }
  }

  test::MemoryFiles files_;
  std::shared_ptr<Database> database_;
  std::shared_ptr<Table> table_;
  RowId firstRow_{};
};

/// Number of columns, a long integer, a double and the mask: nothing of variable columns.
Bytes rowOfNumbers(std::uint16_t columns, std::int32_t whole, double fraction) {
  Bytes row(2 + 4 + 8 + 1);
  store16(&row[0], columns);
  store32(&row[2], static_cast<std::uint32_t>(whole));
  store64(&row[6], std::bit_cast<std::uint64_t>(fraction));
  row[14] = 3;
  return row;
}

TEST_F(RowForms, RowsOfBeforeTheFirstTextColumnHaveNoVariablePart) {
  create({.name = "Forms",
          .columns = {{.name = "whole", .type = ColumnType::longInteger},
                      {.name = "fraction", .type = ColumnType::double_},
                      {.name = "name", .type = ColumnType::text, .size = 50},
                      {.name = "note", .type = ColumnType::memo}},
          .indexes = {{.name = "whole", .columns = {{"whole"}}, .primary = true},
                      {.name = "name", .columns = {{"name"}}}}});
  Rows rows;
  for (int i = 0; i < 6; ++i) {
    const Value text = i < 4 ? Value() : Value("text " + std::to_string(i));
    rows.push_back({i, i / 8.0, text, text});
    const RowId row = table_->insert(rows.back());
    firstRow_ = i == 0 ? row : firstRow_;
  }
  Transaction transaction(database_->pager());
  for (std::uint8_t i = 0; i < 4; ++i) {
    rewriteRow(i, rowOfNumbers(2, i, i / 8.0));
  }
  transaction.commit();
  expectRows(rows);

  const auto row = [&](std::uint8_t number) { return RowId{firstRow_.page, number}; };
  rows[1] = {1, 0.5, "added", std::string(300, 'n')};
  rows[2] = {20, 0.25, Value(), Value()};
  table_->update(row(1), rows[1]);
  table_->update(row(2), rows[2]);
  table_->erase(row(3));
  rows.erase(rows.begin() + 3);
  expectRows(rows);
}

TEST_F(RowForms, RowsOfATableWhoseOnlyTextColumnWasDeletedTellByTheirBytes) {
  create({.name = "Forms",
          .columns = {{.name = "whole", .type = ColumnType::longInteger},
                      {.name = "fraction", .type = ColumnType::double_}},
          .indexes = {{.name = "whole", .columns = {{"whole"}}, .primary = true}}});
  Rows rows;
  for (int i = 0; i < 4; ++i) {
    rows.push_back({i, i * 0.1});
    const RowId row = table_->insert(rows.back());
    firstRow_ = i == 0 ? row : firstRow_;
  }
  Transaction transaction(database_->pager());
  std::uint8_t* definition = database_->pager().modify(table_->definition().page);
  store16(definition + kJet4.definition.maxColumns, 3);
  store16(definition + kJet4.definition.variableColumns, 1);
  rewriteRow(1, rowOfNumbers(3, 1, 0.1));    // written when the column was gone
  Bytes withText = rowOfNumbers(3, 2, 0.2);  // written when it was there
  withText.pop_back();
  const Bytes variablePart{'t', 'e', 'x', 't', 18, 0, 14, 0, 1, 0};
  withText.insert(withText.end(), variablePart.begin(), variablePart.end());
  withText.push_back(7);  // mask
  rewriteRow(2, withText);
  transaction.commit();
  expectRows(rows);

  rows.push_back({4, 0.4});
  table_->insert(rows.back());
  expectRows(rows);
}

// A count of rows in a file is a hint, whatever it is.
TEST_F(RowForms, RowsAreCountedByThePages) {
  create({.name = "Forms", .columns = {{.name = "whole", .type = ColumnType::longInteger}}});
  for (int i = 0; i < 5; ++i) {
    table_->insert(std::vector<Value>{i});
  }
  for (const std::uint32_t said : {0xffffffffU, 0U, 3U}) {
    Transaction transaction(database_->pager());
    store32(database_->pager().modify(table_->definition().page) + kJet4.definition.rowCount, said);
    transaction.commit();
    EXPECT_EQ(table_->countRows(), 5U);
    const CheckReport report = checkFile(test::kFile, "");
    EXPECT_TRUE(report.sound());
    EXPECT_EQ(report.remarkCount, 1U);
  }
  while (table_->countRows() > 0) {
    TableScan scan = table_->scan();
    scan.next();
    table_->erase(scan.rowId());
    EXPECT_LE(table_->rowCount(), 3U) << "a deletion made few rows billions";
  }
}

TEST(NameTest, CaseDoesNotTellNamesApart) {
  EXPECT_TRUE(sameName("PaneID", "paneid"));
  EXPECT_TRUE(sameName("Größe", "GRÖSSE"));
  EXPECT_TRUE(sameName("1 \u212a", "1 k"));  // the sign of kelvin
  for (const char* other : {"pane", "paneids", "panejd", "", "[aneid", "päneid"}) {
    EXPECT_FALSE(sameName("PaneID", other)) << other;
    EXPECT_FALSE(sameName(other, "PaneID")) << other;
  }
}

}  // namespace
}  // namespace orv::store::jet
