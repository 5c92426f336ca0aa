// One table of Jet 3, made in a file of Jet 4.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "store/jet/definition/TableDefinition.h"
#include "store/jet/page/Pager.h"

namespace orv::store::jet {

/// Takes a table over step by step. Each step needs a transaction of the target but copyRows(),
/// which makes its own.
class TableConversion {
 public:
  /// Gives the new table its place, without rows and indexes.
  TableConversion(Pager& source, std::shared_ptr<const TableDefinition> former,
                  std::shared_ptr<Pager> target);

  const std::string& name() const { return former_->name; }
  PageNumber page() const { return table_->page; }
  std::size_t indexCount() const { return table_->realIndexes.size(); }

  /// Copies the rows, and the last automatic number; tells `rowDone` of each, and `lost` the
  /// characters that the code page of the file does not have. Gives the number of rows.
  std::size_t copyRows(const std::function<void()>& rowDone, std::vector<std::string>& lost);
  /// Makes the trees of the indexes. Those that cannot be are left out, and told to `lost`.
  void buildIndexes(std::vector<std::string>& lost);
  /// Writes the names of the indexes, when all tables have their trees: an index of a relation
  /// names that of the other table. A relation of which one is left out is no longer enforced.
  void nameIndexes(const std::map<PageNumber, TableConversion>& tables,
                   std::vector<std::string>& lost);

 private:
  bool hasIndex(std::uint32_t number) const;
  std::string describeIndex(const LogicalIndex& index) const;

  Pager& source_;
  std::shared_ptr<const TableDefinition> former_;
  std::shared_ptr<Pager> target_;
  std::shared_ptr<TableDefinition> table_;  ///< the new one, with the indexes that could be made
  std::vector<std::uint32_t> keyCounts_{};  ///< of its trees
};

}  // namespace orv::store::jet
