// Files that are only read, that are encoded, that need a password, that are nearly full.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>

#include "errors/Error.h"
#include "model/Raised.h"
#include "store/FileContent.h"
#include "store/Jet3File.h"
#include "store/SampleFile.h"
#include "store/StoreError.h"
#include "store/TableDesign.h"
#include "store/jet/catalog/CatalogWriter.h"
#include "store/jet/catalog/Creation.h"
#include "store/jet/page/FreePages.h"
#include "support/EncodedFile.h"
#include "support/MemoryFiles.h"
#include "support/TemporaryFolder.h"

namespace orv::store::jet {
namespace {

using testing::HasSubstr;
using enum ColumnType;

void expectError(std::int32_t number, const std::vector<std::string>& says,
                 const std::function<void()>& work) {
  const test::Raised raised = test::raisedBy(work);
  EXPECT_EQ(raised.number, number) << raised.description;
  for (const std::string& part : says) EXPECT_THAT(raised.description, HasSubstr(part));
}

TEST(FileKinds, AChangeOfAJet3FileIsRefusedWithWhatToDoInstead) {
  test::MemoryFiles files;
  const std::string content = test::jet3File(test::jet3Sample());
  files.open("old.mdb", FileSystem::Open::newOnly)
      ->write(0, reinterpret_cast<const std::uint8_t*>(content.data()), content.size());
  const auto database = Database::open("old.mdb", "");
  const std::string before = test::describe(*database);
  const auto refused = [](const std::function<void()>& work) {
    expectError(kReadOnlyStore, {"old.mdb", "format Jet 3", "convert the file", "Jet 4"}, work);
  };
  const std::size_t calls = files.calls();
  const auto table = database->table("Makers");
  refused([&] { table->erase({22, 0}); });
  refused([&] { table->insert(std::vector<Value>(table->definition().columns.size())); });
  refused([&] { createTable(*database, {.name = "New", .columns = {{"a", text, 10}}}); });
  EXPECT_EQ(files.calls(), calls);
  EXPECT_EQ(test::describe(*database), before);
}

/// Of a later version are files that say so at their beginning.
TEST(FileKinds, FilesOfLaterVersionsAreOnlyRead) {
  test::MemoryFiles files;
  createTable(*createDatabase("own.mdb"), {.name = "Rows", .columns = {{"a", text, 10}}});
  Database::open("own.mdb", "")->table("Rows")->insert(std::vector<Value>{"one"});
  const std::string content = test::describe(*Database::open("own.mdb", ""));
  const auto begins = [&](std::string name, std::uint8_t version) {
    name.push_back('\0');
    name.push_back(static_cast<char>(version));
    files.copy("own.mdb", "later.accdb");
    const auto file = files.open("later.accdb", FileSystem::Open::existing);
    file->write(4, reinterpret_cast<const std::uint8_t*>(name.data()), name.size());
  };
  const std::pair<std::uint8_t, const char*> names[] = {
      {2, "ACE (Access 2007)"}, {3, "ACE (Access 2010)"}, {4, "ACE (Access 2013)"},
      {5, "ACE (Access 2016)"}, {6, "ACE (Access 2019)"}, {7, "ACE (Access 2019)"}};
  for (const auto& [version, name] : names) {
    begins("Standard ACE DB", version);
    const auto database = Database::open("later.accdb", "");
    EXPECT_EQ(database->formatName(), name);
    EXPECT_EQ(test::describe(*database), content);
    expectError(kReadOnlyStore, {"later.accdb", "files of Access 2007 and later are only read"},
                [&] { database->table("Rows")->insert(std::vector<Value>{"two"}); });
  }
  test::changeHeader(*files.open("later.accdb", FileSystem::Open::existing),
                     [](auto& page) { store32(&page[kJet4.header.encodingKey], 1); });
  expectError(kNotSupported, {"later.accdb", "is encrypted as Access 2007 and later do it"},
              [] { Database::open("later.accdb", ""); });
  for (const auto& [name, version] : {std::pair("Standard ACE DB", 1),
                                      {"Standard Jet DB", 2},
                                      {"Standard Jet DC", 1},
                                      {"standard Jet DB", 1}}) {
    begins(name, static_cast<std::uint8_t>(version));
    expectError(kStoreFailure, {"'later.accdb' is not an Access database file."},
                [] { Database::open("later.accdb", ""); });
  }
  begins("Standard Jet DB", 1);
  files.open("later.accdb", FileSystem::Open::existing)->truncate(4095);
  expectError(kStoreFailure, {"is cut short: not even its header page is whole"},
              [] { Database::open("later.accdb", ""); });
}

/// Pages are encoded as the format's description has it; mdbtools and mdb-reader read such files.
TEST(FileKinds, AnEncodedFileWithAPasswordIsReadChangedAndRecoveredAsAnyOther) {
  const test::TemporaryFolder folder;
  test::makeSampleFile(folder / "sample.mdb");
  test::setPassword(folder / "sample.mdb", "Sesame 7");
  test::MemoryFiles files;
  files.load(folder / "sample.mdb", "plain.mdb");
  files.copy("plain.mdb", "encoded.mdb");
  test::encodePages(*files.open("encoded.mdb", FileSystem::Open::existing), 0x8badf00d);
  const auto open = [](const char* name) { return Database::open(name, "Sesame 7"); };
  expectError(kNotAuthenticated, {"encoded.mdb", "protected", "none was given"},
              [] { Database::open("encoded.mdb", ""); });
  expectError(kNotAuthenticated, {"encoded.mdb", "not valid"},
              [] { Database::open("encoded.mdb", "sesame 7"); });
  const auto change = [](Database& database) {
    createTable(database, {.name = "Secrets", .columns = {{"note", memo}}});
    const auto table = database.table("Secrets");
    Transaction transaction(database.pager());
    for (std::size_t i = 0; i < 100; ++i) {
      table->insert(std::vector<Value>{std::string(100 * i, 'x')});
    }
    transaction.commit();
  };
  std::string state;
  for (const char* name : {"plain.mdb", "encoded.mdb"}) {
    const auto database = open(name);
    change(*database);
    EXPECT_TRUE(state.empty() || state == test::describe(*database));
    state = test::describe(*database);
  }
  EXPECT_TRUE(test::describe(*open("encoded.mdb")) == state);
  test::expectSound("encoded.mdb", "Sesame 7");
  {
    const auto table = open("encoded.mdb")->table("Secrets");
    files.losePowerAt(6);
    EXPECT_THROW(table->insert(std::vector<Value>{std::string(30000, 'y')}), Error);
  }
  files.restart(3);
  EXPECT_TRUE(test::describe(*open("encoded.mdb")) == state);

  const Bytes& content = files.content("encoded.mdb");
  const Bytes readable(60, 'x');
  EXPECT_EQ(std::search(content.begin(), content.end(), readable.begin(), readable.end()),
            content.end());
}

/// A file of `most` pages that is mostly a hole: no disk is filled and no memory. Its pages are
/// taken from the map of free pages; those that it has no bit for are in use as it is.
std::shared_ptr<Database> enlarge(const std::string& path, std::uint64_t most) {
  std::filesystem::resize_file(path, most * kJet4.pageSize);
  auto database = Database::open(path, "");
  Transaction transaction(database->pager());
  FreePages free(database->pager());
  for (std::optional<PageNumber> page = free.first(); page; page = free.first()) free.remove(*page);
  transaction.commit();
  return database;
}

TEST(FileKinds, AFileAtItsLargestSizeRefusesToGrowAndStaysWhole) {
  const test::TemporaryFolder folder;
  const std::string path = folder / "large.mdb";
  createTable(*createDatabase(path),
              test::design("Pictures", "id longInteger, picture ole", "id primary: id"));
  const auto database = enlarge(path, kJet4.maxFileSize / kJet4.pageSize - 300);
  const auto table = database->table("Pictures");
  const auto insert = [&](int id, std::size_t length) {
    table->insert(std::vector<Value>{id, Bytes(length, 0x5a)});
  };
  int rows = 0;
  expectError(kDatabaseFull,
              {"large.mdb", "2047 MB", "Delete records", "compact it", "new database"}, [&] {
                for (; rows < 100; ++rows) insert(rows, 100000);
              });
  EXPECT_GT(rows, 8);
  EXPECT_LE(std::filesystem::file_size(path), kJet4.maxFileSize);
  {
    const Transaction undone(database->pager());
    PageNumber last = 0;
    test::raisedBy([&] {
      while (true) last = database->pager().append();
    });
    EXPECT_EQ((last + std::uint64_t{1}) * kJet4.pageSize, kJet4.maxFileSize);
  }
  insert(rows, 10);  // a small one has room yet
  table->erase(*table->index(0).find(Bytes{0x7f, 0x80, 0, 0, 0}));
  insert(0, 90000);  // and so has one that takes the room of another
  const auto again = Database::open(path, "")->table("Pictures");
  EXPECT_EQ(again->rowCount(), static_cast<std::uint32_t>(rows) + 1);
  for (const auto& row : test::rowsOf(*again)) {
    const int id = row[0].toLong();
    EXPECT_EQ(row[1], Value(Bytes(id == rows ? 10 : id == 0 ? 90000 : 100000, 0x5a))) << id;
  }
  // It can be emptied, though no bit and no list has a place for the pages that become free.
  std::vector<RowId> all;
  for (TableScan scan = again->scan(); scan.next();) all.push_back(scan.rowId());
  for (const RowId row : all) again->erase(row);
  EXPECT_EQ(again->rowCount(), 0U);
  again->insert(std::vector<Value>{1, Bytes(10000, 0x5a)});
}

TEST(FileKinds, ALinkedTableIsNamedAsSuch) {
  test::MemoryFiles files;
  const auto database = createDatabase("front.mdb");
  const auto objects = database->table("MSysObjects");
  const auto link = [&](int id, const char* name, int type, const Value& path) {
    objects->insert(systemRow(*objects, {{"Id", id},
                                         {"ParentId", kTablesContainer},
                                         {"Name", name},
                                         {"Type", type},
                                         {"Flags", 0x200000},
                                         {"Database", path},
                                         {"ForeignName", "Origin"}}));
  };
  link(-2000, "Shared", 6, "C:\\data\\shared.mdb");
  link(-1999, "Remote", 4, {});
  database->forgetCatalog();
  expectError(kNotSupported, {"'Shared'", "linked table", "'Origin' of 'C:\\data\\shared.mdb'"},
              [&] { database->table("shared"); });
  expectError(kNotSupported, {"'Remote'", "linked table", "ODBC"},
              [&] { database->table("Remote"); });
  createQuery(*database, "Asked", {});
  for (const char* name : {"none", "Asked"}) {
    expectError(kObjectNotFound, {fmt::format("There is no table '{}' in 'front.mdb'.", name)},
                [&] { database->table(name); });
  }
  ASSERT_EQ(database->linkedTables().size(), 2U);
  EXPECT_EQ(database->linkedTables()[0].database, "C:\\data\\shared.mdb");
  test::expectSound("front.mdb");
}

}  // namespace
}  // namespace orv::store::jet
