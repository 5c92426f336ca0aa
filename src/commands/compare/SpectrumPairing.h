// Records with the same curves.
#pragma once

#include <functional>
#include <vector>

#include "commands/compare/Record.h"

namespace orv::commands::compare {

/// Positions of two records.
struct SpectrumMatch {
  std::size_t a = 0;
  std::size_t b = 0;
  bool isAmbiguous = false;  ///< another of B has these curves, too, and none has the name
};

/// Finds for each record of A that has curves one of B with the same curves within the tolerance:
/// first those of the same name, then of those that are left the first. Calls `goOn` often.
std::vector<SpectrumMatch> matchSpectra(const RecordSet& a, const RecordSet& b, double tolerance,
                                        const std::function<void()>& goOn);

}  // namespace orv::commands::compare
