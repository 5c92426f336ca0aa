#include "store/jet/check/LongValueCheck.h"

#include <fmt/format.h>

#include "store/jet/check/DataPageCheck.h"
#include "store/jet/page/DataPage.h"
#include "store/jet/row/LongValue.h"

namespace orv::store::jet {

LongValueCheck::LongValueCheck(CheckContext& context, const TableDefinition& table)
    : context_(context), table_(table) {
  const CheckPlace place{.table = table.name};
  for (const Column& column : table.columns) {
    if (!column.isLongValue() || !column.longValuePages) {
      continue;
    }
    Space& space = spaces_[column.number];
    space.user = context.pages.addUser(
        place, fmt::format("the memos or pictures of column '{}'", column.name));
    space.pages = claimListedPages(context, space.user, place, *column.longValuePages);
    if (column.longValueFreePages &&
        context.pages.claimMap(space.user, *column.longValueFreePages)) {
      checkRoomMap(context, place, *column.longValueFreePages, space.pages);
    }
  }
}

void LongValueCheck::check(const Column& column, const RowView& row, RowId id) {
  const CheckPlace place = CheckPlace{.table = table_.name}.at(id);
  ++context_.report.longValues;
  const auto space = spaces_.find(column.number);
  const bool whole = context_.log.guard(place, Harm::longValue, [&] {
    std::size_t parts = 0;
    forEachLongValuePart(context_.pager, row.bytes(column), id.page, [&](RowId part) {
      if (space == spaces_.end()) {
        raiseDamaged(id.page, fmt::format("column '{}' has a value outside its row, but no pages "
                                          "for such",
                                          column.name));
      }
      checkPart(column, space->second, part);
      ++parts;
    });
    if (parts == 0) {
      row.value(column);  // raises what is wrong with one inside the row
    }
  });
  if (!whole && space != spaces_.end()) {
    space->second.broken = true;
  }
}

void LongValueCheck::checkPart(const Column& column, const Space& space, RowId part) {
  if (!context_.longValueParts.mark(part)) {
    raiseDamaged(part.page, fmt::format("its row {} is part of two memos or pictures, one of them "
                                        "in column '{}'",
                                        part.row, column.name));
  }
  if (!context_.pages.isClaimedBy(space.user, part.page)) {
    raiseDamaged(part.page, fmt::format("its row {} is part of a memo or picture of column '{}', "
                                        "but the page is not listed as the column's",
                                        part.row, column.name));
  }
  const PageRef page = context_.pager.read(part.page);
  if (DataPage(context_.pager.format(), page.view()).slot(part.row).kind != SlotKind::row) {
    raiseDamaged(part.page, fmt::format("its row {} is part of a memo or picture of column '{}', "
                                        "but is deleted",
                                        part.row, column.name));
  }
}

void LongValueCheck::finish(bool findStrayParts) {
  for (const auto& [column, space] : spaces_) {
    const bool all = findStrayParts && !space.broken;
    for (const PageNumber number : space.pages) {
      const CheckPlace place = CheckPlace{.table = table_.name}.onPage(number);
      checkDataPage(
          context_, place, kLongValueOwner, [&](const PageRef&, RowId id, const Slot& slot) {
            if (all && slot.kind != SlotKind::dead && !context_.longValueParts.contains(id)) {
              context_.log.remark(place.at(id), "the part of a memo or picture belongs to no row");
            }
          });
    }
  }
}

}  // namespace orv::store::jet
