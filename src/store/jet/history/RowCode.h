// Rows and what happens to them, as bytes.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "store/Value.h"

namespace orv::store::jet {

/// One thing that happened to a row: no values `before` where it was added, none `after` where it
/// was deleted.
struct RowChange {
  std::string table;
  std::vector<Value> before;
  std::vector<Value> after;
};

/// The bytes of a value, by which values are the same or not, and read again.
void encodeValue(Bytes& bytes, const Value& value);
/// The bytes of a row: those of its values.
Bytes encodeRowValues(std::span<const Value> values);

/// Writes changes one after another. A row is told by what differs from the one before it in its
/// table, so that the points of a spectrum take little room.
class RowChangeWriter {
 public:
  void add(const std::string& table, std::span<const Value> before, std::span<const Value> after);
  const Bytes& bytes() const { return bytes_; }
  /// Forgets all but the first of the bytes.
  void cut(std::size_t size);

 private:
  void addImage(std::span<const Value> values);

  Bytes bytes_;
  std::string table_;
  std::vector<Value> last_;  ///< the row that was written last, of `table_`
};

/// What a RowChangeWriter has written. Raises kCorruptFile for anything else.
std::vector<RowChange> readRowChanges(std::span<const std::uint8_t> bytes);

}  // namespace orv::store::jet
