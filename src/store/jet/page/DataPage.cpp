#include "store/jet/page/DataPage.h"

#include <algorithm>
#include <cstring>

namespace orv::store::jet {
namespace {

// An entry of the row table: offset and flags.
constexpr std::uint16_t kOffsetMask = 0x1fff;
constexpr std::uint16_t kPointerFlag = 0x4000;
constexpr std::uint16_t kHiddenFlag = 0x8000;

std::uint16_t flagsOf(SlotKind kind) {
  switch (kind) {
    case SlotKind::row:
      return 0;
    case SlotKind::pointer:
      return kPointerFlag;
    case SlotKind::hidden:
      return kHiddenFlag;
    case SlotKind::dead:
      break;
  }
  return kPointerFlag | kHiddenFlag;
}

SlotKind kindOf(std::uint16_t entry) {
  if ((entry & kHiddenFlag) != 0) {
    return (entry & kPointerFlag) != 0 ? SlotKind::dead : SlotKind::hidden;
  }
  return (entry & kPointerFlag) != 0 ? SlotKind::pointer : SlotKind::row;
}

}  // namespace

DataPage::DataPage(const Format& format, ByteView page) : format_(&format), page_(page) {
  if (page.u8(0) != static_cast<std::uint8_t>(PageType::data)) {
    raiseDamaged(page.page(), "it should hold rows, but is a page of another kind");
  }
  rowCount_ = page.u16(format.data.rowCount);
  if (format.data.rowTable + std::size_t{2} * rowCount_ > page.size()) {
    raiseDamaged(page.page(), "its table of rows is longer than the page");
  }
}

Slot DataPage::slot(std::uint16_t row) const {
  if (row >= rowCount_) {
    raiseDamaged(page_.page(), "row " + std::to_string(row) + " is asked for, but it has only " +
                                   std::to_string(rowCount_));
  }
  const std::size_t at = format_->data.rowTable + std::size_t{2} * row;
  const std::uint16_t entry = page_.u16(at);
  const std::size_t begin = entry & kOffsetMask;
  const std::size_t end = row == 0 ? page_.size() : page_.u16(at - 2) & kOffsetMask;
  if (begin > end || end > page_.size() ||
      begin < format_->data.rowTable + std::size_t{2} * rowCount_) {
    raiseDamaged(page_.page(), "row " + std::to_string(row) + " lies outside the page's rows");
  }
  return {kindOf(entry), begin, end - begin};
}

std::span<const std::uint8_t> DataPage::bytes(std::uint16_t row) const {
  const Slot found = slot(row);
  return page_.span(found.offset, found.length);
}

void DataPageEditor::initialize(std::uint32_t owner) {
  std::memset(bytes_, 0, format_.pageSize);
  bytes_[0] = static_cast<std::uint8_t>(PageType::data);
  bytes_[1] = 1;
  store16(bytes_ + format_.data.freeSpace,
          static_cast<std::uint32_t>(format_.pageSize - format_.data.rowTable));
  store32(bytes_ + format_.data.owner, owner);
}

std::uint8_t DataPageEditor::add(std::span<const std::uint8_t> row, SlotKind kind) {
  const DataPage page = read();
  const std::uint16_t number = page.rowCount();
  const std::size_t end = number == 0 ? format_.pageSize : page.slot(number - 1).offset;
  const std::size_t tableEnd = format_.data.rowTable + std::size_t{2} * (number + 1);
  if (number >= kMaxRowsOnPage || end < tableEnd + row.size()) {
    raiseDamaged(page_, "it has less room than it says");
  }
  const std::size_t begin = end - row.size();
  std::copy(row.begin(), row.end(), bytes_ + begin);
  store16(entry(number), static_cast<std::uint32_t>(begin) | flagsOf(kind));
  store16(bytes_ + format_.data.rowCount, number + 1u);
  store16(bytes_ + format_.data.freeSpace, static_cast<std::uint32_t>(begin - tableEnd));
  return static_cast<std::uint8_t>(number);
}

void DataPageEditor::replace(std::uint8_t row, std::span<const std::uint8_t> content,
                             SlotKind kind) {
  const DataPage page = read();
  const Slot slot = page.slot(row);
  const std::uint16_t last = page.rowCount() - 1;
  const std::size_t lowest = page.slot(last).offset;
  const std::size_t tableEnd = format_.data.rowTable + std::size_t{2} * page.rowCount();
  if (content.size() > slot.length + lowest - tableEnd) {
    raiseDamaged(page_, "it has less room than it says");
  }
  const std::size_t begin = slot.offset + slot.length - content.size();
  const std::size_t newLowest = lowest + begin - slot.offset;
  std::memmove(bytes_ + newLowest, bytes_ + lowest, slot.offset - lowest);
  std::copy(content.begin(), content.end(), bytes_ + begin);
  store16(entry(row), static_cast<std::uint32_t>(begin) | flagsOf(kind));
  for (std::size_t i = row + std::size_t{1}; i <= last; ++i) {
    const std::uint16_t old = load16(entry(i));
    const std::size_t moved = (old & kOffsetMask) + begin - slot.offset;
    store16(entry(i), static_cast<std::uint32_t>(moved) | (old & ~kOffsetMask));
  }
  store16(bytes_ + format_.data.freeSpace, static_cast<std::uint32_t>(newLowest - tableEnd));
}

void DataPageEditor::erase(std::uint8_t row) {
  const Slot slot = read().slot(row);
  store16(entry(row), static_cast<std::uint32_t>(slot.offset) | flagsOf(SlotKind::dead));
}

bool DataPageEditor::closeGaps() {
  const std::uint16_t count = read().rowCount();
  const std::size_t tableEnd = format_.data.rowTable + std::size_t{2} * count;
  bool anyLeft = false;
  std::size_t end = format_.pageSize;  // of the row's bytes as they were
  std::size_t newEnd = end;
  for (std::uint16_t row = 0; row < count; ++row) {
    const std::uint16_t old = load16(entry(row));
    const std::size_t begin = old & kOffsetMask;
    if (begin > end || begin < tableEnd) {
      raiseDamaged(page_, "row " + std::to_string(row) + " lies outside the page's rows");
    }
    const bool isLeft = kindOf(old) != SlotKind::dead;
    const std::size_t newBegin = newEnd - (isLeft ? end - begin : 0);
    if (isLeft && newBegin != begin) std::memmove(bytes_ + newBegin, bytes_ + begin, end - begin);
    store16(entry(row), static_cast<std::uint32_t>(newBegin) | (old & ~kOffsetMask));
    anyLeft |= isLeft;
    end = begin;
    newEnd = newBegin;
  }
  store16(bytes_ + format_.data.freeSpace, static_cast<std::uint32_t>(newEnd - tableEnd));
  return anyLeft;
}

std::span<std::uint8_t> DataPageEditor::rowBytes(std::uint8_t row) {
  const Slot slot = read().slot(row);
  return {bytes_ + slot.offset, slot.length};
}

}  // namespace orv::store::jet
