// Layout: a change begins with a byte. kTable: the name of the table that the next ones are of, and
// how many columns it has. Else bits that say which images follow. An image: a bit a column, set
// where the value is that of the image before; then the other values, each with a byte for its
// type.
#include "store/jet/history/RowCode.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

#include "store/StoreError.h"
#include "store/jet/file/Bytes.h"

namespace orv::store::jet {
namespace {

constexpr std::uint8_t kTable = 0;
constexpr std::uint8_t kHasBefore = 1;
constexpr std::uint8_t kHasAfter = 2;

void append32(Bytes& bytes, std::uint32_t number) {
  bytes.resize(bytes.size() + 4);
  store32(&bytes[bytes.size() - 4], number);
}

/// A type and a number of `size` bytes, in one piece: most values are of these.
void appendTyped(Bytes& bytes, std::uint8_t type, std::uint64_t number, std::size_t size) {
  std::array<std::uint8_t, 9> piece{type};
  store64(&piece[1], number);
  bytes.insert(bytes.end(), piece.begin(), piece.begin() + 1 + static_cast<std::ptrdiff_t>(size));
}

template <class Container>
void appendSized(Bytes& bytes, const Container& content) {
  append32(bytes, static_cast<std::uint32_t>(content.size()));
  bytes.insert(bytes.end(), content.begin(), content.end());
}

/// Appends the type of a value, and what it is.
struct ValueWriter {
  Bytes& bytes;
  std::uint8_t type;

  void operator()(std::monostate) const { bytes.push_back(type); }
  void operator()(bool v) const { appendTyped(bytes, type, v ? 1 : 0, 1); }
  void operator()(std::int32_t v) const {
    appendTyped(bytes, type, static_cast<std::uint32_t>(v), 4);
  }
  void operator()(std::int64_t v) const {
    appendTyped(bytes, type, static_cast<std::uint64_t>(v), 8);
  }
  void operator()(float v) const { appendTyped(bytes, type, std::bit_cast<std::uint32_t>(v), 4); }
  void operator()(double v) const { appendTyped(bytes, type, std::bit_cast<std::uint64_t>(v), 8); }
  void operator()(Currency v) const { (*this)(v.tenThousandths); }
  void operator()(Date v) const { (*this)(v.days); }
  void operator()(const Decimal& v) const {
    (*this)(v.negative);
    bytes.push_back(v.scale);
    bytes.insert(bytes.end(), v.magnitude.begin(), v.magnitude.end());
  }
  void operator()(const Guid& v) const {
    bytes.push_back(type);
    bytes.insert(bytes.end(), v.bytes.begin(), v.bytes.end());
  }
  void operator()(const std::string& v) const { append(v); }
  void operator()(const Bytes& v) const { append(v); }

 private:
  template <class Container>
  void append(const Container& content) const {
    bytes.push_back(type);
    appendSized(bytes, content);
  }
};

/// Takes bytes from the front, as many as there are.
class ByteReader {
 public:
  explicit ByteReader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  bool isAtEnd() const { return bytes_.empty(); }
  std::span<const std::uint8_t> take(std::size_t count) {
    if (count > bytes_.size()) throw Error(kCorruptFile, "A history's record is cut short.");
    const auto taken = bytes_.first(count);
    bytes_ = bytes_.subspan(count);
    return taken;
  }
  std::uint8_t take8() { return take(1)[0]; }
  std::uint32_t take32() { return load32(take(4).data()); }
  std::uint64_t take64() { return load64(take(8).data()); }
  template <class Container>
  Container takeSized() {
    const auto content = take(take32());
    return Container(content.begin(), content.end());
  }
  template <std::size_t N>
  std::array<std::uint8_t, N> takeArray() {
    std::array<std::uint8_t, N> array{};
    const auto content = take(N);
    std::copy(content.begin(), content.end(), array.begin());
    return array;
  }

 private:
  std::span<const std::uint8_t> bytes_;
};

Value takeDecimal(ByteReader& reader) {
  Decimal decimal;
  decimal.negative = reader.take8() != 0;
  decimal.scale = reader.take8();
  decimal.magnitude = reader.takeArray<16>();
  return decimal;
}

/// The cases are the places of the types in Value::Variant.
Value takeValue(ByteReader& reader) {
  switch (reader.take8()) {
    case 0:
      return {};
    case 1:
      return reader.take8() != 0;
    case 2:
      return static_cast<std::int32_t>(reader.take32());
    case 3:
      return static_cast<std::int64_t>(reader.take64());
    case 4:
      return std::bit_cast<float>(reader.take32());
    case 5:
      return std::bit_cast<double>(reader.take64());
    case 6:
      return Currency{static_cast<std::int64_t>(reader.take64())};
    case 7:
      return Date{std::bit_cast<double>(reader.take64())};
    case 8:
      return takeDecimal(reader);
    case 9:
      return Guid{reader.takeArray<16>()};
    case 10:
      return reader.takeSized<std::string>();
    case 11:
      return reader.takeSized<Bytes>();
    default:
      throw Error(kCorruptFile, "A history's record holds a value of no known type.");
  }
}

/// Whether two values have the same bytes: of numbers that are none, == says that they differ.
bool areSame(const Value& a, const Value& b) {
  if (a.variant().index() != b.variant().index()) return false;
  if (const auto* single = a.getIf<float>()) {
    return std::bit_cast<std::uint32_t>(*single) == std::bit_cast<std::uint32_t>(*b.getIf<float>());
  }
  if (const auto* number = a.getIf<double>()) {
    return std::bit_cast<std::uint64_t>(*number) ==
           std::bit_cast<std::uint64_t>(*b.getIf<double>());
  }
  return a == b;
}

std::vector<Value> takeImage(ByteReader& reader, const std::vector<Value>& last) {
  std::vector<Value> values = last;
  const auto mask = reader.take((values.size() + 7) / 8);
  for (std::size_t i = 0; i < values.size(); ++i) {
    if ((mask[i / 8] >> (i % 8) & 1) == 0) values[i] = takeValue(reader);
  }
  return values;
}

}  // namespace

void encodeValue(Bytes& bytes, const Value& value) {
  const auto type = static_cast<std::uint8_t>(value.variant().index());
  std::visit(ValueWriter{bytes, type}, value.variant());
}

Bytes encodeRowValues(std::span<const Value> values) {
  Bytes bytes;
  for (const Value& value : values) encodeValue(bytes, value);
  return bytes;
}

void RowChangeWriter::add(const std::string& table, std::span<const Value> before,
                          std::span<const Value> after) {
  const std::size_t columns = std::max(before.size(), after.size());
  if (table != table_ || last_.size() != columns) {
    bytes_.push_back(kTable);
    appendSized(bytes_, table);
    append32(bytes_, static_cast<std::uint32_t>(columns));
    table_ = table;
    last_.assign(columns, Value());
  }
  bytes_.push_back(before.empty()  ? kHasAfter
                   : after.empty() ? kHasBefore
                                   : std::uint8_t{kHasBefore | kHasAfter});
  if (!before.empty()) addImage(before);
  if (!after.empty()) addImage(after);
}

void RowChangeWriter::addImage(std::span<const Value> values) {
  const std::size_t mask = bytes_.size();
  bytes_.resize(mask + (values.size() + 7) / 8);
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (areSame(values[i], last_[i])) {
      bytes_[mask + i / 8] |= static_cast<std::uint8_t>(1U << (i % 8));
    } else {
      encodeValue(bytes_, values[i]);
      last_[i] = values[i];
    }
  }
}

void RowChangeWriter::cut(std::size_t size) {
  bytes_.resize(size);
  table_.clear();
  last_.clear();
}

std::vector<RowChange> readRowChanges(std::span<const std::uint8_t> bytes) {
  std::vector<RowChange> changes;
  std::string table;
  std::vector<Value> last;
  for (ByteReader reader(bytes); !reader.isAtEnd();) {
    const std::uint8_t what = reader.take8();
    if (what == kTable) {
      table = reader.takeSized<std::string>();
      const std::uint32_t columns = reader.take32();
      if (columns > bytes.size() * 8) throw Error(kCorruptFile, "A history's table is too wide.");
      last.assign(columns, Value());
      continue;
    }
    RowChange& change = changes.emplace_back();
    change.table = table;
    if (what & kHasBefore) last = change.before = takeImage(reader, last);
    if (what & kHasAfter) last = change.after = takeImage(reader, last);
  }
  return changes;
}

}  // namespace orv::store::jet
