// How fast the store inserts, scans and looks up rows.
//
// The table is the spectral one of an ORV database: seven numbers a row and a composite index.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>

#include "store/Connection.h"
#include "store/jet/catalog/Database.h"

namespace {

using namespace orv::store;

constexpr int kWavelengths = 420;

/// A database in a temporary file with `panes` curves, removed at the end.
class SpectralDatabase {
 public:
  explicit SpectralDatabase(int panes)
      : path_((std::filesystem::temp_directory_path() /
               ("orv-bench-" + std::to_string(getpid()) + ".mdb"))
                  .string()) {
    std::filesystem::remove(path_);
    connection_ = Connection::create(path_);
    TableInfo table{.name = "Spectra", .columns = {}, .indexes = {}};
    table.columns.push_back({.name = "PaneID", .type = ColumnType::longInteger});
    for (const char* name : {"angle", "wavelength", "T", "Rf", "Rb"}) {
      table.columns.push_back({.name = name, .type = ColumnType::double_});
    }
    table.indexes.push_back({.name = "Curve", .columns = {{"PaneID"}, {"angle"}, {"wavelength"}}});
    connection_->createTable(table);
    for (int pane = 0; pane < panes; ++pane) {
      addCurve();
    }
  }
  ~SpectralDatabase() {
    connection_.reset();
    std::filesystem::remove(path_);
  }

  /// Adds one curve in one commit.
  void addCurve() {
    auto rows =
        connection_->openRecordset("Spectra", CursorType::static_, LockType::batchOptimistic);
    for (int i = 0; i < kWavelengths; ++i) {
      rows->addNew();
      rows->setValue(0, panes_);
      rows->setValue(1, 0.0);
      rows->setValue(2, 300.0 + 5.0 * i);
      rows->setValue(3, 0.5);
      rows->setValue(4, 0.1);
      rows->setValue(5, 0.2);
    }
    rows->updateBatch();
    ++panes_;
  }

  Connection& connection() { return *connection_; }
  int panes() const { return panes_; }

 private:
  std::string path_;
  std::shared_ptr<Connection> connection_;
  std::int32_t panes_ = 0;
};

void insertCurves(benchmark::State& state) {
  SpectralDatabase database(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    database.addCurve();
  }
  state.SetItemsProcessed(state.iterations() * kWavelengths);
}
BENCHMARK(insertCurves)->Arg(0)->Arg(2000)->Iterations(100)->UseRealTime();

void scanRows(benchmark::State& state) {
  SpectralDatabase database(500);
  const auto table = database.connection().database().table("Spectra");
  const jet::Column& wavelength = table->definition().columns[2];
  const jet::Column& transmission = table->definition().columns[3];
  std::int64_t rows = 0;
  for (auto _ : state) {
    double sum = 0;
    for (jet::TableScan scan = table->scan(); scan.next(); ++rows) {
      sum += *scan.row().value(wavelength).getIf<double>() *
             *scan.row().value(transmission).getIf<double>();
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(rows);
}
BENCHMARK(scanRows);

void scanRecordset(benchmark::State& state) {
  SpectralDatabase database(200);
  std::int64_t count = 0;
  for (auto _ : state) {
    for (auto rows = database.connection().openRecordset("Spectra"); !rows->eof();
         rows->moveNext(), ++count) {
      benchmark::DoNotOptimize(rows->value(2));
    }
  }
  state.SetItemsProcessed(count);
}
BENCHMARK(scanRecordset);

void selectCurve(benchmark::State& state) {
  SpectralDatabase database(500);
  int pane = 0;
  for (auto _ : state) {
    pane = (pane + 37) % database.panes();
    auto rows = database.connection().openRecordset(
        "SELECT * FROM Spectra WHERE PaneID = " + std::to_string(pane) + " ORDER BY [wavelength]",
        CursorType::static_);
    benchmark::DoNotOptimize(rows->recordCount());
  }
  state.SetItemsProcessed(state.iterations() * kWavelengths);
}
BENCHMARK(selectCurve);

void openAndReadCatalogue(benchmark::State& state) {
  SpectralDatabase database(1);
  const std::string copy = database.connection().path() + ".copy";
  std::filesystem::copy_file(database.connection().path(), copy,
                             std::filesystem::copy_options::overwrite_existing);
  for (auto _ : state) {
    benchmark::DoNotOptimize(Connection::openFile(copy)->tableNames());
  }
  std::filesystem::remove(copy);
}
BENCHMARK(openAndReadCatalogue);

}  // namespace
