#include "store/jet/index/IndexKey.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <bit>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/index/SortOrders.h"

namespace orv::store::jet {
namespace {

// The byte before each column's key, in ascending order; inverted in descending.
constexpr std::uint8_t kNullFlag = 0x00;
constexpr std::uint8_t kValueFlag = 0x7f;

constexpr std::uint8_t kFalse = 0xff;
constexpr std::uint8_t kTrue = 0x00;

/// Appends bytes in a column's direction: as they are, or inverted.
class KeyWriter {
 public:
  KeyWriter(Bytes& key, bool ascending) : key_(key), mask_(ascending ? 0x00 : 0xff) {}

  bool ascending() const { return mask_ == 0; }
  Bytes& bytes() { return key_; }
  void byte(std::uint8_t b) { key_.push_back(b ^ mask_); }
  void plainByte(std::uint8_t b) { key_.push_back(b); }
  void bigEndian(std::uint64_t number, std::size_t size) {
    std::array<std::uint8_t, 8> piece{};
    for (std::size_t i = 0; i < size; ++i) {
      piece[i] = static_cast<std::uint8_t>(number >> 8 * (size - 1 - i)) ^ mask_;
    }
    key_.insert(key_.end(), piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(size));
  }

 private:
  Bytes& key_;
  std::uint8_t mask_;
};

template <class T>
const T& need(const Value& value, const Column& column) {
  if (const T* held = value.getIf<T>()) return *held;
  throw Error(kTypeMismatch,
              fmt::format("A value of another type was given for column \"{}\".", column.name));
}

/// Signed integers: the sign bit reversed, so that negative ones come first.
void writeInteger(KeyWriter& key, std::int64_t number, std::size_t size) {
  key.bigEndian(static_cast<std::uint64_t>(number) ^ std::uint64_t{1} << (8 * size - 1), size);
}

/// IEEE numbers: the sign bit reversed, and all others too in negative ones.
void writeFloating(KeyWriter& key, std::uint64_t bits, std::size_t size) {
  const std::uint64_t sign = std::uint64_t{1} << (8 * size - 1);
  key.bigEndian((bits & sign) != 0 ? ~bits : bits ^ sign, size);
}

/// Multiplies a big-endian magnitude by ten. Raises kOverflow.
void timesTen(std::array<std::uint8_t, 16>& magnitude) {
  unsigned carry = 0;
  for (auto byte = magnitude.rbegin(); byte != magnitude.rend(); ++byte) {
    carry += *byte * 10u;
    *byte = static_cast<std::uint8_t>(carry);
    carry >>= 8;
  }
  if (carry != 0) throw Error(kOverflow);
}

/// A sign byte, then the magnitude in units of the column's last digit. Descending columns have
/// the sign byte as ascending ones have it, so that all negative numbers come before the others,
/// each group backwards: an old mistake of the format, which its files keep.
void writeNumeric(KeyWriter& key, const Decimal& number, const Column& column) {
  if (number.scale > column.scale) {
    throw Error(kOverflow, fmt::format("{} has more decimals than column \"{}\".", number.toText(),
                                       column.name));
  }
  std::array<std::uint8_t, 16> magnitude = number.magnitude;
  for (int scale = number.scale; scale < column.scale; ++scale) timesTen(magnitude);
  key.plainByte(number.negative ? 0x00 : 0xff);
  for (const std::uint8_t b : magnitude) {
    key.byte(static_cast<std::uint8_t>(number.negative ? ~b : b));
  }
}

/// Groups of eight bytes, each followed by the number of its bytes, or by 9 (not inverted in a
/// descending column) when another group follows. The last group is filled up with zeros.
void writeBinary(KeyWriter& key, std::span<const std::uint8_t> bytes) {
  constexpr std::size_t kGroup = 8;
  constexpr std::uint8_t kMoreFollows = 9;
  while (!bytes.empty()) {
    const std::size_t size = std::min(kGroup, bytes.size());
    for (const std::uint8_t b : bytes.first(size)) key.byte(b);
    bytes = bytes.subspan(size);
    if (!bytes.empty()) {
      key.plainByte(kMoreFollows);
      continue;
    }
    for (std::size_t i = size; i < kGroup; ++i) key.byte(0);
    key.byte(static_cast<std::uint8_t>(size));
  }
}

/// As binary of its bytes in the order of its text; the file holds the first three parts
/// little-endian.
void writeGuid(KeyWriter& key, Guid guid) {
  auto& bytes = guid.bytes;
  std::reverse(bytes.begin(), bytes.begin() + 4);
  std::reverse(bytes.begin() + 4, bytes.begin() + 6);
  std::reverse(bytes.begin() + 6, bytes.begin() + 8);
  writeBinary(key, bytes);
}

void writeText(KeyWriter& key, const Column& column, const std::string& text, Expansion expansion) {
  const SortOrder& order = column.sortOrder;
  if (knowledgeOf(order) == OrderKnowledge::ascii && !isKnownIn(order, text)) {
    throw Error(kNotSupported,
                fmt::format("Column \"{}\" is indexed in the sort order \"{}\" (language {}), in "
                            "which this program can place {}. Leave rows with other texts in it to "
                            "Access.",
                            column.name, languageName(order.language), order.language,
                            describeKnownText(order)));
  }
  appendTextKey(key.bytes(), text, order, key.ascending(), expansion);
}

void writeValue(KeyWriter& key, const Column& column, const Value& value, Expansion expansion) {
  switch (column.type) {
    case ColumnType::boolean:
      key.byte(need<bool>(value, column) ? kTrue : kFalse);
      return;
    case ColumnType::byte:
      key.bigEndian(need<std::int32_t>(value, column) & 0xff, 1);
      return;
    case ColumnType::integer:
      writeInteger(key, need<std::int32_t>(value, column), 2);
      return;
    case ColumnType::longInteger:
    case ColumnType::complex:
      writeInteger(key, need<std::int32_t>(value, column), 4);
      return;
    case ColumnType::bigInteger:
      writeInteger(key, need<std::int64_t>(value, column), 8);
      return;
    case ColumnType::currency:
      writeInteger(key, need<Currency>(value, column).tenThousandths, 8);
      return;
    case ColumnType::single:
      writeFloating(key, std::bit_cast<std::uint32_t>(need<float>(value, column)), 4);
      return;
    case ColumnType::double_:
      writeFloating(key, std::bit_cast<std::uint64_t>(need<double>(value, column)), 8);
      return;
    case ColumnType::dateTime:
      writeFloating(key, std::bit_cast<std::uint64_t>(need<Date>(value, column).days), 8);
      return;
    case ColumnType::numeric:
      writeNumeric(key, need<Decimal>(value, column), column);
      return;
    case ColumnType::guid:
      writeGuid(key, need<Guid>(value, column));
      return;
    case ColumnType::binary:
      writeBinary(key, need<Bytes>(value, column));
      return;
    case ColumnType::text:
    case ColumnType::memo:
      writeText(key, column, need<std::string>(value, column), expansion);
      return;
    case ColumnType::ole:
    case ColumnType::extendedDate:
      break;
  }
  throw Error(kNotSupported,
              fmt::format("Column \"{}\" is of a type that cannot be indexed.", column.name));
}

/// What `make` gives; none where that is not supported.
template <class Make>
std::optional<Bytes> ifSupported(Make make) {
  try {
    return make();
  } catch (const Error& error) {
    if (error.number() != kNotSupported) throw;
    return std::nullopt;
  }
}

/// Letters beyond ASCII, some of which expand.
bool hasOtherLetters(const Value& value) {
  const std::string* text = value.getIf<std::string>();
  return text != nullptr && std::ranges::any_of(*text, [](char c) { return (c & 0x80) != 0; });
}

Bytes makeForm(const TableDefinition& table, const RealIndex& index, std::span<const Value> values,
               Expansion expansion) {
  Bytes key;
  key.reserve(64);
  for (const IndexColumn& column : index.columns) {
    appendKey(key, table.columns[column.column], values[column.column], column.ascending,
              expansion);
  }
  return key;
}

}  // namespace

void appendKey(Bytes& key, const Column& column, const Value& value, bool ascending,
               Expansion expansion) {
  KeyWriter writer(key, ascending);
  if (value.isNull() && column.type == ColumnType::boolean) {
    return appendKey(key, column, false, ascending);  // booleans have no Null
  }
  if (value.isNull()) {
    writer.byte(kNullFlag);
    return;
  }
  writer.byte(kValueFlag);
  writeValue(writer, column, value, expansion);
}

bool appendSearchKey(Bytes& key, const Column& column, const Value& value, bool ascending) {
  const auto begin = static_cast<std::ptrdiff_t>(key.size());
  appendKey(key, column, value, ascending);
  if (!hasOtherLetters(value)) {
    return true;
  }
  Bytes other;
  appendKey(other, column, value, ascending, Expansion::oneLetter);
  const auto parting = std::mismatch(key.begin() + begin, key.end(), other.begin(), other.end());
  const bool isWhole = parting.first == key.end();
  key.erase(parting.first, key.end());
  return isWhole;
}

std::optional<Bytes> makeSearchKey(const Column& column, const Value& value, bool ascending) {
  return ifSupported([&] {
    Bytes key;
    appendSearchKey(key, column, value, ascending);
    return key;
  });
}

Bytes makeKey(const TableDefinition& table, const RealIndex& index, std::span<const Value> values) {
  return makeForm(table, index, values, Expansion::letters);
}

std::optional<Bytes> makeKnownKey(const TableDefinition& table, const RealIndex& index,
                                  std::span<const Value> values) {
  return ifSupported([&] { return makeKey(table, index, values); });
}

std::optional<Bytes> makeOtherForm(const TableDefinition& table, const RealIndex& index,
                                   std::span<const Value> values) {
  const bool mayDiffer = std::ranges::any_of(index.columns, [&](const IndexColumn& column) {
    return hasOtherLetters(values[column.column]);
  });
  if (!mayDiffer) {
    return std::nullopt;
  }
  Bytes key = makeForm(table, index, values, Expansion::oneLetter);
  return key != makeKey(table, index, values) ? std::optional(std::move(key)) : std::nullopt;
}

bool anyNull(const RealIndex& index, std::span<const Value> values) {
  return std::any_of(index.columns.begin(), index.columns.end(),
                     [&](const IndexColumn& key) { return values[key.column].isNull(); });
}

bool hasEntry(const RealIndex& index, std::span<const Value> values) {
  return !index.ignoreNulls ||
         std::any_of(index.columns.begin(), index.columns.end(),
                     [&](const IndexColumn& column) { return !values[column.column].isNull(); });
}

}  // namespace orv::store::jet
