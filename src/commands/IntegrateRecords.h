// The integrated values of panes, computed from their spectra, and their storing.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "commands/Session.h"
#include "optics/Integrator.h"
#include "sources/RecordSelection.h"

namespace orv::commands {

struct IntegrationOptions {
  optics::Standard standard = optics::kUsualStandard;
  std::optional<std::int16_t> angle = {};  ///< only the data at this angle
  bool stores = false;                     ///< write the values into the database
  bool rehearses = false;                  ///< tell what storing would do, and do nothing
  bool onlyMissing = false;                ///< where there is no row of values, or all are 0
  bool frozenToo = false;                  ///< change panes that are frozen
};

/// What became of a row that was to be stored.
enum class Storing {
  none,      ///< it was not to be
  written,   ///< or would be
  isFrozen,  ///< the pane is frozen
  isThere,   ///< it has values, and only missing ones were wanted
  nothing,   ///< the spectrum does not reach for any value
  failed,
};

/// A pane at one of its angles.
struct IntegratedRow {
  std::string identifier;
  std::string name;
  std::int16_t angle = 0;
  optics::Integration integration;
  /// Directions at this angle that have spectra, too, which are left out.
  std::vector<std::int32_t> otherDirections = {};
  /// What the source stored itself when the pane was read, by the names of the values.
  std::map<std::string_view, double> stored = {};
  std::string failure = {};  ///< why the pane could not be read or written
  Storing storing = Storing::none;

  /// Whether there are the values that were asked for.
  bool isWhole() const { return failure.empty() && !integration.lacksSpectrum; }
  /// Why values are missing, and what is unusual, in one line.
  std::string note() const;
};

struct IntegrationResult {
  bool refused = false;    ///< the database cannot be changed, or it is too risky
  bool cancelled = false;  ///< ended by the user
  int rows = 0;            ///< panes, once for each angle
  int incomplete = 0;      ///< rows that lack values, or panes that could not be read or written
  int written = 0;
  int frozen = 0;   ///< rows that were left alone since the pane is frozen
  int present = 0;  ///< rows that were left alone since they have values

  /// "3 rows of integrated values written by EN 410, 1 left as it is (frozen)." of a storing.
  std::string summary(optics::Standard standard) const;
};

/// Integrates the panes of a selection by a standard and gives each, once for each angle, to `each`
/// as soon as all of the pane are known; stores the values where that is asked for, those of a pane
/// in one commit. Values that the spectrum does not reach stay as they are in the database. A pane
/// that cannot be read gives a row that says why, and the work goes on.
///
/// Raises kInvalidCall for records that are no panes, and, when storing, for a source that is no
/// ORV database of version 3.0.0.
IntegrationResult integrateRecords(Session& session, const sources::RecordSelection& records,
                                   const IntegrationOptions& options,
                                   const std::function<void(const IntegratedRow&)>& each);

}  // namespace orv::commands
