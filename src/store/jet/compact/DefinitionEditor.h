// The places in the file that a table's definition names.
#pragma once

#include <cstdint>
#include <functional>

#include "store/Value.h"
#include "store/jet/definition/TableDefinition.h"
#include "store/jet/page/Format.h"
#include "store/jet/page/RowId.h"

namespace orv::store::jet {

/// Changes the bytes of a definition (see DefinitionPages.h), leaving all else as it is.
class DefinitionEditor {
 public:
  /// Cuts off what is behind the definition's end. Raises kCorruptFile.
  DefinitionEditor(const Format& format, Bytes& bytes, PageNumber page);

  void setRowCount(std::uint32_t rows);
  void setRowMaps(RowId pages, RowId pagesWithRoom);
  /// The tree of a real index, with its number of different keys.
  void setIndex(std::size_t realIndex, PageNumber root, RowId pages, std::uint32_t keys);
  /// Lets an index allow rows with the same values, and rows with Null.
  void allow(std::size_t realIndex, bool repeated, bool nulls);
  /// Makes room for the two maps of a long column, by its number, where there is none.
  void needLongValueMaps(std::uint16_t column);
  /// Gives the two maps of each long column that has them to `change`, by the column's number.
  void changeLongValueMaps(
      const std::function<void(std::uint16_t column, RowId& pages, RowId& pagesWithRoom)>& change);
  /// Without all indexes, and with maps of no pages for each long column; of a definition of which
  /// only the columns can be read.
  static Bytes withoutIndexes(const Format& format, const Bytes& bytes,
                              const TableDefinition& table);
  /// Gives the page of the other table of each relation to `change`.
  void changeRelations(const std::function<void(PageNumber& table)>& change);

 private:
  const Format& format_;
  Bytes& bytes_;
  std::size_t realIndexes_;
  std::size_t logicalIndexes_;
  std::size_t real_ = 0;     ///< where the blocks of the real indexes begin
  std::size_t logical_ = 0;  ///< of the logical ones
  std::size_t longValueMaps_ = 0;
};

}  // namespace orv::store::jet
