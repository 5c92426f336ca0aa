// The catalogue of a converted file.
#pragma once

#include <string>
#include <vector>

#include "store/jet/catalog/Database.h"
#include "store/jet/compact/TableNumbers.h"

namespace orv::store::jet {

/// Whether an object goes into the new file: not the forms, reports, macros and modules, which
/// are made for the windows of one version of Access, and not the tables that it keeps them in.
bool isConverted(const CatalogEntry& entry);
/// Whether every file has the object, so that it need not be made.
bool isFixed(const CatalogEntry& entry);
/// What of the catalogue cannot be kept: forms and the like, and rights of users of a workgroup.
std::vector<std::string> unconvertedObjects(Database& source);

/// Copies the rows of the system tables: objects with their properties and dates, rights, saved
/// queries, relations. `numbers` has the new numbers of tables. Needs a transaction of the target.
void convertCatalog(Database& source, Database& target, const TableNumbers& numbers);

}  // namespace orv::store::jet
