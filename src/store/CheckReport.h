// What a check of a database file has found.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace orv::store {

/// One thing that a check has found in a file, and where.
struct CheckFinding {
  std::string table;       ///< empty where it is of no table
  std::string index;       ///< empty where it is of no index
  std::uint32_t page = 0;  ///< 0 where it is on no one page, or on the header page
  int row = -1;            ///< number of the row on the page; -1 where it is of no one row
  std::string what;        ///< what it is, without the place: "the page is used twice"
  std::string advice;      ///< what is lost, and what to do; empty for a remark

  /// Place, finding and advice in one line.
  std::string toText() const;
};

/// What a check has found and has counted.
struct CheckReport {
  /// What makes rows, values or entries unreachable, doubled or wrong, or will do so when the file
  /// is written to. Of many of one table or index the first are listed, and then their number.
  std::vector<CheckFinding> faults;
  /// What is worth knowing and harms nothing: how other programs leave their files, space that
  /// nothing uses, and what could not be compared. Listed like faults.
  std::vector<CheckFinding> remarks;

  std::size_t faultCount = 0;   ///< with those that are not listed
  std::size_t remarkCount = 0;  ///< likewise

  std::size_t pages = 0;      ///< of the file
  std::size_t freePages = 0;  ///< of them, those listed as free
  std::size_t lostPages = 0;  ///< of them, those that are neither free nor in use
  std::size_t tables = 0;     ///< system tables included
  std::size_t rows = 0;
  std::size_t longValues = 0;  ///< memos and pictures
  std::size_t indexes = 0;
  std::size_t indexEntries = 0;
  std::size_t queries = 0;

  bool sound() const { return faultCount == 0; }
};

/// Told now and then how far a check is, in pages looked at; what it raises ends the check.
using CheckProgress = std::function<void(std::size_t pagesDone, std::size_t pages)>;

}  // namespace orv::store
