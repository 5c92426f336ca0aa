// The objects that every database has: containers, itself, and four system tables.
#pragma once

#include <span>
#include <string>

#include "store/jet/catalog/CatalogWriter.h"
#include "store/jet/catalog/Database.h"

namespace orv::store::jet {

// The pages on which the definitions of these begin, as that of MSysObjects on kCatalogPage.
inline constexpr PageNumber kPermissionsPage = 3;    ///< of MSysACEs
inline constexpr PageNumber kQueriesPage = 4;        ///< of MSysQueries
inline constexpr PageNumber kRelationshipsPage = 5;  ///< of MSysRelationships

/// All of them, in the order in which a catalogue has them.
std::span<const CatalogObject> fixedObjects();
/// Adds one of them to a catalogue, with its owner.
void addFixedObject(CatalogWriter& catalog, const CatalogObject& object);

/// The system table that is defined on this page in every file; empty for other pages.
std::string nameOfFixedTable(PageNumber page);
/// Whether an entry is of such an object; of a table, by its name.
bool isFixed(const CatalogEntry& entry);

}  // namespace orv::store::jet
