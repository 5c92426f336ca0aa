#include "store/jet/repair/RowSalvage.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>

#include "errors/Counted.h"
#include "errors/Error.h"
#include "store/jet/page/UsageMap.h"
#include "store/jet/repair/Fault.h"
#include "store/jet/row/LongValue.h"

namespace orv::store::jet {
namespace {

constexpr int kMostPointers = 16;
constexpr std::size_t kMostListed = 20;  // places that are named; the others are counted

}  // namespace

void checkDecodes(const TableDefinition& table, const RowView& row) {
  if (row.columnCount() > table.maxColumns) {
    raiseDamaged(table.page, fmt::format("the row says that it has {} columns, but the table has "
                                         "had at most {}",
                                         row.columnCount(), table.maxColumns));
  }
  row.checkLayout();
  for (const Column& column : table.columns) {
    const auto stored = row.bytes(column);
    if (column.isLongValue()) {
      if (!stored.empty() && stored.size() < LongValueDefinition::kSize) {
        raiseDamaged(table.page, fmt::format("column '{}' has no place of its value", column.name));
      }
      continue;
    }
    static_cast<void>(row.value(column));
    if (column.length != 0 && column.type != ColumnType::numeric && stored.size() > column.length) {
      raiseDamaged(table.page, fmt::format("column '{}' has {} bytes, but takes at most {}",
                                           column.name, stored.size(), column.length));
    }
  }
}

RowSalvage::RowSalvage(Pager& pager, const PageSurvey& survey,
                       std::shared_ptr<const TableDefinition> table, bool isSure)
    : pager_(pager), survey_(survey), table_(std::move(table)), isSure_(isSure) {
  report_.table = table_->name;
  readMap();
  for (const PageNumber page : listed_) {
    readPage(page, rows_);
  }
  addStrayPages();
  addStrayMovedRows();
  std::ranges::sort(rows_);
}

PageRef RowSalvage::pageAt(PageNumber number) const {
  constexpr std::uint16_t kOffsetMask = 0x1fff;
  PageRef page = pager_.read(number);
  const auto& layout = pager_.format().data;
  const std::size_t said = page.view().u16(layout.rowCount);
  if (page.type() != PageType::data || layout.rowTable + 2 * said <= page.size()) {
    return page;
  }
  std::size_t rows = 0;
  for (std::size_t end = page.size(); rows < kMaxRowsOnPage; ++rows) {
    const std::size_t begin = page.view().u16(layout.rowTable + 2 * rows) & kOffsetMask;
    if (begin > end || begin < layout.rowTable + 2 * (rows + 1)) {
      break;
    }
    end = begin;
  }
  auto bytes = std::make_shared_for_overwrite<std::uint8_t[]>(page.size());
  std::memcpy(bytes.get(), page.data(), page.size());
  store16(bytes.get() + layout.rowCount, static_cast<std::uint32_t>(rows));
  return {number, std::move(bytes), page.size()};
}

void RowSalvage::readMap() {
  try {
    const UsageMap map(pager_, table_->ownedPages);
    for (auto page = map.next(0, kEndOfPages); page; page = map.next(*page + 1, kEndOfPages)) {
      listed_.insert(*page);
    }
  } catch (const Error& error) {
    mapIsWhole_ = false;
    report_.notes.push_back("the map of the table's pages cannot be read: " + faultOf(error));
  }
}

/// A page that belongs to somebody else by its own word is no page of this table.
void RowSalvage::readPage(PageNumber number, std::vector<Place>& rows) {
  try {
    const PageRef ref = pageAt(number);
    const DataPage page(pager_.format(), ref.view());
    if (page.owner() != table_->page) {
      if (page.owner() == kLongValueOwner || survey_.definitions().contains(page.owner())) {
        ++pagesOfOthers_;  // The map is wrong, or the page has been overwritten.
        return;
      }
      raiseDamaged(number, "it does not say that it belongs to the table");
    }
    for (std::uint16_t row = 0; row < std::min(page.rowCount(), kMaxRowsOnPage); ++row) {
      readRow(page, {number, static_cast<std::uint8_t>(row)}, rows);
    }
  } catch (const Error& error) {
    ++pagesLost_;
    if (report_.places.size() < kMostListed) {
      report_.places.push_back(fmt::format("page {}: {}", number, faultOf(error)));
    }
  }
}

void RowSalvage::readRow(const DataPage& page, RowId id, std::vector<Place>& rows) {
  try {
    const Slot slot = page.slot(id.row);
    if (slot.kind == SlotKind::dead) {
      return;
    }
    if (slot.kind == SlotKind::hidden) {
      moved_.push_back(id);
      return;
    }
    checkIsThere(id, slot);
    const Place place{id, slot.kind == SlotKind::pointer ? follow(id) : id};
    checkDecodes(*table_, view(place));
    if (place.content != id && !pointedAt_.insert(place.content).second) {
      raiseDamaged(id.page, "the row has been moved to where another row is");
    }
    rows.push_back(place);
  } catch (const Error& error) {
    lose(id, faultOf(error));
  }
}

RowId RowSalvage::follow(RowId home) {
  RowId at = home;
  for (int hops = 0; hops < kMostPointers; ++hops) {
    const PageRef ref = pageAt(at.page);
    const DataPage page(pager_.format(), ref.view());
    const Slot slot = page.slot(at.row);
    if (page.owner() != table_->page || slot.kind == SlotKind::dead) {
      raiseDamaged(home.page, "the row has been moved to where no row of the table is");
    }
    checkIsThere(at, slot);
    if (slot.kind == SlotKind::hidden) {
      return at;
    }
    if (slot.kind == SlotKind::row) {
      raiseDamaged(home.page, "the row has been moved to where another row is");
    }
    at = RowId::fromPointer(ByteView(page.bytes(at.row), at.page).u32(0));
  }
  raiseDamaged(home.page, "the pointers of the row form a loop");
}

void RowSalvage::checkIsThere(RowId row, const Slot& slot) const {
  if (slot.offset + slot.length > survey_.bytesThere(row.page)) {
    raiseDamaged(row.page, "the file ends before the row does");
  }
}

RowView RowSalvage::view(const Place& place) const {
  PageRef page = pageAt(place.content.page);
  const Slot slot = DataPage(pager_.format(), page.view()).slot(place.content.row);
  return {pager_, *table_, page, slot.offset, slot.length};
}

std::size_t RowSalvage::rowsSaid() const {
  try {
    return pager_.read(table_->page).view().u32(pager_.format().definition.rowCount);
  } catch (const Error&) {
    return 0;
  }
}

std::size_t RowSalvage::rowsMissing() const {
  const std::size_t said = rowsSaid();
  return said > rows_.size() ? said - rows_.size() : 0;
}

/// Pages that say they are the table's but are not on its map: with rows that the table lacks, or
/// with rows of former days.
void RowSalvage::addStrayPages() {
  std::vector<Place> stray;
  std::vector<PageNumber> pages;
  const std::size_t lostBefore = report_.rowsLost;
  const auto placesBefore = report_.places;
  const auto pagesLostBefore = pagesLost_;
  for (const PageNumber page : survey_.pagesOf(table_->page)) {
    if (listed_.contains(page) || survey_.isFree(page)) {
      continue;
    }
    const std::size_t rows = stray.size();
    readPage(page, stray);
    if (stray.size() > rows) {
      pages.push_back(page);
    }
  }
  if (pages.empty()) {
    report_.rowsLost = lostBefore;
    report_.places = placesBefore;
    return;
  }
  // More than the table lacks may be rows of former days.
  const bool areMissing = !mapIsWhole_ || stray.size() <= rowsMissing();
  if (isSure_ && areMissing) {
    rows_.insert(rows_.end(), stray.begin(), stray.end());
    report_.notes.push_back(
        fmt::format("{} put back from pages that no map names, the first of them page {}",
                    counted(stray.size(), "row was", "rows were"), pages.front()));
    return;
  }
  report_.rowsLost = lostBefore;
  report_.places = placesBefore;
  pagesLost_ = pagesLostBefore;
  report_.notes.push_back(
      fmt::format("{} left out that are on pages that no map names, the first of them page {}: {}",
                  counted(stray.size(), "row was", "rows were"), pages.front(),
                  areMissing ? "the definition of the table is not sure"
                             : fmt::format("the table lacks {}", rowsMissing())));
}

/// Rows that were moved, and whose homes are gone.
void RowSalvage::addStrayMovedRows() {
  std::erase_if(moved_, [&](RowId id) { return pointedAt_.contains(id); });
  if (moved_.empty() || moved_.size() > rowsMissing() || !isSure_) {
    return;
  }
  report_.notes.push_back(
      fmt::format("{} put back that had been moved, and whose first places are gone",
                  counted(moved_.size(), "row was", "rows were")));
  for (const RowId id : moved_) {
    try {
      const PageRef page = pageAt(id.page);
      checkIsThere(id, DataPage(pager_.format(), page.view()).slot(id.row));
      checkDecodes(*table_, view({id, id}));
      rows_.push_back({id, id});
    } catch (const Error&) {  // None that anybody misses.
    }
  }
}

void RowSalvage::lose(RowId id, const std::string& why) {
  ++report_.rowsLost;
  if (report_.places.size() < kMostListed) {
    report_.places.push_back(fmt::format("row {} of page {}: {}", id.row, id.page, why));
  }
}

void RowSalvage::drop(const std::function<bool(const Place&, const RowView&)>& isToGo,
                      const std::string& why) {
  std::erase_if(rows_, [&](const Place& place) {
    const bool goes = isToGo(place, view(place));
    if (goes) {
      lose(place.home, why);
    }
    return goes;
  });
}

/// How many rows a page had that cannot be read, only the table's own count can tell.
SalvagedTable RowSalvage::report() const {
  SalvagedTable report = report_;
  report.rowsSaved = rows_.size();
  report.pagesLost = pagesLost_;
  const std::size_t said = rowsSaid();
  const std::size_t gone = pagesLost_ + pagesOfOthers_;
  const std::size_t most = rows_.size() + report.rowsLost + gone * kMaxRowsOnPage;
  if (gone > 0 && said > rows_.size() && said <= most) {
    report.rowsLost = std::max(report.rowsLost, said - rows_.size());
  } else if (said > rows_.size() + report.rowsLost) {
    report.notes.push_back(fmt::format("the table says that it has {} rows", said));
  }
  return report;
}

}  // namespace orv::store::jet
