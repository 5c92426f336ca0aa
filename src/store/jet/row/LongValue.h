// Memos and pictures: values too long for a row.
#pragma once

#include <cstdint>
#include <functional>
#include <span>

#include "store/Value.h"
#include "store/jet/definition/TableDefinition.h"
#include "store/jet/page/Pager.h"
#include "store/jet/page/RowId.h"

namespace orv::store::jet {

/// What a row holds of a long value, besides the value itself where it is short.
struct LongValueDefinition {
  static constexpr std::size_t kSize = 12;  ///< bytes
  static constexpr std::size_t kNextSize =
      4;  ///< of the pointer that each part of a chain begins with
  static constexpr std::uint32_t kLengthMask = 0x3fffffff;
  enum class Form : std::uint32_t { chain = 0, onePart = 0x40000000, inRow = 0x80000000 };

  std::uint32_t length;
  Form form = Form::inRow;
  RowId first{};

  /// Reads the bytes of a column; `page` is for the error. Raises kCorruptFile.
  static LongValueDefinition read(std::span<const std::uint8_t> bytes, PageNumber page);
  /// Puts length, form and place into the first eight bytes of a definition.
  void writeTo(std::uint8_t* bytes) const;
};

/// Calls `visit(RowId)` for each part of the long value that the stored `definition` (a column's
/// bytes in a row) names, in order. Raises kCorruptFile for a chain that is broken or a loop.
///
/// A definition is the length (30 bits) with two flags, the pointer to the first part, and four
/// bytes of zero. The value follows it in the row, or is one row of a long-value page, or a chain
/// of such rows that each begin with a pointer to the next.
void forEachLongValuePart(Pager& pager, std::span<const std::uint8_t> definition, PageNumber page,
                          const std::function<void(RowId)>& visit);

/// The bytes of the whole value: of a memo, its text as the file's format has it.
Bytes readLongValue(Pager& pager, std::span<const std::uint8_t> definition, PageNumber page);

/// Stores `value` for `column` and returns the definition for the row. Short values go into it.
Bytes writeLongValue(Pager& pager, const Column& column, const Bytes& value);

/// Gives the space of a value's parts back.
void eraseLongValue(Pager& pager, const Column& column, std::span<const std::uint8_t> definition,
                    PageNumber page);

}  // namespace orv::store::jet
