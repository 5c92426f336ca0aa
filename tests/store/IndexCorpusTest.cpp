// The indexes of every Access file of the corpus: each row has the entry that this store would
// give it, and the tree is in order.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <set>
#include <vector>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/catalog/Database.h"
#include "store/jet/index/IndexKey.h"
#include "support/Corpus.h"

namespace orv::store::jet {
namespace {

namespace fs = std::filesystem;

std::string hex(std::span<const std::uint8_t> bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) text += fmt::format("{:02x}", byte);
  return text;
}

std::vector<fs::path> accessFiles() {
  std::vector<fs::path> files;
  for (const char* folder : {"access", "sources"}) {
    for (const auto& entry : fs::directory_iterator(test::corpusFolder() / folder)) {
      if (entry.path().extension() == ".mdb") files.push_back(entry.path());
    }
  }
  files.push_back(test::corpusFolder() / "foreign" / "nwind.mdb");  // has names with a ß
  std::sort(files.begin(), files.end());
  return files;
}

std::string passwordOf(const fs::path& file) {
  const std::string name = file.stem().string();
  return name.starts_with("password") ? "password" : name == "glazing" ? "tekzil" : "";
}

/// What an index should hold, by the rows of its table.
std::map<RowId, Bytes> expectedEntries(const Table& table, const RealIndex& index) {
  std::map<RowId, Bytes> expected;
  for (TableScan scan = table.scan(); scan.next();) {
    std::vector<Value> values;
    for (const Column& column : table.definition().columns) {
      values.push_back(column.type == ColumnType::ole ? Value() : scan.row().value(column));
    }
    if (hasEntry(index, values)) {
      expected[scan.rowId()] = makeKey(table.definition(), index, values);
    }
  }
  return expected;
}

/// Access counts the different keys of an index, though it does not always count down.
bool hasRightKeyCount(const Table& table, const RealIndex& index) {
  std::set<Bytes> keys;
  for (const auto& [row, key] : expectedEntries(table, index)) keys.insert(key);
  return table.keyCount(index.number) == keys.size();
}

void checkIndex(const Table& table, const RealIndex& index, const std::string& what) {
  const std::map<RowId, Bytes> expected = expectedEntries(table, index);
  std::size_t count = 0;
  std::size_t wrong = 0;
  Bytes last;
  const IndexTree tree = table.index(index.number);
  for (IndexCursor cursor = tree.first(); cursor.next(); ++count) {
    const auto row = expected.find(cursor.rowId());
    const Bytes key(cursor.key().begin(), cursor.key().end());
    EXPECT_LE(last, key) << what;
    last = key;
    if (row == expected.end()) {
      ADD_FAILURE() << what << ": no row for " << hex(key);
    } else if (row->second != key && ++wrong < 20) {
      ADD_FAILURE() << what << ": the file has " << hex(key) << " for " << hex(row->second);
    }
    EXPECT_EQ(tree.find(key).has_value(), true);
  }
  EXPECT_EQ(count, expected.size()) << what;
  std::size_t backwards = 0;
  for (IndexCursor cursor = tree.last(); cursor.previous();) ++backwards;
  EXPECT_EQ(backwards, count) << what;
}

TEST(IndexCorpus, EveryRowHasItsEntry) {
  ORV_NEEDS_CORPUS();
  std::size_t indexes = 0;
  std::size_t counted = 0;
  for (const fs::path& file : accessFiles()) {
    const auto database = Database::open(file.string(), passwordOf(file));
    for (const CatalogEntry& entry : database->entries()) {
      if (entry.kind != CatalogEntry::Kind::table) continue;
      const auto table = database->table(entry.name);
      for (const RealIndex& index : table->definition().realIndexes) {
        SCOPED_TRACE(file.filename().string());
        ++indexes;
        counted += hasRightKeyCount(*table, index) ? 1 : 0;
        checkIndex(*table, index, fmt::format("{} index {}", entry.name, index.number));
      }
    }
  }
  EXPECT_GT(indexes, 400u);
  EXPECT_GT(counted, indexes / 10 * 9);
}

}  // namespace
}  // namespace orv::store::jet
