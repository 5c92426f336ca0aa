#pragma once

#include <QString>
#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "app/docks/spectra/SpectrumPlot.h"
#include "optics/Integrator.h"

namespace orv::app {

/// One integrated value of a data set, in words.
struct IntegratedCell {
  QString text{};        ///< empty where there is none
  QString tip{};         ///< all digits, and what the value rests on or why there is none
  bool differs = false;  ///< computed, and not what is stored
  std::optional<std::array<std::uint8_t, 3>> colour{};  ///< sRGB of a value that is a colour
};

/// A value as the record stores it, and as the spectrum has it.
struct IntegratedPair {
  IntegratedCell stored;
  IntegratedCell computed;
};

struct IntegratedRow {
  QString name;
  std::vector<IntegratedPair> values;  ///< one a data set
};

/// Stored values that are this much apart from the computed ones are marked.
inline constexpr double kPartThatDiffers = 0.005;

/// Whether a record holds values that its source calculated from the spectrum.
bool hasIntegratedValues(const GlazingData& pane);

/// The integrated values of data sets, stored and computed by a standard, as rows of a table: the
/// solar, visible and ultraviolet ones always, the others where a record or the standard has them.
/// No rows when no data set has either values or a spectrum.
std::vector<IntegratedRow> integratedRows(const std::vector<SpectrumDataSet>& dataSets,
                                          optics::Standard standard);

}  // namespace orv::app
