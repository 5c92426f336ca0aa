// The definitions of tables that a damaged file still has.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "store/Value.h"
#include "store/jet/definition/TableDefinition.h"
#include "store/jet/page/Pager.h"

namespace orv::store::jet {

struct SalvagedDefinition {
  std::shared_ptr<const TableDefinition> table;
  Bytes bytes;         ///< as DefinitionPages has them, mended
  std::string fault;   ///< what is wrong with the one of the file; empty when it is whole
  bool isSure = true;  ///< the columns are those of the rows
};

/// The definition of a table; where its indexes cannot be read, without them. Of the tables that
/// every file has, with those columns that they have in every file. None when there is nothing.
std::optional<SalvagedDefinition> salvageDefinition(Pager& pager, PageNumber page,
                                                    const std::string& name);

/// The same without its indexes.
SalvagedDefinition withoutIndexes(Pager& pager, const SalvagedDefinition& definition,
                                  const std::string& why);

}  // namespace orv::store::jet
