// Pages for new uses.
#pragma once

#include "store/jet/page/Pager.h"

namespace orv::store::jet {

/// Hands out pages of the file and takes them back.
class PageAllocator {
 public:
  explicit PageAllocator(Pager& pager) : pager_(pager) {}
  /// A page for a new use: a freed one, or a new one at the end of the file. Its bytes are zero.
  /// Nothing is taken from a map of free pages that lies. Raises kDatabaseFull.
  PageNumber allocate();
  /// Takes a page back. Never makes the file grow.
  void release(PageNumber page);
  /// Whether the file may grow by as many pages as one change of a map can take.
  bool canGrow() const;

 private:
  Pager& pager_;
};

}  // namespace orv::store::jet
