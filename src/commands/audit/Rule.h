// The rules of an audit.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "commands/audit/DataSet.h"
#include "commands/audit/SourceFacts.h"

namespace orv::commands::audit {

// What a rule looks at. Each function gives all faults that it finds.

/// A data set with a spectrum, in whatever units.
struct OnAnySpectrum {
  std::vector<Fault> (*look)(const DataSet&);
};
/// A data set with a spectrum whose units are right.
struct OnSpectrum {
  std::vector<Fault> (*look)(const DataSet&);
};
/// A pane at one of its angles.
struct OnDataSet {
  std::vector<Fault> (*pane)(const DataSet&);
  std::vector<Fault> (*shading)(const AuditedShading&) = nullptr;  ///< null: nothing is said of it
};
/// A record with its data; of kinds for which there is none, nothing is said.
struct OnData {
  std::vector<Fault> (*pane)(const AuditedPane&) = nullptr;
  std::vector<Fault> (*shading)(const AuditedShading&) = nullptr;
  std::vector<Fault> (*frame)(const FrameDataClass&) = nullptr;
};
struct OnRecord {
  std::vector<Fault> (*look)(const RecordFacts&);
};
/// All records together.
struct OnSource {
  std::vector<PlacedFault> (*look)(const SourceFacts&);
};
/// What reading the records finds.
struct OnReading {};

struct Rule {
  std::string_view name;
  Severity severity;
  std::string_view finds;
  std::string_view why;
  std::variant<OnReading, OnAnySpectrum, OnSpectrum, OnDataSet, OnData, OnRecord, OnSource> check;
};

/// All rules: on one spectrum, on one record, on all records.
std::span<const Rule> rules();

/// Raises kInvalidCall, and names the rules that there are, where none has this name.
const Rule& ruleNamed(std::string_view name);

// Rules that reading the records asks for.
inline constexpr std::string_view kUnreadable = "unreadable";
inline constexpr std::string_view kNotRead = "not-read";
inline constexpr std::string_view kOutside = "range";

}  // namespace orv::commands::audit
