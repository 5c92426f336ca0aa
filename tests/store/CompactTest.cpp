// A compacted file holds what the old one does, and nothing else.

#include <gtest/gtest.h>
#include <sys/xattr.h>

#include <filesystem>
#include <iterator>
#include <map>
#include <set>

#include "errors/Error.h"
#include "model/Raised.h"
#include "store/Check.h"
#include "store/Compact.h"
#include "store/Connection.h"
#include "store/StoreError.h"
#include "store/jet/catalog/Database.h"
#include "store/jet/page/Text.h"
#include "store/jet/page/UsageMap.h"
#include "store/jet/row/LongValue.h"
#include "support/Corpus.h"
#include "support/TemporaryFolder.h"

namespace orv::store::jet {
namespace {

namespace fs = std::filesystem;

std::string passwordOf(const fs::path& file) {
  const std::string name = file.filename().string();
  return name.starts_with("password") ? "password" : name.starts_with("glazing") ? "tekzil" : "";
}

/// The tables of a file by the numbers that other tables know them by.
std::map<std::uint32_t, std::string> tablesByNumber(Database& database) {
  std::map<std::uint32_t, std::string> names;
  for (const CatalogEntry& entry : database.entries()) {
    if (entry.kind == CatalogEntry::Kind::table) {
      names[static_cast<std::uint32_t>(entry.id)] = entry.name;
    }
  }
  return names;
}

/// Where an "Id" is that of an object.
const std::set<std::string> kWithIds = {"MSysObjects", "MSysNavPaneObjectIDs"};

/// All that a file says, in words that do not depend on where it stands.
class Content {
 public:
  explicit Content(const fs::path& file, const std::string& password)
      : database_(Database::open(file.string(), password)), names_(tablesByNumber(*database_)) {
    const Bytes& header = database_->pager().header();
    add("header", std::string(header.begin(), header.end()));
    for (const auto& [page, name] : names_) {
      addTable(page, name);
    }
  }

  const std::map<std::string, std::vector<std::string>>& parts() const { return parts_; }

 private:
  void add(const std::string& part, std::string text) { parts_[part].push_back(std::move(text)); }

  void addTable(PageNumber page, const std::string& name) {
    const auto table = database_->table(name);
    const TableDefinition& definition = table->definition();
    const auto& layout = database_->format().definition;
    const PageRef bytes = database_->pager().read(page);
    add(name + " last number", std::to_string(bytes.view().u32(layout.autoNumber)));
    for (const Column& column : definition.columns) {
      add(name + " columns", column.name + std::to_string(static_cast<int>(column.type)) + " " +
                                 std::to_string(column.number) + (column.required ? "!" : "") +
                                 column.defaultValue.value_or(""));
    }
    for (const LogicalIndex& index : definition.logicalIndexes) {
      const RealIndex& real = definition.realIndexes[index.realIndex];
      add(name + " indexes", index.name + std::to_string(static_cast<int>(index.kind)) + " " +
                                 std::to_string(index.relationIndex) +
                                 (index.cascadeDeletes ? "c" : "") + (real.unique ? "u" : "") +
                                 (index.relationTable ? names_[index.relationTable] : ""));
    }
    addRows(*table);
  }

  void addRows(const Table& table) {
    std::map<RowId, std::size_t> numbers;
    for (TableScan scan = table.scan(); scan.next();) {
      numbers.emplace(scan.rowId(), numbers.size());
      std::string text;
      for (const Column& column : table.definition().columns) {
        text += textOf(table, column, scan.row()) + "|";
      }
      add(table.name(), std::move(text));
    }
    for (const RealIndex& index : table.definition().realIndexes) {
      for (IndexCursor cursor = table.index(index.number).first(); cursor.next();) {
        add(table.name() + " index " + std::to_string(index.number),
            std::to_string(numbers.at(cursor.rowId())));
      }
    }
  }

  std::string textOf(const Table& table, const Column& column, const RowView& row) {
    if (row.isNull(column)) return "Null";
    const auto bytes = row.bytes(column);
    if (column.isLongValue()) {
      const Bytes value = readLongValue(table.pager(), bytes, 0);
      return {value.begin(), value.end()};
    }
    const std::string name = foldName(column.name);
    const bool isNumber = name == "objectid" || (name == "id" && kWithIds.contains(table.name()));
    if (table.name().starts_with("MSys") && isNumber && bytes.size() == 4) {
      if (const auto name = names_.find(load32(bytes.data())); name != names_.end()) {
        return name->second;
      }
    }
    return {bytes.begin(), bytes.end()};
  }

  std::shared_ptr<Database> database_;
  std::map<std::uint32_t, std::string> names_;
  std::map<std::string, std::vector<std::string>> parts_;
};

/// Where two files say something else; system tables keep no order of numbers.
std::string difference(const Content& before, const Content& after) {
  for (const auto& [part, texts] : before.parts()) {
    const auto found = after.parts().find(part);
    if (found == after.parts().end()) return part + " is missing";
    if (found->second != texts && !part.starts_with("MSys")) return part;
    auto left = texts;
    auto right = found->second;
    std::sort(left.begin(), left.end());
    std::sort(right.begin(), right.end());
    if (left != right) return part;
  }
  return before.parts().size() == after.parts().size() ? "" : "there are more parts";
}

void expectCompacted(const fs::path& before, const fs::path& after, const std::string& password) {
  EXPECT_EQ(difference(Content(before, password), Content(after, password)), "") << before;
  const CheckReport report = checkFile(after.string(), password);
  EXPECT_TRUE(report.sound()) << before << (report.sound() ? "" : report.faults[0].toText());
  EXPECT_EQ(report.lostPages + report.freePages, 0u) << before;
  const CheckReport former = checkFile(before.string(), password);
  EXPECT_EQ(report.rows, former.rows);
  EXPECT_EQ(report.longValues, former.longValues);
}

TEST(Compact, KeepsAllThatFilesOfTheCorpusHold) {
  ORV_NEEDS_CORPUS();
  const test::TemporaryFolder folder;
  std::size_t compacted = 0;
  for (const char* part : {"access", "foreign", "sources"}) {
    for (const auto& file : fs::directory_iterator(test::corpusFolder() / part)) {
      if (file.path().extension() != ".mdb") continue;
      const std::string password = passwordOf(file.path());
      const std::string target = folder / file.path().filename().string();
      try {
        const CompactReport report = compactFile(file.path().string(), password, target);
        EXPECT_LE(report.sizeAfter, report.sizeBefore) << file.path();
        EXPECT_EQ(report.sizeAfter, fs::file_size(target));
        expectCompacted(file.path(), target, password);
        ++compacted;
      } catch (const Error& error) {
        EXPECT_EQ(error.number(), kNotSupported) << file.path() << error.description();
        EXPECT_FALSE(fs::exists(target));
      }
    }
  }
  EXPECT_GE(compacted, 20u);
}

TEST(Compact, LeavesADamagedFileToTheRepair) {
  ORV_NEEDS_CORPUS();
  const test::TemporaryFolder folder;
  const fs::path file = folder.copyOf(test::corpusFolder() / "access" / "compIndexTestV2000.mdb");
  {
    const auto database = Database::open(file.string(), "");
    Transaction transaction(database->pager());
    const auto table = database->table("Table1");
    UsageMap owned(database->pager(), table->definition().ownedPages);
    owned.remove(*owned.next(0));
    transaction.commit();
  }
  const std::string refusal =
      test::raisedBy([&] { compactFile(file.string(), "", folder / "new.mdb"); }).description;
  EXPECT_NE(refusal.find("--repair"), std::string::npos) << refusal;
  EXPECT_EQ(refusal.find("from before the damage"), std::string::npos) << refusal;
  EXPECT_THROW(compactInPlace(file.string(), "", ""), Error);
  EXPECT_FALSE(fs::exists(folder / "new.mdb"));
  repairFile(file.string(), "", folder / "repaired.mdb");
  const auto rowsOf = [](const std::string& path) {
    return Database::open(path, "")->table("Table1")->countRows();
  };
  EXPECT_LT(rowsOf(file.string()), 512u);
  EXPECT_EQ(rowsOf(folder / "repaired.mdb"), 512u);
}

/// An access control list that lets user 1234 read what its group may not.
std::string accessList() {
  std::string list(4, '\0');
  list[0] = 2;  // version
  const auto add = [&](char kind, char rights, std::uint32_t user) {
    std::uint8_t entry[8] = {static_cast<std::uint8_t>(kind), 0, static_cast<std::uint8_t>(rights)};
    store32(entry + 4, user);
    list.append(std::begin(entry), std::end(entry));
  };
  constexpr std::uint32_t kNobody = 0xffffffff;
  add(0x01, 6, kNobody);
  add(0x02, 4, 1234);
  add(0x04, 0, kNobody);
  add(0x10, 4, kNobody);
  add(0x20, 0, kNobody);
  return list;
}

std::string attributeOf(const fs::path& file, const char* name) {
  std::string value(256, '\0');
  const auto size = getxattr(file.c_str(), name, value.data(), value.size());
  value.resize(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
  return value;
}

TEST(Compact, PutsTheNewFileInPlaceWithTheAttributesOfTheOldOne) {
  ORV_NEEDS_CORPUS();
  const test::TemporaryFolder folder;
  const fs::path file = folder.copyOf(test::corpusFolder() / "sources" / "orvdata-3.0.0.mdb");
  constexpr const char* kAccessList = "system.posix_acl_access";
  const std::string list = accessList();
  if (setxattr(file.c_str(), "user.origin", "Labor 7", 7, 0) != 0 ||
      setxattr(file.c_str(), kAccessList, list.data(), list.size(), 0) != 0) {
    GTEST_SKIP() << "the file system of the temporary folder has no attributes";
  }
  EXPECT_TRUE(compactInPlace(file.string(), "", folder / "old.mdb").notes.empty());
  for (const fs::path& each : {file, fs::path(folder / "old.mdb")}) {
    EXPECT_EQ(attributeOf(each, "user.origin"), "Labor 7") << each;
    EXPECT_EQ(attributeOf(each, kAccessList), list) << each;
  }
}

TEST(Compact, PutsTheNewFileInPlaceWithThePermissionsOfTheOldOne) {
  ORV_NEEDS_CORPUS();
  const test::TemporaryFolder folder;
  const fs::path file = folder.copyOf(test::corpusFolder() / "sources" / "orvdata-3.0.0.mdb");
  fs::permissions(file, fs::perms(0600));
  const auto size = fs::file_size(file);
  const CompactReport report = compactInPlace(file.string(), "", folder / "old.mdb");
  EXPECT_EQ(fs::file_size(folder / "old.mdb"), size);
  EXPECT_LT(fs::file_size(file), size);
  EXPECT_EQ(report.sizeAfter, fs::file_size(file));
  expectCompacted(folder / "old.mdb", file, "");
  compactFile(file.string(), "", folder / "new.mdb");
  for (const fs::path& each : {file, fs::path(folder / "old.mdb"), fs::path(folder / "new.mdb")}) {
    EXPECT_EQ(fs::status(each).permissions(), fs::perms(0600)) << each;
  }
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 3);
  fs::permissions(file, fs::perms(0440));
  compactFile(file.string(), "", folder / "writable.mdb");
  EXPECT_EQ(fs::status(folder / "writable.mdb").permissions(), fs::perms(0640));
}

}  // namespace
}  // namespace orv::store::jet
