// Reads every row of damaged files: page by page, through indexes, and as the check does.

#include "fuzz/Specimens.h"
#include "fuzz/TryTo.h"
#include "store/Check.h"
#include "store/Connection.h"
#include "store/jet/catalog/Database.h"

namespace {

using namespace orv::store;
using orv::fuzz::tryTo;

/// Rows that a damaged file may show without end are enough.
constexpr int kMostRows = 20'000;

void readRow(const jet::Table& table, const jet::RowView& row) {
  for (const jet::Column& column : table.definition().columns) {
    tryTo([&] { row.value(column); });
  }
}

void readTable(const jet::Table& table) {
  tryTo([&] {
    int rows = 0;
    for (jet::TableScan scan = table.scan(); scan.next() && rows < kMostRows; ++rows) {
      readRow(table, scan.row());
    }
  });
  for (const jet::RealIndex& index : table.definition().realIndexes) {
    tryTo([&] {
      jet::Pager::ReadLock lock(table.pager());
      int rows = 0;
      for (jet::IndexCursor cursor = table.index(index.number).first();
           cursor.next() && rows < kMostRows; ++rows) {
        tryTo([&] { table.row(cursor.rowId()); });
      }
    });
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  orv::fuzz::Input input(bytes, size);
  const auto file = orv::fuzz::specimens().damaged(input, 40);
  tryTo([&] {
    const auto connection = Connection::openFile(file.path, file.password);
    jet::Database& database = connection->database();
    for (const jet::CatalogEntry& entry : std::vector(database.entries())) {
      if (entry.kind == jet::CatalogEntry::Kind::table) {
        tryTo([&] { readTable(*database.table(entry.name)); });
      }
    }
  });
  tryTo([&] { checkFile(file.path, file.password); });
  return 0;
}
