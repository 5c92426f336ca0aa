// Checking one table.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "store/Value.h"
#include "store/jet/check/CheckContext.h"
#include "store/jet/check/LongValueCheck.h"
#include "store/jet/check/RowKeys.h"
#include "store/jet/definition/TableDefinition.h"
#include "store/jet/page/DataPage.h"
#include "store/jet/row/Row.h"

namespace orv::store::jet {

/// Checks the definition, the rows, the long values and the indexes of a table.
class TableCheck {
 public:
  /// Given each row that can be read.
  using RowVisitor = std::function<void(RowId, const RowView&)>;

  TableCheck(CheckContext& context, const TableDefinition& table);
  void run(const RowVisitor& visit = {});

 private:
  void claimDefinition();
  void checkDefinition();
  void checkColumn(const Column& column);
  void claimRows();
  void scan(const RowVisitor& visit);
  void visitSlot(const PageRef& page, RowId id, const Slot& slot, const RowVisitor& visit);
  RowView rowAt(const PageRef& page, RowId id, const Slot& slot);
  /// The content of the row whose place holds a pointer. Raises kCorruptFile.
  RowId followPointer(const PageRef& page, RowId id, const Slot& slot);
  void readColumns(RowId id, const RowView& row);
  void expectKey(const RealIndex& index, RowId id);
  void checkHiddenRows();
  void checkRowCount();

  CheckContext& context_;
  const TableDefinition& table_;
  CheckPlace place_;
  PageLedger::User rowsUser_;
  std::vector<PageNumber> pages_{};
  RowKeys keys_;
  LongValueCheck longValues_;
  std::vector<bool> isKey_;      ///< by column: whether an index is over it
  std::vector<Value> values_;    ///< of the current row; long values only of key columns
  RowLedger pointedAt_{};        ///< content that a pointer leads to
  std::vector<RowId> hidden_{};  ///< content that only a pointer can lead to
  std::size_t rows_ = 0;
  bool allFound_ = true;  ///< every page of rows, and every place of a row on it
  bool allRead_ = true;   ///< every row found
};

}  // namespace orv::store::jet
