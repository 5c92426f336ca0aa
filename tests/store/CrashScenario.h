// Runs of commits for the simulation of crashes.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "store/jet/catalog/Database.h"

namespace orv::test {

/// A file and a run of commits on it, each of which changes what describe() of FileContent.h gives.
struct CrashScenario {
  using Step = std::function<void(store::jet::Database&)>;
  std::string name;
  std::size_t calls;  ///< that change something on the disk or wait for it, during the commits
  std::uint64_t sum;  ///< of the bytes of the file in the end
  std::function<void(const std::string& path)> prepare;  ///< makes the file before the run
  std::vector<Step> commits;
};

/// Rows that come and go, notes in chains of pages, many rows at once so that index pages split.
CrashScenario changesOfRows();
/// Tables, indexes over rows that are there, and queries made in a file.
CrashScenario newTablesAndIndexes();
/// A file that grows past what the bitmaps of its maps span, so that they become maps of pages.
CrashScenario growthOfMaps();
/// Deletions after which pages of indexes are joined and freed, until nothing is left.
CrashScenario joinsOfIndexPages();

}  // namespace orv::test
