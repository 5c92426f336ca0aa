// A generated database that the programs open as the International Glazing Database, as large as
// it.
#pragma once

#include <string>

namespace orv::bench {

/// Makes a database with the tables, indexes and the saved query of the IGDB, with so many glazings
/// of 420 wavelengths each. It has no password.
void makeGlazingDatabase(const std::string& path, int glazings);

}  // namespace orv::bench
