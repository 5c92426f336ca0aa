#include "cli/ComparedRows.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>

namespace orv::cli {

using commands::compare::ComparedPair;
using commands::compare::Comparison;
using commands::compare::Difference;
using commands::compare::State;

namespace {

const std::vector<std::string> kComparedHeadings{"state", "set",   "id_a", "id_b", "name",
                                                 "angle", "field", "a",    "b"};

store::Value identifiersValue(const Node& source, commands::RecordKind kind,
                              const std::vector<std::string>& identifiers) {
  if (identifiers.empty()) return {};
  if (identifiers.size() == 1) {
    return identifierValue(*commands::compare::partOf(source, kind), identifiers.front());
  }
  return fmt::format("{}", fmt::join(identifiers, ", "));
}

store::Value angleValue(const std::optional<double>& angle) {
  if (!angle) return {};
  const double whole = std::nearbyint(*angle);
  return whole == *angle ? store::Value(static_cast<std::int32_t>(whole)) : store::Value(*angle);
}

}  // namespace

std::vector<store::Value> ComparedRows::cells(std::string_view state, const ComparedPair& pair,
                                              const Difference& difference) const {
  return {std::string(state),
          std::string(commands::compare::nameOf(pair.kind)),
          identifiersValue(a_, pair.kind, pair.a),
          identifiersValue(b_, pair.kind, pair.b),
          pair.name,
          angleValue(difference.angle),
          difference.field,
          difference.a,
          difference.b};
}

void ComparedRows::write(const Comparison& comparison, Format format, std::ostream& out) const {
  if (comparison.isEqual()) return;
  const auto writer = makeRowWriter(format, kComparedHeadings, out);
  for (const Difference& each : comparison.differences) {
    const ComparedPair& pair = comparison.pairs[each.pair];
    writer->row(cells(nameOf(pair.state), pair, each));
  }
  writer->end();
}

void ComparedRows::writeChanges(const Comparison& comparison, const std::vector<std::size_t>& pairs,
                                std::ostream& out) const {
  const auto writer = makeRowWriter(Format::table, kComparedHeadings, out);
  for (const Difference& each : comparison.differences) {
    if (!std::ranges::binary_search(pairs, each.pair)) continue;
    const ComparedPair& pair = comparison.pairs[each.pair];
    const State state = pair.state == State::removed ? State::added : pair.state;
    writer->row(cells(nameOf(state), pair, each));
  }
  writer->end();
}

}  // namespace orv::cli
