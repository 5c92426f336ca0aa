#include "store/jet/check/PageLedger.h"

#include <fmt/format.h>

#include "store/jet/page/DataPage.h"
#include "store/jet/page/FreePages.h"
#include "store/jet/page/UsageMap.h"

namespace orv::store::jet {
namespace {

constexpr PageNumber kHeaderPage = 0;
constexpr std::size_t kClaimsPerReport = 64;

std::string_view contentOf(PageType type) {
  switch (type) {
    case PageType::data:
      return "rows, memos or pictures";
    case PageType::tableDefinition:
      return "the definition of a table";
    case PageType::indexNode:
    case PageType::indexLeaf:
      return "index entries";
    case PageType::usageMap:
      return "a map of pages";
    case PageType::header:
      return "nothing";
    default:
      return "nothing that is known";
  }
}

bool hasLiveRows(const DataPage& page) {
  for (std::uint16_t i = 0; i < page.rowCount(); ++i) {
    if (page.slot(i).kind != SlotKind::dead) {
      return true;
    }
  }
  return false;
}

}  // namespace

PageLedger::PageLedger(Pager& pager, CheckLog& log, const CheckProgress& progress)
    : pager_(pager), log_(log), progress_(progress), users_(pager.pageCount(), kNobody) {
  addUser({}, "nothing");
  fileUser_ = addUser({}, "the header and the map of free pages");
  mapRows_ = addUser({}, "maps of pages");
  claim(fileUser_, kHeaderPage);
  claimFreeMap();
}

void PageLedger::claimFreeMap() {
  claim(mapRows_, FreePages::kPlace.page);
  maps_.mark(FreePages::kPlace);
  const CheckPlace place = CheckPlace{}.at(FreePages::kPlace);
  log_.guard(place, Harm::header, [&] {
    FreePages(pager_).forEachMapPage(
        [&](PageNumber page) { claim(fileUser_, page); },
        [&](PageNumber page) {
          log_.remark(place, fmt::format("the map of free pages should go on on page {}, but "
                                         "does not: pages that it lacks count as in use",
                                         page));
        });
  });
}

PageLedger::User PageLedger::addUser(const CheckPlace& place, std::string text) {
  descriptions_.push_back({place, std::move(text)});
  return static_cast<User>(descriptions_.size() - 1);
}

std::string PageLedger::describe(User user) const {
  const Description& found = descriptions_[user];
  return found.place.table.empty() ? found.text
                                   : fmt::format("{} of table '{}'", found.text, found.place.table);
}

bool PageLedger::claim(User user, PageNumber page) {
  if (page >= users_.size()) {
    log_.fault(descriptions_[user].place.onPage(page), Harm::table,
               fmt::format("the page belongs to {}, but the file has only {} pages: it is cut "
                           "short",
                           describe(user), users_.size()));
    return false;
  }
  if (users_[page] != kNobody) {
    reportShared(user, page);
    return false;
  }
  users_[page] = user;
  if (++claimed_ % kClaimsPerReport == 0) {
    progress_(claimed_, users_.size());
  }
  return true;
}

void PageLedger::reportShared(User user, PageNumber page) {
  const std::string what = users_[page] == user
                               ? fmt::format("the page is used twice by {}", describe(user))
                               : fmt::format("the page is used twice: by {} and by {}",
                                             describe(users_[page]), describe(user));
  log_.fault(descriptions_[user].place.onPage(page), Harm::sharing, what);
}

bool PageLedger::claimMap(User user, RowId map) {
  const auto former = descriptions_[user];  // a copy: users are added below
  const CheckPlace place = former.place.at(map);
  const bool isOnFile = map.page < users_.size();
  if (isOnFile && users_[map.page] != kNobody && users_[map.page] != mapRows_) {
    log_.fault(place, Harm::sharing,
               fmt::format("the map of pages of {} should be here, but the page is in use by {}",
                           describe(user), describe(users_[map.page])));
    return false;
  }
  if (isOnFile && users_[map.page] == kNobody) {
    claim(mapRows_, map.page);
  }
  if (!maps_.mark(map)) {
    log_.fault(place, Harm::sharing,
               fmt::format("the map of pages of {} serves something else too", describe(user)));
    return false;
  }
  return log_.guard(place, Harm::table, [&] {
    const User bitmaps = addUser(place, fmt::format("the map of pages of {}", former.text));
    UsageMap(pager_, map).forEachMapPage([&](PageNumber page) { claim(bitmaps, page); });
  });
}

void PageLedger::finish(CheckReport& report) {
  report.pages = users_.size();
  const CheckPlace place = CheckPlace{}.at(FreePages::kPlace);
  log_.guard(place, Harm::header, [&] {
    if (FreePages(pager_).lies()) {
      log_.fault(place, Harm::freePages,
                 "the map of free pages calls pages free that every file needs");
    } else {
      compareWithFreePages(report);
    }
  });
  noteUnused();
  progress_(users_.size(), users_.size());
}

void PageLedger::compareWithFreePages(CheckReport& report) {
  const FreePages free(pager_);
  for (PageNumber page = 0; page < users_.size(); ++page) {
    const bool isFree = free.contains(page);
    report.freePages += isFree ? 1 : 0;
    if (isFree && users_[page] != kNobody) {
      log_.fault(
          descriptions_[users_[page]].place.onPage(page), Harm::sharing,
          fmt::format("the page is listed as free, but is in use by {}", describe(users_[page])));
    } else if (!isFree && users_[page] == kNobody) {
      ++report.lostPages;
      reportUnused(page);
    }
  }
}

/// A page that nothing uses is only lost space, unless it has rows that a table lacks.
void PageLedger::reportUnused(PageNumber page) {
  const PageRef ref = pager_.read(page);
  log_.guard(CheckPlace{}.onPage(page), Harm::table, [&] {
    if (ref.type() == PageType::data) {
      const DataPage data(pager_.format(), ref.view());
      const PageNumber owner = data.owner();
      if (owner < users_.size() && users_[owner] != kNobody &&
          pager_.read(owner).type() == PageType::tableDefinition && hasLiveRows(data)) {
        const CheckPlace place = descriptions_[users_[owner]].place.onPage(page);
        const std::string what =
            "the page holds rows of the table, but is not listed as one of its pages";
        complete_.contains(owner)
            ? log_.remark(place, what + "; the table has all its rows without them")
            : log_.fault(place, Harm::table, what);
        return;
      }
    }
    unused_[ref.type()].push_back(page);
  });
}

void PageLedger::noteUnused() {
  for (const auto& [type, pages] : unused_) {
    log_.remark(CheckPlace{}.onPage(pages.front()),
                pages.size() == 1
                    ? fmt::format("the page is neither free nor used by anything; it holds {}",
                                  contentOf(type))
                    : fmt::format("this page and {} more are neither free nor used by anything; "
                                  "they hold {}",
                                  pages.size() - 1, contentOf(type)));
  }
}

}  // namespace orv::store::jet
