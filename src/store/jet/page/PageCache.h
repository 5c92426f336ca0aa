// The pages of a file that are kept in memory.
#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <unordered_map>

#include "store/jet/file/Bytes.h"

namespace orv::store::jet {

using PageBytes = std::shared_ptr<std::uint8_t[]>;

/// Up to a number of pages, of which the least recently used gives way. Whoever holds the bytes
/// of one that has given way keeps them.
class PageCache {
 public:
  explicit PageCache(std::size_t capacity) : capacity_(capacity) {}

  /// Null when the page is not there.
  PageBytes find(PageNumber page);
  void put(PageNumber page, PageBytes bytes);
  void clear();

 private:
  struct Frame {
    PageBytes bytes;
    std::list<PageNumber>::iterator age;
  };
  std::size_t capacity_;
  std::unordered_map<PageNumber, Frame> frames_;
  std::list<PageNumber> ages_;  ///< least recently used first
};

}  // namespace orv::store::jet
