// What a check of a database file has found.
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

}  // namespace orv::store
