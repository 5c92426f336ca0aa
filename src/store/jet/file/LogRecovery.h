// Brings the commits of a log into its database.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "store/jet/file/File.h"
#include "store/jet/file/Log.h"

namespace orv::store::jet {

/// Compares a database with a log that was found beside it, and writes what is missing.
///
/// A log belongs to its database by content, not by name: of each page that the log would write,
/// each piece in the file must be one that the log knows, as it was before a commit or after one.
/// Else the file is another one (a copy put back, say), or another program has changed it.
///
/// Redoing it, or being cut short in it, changes nothing: every piece is known as before.
class LogRecovery {
 public:
  LogRecovery(Log& log, File& database, std::size_t pageSize);

  enum class Outcome {
    complete,  ///< every commit is in the database
    missing,   ///< some are not, or not wholly
    foreign,   ///< the log is of another content
  };
  Outcome compare();
  /// After `missing`: writes the pages of the last commits and waits for the disk.
  void redo();

 private:
  struct Page {
    bool isNew = false;                               ///< added to the file by a commit of the log
    std::vector<std::vector<std::uint64_t>> known{};  ///< for each piece, its checksums
    Bytes content{};                                  ///< after the last commit
  };
  void collect(const LogRecord::Head& head, const std::vector<LogRecord::Page>& pages);
  Outcome comparePage(PageNumber number, const Page& page, std::uint64_t fileSize);

  Log& log_;
  File& database_;
  std::size_t pageSize_;
  std::map<PageNumber, Page> pages_;
  PageNumber pagesBefore_ = 0;  ///< of the database before the first commit
  PageNumber pagesAfter_ = 0;   ///< and after the last
};

}  // namespace orv::store::jet
