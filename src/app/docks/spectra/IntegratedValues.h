#pragma once

#include <QString>
#include <vector>

#include "app/docks/spectra/SpectrumPlot.h"

namespace orv::app {

/// One integrated value of several data sets, in words. The text is empty where a record has none.
struct IntegratedRow {
  QString name;
  std::vector<QString> values;  ///< one a data set
};

/// Whether a record holds values that its source calculated from the spectrum.
bool hasIntegratedValues(const GlazingData& pane);

/// The integrated values that are stored in the records, as rows of a table: the solar, visible and
/// ultraviolet ones always, the others where a record has them. No rows when no record has values.
std::vector<IntegratedRow> integratedRows(const std::vector<SpectrumDataSet>& dataSets);

}  // namespace orv::app
