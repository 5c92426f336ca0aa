// The catalogue of a repaired file.
#pragma once

#include "store/jet/catalog/Database.h"
#include "store/jet/compact/TableNumbers.h"
#include "store/jet/repair/CatalogSalvage.h"

namespace orv::store::jet {

/// Adds to the catalogue of the new file what the old one has lost: the tables that it did not
/// name, the containers that every file has and those that objects belong to. With a new header
/// page the ids of users are hidden as that has it.
void mendCatalog(const std::shared_ptr<Pager>& pager, const CatalogSalvage& catalog,
                 const TableNumbers& numbers, bool hasNewHeader);

}  // namespace orv::store::jet
