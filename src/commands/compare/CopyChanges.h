// Copying of what differs between two sources.
#pragma once

#include <functional>
#include <vector>

#include "commands/PasteRecords.h"
#include "commands/compare/Compare.h"

namespace orv::commands::compare {

/// What of A a copy would bring into B, and what it would not, by names.
struct Copyable {
  /// Positions of the pairs: those that are only in A (`State::removed`) and those that differ.
  std::vector<std::size_t> pairs = {};
  /// Of several records of one name nobody knows which would be replaced.
  std::vector<std::string> ambiguous = {};
  /// Panes and frames of A of which only the first can go into the group.
  std::vector<std::string> clashing = {};
  /// Panes with data at no angle.
  std::vector<std::string> withoutData = {};

  std::size_t leftOut() const { return ambiguous.size() + clashing.size(); }
  /// Why records are left out; sentences.
  std::vector<std::string> remarks() const;
};

/// `group` is that into which all go; empty where each keeps its own.
Copyable copyablePairs(const Comparison& comparison, const std::string& group = {});

/// The group that the record of a pair goes into: that of A, else that of the record in B; empty
/// where neither is known.
const std::string& groupOf(const ComparedPair& pair);

using EachResult = std::function<void(const PasteResult&)>;

/// Copies the records of these pairs from A into B, a database of version 3.0.0 or a record set of
/// one, each in one commit. Of those that are there what differs is replaced, and they keep their
/// keys. One that is only in A replaces nothing: where the destination has it all the same it
/// fails. The options have the tolerance of the comparison. A record goes into its group, or into
/// `options.group` where that is given; for those that have none the user is asked. Gives what came
/// of each group of records to `each`, and all numbers back.
PasteResult copyPairs(Session& session, const std::shared_ptr<sources::datasource>& a,
                      const std::shared_ptr<sources::datasource>& b, const Comparison& comparison,
                      const std::vector<std::size_t>& pairs, PasteOptions options,
                      const EachResult& each);

}  // namespace orv::commands::compare
