// No copy of a damaged file, and no damaged copy.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "store/CheckReport.h"
#include "store/jet/catalog/Database.h"

namespace orv::store::jet {

/// Raises kCorruptFile, saying that the file was not `done` ("compacted") and what to do
/// (`remedy`), when a check of it finds a fault: a copy takes what the maps and the catalogue name,
/// of a damaged file that may not be all, and the copy would be without a fault.
void refuseDamaged(const std::shared_ptr<Database>& database, std::string_view done,
                   std::string_view remedy, const CheckProgress& progress);

/// Raises kStoreFailure when a check of the new file, made of the one at `former`, finds a fault.
void refuseUnsound(const std::shared_ptr<Pager>& made, const std::string& former,
                   std::string_view done, const CheckProgress& progress);

}  // namespace orv::store::jet
