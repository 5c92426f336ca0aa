// Which record of one source is which of the other.
#pragma once

#include <functional>
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

/// What the pairing asks of whoever compares.
struct PairingTools {
  std::function<bool(const Record& a, const Record& b)> areSame;
  std::function<void()> goOn;  ///< raises where the user wants the work to end
};

/// Puts records together. Of several that are alike in one source those that are the same go
/// together first, then those of one key in databases of one kind, then the first with the first of
/// the other that is left, the second with the second, and so on; that is remarked.
Pairing pairUp(const RecordSet& a, const RecordSet& b, const CompareOptions& options,
               const PairingTools& tools);

/// What records have in common that are one to a database, when they are in one group.
std::string nameKey(const std::string& name, const std::string& group);

}  // namespace orv::commands::compare
