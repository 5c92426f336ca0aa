// Who is told what changes a transaction makes to the rows of tables.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "store/Value.h"

namespace orv::store::jet {

/// Is told of every row that is added, changed or deleted, in order, and whether it stays so.
class ChangeObserver {
 public:
  virtual ~ChangeObserver() = default;

  /// A row of a table, one value a column: no values `before` where it was added, none `after`
  /// where it was deleted.
  virtual void rowChanged(const std::string& table, std::span<const Value> before,
                          std::span<const Value> after) = 0;
  /// A row is deleted that cannot be read whole.
  virtual void rowNotRead() = 0;
  /// How much has been told in this transaction.
  virtual std::size_t mark() const = 0;
  /// What was told since then has been undone.
  virtual void forgetSince(std::size_t mark) = 0;
  /// All of the transaction has been undone.
  virtual void rolledBack() = 0;
  /// The transaction is about to be written. Called within its locks; committed() or rolledBack()
  /// follows. Returns how long a file of the observer's has become for it, for which nobody waits:
  /// after a loss of power it may be shorter, which can be found out then. 0 where there is none.
  virtual std::uint64_t committing() noexcept = 0;
  /// All that was told is in the file for good, or nothing was. Called within the locks of the transaction.
  virtual void committed() noexcept = 0;
};

}  // namespace orv::store::jet
