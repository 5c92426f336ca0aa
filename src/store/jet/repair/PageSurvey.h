// The pages of a damaged file, as they are.
#pragma once

#include <map>
#include <set>
#include <vector>

#include "store/CompactReport.h"
#include "store/jet/page/Pager.h"

namespace orv::store::jet {

/// What each page says that it is, whether or not anything leads to it.
class PageSurvey {
 public:
  /// `fileSize` is that of the file itself, which may end within a page.
  PageSurvey(Pager& pager, std::uint64_t fileSize, const CompactProgress& progress);

  /// The pages that say they hold rows of the table defined on page `table`; ascending.
  const std::vector<PageNumber>& pagesOf(PageNumber table) const;
  /// The first pages of definitions, as far as they can be told from those that follow.
  const std::set<PageNumber>& definitions() const { return definitions_; }
  /// Whether a page has no use. True is only said where the map of free pages can be believed.
  bool isFree(PageNumber page) const { return free_.contains(page); }
  bool knowsFreePages() const { return knowsFreePages_; }
  /// How many bytes the file has of a page.
  std::size_t bytesThere(PageNumber page) const;
  /// Pages that the disk does not give.
  const std::vector<PageNumber>& unreadable() const { return unreadable_; }

 private:
  void look(Pager& pager, PageNumber number, std::set<PageNumber>& continued);
  void readFreePages(Pager& pager);

  std::size_t pageSize_;
  std::uint64_t fileSize_;
  std::map<PageNumber, std::vector<PageNumber>> rowPages_{};  ///< by owner
  std::set<PageNumber> definitions_{};
  std::set<PageNumber> free_{};
  bool knowsFreePages_ = false;
  std::vector<PageNumber> unreadable_{};
};

}  // namespace orv::store::jet
