// Relations that a copy of a database no longer enforces.
#pragma once

#include <string>
#include <vector>

#include "store/jet/catalog/Database.h"

namespace orv::store::jet {

/// Lets the catalogue say of each relation that no index serves that it is not enforced, as nothing
/// does it. Gives the names of those of which it said otherwise. Needs a transaction.
std::vector<std::string> dropLostRelations(Database& database);

}  // namespace orv::store::jet
