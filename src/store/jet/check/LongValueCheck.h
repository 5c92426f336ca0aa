// Checking the memos and pictures of a table.
#pragma once

#include <map>
#include <vector>

#include "store/jet/check/CheckContext.h"
#include "store/jet/definition/TableDefinition.h"
#include "store/jet/row/Row.h"

namespace orv::store::jet {

/// Values are given to it one by one; then it looks at the pages of their parts.
class LongValueCheck {
 public:
  /// Claims the pages of all columns of `table`, which must outlive this.
  LongValueCheck(CheckContext& context, const TableDefinition& table);

  /// Checks that the value of the row at `id` is whole and that no other has a part of it.
  void check(const Column& column, const RowView& row, RowId id);
  /// Checks the pages of the columns, after all values. `findStrayParts` says that all rows could
  /// be read, so that a part that none has named is nobody's; parts of columns with a broken value
  /// may be that one's.
  void finish(bool findStrayParts);

 private:
  struct Space {
    PageLedger::User user;
    std::vector<PageNumber> pages{};
    bool broken = false;  ///< a value of the column is not whole
  };

  void checkPart(const Column& column, const Space& space, RowId part);

  CheckContext& context_;
  const TableDefinition& table_;
  std::map<std::uint16_t, Space> spaces_;  ///< by the column's number
};

}  // namespace orv::store::jet
