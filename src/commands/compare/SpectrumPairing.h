// Records with the same curves.
#pragma once

#include <vector>

#include "commands/compare/Record.h"

namespace orv::commands::compare {

/// Positions of two records.
struct SpectrumMatch {
  std::size_t a = 0;
  std::size_t b = 0;
  bool isAmbiguous = false;  ///< B has others with these curves
};

/// Finds for each record of A that has curves one of B with the same curves within the tolerance;
/// of several one of the same name, or the first that is left.
std::vector<SpectrumMatch> matchSpectra(const RecordSet& a, const RecordSet& b, double tolerance);

}  // namespace orv::commands::compare
