#include "bench/SqliteFile.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "bench/GlazingDatabase.h"

namespace orv::bench {
namespace {

double sumOfRows(sqlite3_stmt* statement) {
  double sum = 0;
  while (sqlite3_step(statement) == SQLITE_ROW) {
    sum += sqlite3_column_int(statement, 0);
    for (int column = 1; column < 5; ++column) {
      sum += sqlite3_column_double(statement, column);
    }
  }
  sqlite3_reset(statement);
  return sum;
}

}  // namespace

SqliteFile::SqliteFile(const std::string& path, const std::string& journal) {
  for (const char* ending : {"", "-journal", "-wal", "-shm"}) {
    std::filesystem::remove(path + ending);
  }
  sqlite3* db = nullptr;
  if (sqlite3_open(path.c_str(), &db) != SQLITE_OK) {
    throw std::runtime_error("cannot make " + path);
  }
  db_.reset(db);
  run("PRAGMA journal_mode=" + journal);
  run("PRAGMA synchronous=FULL");
  run("CREATE TABLE GlazingProperties(GlazingID INTEGER, FileName TEXT, NFRC_ID INTEGER,"
      " ProductName TEXT, Manufacturer TEXT, GlazingTypeID INTEGER, Substrate_FileName TEXT,"
      " Acceptance TEXT, Thickness REAL, Conductivity REAL, ef REAL, eb REAL, Precalc_Tsol REAL,"
      " Precalc_Tvis REAL)");
  run("CREATE UNIQUE INDEX PropertiesKey ON GlazingProperties(GlazingID)");
  run("CREATE UNIQUE INDEX FileName ON GlazingProperties(FileName)");
  run("CREATE TABLE SpectralData(GlazingID INTEGER, Wavelength REAL, T REAL, Rf REAL, Rb REAL)");
  run("CREATE UNIQUE INDEX SpectralKey ON SpectralData(GlazingID, Wavelength)");
  addProperties_ = prepare(
      "INSERT INTO GlazingProperties VALUES(?, ?, ?, ?, 'Maker', 1, 'N/A', '#', 4.0, 1.0, 0.84,"
      " 0.84, 0.8, 0.9)");
  addSample_ = prepare("INSERT INTO SpectralData VALUES(?, ?, ?, ?, ?)");
  deleteProperties_ = prepare("DELETE FROM GlazingProperties WHERE GlazingID = ?");
  deleteCurve_ = prepare("DELETE FROM SpectralData WHERE GlazingID = ?");
}

void SqliteFile::run(const std::string& sql) {
  if (sqlite3_exec(db_.get(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
    throw std::runtime_error(sql + ": " + sqlite3_errmsg(db_.get()));
  }
}

SqliteFile::Statement SqliteFile::prepare(const std::string& sql) {
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v2(db_.get(), sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
    throw std::runtime_error(sql + ": " + sqlite3_errmsg(db_.get()));
  }
  return Statement(statement);
}

void SqliteFile::insertGlazing() {
  ++count_;
  const std::string file = fileNameOf(count_);
  const std::string product = productNameOf(count_);
  sqlite3_stmt* properties = addProperties_.get();
  sqlite3_bind_int(properties, 1, count_);
  sqlite3_bind_text(properties, 2, file.c_str(), -1, SQLITE_STATIC);
  sqlite3_bind_int(properties, 3, 10000 + count_);
  sqlite3_bind_text(properties, 4, product.c_str(), -1, SQLITE_STATIC);
  sqlite3_step(properties);
  sqlite3_reset(properties);
  sqlite3_stmt* sample = addSample_.get();
  for (int place = 0; place < kWavelengths; ++place) {
    sqlite3_bind_int(sample, 1, count_);
    sqlite3_bind_double(sample, 2, static_cast<double>(wavelengthAt(place)));
    for (int which = 0; which < 3; ++which) {
      sqlite3_bind_double(sample, 3 + which, static_cast<double>(sampleAt(count_, place, which)));
    }
    if (sqlite3_step(sample) != SQLITE_DONE) {
      throw std::runtime_error(sqlite3_errmsg(db_.get()));
    }
    sqlite3_reset(sample);
  }
}

void SqliteFile::addGlazing() {
  run("BEGIN");
  insertGlazing();
  run("COMMIT");
}

void SqliteFile::deleteGlazing(int glazing) {
  run("BEGIN");
  for (sqlite3_stmt* statement : {deleteProperties_.get(), deleteCurve_.get()}) {
    sqlite3_bind_int(statement, 1, glazing);
    if (sqlite3_step(statement) != SQLITE_DONE) {
      throw std::runtime_error(sqlite3_errmsg(db_.get()));
    }
    sqlite3_reset(statement);
  }
  run("COMMIT");
}

void SqliteFile::addGlazings(int count) {
  run("BEGIN");
  for (int i = 0; i < count; ++i) {
    insertGlazing();
  }
  run("COMMIT");
}

double SqliteFile::scan() {
  const Statement statement = prepare("SELECT * FROM SpectralData");
  return sumOfRows(statement.get());
}

double SqliteFile::readByKey() {
  const Statement statement =
      prepare("SELECT * FROM SpectralData WHERE GlazingID = ? ORDER BY Wavelength");
  double sum = 0;
  for (int glazing = 1; glazing <= count_; ++glazing) {
    sqlite3_bind_int(statement.get(), 1, glazing);
    sum += sumOfRows(statement.get());
  }
  return sum;
}

}  // namespace orv::bench
