#include "cli/ComparedRows.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

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

bool continuesCharacter(const std::string& text, std::size_t at) {
  return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
}

/// What a table shows of a text that begins to be another at `differs`.
store::Value part(const store::Value& value, std::size_t differs) {
  constexpr std::size_t kMost = 60;
  constexpr std::size_t kBefore = 15;
  const auto* text = value.getIf<std::string>();
  if (text == nullptr || text->size() <= kMost) return value;
  std::size_t begin = differs + kBefore < kMost ? 0 : differs - kBefore;
  while (begin > 0 && continuesCharacter(*text, begin)) --begin;
  std::size_t end = std::min(begin + kMost, text->size());
  while (continuesCharacter(*text, end)) --end;
  return (begin > 0 ? "…" : "") + text->substr(begin, end - begin) +
         (end < text->size() ? "…" : "");
}

std::size_t firstDifference(const store::Value& a, const store::Value& b) {
  const auto* inA = a.getIf<std::string>();
  const auto* inB = b.getIf<std::string>();
  if (inA == nullptr || inB == nullptr) return 0;
  return static_cast<std::size_t>(std::ranges::mismatch(*inA, *inB).in1 - inA->begin());
}

}  // namespace

std::vector<store::Value> ComparedRows::cells(std::string_view state, const ComparedPair& pair,
                                              const Difference& difference, Format format) const {
  const std::size_t differs = firstDifference(difference.a, difference.b);
  const auto shown = [&](const store::Value& value) {
    return format == Format::table ? part(value, differs) : value;
  };
  return {std::string(state),
          commands::setName(pair.kind),
          identifiersValue(a_, pair.kind, pair.a),
          identifiersValue(b_, pair.kind, pair.b),
          pair.name,
          difference.angle ? store::Value(*difference.angle) : store::Value(),
          difference.field,
          shown(difference.a),
          shown(difference.b)};
}

void ComparedRows::write(const Comparison& comparison, Format format, std::ostream& out) const {
  if (comparison.isEqual()) return;
  const auto writer = makeRowWriter(format, kComparedHeadings, out);
  for (const Difference& each : comparison.differences) {
    const ComparedPair& pair = comparison.pairs[each.pair];
    writer->row(cells(nameOf(pair.state), pair, each, format));
  }
  writer->end();
}

void ComparedRows::writeChanges(const Comparison& comparison, const std::vector<std::size_t>& pairs,
                                Format format, std::ostream& out) const {
  const auto writer = makeRowWriter(format, kComparedHeadings, out);
  for (const Difference& each : comparison.differences) {
    if (!std::ranges::binary_search(pairs, each.pair)) continue;
    const ComparedPair& pair = comparison.pairs[each.pair];
    const State state = pair.state == State::removed ? State::added : pair.state;
    writer->row(cells(nameOf(state), pair, each, format));
  }
  writer->end();
}

}  // namespace orv::cli
