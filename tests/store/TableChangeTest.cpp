// Rows inserted, updated and deleted in files that other programs made, with every index right.

#include <gtest/gtest.h>

#include <map>
#include <random>

#include "errors/Error.h"
#include "store/Check.h"
#include "store/StoreError.h"
#include "store/jet/catalog/Creation.h"
#include "store/jet/catalog/Database.h"
#include "store/jet/index/IndexKey.h"
#include "support/Corpus.h"
#include "support/MemoryFiles.h"

namespace orv::store::jet {
namespace {

using Rows = std::map<RowId, std::vector<Value>>;

Rows rowsOf(const Table& table) {
  Rows rows;
  for (TableScan scan = table.scan(); scan.next();) {
    std::vector<Value>& values = rows[scan.rowId()];
    for (const Column& column : table.definition().columns) {
      values.push_back(scan.row().value(column));
    }
  }
  return rows;
}

/// Every index has an entry for each row, under its key, in order, and no other.
void expectIndexesRight(const Table& table, const Rows& rows) {
  Pager::ReadLock lock(table.pager());
  for (const RealIndex& index : table.definition().realIndexes) {
    std::vector<std::pair<Bytes, RowId>> expected;
    for (const auto& [id, values] : rows) {
      if (hasEntry(index, values)) {
        expected.emplace_back(makeKey(table.definition(), index, values), id);
      }
    }
    std::sort(expected.begin(), expected.end());
    std::vector<std::pair<Bytes, RowId>> found;
    for (IndexCursor cursor = table.index(index.number).first(); cursor.next();) {
      found.emplace_back(Bytes(cursor.key().begin(), cursor.key().end()), cursor.rowId());
    }
    EXPECT_EQ(found, expected) << "index " << index.number << " of " << table.name();
  }
}

/// Makes values for a table, now and then Null, long, or with letters that sort in odd ways.
class ValueMaker {
 public:
  explicit ValueMaker(unsigned seed) : random_(seed) {}

  std::size_t below(std::size_t end) {
    return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_);
  }

  std::string text(std::size_t most) {
    static const char* const kPieces[] = {"a", "B", "é", "ß",     "-", "'",
                                          " ", "Œ", "7", "glass", "®"};
    std::string text;
    for (std::size_t n = below(most / 5 + 1); n > 0; --n) {
      text += kPieces[below(std::size(kPieces))];
    }
    return text;
  }

  Value value(const Column& column) {
    if (column.autoNumber || (below(8) == 0 && !column.required)) {
      return {};
    }
    switch (column.type) {
      case ColumnType::boolean:
        return below(2) == 1;
      case ColumnType::integer:
      case ColumnType::byte:
        return static_cast<std::int32_t>(below(200));
      case ColumnType::longInteger:
        return static_cast<std::int32_t>(below(1000)) - 500;
      case ColumnType::single:
        return static_cast<float>(below(4000)) / 16.0f - 100.0f;
      case ColumnType::double_:
        return static_cast<double>(below(100000)) / 7.0 - 5000.0;
      case ColumnType::text:
        return text(std::min<std::size_t>(column.length / 2, 60));
      case ColumnType::memo:
        return below(4) == 0 ? text(9000) : text(80);
      case ColumnType::ole: {
        Bytes bytes(below(4) == 0 ? below(30000) : below(100));
        for (auto& byte : bytes) {
          byte = static_cast<std::uint8_t>(below(256));
        }
        return bytes;
      }
      default:
        return {};
    }
  }

  std::vector<Value> row(const TableDefinition& table) {
    std::vector<Value> values;
    for (const Column& column : table.columns) {
      values.push_back(value(column));
    }
    return values;
  }

 private:
  std::mt19937 random_;
};

class TableChange : public testing::TestWithParam<const char*> {};

TEST_P(TableChange, KeepsRowsAndIndexesAsAModelInMemory) {
  ORV_NEEDS_CORPUS();
  test::MemoryFiles files;
  files.load(test::corpusFolder() / "sources" / "orvdata-3.0.0.mdb", "orvdata.mdb");
  auto database = Database::open("orvdata.mdb", "");
  const std::shared_ptr<Table> table = database->table(GetParam());
  const TableDefinition& definition = table->definition();
  Rows model = rowsOf(*table);
  ValueMaker maker(7);
  for (int round = 0; round < 1200; ++round) {
    const std::size_t action = maker.below(10);
    auto chosen = model.empty() ? model.end()
                                : std::next(model.begin(),
                                            static_cast<std::ptrdiff_t>(maker.below(model.size())));
    if (action < 5 || chosen == model.end()) {
      std::vector<Value> values = maker.row(definition);
      try {
        const RowId id = table->insert(values);
        for (std::size_t i = 0; i < values.size(); ++i) {
          const Column& column = definition.columns[i];
          if (column.autoNumber) {
            values[i] = table->row(id)->value(column);
          } else if (column.type == ColumnType::boolean && values[i].isNull()) {
            values[i] = false;
          }
        }
        model[id] = values;
      } catch (const Error& error) {
        ASSERT_EQ(error.number(), kDuplicateKey) << error.what();
      }
    } else if (action < 7) {
      table->erase(chosen->first);
      model.erase(chosen);
    } else {
      const std::size_t column = maker.below(definition.columns.size());
      if (definition.columns[column].autoNumber) {
        continue;
      }
      std::vector<Value> values = chosen->second;
      values[column] = maker.value(definition.columns[column]);
      if (definition.columns[column].type == ColumnType::boolean && values[column].isNull()) {
        values[column] = false;
      }
      try {
        table->update(chosen->first, values);
        chosen->second = values;
      } catch (const Error& error) {
        ASSERT_EQ(error.number(), kDuplicateKey) << error.what();
      }
    }
  }
  // What the cache holds, and what the file holds.
  EXPECT_EQ(rowsOf(*table), model);
  EXPECT_EQ(table->rowCount(), model.size());
  expectIndexesRight(*table, model);
  files.copy("orvdata.mdb", "copy.mdb");
  const auto again = Database::open("copy.mdb", "")->table(GetParam());
  EXPECT_EQ(rowsOf(*again), model);
  expectIndexesRight(*again, model);
}

INSTANTIATE_TEST_SUITE_P(Tables, TableChange,
                         testing::Values("Pane", "Pane_spectral_data", "Groups", "Frame"));

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
  EXPECT_EQ(rowsOf(*table).size(), 1U);
  {
    Transaction undone(database->pager());
    for (int i = 0; i < 500; ++i)
      insert("a row of a batch that is undone, long enough to fill pages");
  }
  insert("kept too");
  EXPECT_EQ(rowsOf(*table).size(), 2U);
  const CheckReport report = checkFile("freed.mdb", "");
  EXPECT_TRUE(report.sound()) << report.faults.front().toText();
}

/// What is missing at the end of a file is not taken for rows that were never there.
TEST(CutTable, LosesNoRowsInSilence) {
  ORV_NEEDS_CORPUS();
  test::MemoryFiles files;
  files.load(test::corpusFolder() / "sources" / "orvdata-3.0.0.mdb", "cut.mdb");
  files.open("cut.mdb", FileSystem::Open::existing)->truncate(files.size("cut.mdb") / 8192 * 4096);
  const auto database = Database::open("cut.mdb", "");
  std::size_t damaged = 0;
  for (const CatalogEntry& entry : database->entries()) {
    if (entry.kind != CatalogEntry::Kind::table) continue;
    try {
      const auto table = database->table(entry.name);
      EXPECT_EQ(rowsOf(*table).size(), table->rowCount()) << entry.name;
    } catch (const Error& error) {
      EXPECT_EQ(error.number(), kCorruptFile) << error.what();
      ++damaged;
    }
  }
  EXPECT_GT(damaged, 0U);
}

}  // namespace
}  // namespace orv::store::jet
