// New files, tables, indexes and saved queries: what is made is what Access makes, reads back as
// it was asked for, and is refused where it cannot be.

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include "errors/Error.h"
#include "model/Raised.h"
#include "store/FileContent.h"
#include "store/SampleFile.h"
#include "store/TableDesign.h"
#include "store/jet/catalog/Creation.h"
#include "store/jet/catalog/EmptyDatabase.h"
#include "store/jet/definition/Properties.h"
#include "support/CaseFile.h"
#include "support/Corpus.h"
#include "support/ReadFile.h"
#include "support/TemporaryFolder.h"

namespace orv::store::jet {
namespace {

namespace fs = std::filesystem;
using orv::test::contentOf;
using orv::test::rowsOf;
using enum ColumnType;

class CreationTest : public testing::Test {
 protected:
  /// Whatever a test did, the file that it leaves is sound.
  void TearDown() override {
    if (fs::exists(path_) && fs::file_size(path_) >= kJet4.pageSize) {
      EXPECT_EQ(test::expectSound(path_).lostPages, 0u);
      database_.reset();
      if (sum_ != 0) test::expectBytes(path_, sum_);
    }
  }

  void open() { table_ = (database_ = Database::open(path_, ""))->table(table_->name()); }
  void create(const TableInfo& design) {
    if (database_ == nullptr) database_ = createDatabase(path_);
    createTable(*database_, design);
    table_ = database_->table(design.name);
  }
  void insertRows(int count, const std::function<std::vector<Value>(int)>& row) {
    Transaction transaction(database_->pager());
    for (int i = 0; i < count; ++i) table_->insert(row(i));
    transaction.commit();
  }
  void openCopyOf(const char* file) {
    path_ = folder_.copyOf(test::corpusFolder() / "access" / file);
    database_ = Database::open(path_, "");
  }

  const test::TemporaryFolder folder_;
  std::string path_ = folder_ / "new.mdb";
  std::uint64_t sum_ = 0;  ///< of the bytes of the file that the test leaves, where it says one
  std::shared_ptr<Database> database_;
  std::shared_ptr<Table> table_;
};

/// The rows of a system table without dates and binary values.
std::multiset<std::string> plainRows(Database& database, const std::string& name) {
  std::multiset<std::string> rows;
  for (const auto& row : rowsOf(*database.table(name))) {
    std::string line;
    for (const Value& value : row) {
      const bool isLeftOut = value.isNull() || value.getIf<Date>() || value.getIf<Bytes>();
      line += (isLeftOut ? "" : value.toText()) + "|";
    }
    rows.insert(line);
  }
  return rows;
}

TEST_F(CreationTest, AnEmptyFileIsLikeThoseOfTheEngineAndOfAccess) {
  ORV_NEEDS_CORPUS();
  database_ = createDatabase(path_);
  const auto mine = contentOf(path_);
  const fs::path access = test::corpusFolder() / "access";
  for (const char* name : {"emptyJet4.mdb", "emptyV2000.mdb"}) {
    const auto theirs = contentOf(access / name);
    const auto theirDatabase = Database::open(access / name, "");
    for (const std::string table :
         {"MSysObjects", "MSysACEs", "MSysQueries", "MSysRelationships"}) {
      for (const char* subject : {" columns", " numbers", " indexes"}) {
        EXPECT_EQ(mine.at(table + subject), theirs.at(table + subject)) << name << ' ' << table;
      }
    }
    Bytes headers[] = {database_->pager().header(), theirDatabase->pager().header()};
    const auto& h = kJet4.header;
    for (Bytes& header : headers) {  // but for the date and what it masks
      std::fill_n(header.begin() + static_cast<long>(h.password), h.passwordSize + 2, 0);
      std::fill_n(header.begin() + static_cast<long>(h.creationDate), 8, 0);
    }
    EXPECT_EQ(headers[0], headers[1]) << name;
    // Access has these objects too, and more for its windows.
    EXPECT_THAT(plainRows(*theirDatabase, "MSysObjects"),
                testing::IsSupersetOf(plainRows(*database_, "MSysObjects")));
  }
  const auto engine = Database::open(access / "emptyJet4.mdb", "");
  EXPECT_EQ(plainRows(*database_, "MSysACEs"), plainRows(*engine, "MSysACEs"));
  ASSERT_EQ(database_->pager().pageCount(), engine->pager().pageCount());
  for (PageNumber page = 0; page < engine->pager().pageCount(); ++page) {
    EXPECT_EQ(database_->pager().read(page).type(), engine->pager().read(page).type()) << page;
  }
}

TEST_F(CreationTest, EveryColumnTypeReadsBackAfterReopening) {
  sum_ = 0x27f9a60025918779;
  constexpr int kRows = 120;
  const TableInfo design = test::allTypes();
  create(design);
  insertRows(kRows, [](int i) {
    std::vector<Value> row = test::rowOfAllTypes(i);
    row[0] = Value();
    return row;
  });
  open();
  for (std::size_t i = 0; i < design.columns.size(); ++i) {
    const ColumnInfo found = describe(table_->definition().columns[i]);
    const ColumnInfo& wanted = design.columns[i];
    EXPECT_EQ(
        std::tie(found.name, found.type, found.size, found.autoNumber, found.required,
                 found.allowZeroLength, found.precision, found.scale, found.defaultValue),
        std::tie(wanted.name, wanted.type, wanted.size, wanted.autoNumber, wanted.required,
                 wanted.allowZeroLength, wanted.precision, wanted.scale, wanted.defaultValue));
  }
  const auto rows = rowsOf(*table_);
  ASSERT_EQ(rows.size(), std::size_t{kRows});
  for (int i = 0; i < kRows; ++i) EXPECT_EQ(rows[i], test::rowOfAllTypes(i)) << i;
  EXPECT_THROW(table_->insert(test::rowOfAllTypes(5)), Error);
}

TEST_F(CreationTest, WidestTableSpansSeveralPagesOfDefinitionAndMaps) {
  sum_ = 0x3b4855766131fc50;
  const std::string c(60, 'c'), x(61, 'x');
  create(test::design(std::string(64, 'w'),
                      fmt::format("40*m#{0} memo, 160*t#{0} text 10, 55*b#{0} byte", c),
                      fmt::format("32*i#{1}: m#{0}, t#{0}, b5{0}-", c, x)));
  insertRows(20, [](int i) {
    std::vector<Value> row(255, Value(i));
    row[3] = std::string(5000, 'm');
    for (std::size_t size = 510; size < 515; ++size) row[size - 500] = std::string(size, 's');
    return row;
  });
  open();
  EXPECT_GT(table_->definition().morePages.size(), 5u);
  const auto rows = rowsOf(*table_);
  ASSERT_EQ(rows.size(), 20u);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    EXPECT_EQ(rows[i][3], Value(std::string(5000, 'm')));
    EXPECT_EQ(rows[i][254], Value(static_cast<std::int32_t>(i)));
  }
}

TEST_F(CreationTest, ObjectsInAFileOfAccessGetThePermissionsThatAccessGives) {
  ORV_NEEDS_CORPUS();
  openCopyOf("queryTestV2000.mdb");
  createTable(*database_, {.name = "Added", .columns = {{.name = "x", .type = longInteger}}});
  createQuery(*database_, "qryAdded", {});
  const auto permissionsOf = [&](const std::string& object) {
    std::multiset<std::string> found;
    const auto content = contentOf(path_);
    for (const std::string& line : content.at("MSysACEs rows")) {
      if (line.starts_with(object + '|')) found.insert(line.substr(object.size()));
    }
    return found;
  };
  ASSERT_EQ(permissionsOf("Table1").size(), 3u);
  EXPECT_EQ(permissionsOf("Added"), permissionsOf("Table1"));
  EXPECT_EQ(permissionsOf(std::to_string(database_->find("qryAdded")->id)),
            permissionsOf("Table1"));
  const CatalogEntry& ofAccess = *database_->find("Table1");
  EXPECT_EQ(database_->find("Added")->parentId, ofAccess.parentId);
  EXPECT_EQ(database_->find("Added")->flags, 0u);
}

TEST_F(CreationTest, IndexesOverRowsThatAreThere) {
  sum_ = 0x4ee799a65459fed1;
  constexpr int kRows = 1500;
  TableInfo design = test::allTypes();
  design.indexes.clear();
  create(design);
  insertRows(kRows, [](int i) {
    std::vector<Value> row = test::rowOfAllTypes(i * 7919 % kRows);
    row[10] = row[11] = Value();
    row[7] = i % 3 == 0 ? Value() : row[7];
    return row;
  });
  createIndex(*database_, design.name, {.name = "PK", .columns = {{"ID"}}, .primary = true});
  // Long names make the definition grow over the end of its page.
  for (int i = 0; i < 20; ++i) {
    createIndex(*database_, design.name,
                {.name = fmt::format("{} {}", std::string(60, 'i'), i),
                 .columns = {{design.columns[static_cast<std::size_t>(i % 8)].name, i % 2 == 0},
                             {"Name"}}});
  }
  EXPECT_FALSE(table_->definition().morePages.empty());
  createIndex(*database_, design.name,
              {.name = "Times", .columns = {{"When"}}, .unique = true, .ignoreNulls = true});
  // The table that was open before knows them, and keeps them right: all are checked at the end.
  const std::vector<Value> row = test::rowOfAllTypes(5000);
  table_->insert(row);
  EXPECT_THROW(table_->insert(row), Error);
  ASSERT_EQ(table_->definition().realIndexes.size(), 22u);
  EXPECT_EQ(contentOf(path_).at(design.name + " index 21").size(), kRows * 2u / 3 + 1);
}

TEST_F(CreationTest, IndexThatRowsContradictIsRefusedAndNothingChanges) {
  create({.name = "T",
          .columns = {
              {"a", longInteger}, {"b", text, 10}, {"c", binary, 4}, {"d", memo}, {"e", memo}}});
  std::string many;
  for (int i = 0; i < 127; ++i) many += "\U0001F600";
  for (const auto& [a, b] : {std::pair{Value(1), "x"}, {Value(1), "X"}, {Value(), "y"}}) {
    table_->insert(std::vector<Value>{a, b, Bytes{7}, many, many});
  }
  const std::string before = test::readFile(path_);
  const std::pair<IndexInfo, const char*> cases[] = {
      {{"B", {{"b"}, {"c"}, {"a", false}}, false, true},
       "Index 'B' of table 'T' was not made, since several rows have the same values (X, (bytes), "
       "1)."},
      {{"A", {{"b"}, {"a"}}, true},
       "Index 'A' of table 'T' was not made, since a row has no value in a column of it (y, "
       "Null)."},
      {{"D", {{"d"}, {"e", false}, {"b"}}, false, false},
       "The values of an index's columns are too long together: their key takes 1535 bytes."}};
  for (const auto& [design, told] : cases) {
    EXPECT_EQ(test::raisedBy([&, d = &design] { createIndex(*database_, "T", *d); }).description,
              told);
  }
  EXPECT_EQ(test::readFile(path_), before);
  EXPECT_TRUE(table_->definition().realIndexes.empty());
  createIndex(*database_, "T", {.name = "A", .columns = {{"a"}, {"b"}}});
}

TEST_F(CreationTest, IndexInAFileOfAccessLeavesItsOthersAsTheyAre) {
  ORV_NEEDS_CORPUS();
  openCopyOf("indexTestV2000.mdb");
  auto expected = contentOf(path_).at("Table1 indexes");
  createIndex(*database_, "Table1", {.name = "aData", .columns = {{"data"}, {"otherfk1", false}}});
  expected.insert(expected.begin(),
                  "aData kind 0, unique false, nulls true, required false: data otherfk1-");
  EXPECT_THAT(contentOf(path_).at("Table1 indexes"), testing::UnorderedElementsAreArray(expected));
}

TEST_F(CreationTest, QueriesKeepTheirParts) {
  sum_ = 0xaa07a8bcec793a4d;
  database_ = createDatabase(path_);
  const std::string expression = "[T].[a] " + std::string(3000, '+');
  createQuery(*database_, "first",
              {{.attribute = 1, .flag = 1},
               {.attribute = 6, .expression = "T.b", .name1 = "alias"},
               {.attribute = 6, .expression = expression},
               {.attribute = 5, .name1 = "T", .name2 = "U"}});
  createQuery(*database_, "second", {{.attribute = 5, .name1 = "first"}});
  const auto content = contentOf(path_);
  EXPECT_THAT(content.at("query first"),
              testing::ElementsAre("flags 0", "0|0|||", "1|1|||", "5|0||T|U", "6|0|T.b|alias|",
                                   "6|0|" + expression + "||", "255|0|||"));
  EXPECT_THAT(content.at("query second"),
              testing::ElementsAre("flags 0", "0|0|||", "5|0||first|", "255|0|||"));
  EXPECT_NE(database_->find("FIRST")->id, database_->find("second")->id);
}

/// Tables that are open follow what is undone.
TEST_F(CreationTest, WhatIsUndoneIsNotThere) {
  create(test::design("T", "a longInteger"));
  std::shared_ptr<Table> undone;
  {
    const Transaction transaction(database_->pager());
    createIndex(*database_, "T", {.name = "A", .columns = {{"a"}}});
    createTable(*database_, test::design("U", "b text 9"));
    undone = database_->table("U");
    EXPECT_EQ(table_->definition().realIndexes.size(), 1u);
  }
  EXPECT_EQ(database_->find("U"), nullptr);
  EXPECT_EQ(table_->definition().realIndexes.size(), 0u);
  EXPECT_EQ(database_->table("T"), table_);
  table_->insert(std::vector<Value>{1});
  {
    const Transaction transaction(database_->pager());
    createTable(*database_, test::design("First", "b text 9"));
    createTable(*database_, test::design("U", "b text 9"));
    undone = database_->table("U");
  }
  create(test::design("U", "c byte, d byte"));
  EXPECT_NE(table_, undone);
  EXPECT_EQ(table_->definition().columns.size(), 2u);
}

/// A block of properties is cut at each byte, and each is changed.
TEST(Properties, AreReadAsFarAsTheyCanBe) {
  Bytes file = emptyDatabase();
  const auto pager = Pager::overMemory(file, "properties.mdb");
  const auto told = [&](std::span<const std::uint8_t> block) {
    std::string text;
    for (const auto& [owner, list] : readProperties(*pager, block)) {
      text += owner + ":";
      for (const Property& each : list) {
        text += fmt::format("{} {} {} {},", each.name, static_cast<int>(each.type),
                            fmt::join(each.value, " "), each.isDefinition);
      }
    }
    return text + "\n";
  };
  Bytes block = writeProperties({{"", {{"Title", text, {1, 2, 3}, false}}},
                                 {"a", {{"Required", boolean, {1}, true}, {"Title", memo, {}}}},
                                 {"bc", {{"Required", boolean, {0}, false}}}});
  EXPECT_EQ(told(block),
            ":Title 10 1 2 3 false,a:Required 1 1 true,Title 12  false,bc:Required 1 0 false,\n");
  std::string damaged;
  for (std::size_t end = 0; end < block.size(); ++end) damaged += told({block.data(), end});
  for (std::uint8_t& byte : block) {
    for (const int change : {1, -1, 0x20}) {
      const std::uint8_t right = byte;
      byte = static_cast<std::uint8_t>(byte + change);
      damaged += told(block);
      byte = right;
    }
  }
  EXPECT_EQ(test::sumOf(damaged), 0x2cbafe4b322d6bedu) << damaged;

  TableDefinition table;
  table.columns = {{.name = "plain"}, {.name = "made", .calculated = true}, {.name = "empty"}};
  table.columns[2].calculated = table.columns[2].required = true;
  applyProperties(*pager,
                  {{"", {{"Required", boolean, {1}}}},
                   {"PLAIN", {{"ResultType", byte, {4}}, {"AllowZeroLength", boolean, {0}}}},
                   {"none", {{"Required", boolean, {1}}}},
                   {"made", {{"ResultType", byte, {7, 0}}, {"Required", boolean, {1}}}},
                   {"empty", {{"ResultType", byte, {}}, {"Required", boolean, {}}}}},
                  table);
  std::string applied;
  for (const Column& column : table.columns) {
    applied += fmt::format("{} {} {} {}, ", column.name, static_cast<int>(column.type),
                           column.required, column.allowZeroLength);
  }
  EXPECT_EQ(applied, "plain 10 false false, made 7 true true, empty 10 false true, ");
}

TEST_F(CreationTest, DesignsAtTheirBoundsAreTaken) {
  sum_ = 0xd506ef1f7f35e71f;
  create(test::design("Bounds",
                      "a text 255, b binary 510, d numeric 28.28, e numeric 0.18, any text, "
                      "f longInteger auto",
                      "32*i#: a"));
  // Of 2 + 236 * 17 + 16 + 30 bytes, which a row can just have, and with a text.
  create(test::design("Row", "236*c# numeric, key guid, more boolean"));
  insertRows(2, [](int) { return std::vector<Value>(238); });
  create(
      test::design("Row with text",
                   "235*c# numeric, d235 guid, d236 double, d237 integer, d238 text, d239 byte"));
  insertRows(2, [](int) { return std::vector<Value>(240); });
  std::vector<Value> tooLong(240);
  tooLong[238] = "a";
  EXPECT_EQ(test::raisedBy([&] { table_->insert(tooLong); }).description,
            "A row of table 'Row with text' would take 4062 bytes; at most 4060 are possible. "
            "Shorten its texts.");
  create(
      test::design("Keys", "10*c# byte", "i primary: c0, c1-, c2, c3-, c4, c5-, c6, c7-, c8, c9-"));
}

TEST_F(CreationTest, ImpossibleDesignsAreRefusedWithTheReason) {
  sum_ = 0x4c8f79253beac11a;
  database_ = createDatabase(path_);
  createTable(*database_, test::design("Taken", "a longInteger"));
  createQuery(*database_, "qryTaken", {});
  const std::string before = test::readFile(path_);
  for (const auto& cells : test::casesOf("store/designs.txt", 4)) {
    const test::Raised raised = test::raisedBy(
        [&] { createTable(*database_, test::design(cells[0], cells[1], cells[2])); });
    std::string told = fmt::format("{} {}", raised.number, raised.description);
    const std::size_t path = told.find(path_);
    if (path != told.npos) told.erase(path, path_.size());
    EXPECT_EQ(told, cells[3]);
  }
  EXPECT_EQ(test::readFile(path_), before);
}

}  // namespace
}  // namespace orv::store::jet
