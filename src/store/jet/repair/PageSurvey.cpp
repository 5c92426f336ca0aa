#include "store/jet/repair/PageSurvey.h"

#include <algorithm>

#include "errors/Error.h"
#include "store/jet/page/FreePages.h"

namespace orv::store::jet {

PageSurvey::PageSurvey(Pager& pager, std::uint64_t fileSize, const CompactProgress& progress)
    : pageSize_(pager.format().pageSize), fileSize_(fileSize) {
  constexpr PageNumber kPagesPerReport = 64;
  std::set<PageNumber> continued;
  for (PageNumber page = 1; page < pager.pageCount(); ++page) {
    try {
      look(pager, page, continued);
    } catch (const Error&) {
      unreadable_.push_back(page);
    }
    if (progress && page % kPagesPerReport == 0) {
      progress(page, std::size_t{2} * pager.pageCount());
    }
  }
  for (const PageNumber page : continued) {
    definitions_.erase(page);
  }
  readFreePages(pager);
}

void PageSurvey::look(Pager& pager, PageNumber number, std::set<PageNumber>& continued) {
  const PageRef page = pager.read(number);
  const Format& format = pager.format();
  if (page.type() == PageType::data) {
    rowPages_[page.view().u32(format.data.owner)].push_back(number);
  } else if (page.type() == PageType::tableDefinition) {
    definitions_.insert(number);
    if (const PageNumber next = page.view().u32(format.definition.nextPage); next != number) {
      continued.insert(next);
    }
  }
}

void PageSurvey::readFreePages(Pager& pager) {
  try {
    const FreePages free(pager);
    if (free.lies()) {
      return;
    }
    for (PageNumber page = FreePages::kFirst; page < pager.pageCount(); ++page) {
      if (free.contains(page)) {
        free_.insert(page);
      }
    }
    knowsFreePages_ = true;
  } catch (const Error&) {
    free_.clear();
  }
}

std::size_t PageSurvey::bytesThere(PageNumber page) const {
  const std::uint64_t begin = std::min(std::uint64_t{page} * pageSize_, fileSize_);
  return static_cast<std::size_t>(std::min<std::uint64_t>(pageSize_, fileSize_ - begin));
}

const std::vector<PageNumber>& PageSurvey::pagesOf(PageNumber table) const {
  static const std::vector<PageNumber> kNone;
  const auto found = rowPages_.find(table);
  return found == rowPages_.end() ? kNone : found->second;
}

}  // namespace orv::store::jet
