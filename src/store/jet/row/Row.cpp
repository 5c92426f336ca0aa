#include "store/jet/row/Row.h"

#include <bit>
#include <cstring>

#include "store/jet/page/Text.h"
#include "store/jet/row/CalculatedValue.h"
#include "store/jet/row/ExtendedDate.h"
#include "store/jet/row/LongValue.h"

namespace orv::store::jet {
namespace {

/// Number of the jump table's entries in a row of Jet 3, and whether they count: offsets of one
/// byte are taken modulo 256, and the table names the first variable column of each further 256.
struct Jumps {
  std::size_t stored;
  std::size_t used;
};

std::size_t jumpEntries(std::size_t rowLength) {
  return (rowLength - 1) / 256;
}

Jumps jumpsOf(std::size_t rowLength, std::size_t maskLength, std::size_t variableCount) {
  const std::size_t stored = jumpEntries(rowLength);
  // The table's own bytes can make the row need one entry more than its data: that one is unused.
  // A row that has a part for variable columns has all that is taken off here.
  const std::size_t reach = (rowLength - 2 - maskLength - stored - variableCount) / 256;
  return {stored, reach < stored ? stored - 1 : stored};
}

/// Does something with the number of plainNumber().
template <class Use>
auto withNumber(const std::uint8_t* number, ColumnType type, Use use) {
  if (type == ColumnType::single) return use(std::bit_cast<float>(load32(number)));
  if (type == ColumnType::double_) return use(std::bit_cast<double>(load64(number)));
  return use(static_cast<std::int32_t>(load32(number)));
}

}  // namespace

void RowView::show(Pager& pager, const TableDefinition& definition, const PageRef& page,
                   std::size_t offset, std::size_t length) {
  if (page_.data() != page.data()) {
    page_ = page;
  }
  pager_ = &pager;
  definition_ = &definition;
  data_ = page_.data() + offset;
  length_ = length;
  variableCount_ = 0;
  const Format& format = pager.format();
  const std::size_t countSize = format.row.columnCountSize;
  if (length_ < countSize) {
    raiseDamaged(page_.number(), "a row is too short");
  }
  columnCount_ = countSize == 1 ? data_[0] : load16(data_);
  const std::size_t maskLength = (std::size_t{columnCount_} + 7) / 8;
  if (length_ < countSize + maskLength) {
    raiseDamaged(page_.number(), "a row is shorter than its number of columns needs");
  }
  nullMask_ = data_ + length_ - maskLength;
  fixedEnd_ = length_ - maskLength;
  if (definition.variableColumns == 0 || columnCount_ <= definition.variablePerhaps) {
    return;
  }
  const char* fault = findVariablePart();
  const bool isCertain = columnCount_ > definition.variableAbove;
  if (isCertain && fault != nullptr) {
    raiseDamaged(page_.number(), fault);
  }
  if (!isCertain && (fault != nullptr || variableFault() != nullptr)) {
    variableCount_ = 0;
    fixedEnd_ = length_ - maskLength;
  }
}

const char* RowView::findVariablePart() {
  const Format& format = pager_->format();
  const std::size_t size = format.row.offsetSize;
  const std::size_t jumps = format.row.jumpTable ? jumpEntries(length_) : 0;
  const std::size_t begin = format.row.columnCountSize + jumps;
  if (fixedEnd_ < begin + size) {
    return "a row is too short for its variable columns";
  }
  variableCount_ = size == 1 ? nullMask_[-1] : load16(nullMask_ - 2);
  const std::size_t table = (std::size_t{variableCount_} + 2) * size;
  if (fixedEnd_ < begin + table) {
    return "a row is too short for its table of variable columns";
  }
  fixedEnd_ -= table;
  return nullptr;
}

void RowView::checkLayout() const {
  if (variableCount_ == 0) {
    return;
  }
  if (const char* fault = variableFault()) {
    raiseDamaged(page_.number(), fault);
  }
}

const char* RowView::variableFault() const {
  if (variableCount_ > definition_->variableColumns) {
    return "a row has more variable columns than its table";
  }
  std::size_t last = variableOffset(0);
  for (std::size_t i = 1; i <= variableCount_; ++i) {
    const std::size_t offset = variableOffset(i);
    if (offset < last) {
      return "the table of variable columns of a row is out of order";
    }
    last = offset;
  }
  return last > fixedEnd_ ? "the variable columns of a row are longer than the row" : nullptr;
}

std::span<const std::uint8_t> RowView::bytes(const Column& column) const {
  if (isNull(column) || (column.type == ColumnType::boolean && !column.calculated)) {
    return {};
  }
  if (column.fixed) {
    const std::size_t at = pager_->format().row.columnCountSize + column.fixedOffset;
    if (at + column.length > fixedEnd_) {
      raiseDamaged(page_.number(), "a row ends before its column '" + column.name + "'");
    }
    return {data_ + at, column.length};
  }
  if (column.variableIndex >= variableCount_) {
    return {};
  }
  const std::size_t begin = variableOffset(column.variableIndex);
  const std::size_t end = variableOffset(column.variableIndex + 1u);
  if (begin > end || end > fixedEnd_) {
    raiseDamaged(page_.number(), "column '" + column.name + "' lies outside its row");
  }
  return {data_ + begin, end - begin};
}

std::size_t RowView::variableOffset(std::size_t index) const {
  if (!pager_->format().row.jumpTable) {
    return load16(nullMask_ - 4 - 2 * index);
  }
  const std::size_t maskLength = (std::size_t{columnCount_} + 7) / 8;
  const Jumps jumps = jumpsOf(length_, maskLength, variableCount_);
  const std::uint8_t* countPlace = nullMask_ - 1;
  std::size_t jumped = 0;
  while (jumped < jumps.used && countPlace[-1 - static_cast<std::ptrdiff_t>(jumped)] <= index) {
    ++jumped;
  }
  return *(countPlace - jumps.stored - 1 - index) + 256 * jumped;
}

/// Where the row has a number as nearly all values are: of a fixed column, as long as its type, and
/// not cut. Null for anything else.
inline const std::uint8_t* RowView::plainNumber(const Column& column) const {
  const bool isShort = column.type == ColumnType::single || column.type == ColumnType::longInteger;
  const std::size_t size = isShort ? 4 : column.type == ColumnType::double_ ? 8 : 0;
  const std::size_t at = pager_->format().row.columnCountSize + column.fixedOffset;
  const bool isPlain = size > 0 && column.fixed && !column.calculated && column.length == size &&
                       at + size <= fixedEnd_;
  return isPlain ? data_ + at : nullptr;
}

Value RowView::value(const Column& column) const {
  const std::uint8_t* number = isNull(column) ? nullptr : plainNumber(column);
  if (number == nullptr) return otherValue(column);
  return withNumber(number, column.type, [](auto found) { return Value(found); });
}

void RowView::read(const Column& column, Value& value) const {
  const std::uint8_t* number = isNull(column) ? nullptr : plainNumber(column);
  if (number == nullptr) {
    value = otherValue(column);
  } else {
    withNumber(number, column.type, [&](auto found) { value.set(found); });
  }
}

/// A value that is no plain number.
Value RowView::otherValue(const Column& column) const {
  if (column.type == ColumnType::boolean && !column.calculated) {
    return Value(!isNull(column));
  }
  if (isNull(column)) {
    return {};
  }
  DamagedFileScope scope(pager_->path());
  const auto stored = bytes(column);
  if (column.calculated) {
    return column.isLongValue()
               ? decodeCalculated(*pager_, column, readLongValue(*pager_, stored, page_.number()),
                                  page_.number())
               : decodeCalculated(*pager_, column, stored, page_.number());
  }
  if (column.type == ColumnType::memo) {
    return decodeText(*pager_, readLongValue(*pager_, stored, page_.number()));
  }
  if (column.type == ColumnType::ole) {
    return readLongValue(*pager_, stored, page_.number());
  }
  return decodeValue(*pager_, column, stored, page_.number());
}

Value decodeValue(const Pager& pager, const Column& column, std::span<const std::uint8_t> bytes,
                  PageNumber page) {
  const ByteView view(bytes, page);
  switch (column.type) {
    case ColumnType::byte:
      return std::int32_t{view.u8(0)};
    case ColumnType::integer:
      return std::int32_t{static_cast<std::int16_t>(view.u16(0))};
    case ColumnType::longInteger:
    case ColumnType::complex:
      return static_cast<std::int32_t>(view.u32(0));
    case ColumnType::bigInteger:
      return static_cast<std::int64_t>(view.u64(0));
    case ColumnType::currency:
      return Currency{static_cast<std::int64_t>(view.u64(0))};
    case ColumnType::single:
      return std::bit_cast<float>(view.u32(0));
    case ColumnType::double_:
      return std::bit_cast<double>(view.u64(0));
    case ColumnType::dateTime:
      return Date{std::bit_cast<double>(view.u64(0))};
    case ColumnType::extendedDate:
      return decodeExtendedDate(view);
    case ColumnType::text:
      return decodeText(pager, bytes);
    case ColumnType::guid: {
      Guid guid;
      const auto source = view.span(0, guid.bytes.size());
      std::copy(source.begin(), source.end(), guid.bytes.begin());
      return guid;
    }
    case ColumnType::numeric: {
      // A sign byte, then four little-endian words, the highest first.
      Decimal decimal;
      decimal.negative = view.u8(0) != 0;
      decimal.scale = column.scale;
      for (std::size_t i = 0; i < decimal.magnitude.size(); ++i) {
        decimal.magnitude[i] = view.u8(1 + i / 4 * 4 + (3 - i % 4));
      }
      return decimal;
    }
    default:
      return Bytes(bytes.begin(), bytes.end());
  }
}

}  // namespace orv::store::jet
