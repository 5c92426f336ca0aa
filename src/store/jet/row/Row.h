// Rows as the file holds them: decoding and encoding.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "store/Value.h"
#include "store/jet/definition/TableDefinition.h"
#include "store/jet/page/Pager.h"

namespace orv::store::jet {

/// A row in its page, decoded column by column when asked. Every offset is checked against the
/// row; a malformed one raises kCorruptFile.
class RowView {
 public:
  RowView() = default;
  /// The row of `definition` at `offset`, `length` bytes long, on `page`.
  RowView(Pager& pager, const TableDefinition& definition, const PageRef& page, std::size_t offset,
          std::size_t length) {
    show(pager, definition, page, offset, length);
  }
  /// Shows that row from now on. Cheap for a row of the same page.
  void show(Pager& pager, const TableDefinition& definition, const PageRef& page,
            std::size_t offset, std::size_t length);

  /// All bytes of the row.
  std::span<const std::uint8_t> content() const { return {data_, length_}; }
  /// Columns that the row has a bit for; fewer than the table where those were added later.
  std::uint16_t columnCount() const { return columnCount_; }
  /// Raises kCorruptFile unless the variable columns follow each other within the row.
  void checkLayout() const;
  bool isNull(const Column& column) const {
    return column.number >= columnCount_ ||
           (nullMask_[column.number / 8] >> (column.number % 8) & 1) == 0;
  }
  /// The stored bytes of a column: empty for Null; for a long value its definition (length and
  /// place). Booleans have none: their value is not isNull().
  std::span<const std::uint8_t> bytes(const Column& column) const;
  /// The value of a column; long values are read whole.
  Value value(const Column& column) const;
  /// Reads it over another value, which takes fewer steps for numbers.
  void read(const Column& column, Value& value) const;

 private:
  /// Finds the part for variable columns. What is wrong with it, or null.
  const char* findVariablePart();
  /// What is wrong with the places of the variable columns, or null.
  const char* variableFault() const;
  std::size_t variableOffset(std::size_t index) const;
  Value otherValue(const Column& column) const;
  const std::uint8_t* plainNumber(const Column& column) const;

  Pager* pager_ = nullptr;
  const TableDefinition* definition_ = nullptr;
  PageRef page_;
  const std::uint8_t* data_ = nullptr;
  std::size_t length_ = 0;
  std::uint16_t columnCount_ = 0;
  std::uint16_t variableCount_ = 0;  ///< 0 where the row has no part for variable columns
  const std::uint8_t* nullMask_ = nullptr;
  std::size_t fixedEnd_ = 0;  ///< where fixed and variable data end
};

/// The value that `bytes` (not of a long value) stand for in `column`.
Value decodeValue(const Pager& pager, const Column& column, std::span<const std::uint8_t> bytes,
                  PageNumber page);

}  // namespace orv::store::jet
