// What a compaction of a database file has done.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace orv::store {

/// What a repair has found of one table.
struct SalvagedTable {
  std::string table;
  std::size_t rowsSaved = 0;
  std::size_t rowsLost = 0;  ///< those on pages that cannot be read as far as the table counts them
  std::size_t pagesLost = 0;          ///< pages of rows that cannot be read
  std::size_t valuesCut = 0;          ///< memos and pictures of which only the beginning is there
  std::vector<std::string> places{};  ///< where rows and pages were lost; the first of many
  std::vector<std::string> lost{};    ///< what else is lost: an index, a rule of one
  std::vector<std::string> notes{};   ///< what is worth knowing besides

  bool isWhole() const { return rowsLost == 0 && pagesLost == 0 && valuesCut == 0 && lost.empty(); }
};

/// Whether a conversion may leave out what the new format cannot hold.
enum class Losses { refuse, accept };

struct CompactReport {
  std::uint64_t sizeBefore = 0;  ///< bytes of the file
  std::uint64_t sizeAfter = 0;   ///< of the new one

  std::size_t tables = 0;  ///< system tables included
  std::size_t rows = 0;
  std::size_t longValues = 0;  ///< memos and pictures that stand outside their rows
  std::size_t indexes = 0;

  // Of a repair:
  std::vector<SalvagedTable> salvaged{};  ///< the tables of which there is something to say
  // Of a repair and a conversion:
  std::vector<std::string> lost{};  ///< what is lost besides: whole tables, queries; forms
  std::vector<std::string> notes{};

  /// Whether nothing is lost.
  bool isWhole() const {
    return lost.empty() && std::ranges::all_of(salvaged, &SalvagedTable::isWhole);
  }
};

/// Told now and then how far a compaction is, in pages; what it raises ends the work, and nothing
/// is left of the new file.
using CompactProgress = std::function<void(std::size_t pagesDone, std::size_t pages)>;

}  // namespace orv::store
