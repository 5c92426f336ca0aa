// The same glazings and spectra in an SQLite file, for comparison.
#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>

namespace orv::bench {

/// An SQLite database with the tables and indexes of a GlazingDatabase, each commit durable.
class SqliteFile {
 public:
  /// Makes the file anew at `path`. `journal` is SQLite's journal_mode: "DELETE" or "WAL".
  SqliteFile(const std::string& path, const std::string& journal);

  /// Adds one glazing and its curve in one commit.
  void addGlazing();
  void addGlazings(int count);
  /// Deletes one glazing and its curve in one commit.
  void deleteGlazing(int glazing);
  /// Reads all spectral rows; returns a sum of what they hold.
  double scan();
  /// Reads the curves of all glazings, one after another by key.
  double readByKey();

  void run(const std::string& sql);

 private:
  struct Closer {
    void operator()(sqlite3* db) const { sqlite3_close(db); }
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  using Statement = std::unique_ptr<sqlite3_stmt, Closer>;

  Statement prepare(const std::string& sql);
  void insertGlazing();

  std::unique_ptr<sqlite3, Closer> db_;
  Statement addProperties_;
  Statement addSample_;
  Statement deleteProperties_;
  Statement deleteCurve_;
  int count_ = 0;  ///< of glazings
};

}  // namespace orv::bench
