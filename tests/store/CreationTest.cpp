// New files, tables, indexes and saved queries: what is made is what Access makes, reads back as
// it was asked for, and is refused where it cannot be.

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>

#include "errors/Error.h"
#include "store/Check.h"
#include "store/StoreError.h"
#include "store/jet/catalog/Creation.h"
#include "store/jet/catalog/EmptyDatabase.h"
#include "store/jet/catalog/SecurityIds.h"
#include "store/jet/page/Text.h"
#include "support/Corpus.h"

namespace orv::store::jet {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using enum ColumnType;

class CreationTest : public testing::Test {
 protected:
  void SetUp() override {
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    folder_ = fs::path(testing::TempDir()) / fmt::format("creation-{}", test->name());
    fs::remove_all(folder_);
    fs::create_directories(folder_);
  }
  /// Whatever a test did, every file that it leaves is sound.
  void TearDown() override {
    for (const auto& file : fs::directory_iterator(folder_)) {
      if (file.path().extension() == ".mdb" && file.file_size() >= kJet4.pageSize) {
        const CheckReport report = checkFile(file.path(), "");
        for (const CheckFinding& fault : report.faults) {
          ADD_FAILURE() << fault.toText();
        }
        EXPECT_TRUE(file.path().filename() != "new.mdb" || report.lostPages == 0);
      }
    }
    fs::remove_all(folder_);
  }

  std::string path(const std::string& name = "new.mdb") const { return folder_ / name; }
  std::shared_ptr<Database> copyOf(const std::string& corpusFile) const {
    const fs::path source = orv::test::corpusFolder() / corpusFile;
    fs::copy_file(source, path(source.filename()), fs::copy_options::overwrite_existing);
    fs::permissions(path(source.filename()), fs::perms::owner_write, fs::perm_options::add);
    return Database::open(path(source.filename()), "");
  }

 private:
  fs::path folder_;
};

std::string bytesOf(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

// Descriptions that compare whole tables ---------------------------------------------------

std::string describeStored(const Column& c) {
  return fmt::format("{} type {} number {} at {} length {} fixed {} compressible {} sid {} auto {}",
                     c.name, static_cast<int>(c.type), c.number,
                     c.fixed ? c.fixedOffset : c.variableIndex, c.length, c.fixed, c.compressible,
                     c.securityId, c.autoNumber);
}

std::vector<std::string> describeStored(const TableDefinition& table) {
  std::vector<std::string> lines = {fmt::format("{} system {} columns {} variable {}", table.name,
                                                table.systemTable, table.maxColumns,
                                                table.variableColumns)};
  for (const Column& column : table.columns) {
    lines.push_back(describeStored(column));
  }
  for (const LogicalIndex& logical : table.logicalIndexes) {
    const RealIndex& real = table.realIndexes[logical.realIndex];
    std::string keys;
    for (const IndexColumn& key : real.columns) {
      keys += fmt::format(" {}{}", table.columns[key.column].name, key.ascending ? "" : "-");
    }
    lines.push_back(
        fmt::format("index {} number {} tree {} kind {} unique {} nulls {} required {}:",
                    logical.name, logical.number, logical.realIndex, static_cast<int>(logical.kind),
                    real.unique, !real.ignoreNulls, real.required) +
        keys);
  }
  return lines;
}

std::string hex(const Bytes& bytes, std::uint16_t mask) {
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    text += fmt::format("{:02x}", bytes[i] ^ (i < 2 ? mask >> (8 * i) & 0xff : 0));
  }
  return text;
}

/// Rows of a system table, without dates; security ids unmasked.
std::set<std::string> describeRows(Database& database, const std::string& name) {
  const auto objects = database.table("MSysObjects");
  const std::uint16_t mask = static_cast<std::uint16_t>(
      load16(SecurityIds::of(*objects).engine().data()) ^ load16(SecurityIds(0).engine().data()));
  const auto table = database.table(name);
  std::set<std::string> rows;
  for (TableScan scan = table->scan(); scan.next();) {
    std::string row;
    for (const Column& column : table->definition().columns) {
      const Value value = scan.row().value(column);
      const Bytes* bytes = value.getIf<Bytes>();
      if (!value.isNull() && column.type != dateTime && column.name != "LvProp") {
        row += fmt::format(
            "{}={} ", column.name,
            bytes != nullptr ? hex(*bytes, column.securityId ? mask : 0) : value.toText());
      }
    }
    rows.insert(row);
  }
  return rows;
}

/// Permissions of one object.
std::set<std::string> permissionsOf(Database& database, std::int32_t object) {
  std::set<std::string> found;
  const std::string wanted = fmt::format("ObjectId={} ", object);
  for (const std::string& row : describeRows(database, "MSysACEs")) {
    if (row.starts_with(wanted)) {
      found.insert(row.substr(wanted.size()));
    }
  }
  return found;
}

/// Every index holds every row, in the order of its keys.
void expectIndexesWhole(const Table& table) {
  for (const RealIndex& index : table.definition().realIndexes) {
    std::set<RowId> rows;
    IndexCursor cursor = table.index(index.number).first();
    Bytes last;
    while (cursor.next()) {
      const Bytes key(cursor.key().begin(), cursor.key().end());
      EXPECT_LE(last, key) << table.name() << " index " << index.number;
      last = key;
      rows.insert(cursor.rowId());
    }
    EXPECT_EQ(rows.size(), table.rowCount()) << table.name() << " index " << index.number;
  }
}

// Empty files ------------------------------------------------------------------------------

TEST_F(CreationTest, EmptyFileHasTheSystemTablesOfTheSamples) {
  ORV_NEEDS_CORPUS();
  const auto made = createDatabase(path());
  const auto engine = copyOf("access/emptyJet4.mdb");
  const auto access = copyOf("access/emptyV2000.mdb");
  for (const char* name : {"MSysObjects", "MSysACEs", "MSysQueries", "MSysRelationships"}) {
    const auto mine = describeStored(made->table(name)->definition());
    EXPECT_EQ(mine, describeStored(engine->table(name)->definition()));
    EXPECT_EQ(mine, describeStored(access->table(name)->definition()));
    EXPECT_EQ(describeRows(*made, name), describeRows(*engine, name)) << name;
    expectIndexesWhole(*made->table(name));
  }
  // Access' own file has these objects too, and more for its windows.
  EXPECT_THAT(describeRows(*access, "MSysObjects"),
              testing::IsSupersetOf(describeRows(*made, "MSysObjects")));

  ASSERT_EQ(made->pager().pageCount(), engine->pager().pageCount());
  Pager::ReadLock lock(engine->pager());
  for (PageNumber page = 0; page < made->pager().pageCount(); ++page) {
    EXPECT_EQ(made->pager().read(page).type(), engine->pager().read(page).type()) << page;
  }
}

TEST_F(CreationTest, HeaderDiffersFromTheSamplesInDateAndBuildOnly) {
  ORV_NEEDS_CORPUS();
  createDatabase(path());
  const auto made = Pager::open(path());
  for (const char* name : {"access/emptyJet4.mdb", "access/emptyV2000.mdb"}) {
    Bytes mine = made->header();
    Bytes theirs = copyOf(name)->pager().header();
    const auto& h = kJet4.header;
    for (Bytes* header : {&mine, &theirs}) {
      std::fill_n(header->begin() + static_cast<long>(h.password), h.passwordSize + 2, 0);
      std::fill_n(header->begin() + static_cast<long>(h.creationDate), 8, 0);
    }
    EXPECT_EQ(mine, theirs) << name;
  }
}

TEST_F(CreationTest, AFileThatExistsIsLeftAlone) {
  std::ofstream(path()) << "something";
  EXPECT_THROW(createDatabase(path()), Error);
  EXPECT_EQ(bytesOf(path()), "something");
}

// Tables -----------------------------------------------------------------------------------

TableInfo allTypes() {
  return {.name = "All types",
          .columns = {{.name = "ID", .type = longInteger, .autoNumber = true},
                      {.name = "Flag", .type = boolean},
                      {.name = "Tiny", .type = byte},
                      {.name = "Small", .type = integer, .defaultValue = "7"},
                      {.name = "Price", .type = currency},
                      {.name = "Single", .type = single},
                      {.name = "Double", .type = double_},
                      {.name = "When", .type = dateTime},
                      {.name = "Key", .type = binary, .size = 20},
                      {.name = "Name",
                       .type = text,
                       .size = 50,
                       .required = true,
                       .allowZeroLength = false,
                       .defaultValue = "\"Unknown\""},
                      {.name = "Picture", .type = ole},
                      {.name = "Remark", .type = memo},
                      {.name = "Guid", .type = guid},
                      {.name = "Decimal", .type = numeric, .precision = 10, .scale = 2}},
          .indexes = {{.name = "PrimaryKey", .columns = {{"ID"}}, .primary = true},
                      {.name = "ByName", .columns = {{"Name", false}, {"Small"}}, .unique = true},
                      {.name = "ByRemark", .columns = {{"Remark"}}}}};
}

std::vector<Value> rowOfAllTypes(int i) {
  Guid guid;
  guid.bytes.fill(static_cast<std::uint8_t>(i));
  return {std::int32_t{i + 1},
          i % 2 == 0,
          std::int32_t{i % 256},
          std::int32_t{i - 100},
          Currency{i * 12345},
          static_cast<float>(i) / 3,
          i / 7.0,
          Date{40000 + i / 24.0},
          Bytes(static_cast<std::size_t>(i % 20), 7),
          fmt::format("Näme {}", i),
          Bytes(static_cast<std::size_t>(i * 90), 9),
          std::string(static_cast<std::size_t>(i * 40), 'x'),
          guid,
          Decimal::fromText(fmt::format("{}.25", i), 10, 2)};
}

TEST_F(CreationTest, EveryColumnTypeReadsBackAfterReopening) {
  constexpr int kRows = 120;
  const TableInfo design = allTypes();
  {
    const auto database = createDatabase(path());
    createTable(*database, design);
    const auto table = database->table("ALL TYPES");
    Transaction transaction(database->pager());
    for (int i = 0; i < kRows; ++i) {
      std::vector<Value> row = rowOfAllTypes(i);
      row[0] = Value();
      table->insert(row);
    }
    transaction.commit();
  }
  const auto table = Database::open(path(), "")->table(design.name);
  for (std::size_t i = 0; i < design.columns.size(); ++i) {
    const ColumnInfo found = describe(table->definition().columns[i]);
    const ColumnInfo& wanted = design.columns[i];
    EXPECT_EQ(
        std::tie(found.name, found.type, found.size, found.autoNumber, found.required,
                 found.allowZeroLength, found.precision, found.scale, found.defaultValue),
        std::tie(wanted.name, wanted.type, wanted.size, wanted.autoNumber, wanted.required,
                 wanted.allowZeroLength, wanted.precision, wanted.scale, wanted.defaultValue));
  }
  int rows = 0;
  for (TableScan scan = table->scan(); scan.next(); ++rows) {
    std::vector<Value> row;
    for (const Column& column : table->definition().columns) {
      row.push_back(scan.row().value(column));
    }
    EXPECT_EQ(row, rowOfAllTypes(rows));
  }
  EXPECT_EQ(rows, kRows);
  expectIndexesWhole(*table);
  EXPECT_THROW(table->insert(rowOfAllTypes(5)), Error);
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
  {
    const auto database = createDatabase(path());
    createTable(*database, design);
    const auto table = database->table(design.name);
    Transaction transaction(database->pager());
    for (int i = 0; i < 20; ++i) {
      std::vector<Value> row(255, Value(std::int32_t{i}));
      row[3] = std::string(5000, 'm');
      table->insert(row);
    }
    transaction.commit();
  }
  const auto table = Database::open(path(), "")->table(design.name);
  EXPECT_GT(table->definition().morePages.size(), 5u);
  ASSERT_EQ(table->definition().columns.size(), 255u);
  EXPECT_EQ(table->definition().columns[254].name, design.columns[254].name);
  std::set<RowId> maps;
  for (const Column& column : table->definition().columns) {
    if (column.isLongValue()) {
      maps.insert({*column.longValuePages, *column.longValueFreePages});
    }
  }
  EXPECT_EQ(maps.size(), 80u);
  int rows = 0;
  for (TableScan scan = table->scan(); scan.next(); ++rows) {
    EXPECT_EQ(scan.row().value(table->definition().columns[3]), Value(std::string(5000, 'm')));
    EXPECT_EQ(scan.row().value(table->definition().columns[254]), Value(std::int32_t{rows}));
  }
  EXPECT_EQ(rows, 20);
  expectIndexesWhole(*table);
}

TEST_F(CreationTest, ObjectsInAFileOfAccessGetThePermissionsThatAccessGives) {
  ORV_NEEDS_CORPUS();
  const auto database = copyOf("access/queryTestV2000.mdb");
  createTable(*database, {.name = "Added", .columns = {{.name = "x", .type = longInteger}}});
  createQuery(*database, "qryAdded", {});
  const auto ofAccess = permissionsOf(*database, database->find("Table1")->id);
  ASSERT_EQ(ofAccess.size(), 3u);
  EXPECT_EQ(permissionsOf(*database, database->find("Added")->id), ofAccess);
  EXPECT_EQ(permissionsOf(*database, database->find("qryAdded")->id), ofAccess);
  const auto rows = describeRows(*database, "MSysObjects");
  const auto isAdded = [](const std::string& row) { return row.find("Added") != row.npos; };
  EXPECT_EQ(std::count_if(rows.begin(), rows.end(), isAdded), 2);
  for (const std::string& row : rows) {
    EXPECT_THAT(row, testing::AnyOf(testing::Not(HasSubstr("Added")),
                                    testing::AllOf(HasSubstr("Owner=0301"), HasSubstr("Flags=0"),
                                                   HasSubstr("ParentId=251658241"))));
  }
}

// Indexes ----------------------------------------------------------------------------------

TEST_F(CreationTest, IndexesOverRowsThatAreThere) {
  const auto database = createDatabase(path());
  TableInfo design = allTypes();
  design.indexes.clear();
  createTable(*database, design);
  const auto table = database->table(design.name);
  Transaction rows(database->pager());
  for (int i = 0; i < 3000; ++i) {
    std::vector<Value> row = rowOfAllTypes(i * 7919 % 3000);
    row[10] = row[11] = Value();
    row[7] = i % 3 == 0 ? Value() : row[7];
    table->insert(row);
  }
  rows.commit();
  createIndex(*database, design.name, {.name = "PK", .columns = {{"ID"}}, .primary = true});
  // Long names make the definition grow over the end of its page.
  for (int i = 0; i < 20; ++i) {
    createIndex(*database, design.name,
                {.name = fmt::format("{} {}", std::string(60, 'i'), i),
                 .columns = {{design.columns[static_cast<std::size_t>(i % 8)].name, i % 2 == 0},
                             {"Name"}}});
  }
  EXPECT_FALSE(table->definition().morePages.empty());
  // The table that was open before knows them, and keeps them right.
  std::vector<Value> row = rowOfAllTypes(5000);
  table->insert(row);
  EXPECT_THROW(table->insert(row), Error);
  expectIndexesWhole(*table);
  EXPECT_EQ(
      describeStored(table->definition()).size(),
      describeStored(*readTableDefinition(database->pager(), table->definition().page, design.name))
          .size());

  createIndex(*database, design.name,
              {.name = "Times", .columns = {{"When"}}, .unique = true, .ignoreNulls = true});
  std::size_t entries = 0;
  IndexCursor cursor = table->index(21).first();
  while (cursor.next()) {
    ++entries;
  }
  EXPECT_EQ(entries, 2001u);
}

TEST_F(CreationTest, IndexThatRowsContradictIsRefusedAndNothingChanges) {
  const auto database = createDatabase(path());
  createTable(*database, {.name = "T",
                          .columns = {{.name = "a", .type = longInteger},
                                      {.name = "b", .type = text, .size = 10}}});
  const auto table = database->table("T");
  table->insert(std::vector<Value>{std::int32_t{1}, "x"});
  table->insert(std::vector<Value>{std::int32_t{2}, "X"});
  table->insert(std::vector<Value>{Value(), "y"});
  const std::string before = bytesOf(path());
  const auto refusal = [&](const IndexInfo& design) -> std::string {
    try {
      createIndex(*database, "T", design);
    } catch (const Error& error) {
      EXPECT_EQ(error.number(), kDuplicateKey);
      return error.description();
    }
    return "made";
  };
  EXPECT_THAT(refusal({.name = "B", .columns = {{"b"}}, .unique = true}),
              HasSubstr("several rows have the same values"));
  EXPECT_THAT(refusal({.name = "A", .columns = {{"a"}}, .primary = true}),
              HasSubstr("has no value"));
  EXPECT_EQ(bytesOf(path()), before);
  EXPECT_TRUE(table->definition().realIndexes.empty());
  EXPECT_EQ(refusal({.name = "A", .columns = {{"a"}}, .unique = true}), "made");
}

TEST_F(CreationTest, IndexInAFileOfAccessLeavesItsOthersAsTheyAre) {
  ORV_NEEDS_CORPUS();
  const auto database = copyOf("access/indexTestV2000.mdb");
  const auto before = describeStored(database->table("Table1")->definition());
  createIndex(*database, "Table1", {.name = "aData", .columns = {{"data"}, {"otherfk1", false}}});
  const auto read = readTableDefinition(database->pager(), database->find("Table1")->id, "Table1");
  auto after = describeStored(*read);
  const auto added = std::find_if(after.begin(), after.end(), [](const std::string& line) {
    return line.starts_with("index aData number 4 tree 4");
  });
  ASSERT_NE(added, after.end());
  EXPECT_TRUE(added->ends_with("data otherfk1-"));
  after.erase(added);
  EXPECT_EQ(after, before);
  expectIndexesWhole(*database->table("Table1"));
}

// Queries ----------------------------------------------------------------------------------

TEST_F(CreationTest, QueriesKeepTheirParts) {
  const auto database = createDatabase(path());
  const std::string expression = "[T].[a] " + std::string(3000, '+');
  createQuery(*database, "first",
              {{.attribute = 1, .flag = 1},
               {.attribute = 6, .expression = "T.b", .name1 = "alias"},
               {.attribute = 6, .expression = expression},
               {.attribute = 5, .name1 = "T", .name2 = "U"}});
  createQuery(*database, "second", {{.attribute = 5, .name1 = "first"}});
  database->forgetCatalog();
  const CatalogEntry first = *database->find("FIRST");
  EXPECT_NE(first.id, database->find("second")->id);
  const auto parts = database->queryParts(first);
  ASSERT_EQ(parts.size(), 6u);
  EXPECT_EQ(parts[0].attribute, 0);
  EXPECT_EQ(parts[1].flag, 1);
  EXPECT_EQ(parts[2].name2, "U");
  EXPECT_EQ(parts[3].name1, "alias");
  EXPECT_EQ(parts[4].expression, expression);
  EXPECT_EQ(parts[5].attribute, 255);
}

// Refusals ---------------------------------------------------------------------------------

TEST_F(CreationTest, ImpossibleDesignsAreRefusedWithTheReason) {
  const auto database = createDatabase(path());
  const ColumnInfo a{.name = "a", .type = longInteger};
  createTable(*database, {.name = "Taken", .columns = {a}});
  createQuery(*database, "qryTaken", {});
  const std::string before = bytesOf(path());
  const auto columns = [](std::size_t count, ColumnType type) {
    std::vector<ColumnInfo> list;
    for (std::size_t i = 0; i < count; ++i) {
      list.push_back({.name = fmt::format("c{}", i), .type = type});
    }
    return list;
  };
  struct Case {
    TableInfo design;
    std::int32_t number;
    std::string reason;
  };
  const Case cases[] = {
      {{.name = "", .columns = {a}}, kInvalidDesign, "cannot be the name of a table"},
      {{.name = " x", .columns = {a}}, kInvalidDesign, "do not begin with a blank"},
      {{.name = std::string(65, 'x'), .columns = {a}}, kInvalidDesign, "1 to 64 characters"},
      {{.name = "a.b", .columns = {a}}, kInvalidDesign, "cannot be the name"},
      {{.name = "TAKEN", .columns = {a}}, kObjectExists, "has a table 'Taken' already"},
      {{.name = "qrytaken", .columns = {a}}, kObjectExists, "has a query 'qryTaken' already"},
      {{.name = "T", .columns = {}}, kInvalidDesign, "0 columns"},
      {{.name = "T", .columns = columns(256, byte)}, kInvalidDesign, "256 columns"},
      {{.name = "T", .columns = columns(255, numeric)}, kInvalidDesign, "at most 4060"},
      {{.name = "T", .columns = columns(1, bigInteger)}, kNotSupported, "Jet 4 files do not have"},
      {{.name = "T", .columns = {a, {.name = "A", .type = byte}}},
       kInvalidDesign,
       "two columns named 'A'"},
      {{.name = "T", .columns = {{.name = "t", .type = text, .size = 256}}},
       kInvalidDesign,
       "Make it a memo"},
      {{.name = "T", .columns = {{.name = "t", .type = text, .autoNumber = true}}},
       kInvalidDesign,
       "is no long integer"},
      {{.name = "T", .columns = {a}, .indexes = {{.name = "i", .columns = {{"b"}}}}},
       kInvalidDesign,
       "has no such column"},
      {{.name = "T", .columns = {a}, .indexes = {{.name = "i", .columns = {{"a"}, {"A"}}}}},
       kInvalidDesign,
       "twice"},
      {{.name = "T",
        .columns = {a},
        .indexes = {{.name = "i", .columns = {{"a"}}}, {.name = "I", .columns = {{"a"}}}}},
       kObjectExists,
       "has an index 'I' already"},
      {{.name = "T", .columns = columns(1, ole), .indexes = {{.name = "i", .columns = {{"c0"}}}}},
       kInvalidDesign,
       "OLE column"},
  };
  for (const Case& c : cases) {
    try {
      createTable(*database, c.design);
      ADD_FAILURE() << c.reason;
    } catch (const Error& error) {
      EXPECT_EQ(error.number(), c.number) << error.what();
      EXPECT_THAT(error.description(), HasSubstr(c.reason));
    }
  }
  EXPECT_EQ(bytesOf(path()), before);
}

}  // namespace
}  // namespace orv::store::jet
