// The file that a copy of a database is written to.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "store/Value.h"
#include "store/jet/compact/RowFiller.h"
#include "store/jet/page/Pager.h"
#include "store/jet/page/RowId.h"

namespace orv::store::jet {

/// Pages are added at its end and written once, more or less in order; nothing is freed.
class CopyTarget {
 public:
  /// `header` is the first page as the file is to have it, `pageAdded` is told after each page
  /// how many there are.
  CopyTarget(std::unique_ptr<File> file, const std::string& path,
             std::span<const std::uint8_t> header, std::function<void(PageNumber)> pageAdded);

  Pager& pager() { return *pager_; }
  const std::shared_ptr<Pager>& sharedPager() const { return pager_; }
  /// A page at the end, of zeros. What modify() gave before may not be used any more.
  PageNumber newPage();
  /// Keeps a map of these pages, which ascend.
  RowId addMap(std::span<const PageNumber> pages);
  /// Writes what is left, and the map of free pages; waits for the disk.
  void finish();

 private:
  void writeFreePages();

  std::shared_ptr<Pager> pager_;
  std::function<void(PageNumber)> pageAdded_;
  std::optional<Transaction> transaction_;
  RowFiller maps_;
};

}  // namespace orv::store::jet
