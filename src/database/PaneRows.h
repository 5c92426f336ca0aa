// The rows of a pane in an ORV database of version 3.0.0.
#pragma once

#include <cstdint>
#include <optional>

#include "model/GlazingData.h"
#include "store/Connection.h"

namespace orv::database {

/// Sets the columns of a row of `Pane`, save its key. The names of the supplier and of the group
/// are in their tables already.
void setPaneColumns(store::Recordset& row, const GlazingData& data, store::Connection& dc);

/// Adds the row of the integrated data at the pane's angle, under the pane's key.
void insertIntegratedRow(const GlazingData& data, store::Connection& dc);

/// The same into the row that is there, or a new one.
void storeIntegratedRow(const GlazingData& data, store::Connection& dc);

/// Whether the pane has a curve that is stored.
bool hasSpectrum(const GlazingData& data);

/// Adds the rows of the curve at the pane's angle, under the pane's key.
void insertSpectralRows(const GlazingData& data, store::Connection& dc);

/// Deletes both kinds of rows of a pane at an angle, or at all.
void deletePaneData(std::int32_t id, std::optional<std::int16_t> angle, store::Connection& dc);

}  // namespace orv::database
