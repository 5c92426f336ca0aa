#include "store/jet/check/DataPageCheck.h"

#include <fmt/format.h>

#include <algorithm>

#include "store/jet/page/UsageMap.h"

namespace orv::store::jet {
namespace {

std::string nameOfOwner(std::uint32_t owner) {
  return owner == kLongValueOwner ? "memos and pictures"
                                  : fmt::format("the table defined on page {}", owner);
}

void checkFreeSpace(CheckContext& context, const CheckPlace& place, const DataPage& page,
                    std::size_t lowest) {
  const Format& format = context.pager.format();
  const std::size_t room = lowest - format.data.rowTable - std::size_t{2} * page.rowCount();
  if (page.freeSpace() != room) {
    context.log.fault(place, Harm::counts,
                      fmt::format("the page says that it has {} free bytes, but it has {}",
                                  page.freeSpace(), room));
  }
}

}  // namespace

std::vector<PageNumber> claimListedPages(CheckContext& context, PageLedger::User user,
                                         const CheckPlace& place, RowId map) {
  std::vector<PageNumber> pages;
  if (!context.pages.claimMap(user, map)) {
    return pages;
  }
  context.log.guard(place.at(map), Harm::table, [&] {
    const UsageMap listed(context.pager, map);
    for (auto page = listed.next(0, kEndOfPages); page;
         page = listed.next(*page + 1, kEndOfPages)) {
      if (context.pages.claim(user, *page)) {
        pages.push_back(*page);
      }
    }
  });
  return pages;
}

void checkRoomMap(CheckContext& context, const CheckPlace& place, RowId map,
                  const std::vector<PageNumber>& pages) {
  context.log.guard(place.at(map), Harm::counts, [&] {
    const UsageMap room(context.pager, map);
    for (auto page = room.next(0, kEndOfPages); page; page = room.next(*page + 1, kEndOfPages)) {
      if (!std::ranges::binary_search(pages, *page)) {
        context.log.fault(place.onPage(*page), Harm::sharing,
                          "the page is listed as having room for rows, but is none of the pages "
                          "that hold them");
      }
    }
  });
}

bool checkDataPage(CheckContext& context, const CheckPlace& place, std::uint32_t owner,
                   const std::function<void(const PageRef&, RowId, const Slot&)>& visit) {
  bool whole = true;
  const bool read = context.log.guard(place, Harm::rows, [&] {
    const PageRef ref = context.pager.read(place.page);
    const DataPage page(context.pager.format(), ref.view());
    if (page.owner() != owner) {
      raiseDamaged(place.page, fmt::format("it says that it belongs to {}, but is used by {}",
                                           nameOfOwner(page.owner()), nameOfOwner(owner)));
    }
    std::size_t lowest = ref.size();
    for (std::uint16_t i = 0; i < page.rowCount(); ++i) {
      const RowId id{place.page, static_cast<std::uint8_t>(i)};
      whole &= context.log.guard(place.at(id), Harm::rows, [&] {
        const Slot slot = page.slot(i);
        lowest = slot.offset;
        visit(ref, id, slot);
      });
    }
    if (whole) {
      checkFreeSpace(context, place, page, lowest);
    }
  });
  return read && whole;
}

}  // namespace orv::store::jet
