// How data are displayed in this run.
#pragma once

#include "app/theme/Theme.h"
#include "commands/CellText.h"

namespace orv::app {

enum class PlotUnit { nanometers, microns };

struct DisplayOptions {
  /// Significant digits of fractional numbers; commands::kAllDigits for all.
  int digits = 4;
  PlotUnit plotUnit = PlotUnit::nanometers;
  Theme theme = Theme::system;
};

}  // namespace orv::app
