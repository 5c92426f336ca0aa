#include "store/jet/check/TableCheck.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

#include "store/jet/check/DataPageCheck.h"
#include "store/jet/check/IndexCheck.h"
#include "store/jet/index/IndexKey.h"

namespace orv::store::jet {
namespace {

std::uint32_t storedRowCount(Pager& pager, const TableDefinition& table) {
  return pager.read(table.page).view().u32(pager.format().definition.rowCount);
}

}  // namespace

TableCheck::TableCheck(CheckContext& context, const TableDefinition& table)
    : context_(context),
      table_(table),
      place_{.table = table.name},
      rowsUser_(context.pages.addUser(place_, "the rows")),
      keys_(table.realIndexes.size(),
            std::min(storedRowCount(context.pager, table), kMostRowsExpected)),
      longValues_(context, table),
      isKey_(table.columns.size(), false),
      values_(table.columns.size()) {
  for (const RealIndex& index : table.realIndexes) {
    for (const IndexColumn& column : index.columns) {
      isKey_[column.column] = true;
    }
  }
}

void TableCheck::run(const RowVisitor& visit) {
  ++context_.report.tables;
  claimDefinition();
  checkDefinition();
  claimRows();
  scan(visit);
  checkHiddenRows();
  checkRowCount();
  longValues_.finish(allFound_ && allRead_);
  for (const RealIndex& index : table_.realIndexes) {
    IndexCheck(context_, table_, index, keys_).run();
  }
}

void TableCheck::claimDefinition() {
  const PageLedger::User user = context_.pages.addUser(place_, "the definition");
  context_.pages.claim(user, table_.page);
  for (const PageNumber page : table_.morePages) {
    context_.pages.claim(user, page);
  }
}

void TableCheck::checkDefinition() {
  const auto& layout = context_.pager.format().definition;
  const PageRef page = context_.pager.read(table_.page);
  const std::size_t room = (page.size() - layout.pageHeader) * (1 + table_.morePages.size());
  if (page.view().u32(layout.length) > room) {
    context_.log.fault(place_.onPage(table_.page), Harm::table,
                       fmt::format("the definition of the table says that it has {} bytes, but has "
                                   "pages for {} only",
                                   page.view().u32(layout.length), room));
  }
  std::set<std::uint16_t> numbers;
  std::set<std::uint16_t> places;
  for (const Column& column : table_.columns) {
    checkColumn(column);
    const bool isVariable = !column.fixed && column.type != ColumnType::boolean;
    const bool hasNumber = numbers.insert(column.number).second;
    const bool hasPlace = !isVariable || places.insert(column.variableIndex).second;
    if (hasNumber && hasPlace) continue;
    context_.log.fault(place_.onPage(table_.page), Harm::table,
                       fmt::format("the definition of column '{}' has the {} of another column",
                                   column.name, hasNumber ? "place" : "number"));
  }
}

void TableCheck::checkColumn(const Column& column) {
  const auto fault = [&](std::string_view what) {
    context_.log.fault(place_.onPage(table_.page), Harm::table,
                       fmt::format("the definition of column '{}' {}", column.name, what));
  };
  if (!isColumnType(column.type)) {
    const std::string what =
        fmt::format("has a type that there is not: {}", static_cast<int>(column.type));
    // Each Access since 2007 has brought types.
    if (context_.pager.engineVersion() > 1) {
      context_.log.remark(place_.onPage(table_.page),
                          fmt::format("column '{}' {} before later versions of Access; its values "
                                      "are shown as bytes",
                                      column.name, what));
    } else {
      fault(what);
    }
  }
  if (column.number >= table_.maxColumns) {
    fault(fmt::format("has number {}, but rows have at most {} columns", column.number,
                      table_.maxColumns));
  }
  if (!column.fixed && column.variableIndex >= table_.variableColumns) {
    fault(fmt::format("is number {} of the columns of variable length, of which there are {}",
                      column.variableIndex, table_.variableColumns));
  }
}

void TableCheck::claimRows() {
  pages_ = claimListedPages(context_, rowsUser_, place_, table_.ownedPages);
  if (context_.pages.claimMap(rowsUser_, table_.freePages)) {
    checkRoomMap(context_, place_, table_.freePages, pages_);
  }
}

void TableCheck::scan(const RowVisitor& visit) {
  for (const PageNumber page : pages_) {
    const bool read = checkDataPage(
        context_, place_.onPage(page), table_.page,
        [&](const PageRef& ref, RowId id, const Slot& slot) { visitSlot(ref, id, slot, visit); });
    if (!read) {
      keys_.addUnreadable(page);
      allFound_ = false;
    }
  }
}

void TableCheck::visitSlot(const PageRef& page, RowId id, const Slot& slot,
                           const RowVisitor& visit) {
  if (slot.kind == SlotKind::hidden) {
    hidden_.push_back(id);
  }
  if (slot.kind != SlotKind::row && slot.kind != SlotKind::pointer) {
    return;
  }
  keys_.add(id);
  ++rows_;
  ++context_.report.rows;
  const bool read = context_.log.guard(place_.at(id), Harm::rows, [&] {
    const RowView row = rowAt(page, id, slot);
    readColumns(id, row);
    if (visit) {
      visit(id, row);
    }
  });
  allRead_ &= read;
  for (const RealIndex& index : table_.realIndexes) {
    read ? expectKey(index, id) : keys_.expectAny(index.number, false);
  }
}

RowView TableCheck::rowAt(const PageRef& page, RowId id, const Slot& slot) {
  if (slot.kind == SlotKind::row) {
    return {context_.pager, table_, page, slot.offset, slot.length};
  }
  const RowId content = followPointer(page, id, slot);
  PageRef other = context_.pager.read(content.page);
  const Slot moved = DataPage(context_.pager.format(), other.view()).slot(content.row);
  return {context_.pager, table_, std::move(other), moved.offset, moved.length};
}

RowId TableCheck::followPointer(const PageRef& page, RowId id, const Slot& slot) {
  const ByteView bytes(page.view().span(slot.offset, slot.length), id.page);
  const RowId content = RowId::fromPointer(bytes.u32(0));
  const std::string where = fmt::format("row {} of page {}", content.row, content.page);
  if (!context_.pages.isClaimedBy(rowsUser_, content.page)) {
    raiseDamaged(id.page, fmt::format("the row has been moved to {}, but that page is not one of "
                                      "the table's",
                                      where));
  }
  const PageRef other = context_.pager.read(content.page);
  if (DataPage(context_.pager.format(), other.view()).slot(content.row).kind != SlotKind::hidden) {
    raiseDamaged(id.page,
                 fmt::format("the row has been moved to {}, but that is no moved row", where));
  }
  if (!pointedAt_.mark(content)) {
    raiseDamaged(id.page, fmt::format("the row has been moved to {}, and another row too", where));
  }
  return content;
}

void TableCheck::readColumns(RowId id, const RowView& row) {
  if (row.columnCount() > table_.maxColumns) {
    raiseDamaged(id.page, fmt::format("the row says that it has {} columns, but the table has had "
                                      "at most {}",
                                      row.columnCount(), table_.maxColumns));
  }
  row.checkLayout();
  for (std::size_t i = 0; i < table_.columns.size(); ++i) {
    const Column& column = table_.columns[i];
    values_[i] = Value();
    if (column.isLongValue() && !row.isNull(column)) {
      longValues_.check(column, row, id);
    }
    if (column.calculated) {
      continue;  // follows from other columns; its type is not known from here
    }
    if (!column.isLongValue() || isKey_[i]) {
      values_[i] = row.value(column);
    }
    // Access gives decimals lengths of its own.
    const bool hasLength = column.length != 0 && column.type != ColumnType::numeric;
    if (hasLength && row.bytes(column).size() > column.length) {
      raiseDamaged(id.page, fmt::format("column '{}' has {} bytes, but takes at most {}",
                                        column.name, row.bytes(column).size(), column.length));
    }
  }
}

void TableCheck::expectKey(const RealIndex& index, RowId id) {
  if (!hasEntry(index, values_)) {
    return;
  }
  const CheckPlace place{.table = table_.name, .index = nameOfIndex(table_, index)};
  const bool hasNull = anyNull(index, values_);
  if (hasNull && index.required) {
    context_.log.fault(place.at(id), Harm::index,
                       "the row has Null in a column that the index requires a value of");
  }
  context_.log.guard(place, Harm::index, [&] {
    keys_.expectAny(index.number, hasNull);
    keys_.expect(index.number, makeKey(table_, index, values_), hasNull);
    if (const auto otherForm = makeOtherForm(table_, index, values_)) {
      keys_.expectForm(index.number, *otherForm);
    }
  });
}

/// Moved rows that nothing leads to are what a deletion has left, unless the table counts them.
void TableCheck::checkHiddenRows() {
  std::erase_if(hidden_, [&](RowId id) { return pointedAt_.contains(id); });
  const bool areCounted =
      !hidden_.empty() && storedRowCount(context_.pager, table_) == rows_ + hidden_.size();
  for (const RowId id : hidden_) {
    const char* what = "the row has been moved here, but its former place does not lead to it";
    areCounted ? context_.log.fault(place_.at(id), Harm::rows, what)
               : context_.log.remark(place_.at(id), what);
  }
}

/// Access does not keep all counts of rows.
void TableCheck::checkRowCount() {
  const std::uint32_t said = storedRowCount(context_.pager, table_);
  if (said == rows_) {
    context_.pages.setComplete(table_.page);
    return;
  }
  const CheckPlace place = place_.onPage(table_.page);
  const std::string what =
      fmt::format("the table says that it has {} rows, but {} can be found", said, rows_);
  allFound_ ? context_.log.remark(place, what) : context_.log.fault(place, Harm::rows, what);
}

}  // namespace orv::store::jet
