// Rows of the IGDB and of Optics5 user databases as panes.
#pragma once

#include "model/GlazingData.h"
#include "store/Connection.h"

namespace orv::database {

/// Sets all of a pane but its key, its values and its curves from a row of `qryOptics5Grid`. Raises
/// error 5 for a quantity below 0.
void readIgdbProperties(GlazingData& data, const store::Recordset& row);

/// Sets the integrated values from a row of `GlazingProperties`. The database has one value for
/// both directions of transmission, and no reflectance in the ultraviolet.
void readIgdbIntegrated(GlazingData& data, const store::Recordset& row);

}  // namespace orv::database
