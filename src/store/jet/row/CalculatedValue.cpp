#include "store/jet/row/CalculatedValue.h"

#include <algorithm>

#include "store/jet/page/Text.h"
#include "store/jet/row/Row.h"

namespace orv::store::jet {
namespace {

constexpr std::size_t kLengthAt = 16;
constexpr std::size_t kValueAt = kLengthAt + 4;

std::span<const std::uint8_t> valueIn(std::span<const std::uint8_t> stored) {
  if (stored.size() < kValueAt) {
    return stored;
  }
  const std::size_t length = load32(&stored[kLengthAt]);
  const auto value = stored.subspan(kValueAt);
  return value.first(std::min(length, value.size()));
}

/// The DECIMAL of OLE Automation: two bytes that say nothing, scale, sign, the highest 32 bits of
/// the number and the 64 bits below them.
Decimal decodeDecimal(ByteView bytes) {
  Decimal decimal;
  decimal.scale = bytes.u8(2);
  decimal.negative = bytes.u8(3) != 0;
  const std::uint32_t high = bytes.u32(4);
  const std::uint64_t low = bytes.u64(8);
  for (std::size_t i = 0; i < 8; ++i) {
    decimal.magnitude[8 + i] = static_cast<std::uint8_t>(low >> (56 - 8 * i));
  }
  for (std::size_t i = 0; i < 4; ++i) {
    decimal.magnitude[4 + i] = static_cast<std::uint8_t>(high >> (24 - 8 * i));
  }
  return decimal;
}

}  // namespace

Value decodeCalculated(const Pager& pager, const Column& column,
                       std::span<const std::uint8_t> stored, PageNumber page) {
  const auto value = valueIn(stored);
  switch (column.type) {
    case ColumnType::boolean:
      return !value.empty() && value[0] != 0;
    case ColumnType::text:
    case ColumnType::memo:
      return decodeText(pager, value);
    case ColumnType::numeric:
      return value.empty() ? Value() : Value(decodeDecimal({value, page}));
    default:
      return value.empty() ? Value() : decodeValue(pager, column, value, page);
  }
}

}  // namespace orv::store::jet
