// What an audit finds.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "commands/RecordKind.h"

namespace orv::commands::audit {

/// From the least on.
enum class Severity { note, warning, error };

inline constexpr std::array<std::string_view, 3> kSeverityNames{"note", "warning", "error"};
constexpr std::string_view nameOf(Severity severity) {
  return kSeverityNames[static_cast<std::size_t>(severity)];
}

/// What is wrong with a record, or with a table beside the records, whose rows have identifiers,
/// too. What a rule knows nothing of is empty.
struct Fault {
  std::string field = {};     ///< "Tf", "thickness"
  std::string value = {};     ///< what is there
  std::string expected = {};  ///< what belongs there
  std::string message = {};   ///< a sentence without its stop, which tells the place
  /// Where on the curve; nm.
  std::optional<double> wavelength = {};
  std::optional<std::int16_t> angle = {};  ///< degrees
};

struct Finding {
  Severity severity = Severity::note;
  std::string_view rule;
  std::string set;  ///< "panes", "frames", "shadings", or the name of a table
  /// Where it is a record, of which kind.
  std::optional<RecordKind> kind = {};
  std::string identifier;
  std::string name;
  Fault fault;
};

}  // namespace orv::commands::audit
