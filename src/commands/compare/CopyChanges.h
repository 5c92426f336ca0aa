// Copying of what differs between two sources.
#pragma once

#include <functional>
#include <vector>

#include "commands/PasteRecords.h"
#include "commands/compare/Compare.h"

namespace orv::commands::compare {

/// Positions of the pairs whose record in A a copy would bring into B: those that are only in A
/// (`State::removed`) and those that differ. Where several records of one name were put together by
/// their order, nobody knows which of them would be replaced: they are left out, and the names of
/// those that differ are added to `ambiguous`.
std::vector<std::size_t> copyablePairs(const Comparison& comparison,
                                       std::vector<std::string>& ambiguous);

/// The group that the record of a pair goes into: that of A, else that of the record in B; empty
/// where neither is known.
const std::string& groupOf(const ComparedPair& pair);

using EachResult = std::function<void(const PasteResult&)>;

/// Copies the records of these pairs from A into B, a database of version 3.0.0 or a record set of
/// one, each in one commit; those that are there are replaced as a whole and keep their keys. One
/// that is only in A replaces nothing: where the destination has it all the same it fails. A record
/// goes into its group, or into `options.group` where that is given; for those that have
/// none the user is asked. Gives what came of each group of records to `each`, and all numbers
/// back.
PasteResult copyPairs(Session& session, const std::shared_ptr<sources::datasource>& a,
                      const std::shared_ptr<sources::datasource>& b, const Comparison& comparison,
                      const std::vector<std::size_t>& pairs, PasteOptions options,
                      const EachResult& each);

}  // namespace orv::commands::compare
