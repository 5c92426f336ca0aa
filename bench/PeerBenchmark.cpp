// The store beside SQLite on the same panes and spectra, in one run.
//
// usage: peer_bench FOLDER [PANES]     (6000 unless told otherwise)
//
// Leaves FOLDER/glazings.mdb for other readers, and prints a line for each figure: what was done,
// by whom, seconds, rows (or times), separated by tabs. Each time is the best of some runs, but
// for insertion, which is done once.

#include <fmt/format.h>
#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>

#include "bench/GlazingDatabase.h"
#include "bench/SqliteFile.h"
#include "store/jet/catalog/Database.h"
#include "store/jet/index/IndexKey.h"
#include "store/jet/table/RowReader.h"

namespace {

using namespace orv;
using namespace orv::bench;
namespace fs = std::filesystem;

constexpr int kRuns = 3;
constexpr int kInserted = 1000;
constexpr int kDeleted = 1000;

double secondsOf(const std::function<void()>& action) {
  const auto start = std::chrono::steady_clock::now();
  action();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double bestOf(const std::function<void()>& action) {
  double best = secondsOf(action);
  for (int run = 1; run < kRuns; ++run) {
    best = std::min(best, secondsOf(action));
  }
  return best;
}

void report(const char* what, const char* who, double seconds, std::int64_t count) {
  fmt::print("{}\t{}\t{:.6f}\t{}\n", what, who, seconds, count);
  std::fflush(stdout);
}

/// Tells that two ways of reading have not seen the same rows.
void expectSame(double sum, double expected) {
  if (std::abs(sum - expected) > 1e-6 * std::abs(expected)) {
    fmt::print(stderr, "The rows that were read differ: {} and {}.\n", sum, expected);
    std::exit(1);
  }
}

double sumOf(const store::jet::RowView& row, const store::jet::TableDefinition& definition) {
  double sum = *row.value(definition.columns[0]).getIf<std::int32_t>();
  for (std::size_t i = 1; i < 5; ++i) {
    sum += static_cast<double>(*row.value(definition.columns[i]).getIf<float>());
  }
  return sum;
}

double scan(store::Connection& connection) {
  const auto table = connection.database().table("SpectralData");
  double sum = 0;
  for (auto rows = table->scan(); rows.next();) {
    sum += sumOf(rows.row(), table->definition());
  }
  return sum;
}

double sumOf(store::Recordset& rows) {
  double sum = 0;
  for (; !rows.eof(); rows.moveNext()) {
    sum += *rows.value(0).getIf<std::int32_t>();
    for (std::size_t i = 1; i < 5; ++i) {
      sum += static_cast<double>(*rows.value(i).getIf<float>());
    }
  }
  return sum;
}

double scanRecordset(store::Connection& connection) {
  return sumOf(*connection.openRecordset("SpectralData"));
}

double readByKey(store::Connection& connection, int panes) {
  const auto table = connection.database().table("SpectralData");
  const store::jet::TableDefinition& definition = table->definition();
  store::jet::RowReader rows(table);
  double sum = 0;
  for (std::int32_t pane = 1; pane <= panes; ++pane) {
    store::Bytes key;
    store::jet::appendKey(key, definition.columns[0], pane, true);
    const store::jet::Pager::ReadLock lock(table->pager());
    auto cursor = table->index(0).lowerBound(key);
    while (cursor.next() && std::equal(key.begin(), key.end(), cursor.key().begin())) {
      sum += sumOf(*rows.read(cursor.rowId()), definition);
    }
  }
  return sum;
}

double selectByKey(store::Connection& connection, int panes) {
  double sum = 0;
  for (int pane = 1; pane <= panes; ++pane) {
    sum += sumOf(*connection.openRecordset(
        fmt::format("SELECT * FROM SpectralData WHERE GlazingID = {} ORDER BY Wavelength", pane)));
  }
  return sum;
}

void compareReading(const std::string& mdb, int panes, SqliteFile& sqlite) {
  const std::int64_t rows = std::int64_t{panes} * kWavelengths;
  report("open and list tables", "this store",
         bestOf([&] { store::Connection::openFile(mdb)->tableNames(); }), 1);
  const auto connection = store::Connection::openFile(mdb);
  const double expected = sqlite.scan();
  report("scan", "this store", bestOf([&] { expectSame(scan(*connection), expected); }), rows);
  report("scan", "this store, record set",
         bestOf([&] { expectSame(scanRecordset(*connection), expected); }), rows);
  report("scan", "SQLite", bestOf([&] { sqlite.scan(); }), rows);
  report("read by key", "this store",
         bestOf([&] { expectSame(readByKey(*connection, panes), expected); }), rows);
  report("read by key", "this store, SQL",
         bestOf([&] { expectSame(selectByKey(*connection, panes), expected); }), rows);
  report("read by key", "SQLite", bestOf([&] { expectSame(sqlite.readByKey(), expected); }), rows);
}

/// Of each in turn the disk is at rest: what others have written before is not waited for.
template <class File>
double insert(File& file, int count = kInserted) {
  ::sync();
  return secondsOf([&] {
    for (int i = 0; i < count; ++i) {
      file.addGlazing();
    }
  });
}

/// What `orv copy` and `orv delete` do, done by SQLite with a commit for each pane.
void measureWholeWorks(const std::string& folder, int panes) {
  SqliteFile peer(folder + "/inserted.sqlite", "WAL");
  report("copy, whole process", "SQLite, WAL, insertion alone", insert(peer, panes),
         std::int64_t{panes} * kWavelengths);
  report("compact, whole process", "SQLite, VACUUM alone", secondsOf([&] { peer.run("VACUUM"); }),
         std::int64_t{panes} * kWavelengths);
  const int deleted = std::min(panes, kDeleted);
  const double seconds = secondsOf([&] {
    for (int pane = 1; pane <= deleted; ++pane) peer.deleteGlazing(pane);
  });
  report("delete, whole process", "SQLite, WAL, deletion alone", seconds,
         std::int64_t{deleted} * kWavelengths);
}

void compareInsertion(const std::string& folder) {
  const std::int64_t rows = std::int64_t{kInserted} * kWavelengths;
  GlazingDatabase own(folder + "/inserted.mdb");
  report("insert durably", "this store", insert(own), rows);
  for (const char* journal : {"DELETE", "WAL"}) {
    SqliteFile peer(folder + "/inserted.sqlite", journal);
    report("insert durably", *journal == 'W' ? "SQLite, WAL" : "SQLite, rollback journal",
           insert(peer), rows);
  }
  own.addGlazings(20'000 - kInserted - own.count());
  report("insert durably, behind 19,000 panes", "this store", insert(own), rows);
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 2) {
    fmt::print(stderr, "usage: peer_bench FOLDER [PANES]\n");
    return 2;
  }
  const std::string folder = arguments[1];
  const int panes = count > 2 ? std::atoi(arguments[2]) : 6000;
  const std::string mdb = folder + "/glazings.mdb";
  GlazingDatabase(mdb).addGlazings(panes);
  SqliteFile sqlite(folder + "/glazings.sqlite", "DELETE");
  sqlite.addGlazings(panes);
  compareReading(mdb, panes, sqlite);
  compareInsertion(folder);
  measureWholeWorks(folder, panes);
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  fmt::print("file size\tthis store\t{}\t\n", fs::file_size(mdb));
  fmt::print("largest memory\tall of this program\t{}\t\n", usage.ru_maxrss * 1024);
  for (const char* file : {"/inserted.mdb", "/inserted.sqlite", "/glazings.sqlite"}) {
    fs::remove(folder + file);
  }
}
