// Records that are read into the model first.
#pragma once

#include "commands/compare/CurveRows.h"
#include "model/GlazingData.h"
#include "model/ShadingDataClass.h"

namespace orv::commands::compare {

/// A pane without its values and curves, a shading without its curves.
Record recordOf(const std::string& identifier, const GlazingData& pane);
Record recordOf(const std::string& identifier, const ShadingDataClass& shading);

/// The integrated values of a pane at its angle; 0 for a reflectance or for all of a range stands
/// for what is not known. None where nothing is.
std::optional<IntegratedRow> integratedOf(const GlazingData& pane);

/// Adds the curves of a pane, of its angle, or of a shading to those of a record.
void addCurves(const GlazingData& pane, std::size_t record, CurveRows& curves);
void addCurves(const ShadingDataClass& shading, std::size_t record, CurveRows& curves);

/// The precision in which a copy stores the curves of a kind.
std::vector<bool> storedPrecision(RecordKind kind);

}  // namespace orv::commands::compare
