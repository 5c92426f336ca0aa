#pragma once

#include <QString>

#include "app/docks/spectra/SpectrumPlot.h"

namespace orv::app {

/// What a plot shows, as a table: a heading, then a row for each wavelength that any of the shown
/// data sets has. Wavelengths are in the unit of the plot, all of them, not only those zoomed to;
/// the cell of a data set that lacks a wavelength is empty. Cells that hold the separator, a quote
/// or a line end are quoted; decimals have a point in every language; lines end with CR LF.
QString spectraAsText(const SpectrumPlot& plot, QChar separator = u',');

}  // namespace orv::app
