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
/// What of the catalogue cannot be kept: forms and the like, and what users of a workgroup own.
std::vector<std::string> unconvertedObjects(Database& source);
/// How many rights of users of a workgroup are left out; empty for none. Most files have some, of
/// the groups of whoever made them, that nobody needs.
std::string droppedRights(Database& source);

/// Copies the rows of the system tables: objects with their properties and dates, rights, saved
/// queries, relations. `numbers` has the new numbers of tables. Needs a transaction of the target.
void convertCatalog(Database& source, Database& target, const TableNumbers& numbers);

}  // namespace orv::store::jet
