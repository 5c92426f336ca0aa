// Checking a database file: everything in it is read and compared with everything else.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace orv::store {

/// One thing that is wrong in a file, and where.
struct CheckFault {
  std::string table;       ///< empty where the fault is of no table
  std::string index;       ///< empty where it is of no index
  std::uint32_t page = 0;  ///< 0 where it is on no one page, or on the header page
  int row = -1;            ///< number of the row on the page; -1 where it is of no one row
  std::string what;        ///< what is wrong, without the place: "the page is used twice"
  std::string advice;      ///< what is lost, and what to do: one or two sentences

  /// Place, fault and advice in one line.
  std::string toText() const;
};

/// What a check has found and has counted.
struct CheckReport {
  std::vector<CheckFault> faults;
  /// What is worth knowing but loses nothing: space that nothing uses, and what could not be
  /// compared. Files that Access made have such, too.
  std::vector<CheckFault> notes;

  std::size_t pages = 0;      ///< of the file
  std::size_t freePages = 0;  ///< of them, those listed as free
  std::size_t lostPages = 0;  ///< of them, those that are neither free nor in use
  std::size_t tables = 0;     ///< system tables included
  std::size_t rows = 0;
  std::size_t longValues = 0;  ///< memos and pictures
  std::size_t indexes = 0;
  std::size_t indexEntries = 0;
  std::size_t queries = 0;

  bool sound() const { return faults.empty(); }
};

/// Told now and then how far a check is, in pages looked at; what it raises ends the check.
using CheckProgress = std::function<void(std::size_t pagesDone, std::size_t pages)>;

/// Walks the whole file: that every page is used once, every row can be read, counts are right,
/// every index has exactly the entries of its table's rows, in order, memos and pictures are
/// whole, and the catalogue agrees with the tables. The file is not changed (but for changes of
/// a program that was stopped midway, which are undone as at every opening), and other programs
/// cannot change it meanwhile.
///
/// Damage is reported, not raised. Of many faults of one table or index the first ones are
/// listed, and the others counted. Needs about 50 bytes of memory for each row of the largest
/// table.
///
/// Raises kStoreFailure where the file cannot be opened or is no database, kNotAuthenticated for
/// a wrong password, kNotSupported for an encrypted file or one whose code page is not known.
CheckReport checkFile(const std::string& path, const std::string& password,
                      const CheckProgress& progress = {});

}  // namespace orv::store
