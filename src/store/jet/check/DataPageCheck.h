// Checking what tables' and long values' pages have in common.
#pragma once

#include <functional>
#include <vector>

#include "store/jet/check/CheckContext.h"
#include "store/jet/page/DataPage.h"
#include "store/jet/page/RowId.h"

namespace orv::store::jet {

/// Claims the pages that a usage map lists for `user`, and gives those that it got, ascending.
std::vector<PageNumber> claimListedPages(CheckContext& context, PageLedger::User user,
                                         const CheckPlace& place, RowId map);

/// A fault where the map of pages with room lists a page that is none of `pages`.
void checkRoomMap(CheckContext& context, const CheckPlace& place, RowId map,
                  const std::vector<PageNumber>& pages);

/// Reads a page that `owner` should own and gives its rows, dead ones too, to `visit`. False,
/// with a fault, when the page cannot be used, or some of its rows cannot.
bool checkDataPage(CheckContext& context, const CheckPlace& place, std::uint32_t owner,
                   const std::function<void(const PageRef&, RowId, const Slot&)>& visit);

}  // namespace orv::store::jet
