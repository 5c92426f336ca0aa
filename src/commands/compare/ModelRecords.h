// Records that are read into the model first.
#pragma once

#include <set>

#include "commands/compare/CurveRows.h"
#include "model/GlazingData.h"
#include "model/ShadingDataClass.h"

namespace orv::commands::compare {

/// A pane without its values and curves, a shading without its curves. Nothing is known of the
/// columns that are `missing`.
Record recordOf(const std::string& identifier, const GlazingData& pane,
                const std::set<std::string>& missing);
Record recordOf(const std::string& identifier, const ShadingDataClass& shading,
                const std::set<std::string>& missing);

/// The integrated values of a pane at its angle, as far as they are given. None where none is.
std::optional<IntegratedRow> integratedOf(const GlazingData& pane);

/// Adds the curves of a pane, of its angle, or of a shading to those of a record.
void addCurves(const GlazingData& pane, std::size_t record, CurveRows& curves);
void addCurves(const ShadingDataClass& shading, std::size_t record, CurveRows& curves);

/// Whether records of a kind hold their curves in single precision.
inline bool storedInSingle(RecordKind kind) {
  return kind == RecordKind::panes;
}

}  // namespace orv::commands::compare
