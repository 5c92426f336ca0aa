// Which record of one source is which of the other.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "commands/compare/Compare.h"
#include "commands/compare/Record.h"

namespace orv::commands::compare {

/// Positions of a record in A and in B, one at least.
struct Pair {
  std::optional<std::size_t> a = {};
  std::optional<std::size_t> b = {};
  bool isAmbiguous = false;
};

struct Pairing {
  std::vector<Pair> pairs = {};  ///< in the order of A, then those only in B
  std::vector<std::string> remarks = {};
};

/// Puts records together. Of several that are alike in one source the first goes with the first of
/// the other, the second with the second, and so on; that is remarked.
Pairing pairUp(const RecordSet& a, const RecordSet& b, const CompareOptions& options);

}  // namespace orv::commands::compare
