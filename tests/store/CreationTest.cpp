// New files, tables, indexes and saved queries: what is made is what Access makes, reads back as
// it was asked for, and is refused where it cannot be.

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <map>

#include "errors/Error.h"
#include "model/Raised.h"
#include "store/FileContent.h"
#include "store/SampleFile.h"
#include "store/StoreError.h"
#include "store/jet/catalog/Creation.h"
#include "store/jet/catalog/EmptyDatabase.h"
#include "store/jet/definition/Properties.h"
#include "support/Corpus.h"
#include "support/ReadFile.h"
#include "support/TemporaryFolder.h"

namespace orv::store::jet {
namespace {

namespace fs = std::filesystem;
using orv::test::contentOf;
using orv::test::rowsOf;
using testing::HasSubstr;
using enum ColumnType;

/// Of the files that tests leave.
const std::map<std::string, std::uint64_t> kSums{
    {"EveryColumnTypeReadsBackAfterReopening", 0x27f9a60025918779},
    {"WidestTableSpansSeveralPagesOfDefinitionAndMaps", 0x7e3c9b79731d9307},
    {"IndexesOverRowsThatAreThere", 0x4ee799a65459fed1},
    {"QueriesKeepTheirParts", 0xaa07a8bcec793a4d},
    {"DesignsAtTheirBoundsAreTaken", 0xd506ef1f7f35e71f},
    {"ImpossibleDesignsAreRefusedWithTheReason", 0x4c8f79253beac11a}};

class CreationTest : public testing::Test {
 protected:
  /// Whatever a test did, the file that it leaves is sound.
  void TearDown() override {
    if (fs::exists(path_) && fs::file_size(path_) >= kJet4.pageSize) {
      EXPECT_EQ(test::expectSound(path_).lostPages, 0u);
      database_.reset();
      const auto sum = kSums.find(testing::UnitTest::GetInstance()->current_test_info()->name());
      if (sum != kSums.end()) test::expectBytes(path_, sum->second);
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
    fs::copy_file(test::corpusFolder() / "access" / file, path_);
    fs::permissions(path_, fs::perms::owner_write, fs::perm_options::add);
    database_ = Database::open(path_, "");
  }

  const test::TemporaryFolder folder_;
  const std::string path_ = folder_ / "new.mdb";
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
  TableInfo design{.name = std::string(64, 'w'), .columns = {}};
  for (int i = 0; i < 255; ++i) {
    design.columns.push_back({.name = fmt::format("{:03}{}", i, std::string(61, 'c')),
                              .type = i < 40    ? memo
                                      : i < 200 ? text
                                                : byte,
                              .size = i < 40 || i >= 200 ? 0u : 10u});
  }
  for (int i = 0; i < 32; ++i) {
    design.indexes.push_back({.name = fmt::format("{:03}{}", i, std::string(61, 'x')),
                              .columns = {{design.columns[static_cast<std::size_t>(i)].name},
                                          {design.columns[static_cast<std::size_t>(100 + i)].name},
                                          {design.columns[254].name, false}}});
  }
  create(design);
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
  const auto permissionsOf = [&](const char* object) {
    std::multiset<std::string> found;
    const auto table = database_->table("MSysACEs");
    const std::size_t id = *table->definition().findColumn("ObjectId");
    for (auto row : rowsOf(*table)) {
      if (row[id] != Value(database_->find(object)->id)) continue;
      std::string line;
      for (std::size_t i = 0; i < row.size(); ++i) {
        const Bytes* user = row[i].getIf<Bytes>();
        line += i == id           ? ""
                : user != nullptr ? std::string(user->begin(), user->end())
                                  : row[i].toText();
      }
      found.insert(line);
    }
    return found;
  };
  ASSERT_EQ(permissionsOf("Table1").size(), 3u);
  EXPECT_EQ(permissionsOf("Added"), permissionsOf("Table1"));
  EXPECT_EQ(permissionsOf("qryAdded"), permissionsOf("Table1"));
  const CatalogEntry& ofAccess = *database_->find("Table1");
  EXPECT_EQ(database_->find("Added")->parentId, ofAccess.parentId);
  EXPECT_EQ(database_->find("Added")->flags, 0u);
}

TEST_F(CreationTest, IndexesOverRowsThatAreThere) {
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
  std::size_t entries = 0;
  for (IndexCursor cursor = table_->index(21).first(); cursor.next();) ++entries;
  EXPECT_EQ(entries, kRows * 2u / 3 + 1);
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
}

std::vector<ColumnInfo> columns(std::size_t count, ColumnType type) {
  std::vector<ColumnInfo> list;
  for (std::size_t i = 0; i < count; ++i) list.push_back({fmt::format("c{}", i), type});
  return list;
}

/// Of 2 + 236 * 17 + 16 + 30 bytes, which a row can just have, and `more`.
std::vector<ColumnInfo> fullRow(ColumnType more) {
  std::vector<ColumnInfo> list = columns(236, numeric);
  list.push_back({"key", guid});
  list.push_back({"more", more});
  return list;
}

/// Of 2 + 235 * 17 + 16 + 8 + 2 + 6 + 30 bytes, and `more`.
std::vector<ColumnInfo> fullRowWithText(ColumnType more) {
  std::vector<ColumnInfo> list = columns(235, numeric);
  for (const ColumnType type : {guid, double_, integer, text, more}) {
    list.push_back({fmt::format("d{}", list.size()), type});
  }
  return list;
}

std::vector<IndexColumnInfo> keys(std::size_t count) {
  std::vector<IndexColumnInfo> list;
  for (std::size_t i = 0; i < count; ++i) list.push_back({fmt::format("c{}", i), i % 2 == 0});
  return list;
}

std::vector<IndexInfo> manyIndexes(std::size_t count) {
  std::vector<IndexInfo> list;
  for (std::size_t i = 0; i < count; ++i) list.push_back({fmt::format("i{}", i), {{"a"}}});
  return list;
}

TEST_F(CreationTest, DesignsAtTheirBoundsAreTaken) {
  create({"Bounds",
          {{"a", text, 255},
           {"b", binary, 510},
           {.name = "d", .type = numeric, .precision = 28, .scale = 28},
           {.name = "e", .type = numeric, .scale = 18},
           {"any", text},
           {"f", longInteger, 0, true}},
          manyIndexes(32)});
  create({"Row", fullRow(boolean), {}});
  insertRows(2, [](int) { return std::vector<Value>(238); });
  create({"Row with text", fullRowWithText(byte), {}});
  insertRows(2, [](int) { return std::vector<Value>(240); });
  create({"Keys", columns(10, byte), {{"i", keys(10), true}}});
}

TEST_F(CreationTest, ImpossibleDesignsAreRefusedWithTheReason) {
  database_ = createDatabase(path_);
  const ColumnInfo a{.name = "a", .type = longInteger};
  createTable(*database_, {.name = "Taken", .columns = {a}});
  createQuery(*database_, "qryTaken", {});
  const std::string before = test::readFile(path_);
  const auto indexed = [&](std::vector<IndexInfo> indexes) {
    return TableInfo{"T", {a}, std::move(indexes)};
  };
  const std::pair<TableInfo, std::int32_t> cases[] = {
      {{"", {a}}, kInvalidDesign},
      {{" x", {a}}, kInvalidDesign},
      {{std::string(65, 'x'), {a}}, kInvalidDesign},
      {{"a.b", {a}}, kInvalidDesign},
      {{"TAKEN", {a}}, kObjectExists},
      {{"qrytaken", {a}}, kObjectExists},
      {{"T", {}}, kInvalidDesign},
      {{"T", columns(256, byte)}, kInvalidDesign},
      {{"T", columns(255, numeric)}, kInvalidDesign},  // rows would not fit their pages
      {{"T", columns(1, bigInteger)}, kNotSupported},
      {{"T", {a, {"A", byte}}}, kInvalidDesign},
      {{"T", {{"t", text, 256}}}, kInvalidDesign},
      {{"T", {{"t", text, 0, true}}}, kInvalidDesign},  // numbers its rows
      {indexed({{"i", {{"b"}}}}), kInvalidDesign},
      {indexed({{"i", {{"a"}, {"A"}}}}), kInvalidDesign},
      {indexed({{"i", {{"a"}}}, {"I", {{"a"}}}}), kObjectExists},
      {{"T", columns(1, ole), {{"i", {{"c0"}}}}}, kInvalidDesign},
      {{"a!b", {a}}, kInvalidDesign},
      {{"a`b", {a}}, kInvalidDesign},
      {{"a[b", {a}}, kInvalidDesign},
      {{"a]b", {a}}, kInvalidDesign},
      {{"T", {{"tab\t", byte}}}, kInvalidDesign},
      {{"T", {{"id", longInteger, 0, true}, {"id2", longInteger, 0, true}}}, kInvalidDesign},
      {{"T", {{"b", binary, 511}}}, kInvalidDesign},
      {{"T", {{"b", binary}}}, kInvalidDesign},
      {{"T", {{.name = "d", .type = numeric, .precision = 29}}}, kInvalidDesign},
      {{"T", {{.name = "d", .type = numeric, .precision = 5, .scale = 6}}}, kInvalidDesign},
      {{"T", {{.name = "d", .type = numeric, .scale = 19}}}, kInvalidDesign},
      {{"T", fullRow(byte)}, kInvalidDesign},  // one byte more than a row can have
      {{"T", fullRowWithText(integer)}, kInvalidDesign},
      {{"T", columns(11, byte), {{"i", keys(11)}}}, kInvalidDesign},
      {indexed({{"i", {}}}), kInvalidDesign},
      {indexed({{"i", {{"a"}}, true}, {"j", {{"a"}}, true}}), kObjectExists},
      {indexed({{"i.j", {{"a"}}}}), kInvalidDesign},
      {indexed(manyIndexes(33)), kInvalidDesign},
  };
  std::string told;
  for (const auto& [design, number] : cases) {
    const test::Raised raised = test::raisedBy([&, d = &design] { createTable(*database_, *d); });
    EXPECT_EQ(raised.number, number) << raised.description;
    const std::size_t path = raised.description.find(path_);
    told += raised.description.substr(path == std::string::npos ? 0 : path + path_.size()) + '\n';
  }
  EXPECT_EQ(test::sumOf(told), 0xa42fc73236215c2fu) << told;
  EXPECT_EQ(test::readFile(path_), before);
}

}  // namespace
}  // namespace orv::store::jet
