// What an audit knows of all records together.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "commands/RecordKind.h"
#include "commands/audit/Finding.h"
#include "sources/datasource.h"

namespace orv::commands::audit {

struct RecordFacts {
  RecordKind kind;
  std::string identifier;
  std::string name;
  std::string group = {};
  std::string supplier = {};
  bool knowsMaker = true;  ///< whether the source keeps makers of such records
  /// Of files, which hold one angle of a pane; 0 in databases.
  std::int16_t angle = 0;
  std::optional<double> thickness = {};      ///< mm
  std::optional<double> transmittance = {};  ///< visible
};

/// The curves of a data set in 32 bits: Tf, Rf, Rb and Tb, one behind the other.
struct KeptSpectrum {
  std::size_t record;  ///< position among the records
  std::int16_t angle;
  std::size_t grid;  ///< the same for all spectra of the same wavelengths
  std::vector<float> values;
};

struct SourceFacts {
  std::vector<RecordFacts> records;
  std::vector<KeptSpectrum> spectra;
  /// The database, where it is one of ours; null else.
  std::shared_ptr<sources::datasource> database;
  std::optional<RecordKind> kind = {};  ///< only records of this kind are asked for
  bool isWhole = true;                  ///< all records of the source, or of the kind, are there
};

/// A fault of one of the records, or of a row of a table.
struct PlacedFault {
  std::string set;
  std::optional<RecordKind> kind;
  std::string identifier;
  std::string name;
  Fault fault;
};

PlacedFault at(const RecordFacts& record, Fault fault);

}  // namespace orv::commands::audit
