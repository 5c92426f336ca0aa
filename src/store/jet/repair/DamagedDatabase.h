// A damaged database, opened as far as it can be.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "store/CompactReport.h"
#include "store/jet/catalog/Database.h"

namespace orv::store::jet {

/// A file whose header page is damaged gets another for the time, as far as the pages after it say
/// that they are of Jet 4; one that ends within a page has zeros for the rest.
class DamagedDatabase {
 public:
  /// Tells `report` what is lost of the header. Raises kStoreFailure for a file that is no
  /// database by its header nor by its pages, besides what openToCopy() raises.
  DamagedDatabase(const std::string& path, const std::string& password, CompactReport& report);

  Database& database() const { return *database_; }
  /// Whether what the header page hides (password, date of creation) is not the file's.
  bool hasNewHeader() const { return hasNewHeader_; }
  /// Where programs that write wait.
  Pager& lockedPager() const { return opened_ ? opened_->pager() : database_->pager(); }
  /// Of the file, in bytes.
  std::uint64_t size() const { return size_; }

 private:
  std::shared_ptr<Database> opened_{};  ///< the file as it is; null where its header is damaged
  std::shared_ptr<Database> database_;
  std::uint64_t size_;
  bool hasNewHeader_ = false;
};

}  // namespace orv::store::jet
