// The rows of a pane in an ORV database of version 3.0.0.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "model/GlazingData.h"
#include "store/Connection.h"

namespace orv::database {

/// Gives the columns of a row of `Pane`, save its keys and the coating class, one by one.
void setPaneColumns(const GlazingData& data,
                    const std::function<void(const char* column, const store::Value&)>& set);

std::string storedCoatingClass(const GlazingData& data);

/// Adds the row of the integrated data at the pane's angle, under the pane's key.
void insertIntegratedRow(const GlazingData& data, store::Connection& dc);

/// The same into the row that is there, or a new one.
void storeIntegratedRow(const GlazingData& data, store::Connection& dc);

/// Whether the pane has a curve that is stored.
bool hasSpectrum(const GlazingData& data);

/// Adds the rows of the curve at the pane's angle, under the pane's key.
void insertSpectralRows(const GlazingData& data, store::Connection& dc);

/// Deletes both kinds of rows of a pane.
void deletePaneData(std::int32_t id, store::Connection& dc);

}  // namespace orv::database
