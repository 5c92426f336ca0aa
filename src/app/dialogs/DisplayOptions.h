// What the user has chosen for this run.
#pragma once

#include <optional>

#include "app/theme/Theme.h"
#include "commands/CellText.h"
#include "optics/Standard.h"

namespace orv::app {

enum class PlotUnit { nanometers, microns };

struct DisplayOptions {
  /// Significant digits of fractional numbers; commands::kAllDigits for all.
  int digits = 4;
  /// Whether numbers are copied and saved with these digits, too, and not with all.
  bool copiesAsShown = false;
  PlotUnit plotUnit = PlotUnit::nanometers;
  Theme theme = Theme::system;
  /// By which standard a copy computes integrated values that its source does not have; none when
  /// it leaves them 0.
  std::optional<optics::Standard> integrateBy = optics::kUsualStandard;
};

}  // namespace orv::app
