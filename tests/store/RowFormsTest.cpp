// Rows and values as Access leaves them: of tables whose columns were added or deleted, of forms
// that only Access writes; and rows that a page or a file can lose.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <vector>

#include "model/Raised.h"
#include "store/FileContent.h"
#include "store/TableDesign.h"
#include "store/jet/catalog/Creation.h"
#include "store/jet/catalog/EmptyDatabase.h"
#include "store/jet/page/DataPage.h"
#include "store/jet/page/Text.h"
#include "store/jet/row/CalculatedValue.h"
#include "store/jet/row/Row.h"
#include "store/jet/table/RowChanges.h"
#include "support/CaseFile.h"
#include "support/MemoryFiles.h"

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
    DataPageEditor(kJet4, database_->pager().modify(page_), page_)
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
  PageNumber page_ = 0;
};

/// Bytes in hexadecimal, parted by blanks as one likes.
Bytes bytesOf(const std::string& text) {
  Bytes bytes;
  for (std::size_t at = 0; (at = text.find_first_not_of(' ', at)) != text.npos; at += 2) {
    bytes.push_back(static_cast<std::uint8_t>(std::stoul(text.substr(at, 2), nullptr, 16)));
  }
  return bytes;
}

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
  create(test::design("Forms", "whole longInteger, fraction double, name text 50, note memo",
                      "whole primary: whole; name: name"));
  Rows rows;
  for (int i = 0; i < 6; ++i) {
    const Value text = i < 4 ? Value() : Value("text " + std::to_string(i));
    rows.push_back({i, i / 8.0, text, text});
    page_ = table_->insert(rows.back()).page;
  }
  Transaction transaction(database_->pager());
  for (std::uint8_t i = 0; i < 4; ++i) rewriteRow(i, rowOfNumbers(2, i, i / 8.0));
  transaction.commit();
  expectRows(rows);

  const auto row = [&](std::uint8_t number) { return RowId{page_, number}; };
  rows[1] = {1, 0.5, "added", std::string(300, 'n')};
  rows[2] = {20, 0.25, Value(), Value()};
  table_->update(row(1), rows[1]);
  table_->update(row(2), rows[2]);
  table_->erase(row(3));
  rows.erase(rows.begin() + 3);
  expectRows(rows);
}

TEST_F(RowForms, RowsOfATableWhoseOnlyTextColumnWasDeletedTellByTheirBytes) {
  create(test::design("Forms", "whole longInteger, fraction double", "whole primary: whole"));
  Rows rows;
  const auto tiny = std::bit_cast<double>(std::uint64_t{0xffff} << 32);
  for (int i = 0; i < 4; ++i) {
    rows.push_back({i, i == 3 ? tiny : i * 0.1});
    page_ = table_->insert(rows.back()).page;
  }
  Transaction transaction(database_->pager());
  std::uint8_t* definition = database_->pager().modify(table_->definition().page);
  store16(definition + kJet4.definition.maxColumns, 3);
  store16(definition + kJet4.definition.variableColumns, 1);
  rewriteRow(1, rowOfNumbers(3, 1, 0.1));    // written when the column was gone
  rewriteRow(3, rowOfNumbers(3, 3, tiny));   // the same; it seems to have an empty variable part
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

/// Rows of a table of a number and a text, and what is read of them.
TEST_F(RowForms, RowsAreReadAsFarAsTheirBytesReach) {
  create(test::design("Forms", "whole longInteger, name text 50"));
  page_ = table_->insert(std::vector<Value>{1, "a"}).page;
  for (const auto& [bytes, expected] : test::examplesOf("store/rows.txt", 15)) {
    {
      Transaction transaction(database_->pager());
      rewriteRow(0, bytesOf(bytes));
      transaction.commit();
    }
    std::string told;
    const auto note = [&](const auto& read) {
      try {
        read();
      } catch (const DamagedPage& damage) {
        if (damage.fault() != told) told += (told.empty() ? "" : "; ") + damage.fault();
      }
    };
    note([&] {
      const Rows rows = test::rowsOf(*table_);
      for (const Value& value : rows.at(0)) {
        told += (told.empty() ? "" : "|") + (value.isNull() ? "-" : value.toText());
      }
    });
    note([&] {
      TableScan scan = table_->scan();
      scan.next();
      scan.row().checkLayout();
    });
    EXPECT_EQ(told, expected) << bytes;
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
  createTable(*database, {.name = "More", .columns = {{"text", ColumnType::text, 255}}});
  const auto more = database->table("More");
  {
    Transaction both(database->pager());
    RowChanges changes(*more);
    changes.erase(changes.insert(std::vector<Value>{"deleted"}));
    changes.insert(std::vector<Value>{"kept"});
    changes.finish();
    both.commit();
  }
  EXPECT_EQ(test::rowsOf(*more).size(), 1U);
  {
    Transaction undone(database->pager());
    for (int i = 0; i < 500; ++i) insert("a row of a batch that is undone, so long that it fills");
  }
  insert("kept too");
  EXPECT_EQ(test::rowsOf(*table).size(), 2U);
  test::expectSound("freed.mdb");
}

/// Rows that go and come while others are visited, on pages that were read ahead.
TEST(TableScan, ShowsRowsAsTheyAreThen) {
  test::MemoryFiles files;
  const auto database = createDatabase("scan.mdb");
  createTable(*database, {.name = "Notes", .columns = {{"text", ColumnType::text, 255}}});
  const auto table = database->table("Notes");
  std::vector<RowId> rows;
  while (rows.empty() || rows.back().page == rows.front().page || rows.size() < 45) {
    rows.push_back(table->insert(std::vector<Value>{std::string(250, 'x')}));
  }
  const PageNumber second = rows[20].page, third = rows.back().page;
  ASSERT_TRUE(rows[0].page < second && second < third);
  TableScan scan = table->scan();
  EXPECT_TRUE(scan.next());
  const auto eraseOn = [&](PageNumber page) {
    for (const RowId row : rows) {
      if (row.page == page) table->erase(row);
    }
  };
  eraseOn(second);
  for (PageNumber page = rows[0].page; page == rows[0].page; page = scan.rowId().page) {
    ASSERT_TRUE(scan.next());
  }
  EXPECT_EQ(scan.rowId(), (RowId{third, 0}));
  TableScan again = table->scan();
  again.seekAfter({second, 3});  // which is gone
  EXPECT_TRUE(again.next() && again.rowId() == (RowId{third, 0}));
  eraseOn(third);
  again.seekAfter({third, 0});
  EXPECT_FALSE(again.next());
  EXPECT_EQ(table->countRows(), test::rowsOf(*table).size());
}

/// Values as files hold them. Before a calculated one stand a header and its length, behind it
/// three bytes.
TEST(StoredValue, IsReadAsTheTableOfExamplesSays) {
  const std::map<std::string, ColumnType> types{
      {"boolean", ColumnType::boolean}, {"long", ColumnType::longInteger},
      {"big", ColumnType::bigInteger},  {"double", ColumnType::double_},
      {"text", ColumnType::text},       {"memo", ColumnType::memo},
      {"numeric", ColumnType::numeric}, {"extended", ColumnType::extendedDate}};
  Bytes file = emptyDatabase();
  const auto pager = Pager::overMemory(file, "stored.accdb");
  for (const auto& [left, expected] : test::examplesOf("store/stored.txt", 30)) {
    std::istringstream words(left);
    std::string kind, type, content;
    words >> kind >> type;
    std::getline(words >> std::ws, content);
    Column column;
    column.type = types.at(type);
    Bytes bytes = kind == "digits" ? Bytes(content.begin(), content.end()) : bytesOf(content);
    Value value;
    const auto raised = test::raisedBy([&] {
      if (kind != "calculated") return void(value = decodeValue(*pager, column, bytes, 9));
      const auto length = static_cast<std::uint8_t>(bytes.size());
      bytes.insert(bytes.begin(),
                   {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, length, 0, 0, 0});
      bytes.resize(bytes.size() + 3);
      value = decodeCalculated(*pager, column, bytes, 1);
    });
    EXPECT_EQ(raised.number != 0 ? fmt::format("error {}", raised.number)
              : value.isNull()   ? "Null"
                                 : value.toText(),
              expected)
        << left;
  }
}

}  // namespace
}  // namespace orv::store::jet
