// A file of Jet 3, converted, holds what it did.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>

#include "errors/Error.h"
#include "store/Check.h"
#include "store/Compact.h"
#include "store/Connection.h"
#include "store/StoreError.h"
#include "store/jet/catalog/Database.h"
#include "support/Corpus.h"
#include "support/TemporaryFolder.h"

namespace orv::store::jet {
namespace {

namespace fs = std::filesystem;

fs::path accessFile(const std::string& name) {
  return test::corpusFolder() / "access" / name;
}

std::vector<fs::path> filesOfJet3() {
  std::vector<fs::path> files = {test::corpusFolder() / "foreign" / "nwind.mdb"};
  for (const auto& file : fs::directory_iterator(test::corpusFolder() / "access")) {
    if (file.path().string().ends_with("V1997.mdb")) files.push_back(file.path());
  }
  return files;
}

using Lines = std::vector<std::string>;

std::string flags(std::initializer_list<bool> list) {
  std::string text;
  for (const bool flag : list) text += flag ? '1' : '0';
  return text;
}

Lines describeTable(const TableInfo& table) {
  Lines lines;
  for (const ColumnInfo& column : table.columns) {
    lines.push_back(column.name + " " + std::to_string(static_cast<int>(column.type)) + " " +
                    std::to_string(column.size) + " " + std::to_string(column.precision) + " " +
                    std::to_string(column.scale) + column.defaultValue.value_or("-") +
                    flags({column.autoNumber, column.required, column.allowZeroLength}));
  }
  Lines indexes;
  for (const IndexInfo& index : table.indexes) {
    std::string line = index.name + flags({index.primary, index.unique, index.ignoreNulls,
                                           index.required, index.ofRelation});
    for (const auto& key : index.columns) line += key.name + flags({key.ascending});
    indexes.push_back(line);
  }
  std::ranges::sort(indexes);
  lines.insert(lines.end(), indexes.begin(), indexes.end());
  return lines;
}

Lines rowsOf(Database& database, const std::string& name) {
  const auto table = database.table(name);
  Lines rows;
  for (TableScan scan = table->scan(); scan.next();) {
    std::string text;
    for (const Column& column : table->definition().columns) {
      const Value value = scan.row().value(column);
      const Bytes* bytes = value.getIf<Bytes>();
      text += value.isNull()     ? "Null|"
              : bytes != nullptr ? std::string(bytes->begin(), bytes->end()) + "|"
                                 : value.toText() + "|";
    }
    rows.push_back(text);
  }
  rows.push_back("last number " +
                 std::to_string(database.pager()
                                    .read(table->definition().page)
                                    .view()
                                    .u32(database.format().definition.autoNumber)));
  return rows;
}

/// The indexes of each table that serve relations, and which of which table each serves.
Lines enforcedRelations(Database& database) {
  std::map<PageNumber, std::string> names;
  for (const CatalogEntry& entry : database.entries()) {
    if (entry.kind == CatalogEntry::Kind::table) {
      names[static_cast<PageNumber>(entry.id)] = entry.name;
    }
  }
  Lines lines;
  for (const auto& [page, name] : names) {
    for (const LogicalIndex& index : database.table(name)->definition().logicalIndexes) {
      if (index.relationTable == 0) continue;
      lines.push_back(name + "." + index.name + " " + std::to_string(index.relationType) +
                      names[index.relationTable] + std::to_string(index.relationIndex) +
                      flags({index.cascadeUpdates, index.cascadeDeletes}));
    }
  }
  std::ranges::sort(lines);
  return lines;
}

/// All that a user may know of a file, part by part.
std::map<std::string, Lines> contentOf(const fs::path& path) {
  const auto connection = Connection::openFile(path.string());
  std::map<std::string, Lines> parts;
  for (const std::string& name : connection->tableNames()) {
    parts["table " + name] = describeTable(connection->table(name));
    parts["rows of " + name] = rowsOf(connection->database(), name);
  }
  for (const RelationInfo& relation : connection->relations()) {
    Lines& lines = parts["relation " + relation.name];
    lines = {relation.table, relation.referencedTable, flags({relation.enforced})};
    lines.insert(lines.end(), relation.columns.begin(), relation.columns.end());
    lines.insert(lines.end(), relation.referencedColumns.begin(), relation.referencedColumns.end());
  }
  for (const CatalogEntry& entry : connection->database().entries()) {
    if (entry.kind != CatalogEntry::Kind::query) continue;
    Lines& lines = parts["query " + entry.name + std::to_string(entry.flags)];
    for (const QueryPart& part : connection->database().queryParts(entry)) {
      lines.push_back(std::to_string(part.attribute) + "|" + std::to_string(part.flag) + "|" +
                      part.expression + "|" + part.name1 + "|" + part.name2);
    }
  }
  parts["enforced"] = enforcedRelations(connection->database());
  return parts;
}

TEST(Conversion, KeepsAllThatFilesOfAccess97Hold) {
  ORV_NEEDS_CORPUS();
  const test::TemporaryFolder folder;
  for (const fs::path& file : filesOfJet3()) {
    SCOPED_TRACE(file.filename());
    const std::string target = folder / file.filename().string();
    const CompactReport report = convertFile(file.string(), "", target, Losses::accept);
    EXPECT_EQ(report.sizeAfter, fs::file_size(target));
    EXPECT_EQ(Connection::openFile(target)->formatName(), "Jet 4");
    EXPECT_TRUE(checkFile(target, "").sound());
    EXPECT_EQ(checkFile(target, "").remarkCount, 0u) << checkFile(target, "").remarks[0].toText();
    const auto before = contentOf(file);
    const auto after = contentOf(target);
    for (const auto& [part, lines] : before) {
      const auto found = after.find(part);
      ASSERT_NE(found, after.end()) << part;
      EXPECT_EQ(found->second, lines) << part;
    }
    EXPECT_EQ(after.size(), before.size());
  }
}

/// Makes `content` ask for a password: what the header has of it is zeros under a mask.
void setPassword(std::string& content, std::string_view password) {
  for (std::size_t i = 0; i < password.size(); ++i) {
    content[kJet3.header.password + i] ^= password[i];
  }
}

std::string read(const fs::path& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

TEST(Conversion, KeepsThePassword) {
  ORV_NEEDS_CORPUS();
  const test::TemporaryFolder folder;
  std::string content = read(accessFile("indexTestV1997.mdb"));
  setPassword(content, "T\xfcr zu 97");
  std::ofstream(folder / "old.mdb", std::ios::binary) << content;
  const std::string password = "Tür zu 97";
  convertFile(folder / "old.mdb", password, folder / "new.mdb", Losses::refuse);
  EXPECT_THROW(Connection::openFile(folder / "new.mdb"), Error);
  EXPECT_EQ(Connection::openFile(folder / "new.mdb", password)->tableNames().size(), 3u);
}

/// Expects that a file is only converted when what is named may be lost.
void expectRefused(const std::string& path, const std::string& target, const std::string& what) {
  try {
    convertFile(path, "", target, Losses::refuse);
    FAIL() << what << " was lost in silence";
  } catch (const Error& error) {
    EXPECT_EQ(error.number(), kNotSupported);
    EXPECT_NE(error.description().find(what), std::string::npos) << error.description();
  }
  EXPECT_FALSE(fs::exists(target));
}

/// A file of Jet 3 in which all texts of a table are sorted as in French.
std::string inFrench(const std::string& path, const char* name) {
  std::string content = read(path);
  const auto table = Database::open(path, "")->table(name);
  const std::size_t columns =
      table->definition().page * kJet3.pageSize + kJet3.definition.headerSize +
      table->definition().realIndexes.size() * kJet3.definition.realIndexEntry;
  for (std::size_t i = 0; i < table->definition().columns.size(); ++i) {
    content[columns + i * kJet3.column.size + kJet3.column.sortOrder] = 0x0c;  // 1036
  }
  return content;
}

TEST(Conversion, NamesWhatCannotBeKept) {
  ORV_NEEDS_CORPUS();
  const test::TemporaryFolder folder;
  const std::string forms = (test::corpusFolder() / "foreign" / "nwind.mdb").string();
  expectRefused(forms, folder / "forms.mdb", "form 'Main Switchboard'");
  const CompactReport report = convertFile(forms, "", folder / "forms.mdb", Losses::accept);
  EXPECT_EQ(report.lost.size(), 44u);
  ASSERT_FALSE(report.notes.empty());
  EXPECT_EQ(report.notes[0], "rights of users of a workgroup are left out: 108");

  // Text that is sorted as in French, of which the order of Jet 4 is not known.
  const std::string french = folder / "french.mdb";
  std::ofstream(french, std::ios::binary) << inFrench(forms, "Customers");
  const auto lost = convertFile(french, "", folder / "new.mdb", Losses::accept).lost;
  const auto isOfKey = [](const std::string& what) {
    return what.starts_with("index 'PrimaryKey' of table 'Customers'");
  };
  EXPECT_TRUE(std::ranges::any_of(lost, isOfKey));
  EXPECT_TRUE(checkFile(folder / "new.mdb", "").sound());
  EXPECT_EQ(rowsOf(*Database::open(folder / "new.mdb", ""), "Customers"),
            rowsOf(*Database::open(french, ""), "Customers"));
  for (const RelationInfo& relation : Connection::openFile(folder / "new.mdb")->relations()) {
    EXPECT_EQ(relation.enforced, relation.name != "CustomersOrders") << relation.name;
  }
}

TEST(Conversion, CountsCharactersThatTheCodePageDoesNotHave) {
  ORV_NEEDS_CORPUS();
  const test::TemporaryFolder folder;
  std::string content = read(accessFile("delTestV1997.mdb"));
  content[kJet3.header.codePage] ^= 1252 ^ 1253;  // Greek, which has nothing at 0xD2
  content.replace(content.rfind("vu"), 2, "\xD2\xD2");
  std::ofstream(folder / "greek.mdb", std::ios::binary) << content;
  expectRefused(folder / "greek.mdb", folder / "new.mdb",
                "a character of column 'a' of table 'Table', which the code page of the file does "
                "not have, a character of column 'b'");
}

TEST(Conversion, IsForFilesOfJet3Only) {
  ORV_NEEDS_CORPUS();
  const test::TemporaryFolder folder;
  expectRefused(accessFile("testV2000.mdb").string(), folder / "new.mdb", "Jet 3");
  EXPECT_THROW(compactFile(accessFile("testV1997.mdb").string(), "", folder / "new.mdb"), Error);
}

}  // namespace
}  // namespace orv::store::jet
