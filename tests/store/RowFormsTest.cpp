// Rows and values as Access leaves them: of tables whose columns were added or deleted, of forms
// that only Access writes; and rows that a page or a file can lose.

#include <gtest/gtest.h>

#include <vector>

#include "errors/Error.h"
#include "model/Raised.h"
#include "store/FileContent.h"
#include "store/SampleFile.h"
#include "store/StoreError.h"
#include "store/jet/catalog/Creation.h"
#include "store/jet/catalog/EmptyDatabase.h"
#include "store/jet/page/DataPage.h"
#include "store/jet/page/Text.h"
#include "store/jet/row/CalculatedValue.h"
#include "store/jet/row/Row.h"
#include "support/MemoryFiles.h"
#include "support/TemporaryFolder.h"

namespace orv::store::jet {
namespace {

using test::Rows;

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
    EXPECT_EQ(test::rowsOf(*table_), expected);
    test::expectSound(test::kFile);
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
  for (std::uint8_t i = 0; i < 4; ++i) rewriteRow(i, rowOfNumbers(2, i, i / 8.0));
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
  for (int i = 0; i < 5; ++i) table_->insert(std::vector<Value>{i});
  for (const std::uint32_t said : {0xffffffffU, 0U, 3U}) {
    Transaction transaction(database_->pager());
    store32(database_->pager().modify(table_->definition().page) + kJet4.definition.rowCount, said);
    transaction.commit();
    EXPECT_EQ(table_->countRows(), 5U);
    EXPECT_EQ(test::expectSound(test::kFile).remarkCount, 1U);
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

/// A zero byte changes between stretches of one byte and of two; what is cut off at the end is no
/// character.
TEST(TextTest, CompressedTextIsReadInStretches) {
  const std::pair<Bytes, const char*> cases[] = {
      {{0xff, 0xfe}, ""},
      {{0xff, 0xfe, 'a', 0xe9}, "a\u00e9"},
      {{0xff, 0xfe, 'a', 0, 0x53, 0x30, 0x42, 0x30, 0, 'b'}, "a\u3053\u3042b"},
      {{0xff, 0xfe, 0, 0x3d, 0xd8, 0x01, 0xde, 0x41}, "\U0001f601"},
      {{0xff, 0xfe, 0, 0x3d, 0xd8, 0x41, 0x42}, "\ufffd\u4241"},
      {{0xff, 0xfe, 0, 0x01, 0xde, 0x3d, 0xd8}, "\ufffd\ufffd"},
      {{0xff, 0xfd, 'a'}, "\ufdff"},
      {{0xff}, ""}};
  for (const auto& [bytes, text] : cases) EXPECT_EQ(decodeUnicodeText(bytes), text);
}

/// The page that took the last row is not used any more when it was freed since: by the deletion
/// of its rows, or by undoing what took it.
TEST(FreedPage, TakesNoRows) {
  test::MemoryFiles files;
  const auto database = createDatabase("freed.mdb");
  createTable(*database, {.name = "Notes", .columns = {{"text", ColumnType::text, 255}}});
  const auto table = database->table("Notes");
  const auto insert = [&](const char* text) { return table->insert(std::vector<Value>{text}); };
  table->erase(insert("deleted"));
  insert("kept");
  EXPECT_EQ(test::rowsOf(*table).size(), 1U);
  {
    Transaction undone(database->pager());
    for (int i = 0; i < 500; ++i) insert("a row of a batch that is undone, so long that it fills");
  }
  insert("kept too");
  EXPECT_EQ(test::rowsOf(*table).size(), 2U);
  test::expectSound("freed.mdb");
}

/// What is missing at the end of a file is not taken for rows that were never there.
TEST(CutTable, LosesNoRowsInSilence) {
  const test::TemporaryFolder folder;
  test::makeSampleFile(folder / "sample.mdb");
  test::MemoryFiles files;
  files.load(folder / "sample.mdb", "cut.mdb");
  files.open("cut.mdb", FileSystem::Open::existing)->truncate(files.size("cut.mdb") / 8192 * 4096);
  const auto database = Database::open("cut.mdb", "");
  std::size_t damaged = 0;
  for (const CatalogEntry& entry : database->entries()) {
    if (entry.kind != CatalogEntry::Kind::table) continue;
    const std::int32_t error = test::raisedBy([&] {
                                 const auto table = database->table(entry.name);
                                 EXPECT_EQ(test::rowsOf(*table).size(), table->rowCount());
                               }).number;
    EXPECT_TRUE(error == 0 || error == kCorruptFile) << entry.name << error;
    damaged += error != 0 ? 1 : 0;
  }
  EXPECT_GT(damaged, 0U);
}

/// What a row of Access 2010 holds of a calculated value: the header, the length, the value and its
/// end.
Bytes stored(const Bytes& value) {
  Bytes bytes(20);
  bytes[16] = static_cast<std::uint8_t>(value.size());
  bytes.insert(bytes.end(), value.begin(), value.end());
  bytes.resize(bytes.size() + 3);
  return bytes;
}

TEST(CalculatedValue, IsReadFromBehindItsHeader) {
  Bytes file = emptyDatabase();
  const auto pager = Pager::overMemory(file, "calculated.accdb");
  const auto decode = [&](ColumnType type, const Bytes& value) {
    Column column;
    column.type = type;
    return decodeCalculated(*pager, column, stored(value), 1);
  };
  EXPECT_EQ(decode(ColumnType::boolean, {0xff}), Value(true));
  EXPECT_EQ(decode(ColumnType::boolean, {0}), Value(false));
  EXPECT_EQ(decode(ColumnType::boolean, {}), Value(false));
  EXPECT_EQ(decode(ColumnType::longInteger, {0x0c, 0, 0, 0}), Value(12));
  EXPECT_EQ(decode(ColumnType::double_, {0, 0, 0, 0, 0, 0, 0xf0, 0x3f}), Value(1.0));
  EXPECT_EQ(decode(ColumnType::text, {'d', 0, 0xf6, 0}), Value("dö"));
  EXPECT_EQ(decode(ColumnType::memo, {}), Value(""));
  // The calculation of a number has failed.
  EXPECT_TRUE(decode(ColumnType::double_, {}).isNull());
  EXPECT_TRUE(decode(ColumnType::numeric, {}).isNull());
  EXPECT_EQ(decode(ColumnType::numeric, {0x0e, 0, 2, 0, 0, 0, 0, 0, 0x39, 0x30, 0, 0, 0, 0, 0, 0}),
            Value(Decimal::fromText("123.45", 28, 2)));
  EXPECT_EQ(
      decode(ColumnType::numeric, {0x0e, 0, 0, 0x80, 1, 0, 0, 0, 2, 0, 0, 0, 0, 0, 0, 0}).toText(),
      "-18446744073709551618");
}

/// Dates of the type "Date/Time Extended".
TEST(ExtendedDate, IsADate) {
  Bytes file = emptyDatabase();
  const auto pager = Pager::overMemory(file, "dates.accdb");
  Column column;
  column.type = ColumnType::extendedDate;
  EXPECT_EQ(describe(column).type, ColumnType::dateTime);
  const auto textOf = [&](std::string text) {
    text.push_back('\0');
    const Bytes bytes(text.begin(), text.end());
    return decodeValue(*pager, column, bytes, 9).toText();
  };
  EXPECT_EQ(textOf("0000000000000737424:0000000450610000000:7"), "2020-01-01 12:31:01");
  EXPECT_EQ(textOf("0000000000000000000:0000000000000000000:7"), "0001-01-01");
  EXPECT_EQ(textOf("0000000000000693592:0000000216000000000:7"), "1899-12-29 06:00:00");
  EXPECT_EQ(textOf("0000000000000737424:0000000450609000000:7"), "2020-01-01 12:31:01");
  EXPECT_EQ(textOf("0000000000003652058:0000000863990000000:7"), "9999-12-31 23:59:59");
  for (const char* wrong :
       {"0000000000000737425", "00000000000007374x5:0000000450610000000:7",
        "-000000000000737425:0000000450610000000:7", "0000000000003652059:0000000000000000000:7",
        "0000000000000737425:0000000864000000000:7"}) {
    EXPECT_EQ(test::raisedBy([&] { textOf(wrong); }).number, kCorruptFile) << wrong;
  }
}

}  // namespace
}  // namespace orv::store::jet
