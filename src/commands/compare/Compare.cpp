#include "commands/compare/Compare.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

#include "commands/CompactDatabase.h"
#include "commands/LongWork.h"
#include "commands/compare/Fields.h"
#include "commands/compare/Pairing.h"
#include "commands/compare/RecordComparison.h"
#include "commands/compare/RecordReading.h"
#include "database/SameValues.h"
#include "errors/Error.h"

namespace orv::commands::compare {

namespace {

using Node = std::shared_ptr<sources::datasource>;

constexpr RecordKind kKinds[] = {RecordKind::panes, RecordKind::frames, RecordKind::shadings};

/// The record sets of one kind.
struct Parts {
  RecordKind kind;
  Node a;
  Node b;
};

class Work {
 public:
  Work(Session& session, const CompareOptions& options)
      : session_(session),
        options_(options),
        choice_(options.fields, options.ignored),
        progress_(session.ui, "Comparing records...") {
    if (options.tolerance >= 0) return;
    throw Error(kInvalidCall, "A tolerance cannot be below 0.");
  }

  Comparison run(const Node& a, const Node& b) {
    const auto parts = partsOf(a, b);
    constexpr int kSteps = 3;
    progress_.expect(static_cast<int>(parts.size()) * kSteps);
    for (const Parts& each : parts) {
      const RecordSet inA = read(each.a, each.kind);
      RecordSet inB = read(each.b, each.kind);
      if (options_.group) keepGroup(inB);
      tellUnknownFields(inA, inB);
      compare(inA, inB);
      progress_.stepDone();
    }
    return std::move(result_);
  }

 private:
  std::vector<Parts> partsOf(const Node& a, const Node& b) {
    std::vector<Parts> parts;
    for (const RecordKind kind : kKinds) {
      if (kind != options_.kind.value_or(kind)) continue;
      Parts both{kind, partOf(a, kind), partOf(b, kind)};
      if (both.a && both.b) {
        parts.push_back(std::move(both));
      } else if (both.a || both.b) {
        result_.remarks.push_back(fmt::format("{} has no {}: those of {} were not compared.",
                                              both.a ? "B" : "A", setName(kind),
                                              both.a ? "A" : "B"));
      }
    }
    if (!parts.empty()) return parts;
    throw Error(kInvalidCall,
                fmt::format("\"{}\" and \"{}\" do not both have {}.", a->text(), b->text(),
                            options_.kind ? setName(*options_.kind) : "records of one kind"));
  }

  RecordSet read(const Node& node, RecordKind kind) {
    session_.ui.status("Reading " + node->text() + "...");
    const bool wantsCurves = choice_.hasAnyCurve(kind) || options_.match == Match::spectrum ||
                             (kind == RecordKind::panes && choice_.has(kFilmField));
    RecordSet set = readRecordSet({.session = session_,
                                   .node = node,
                                   .kind = kind,
                                   .wantsIntegrated = choice_.hasAnyIntegrated() || wantsCurves,
                                   .wantsCurves = wantsCurves,
                                   .grids = grids_});
    result_.failures.insert(result_.failures.end(), set.failures.begin(), set.failures.end());
    result_.remarks.insert(result_.remarks.end(), set.remarks.begin(), set.remarks.end());
    progress_.stepDone();
    return set;
  }

  void keepGroup(RecordSet& set) const {
    if (!set.hasGroups) return;
    std::erase_if(set.records, [&](const Record& record) {
      return !database::areSameNames(record.group, *options_.group);
    });
  }

  /// Which fields only one of the sources has a place for.
  void tellUnknownFields(const RecordSet& a, const RecordSet& b) {
    if (a.records.empty() || b.records.empty()) return;
    const auto& fields = fieldsOf(a.kind);
    const auto knows = [](const RecordSet& set, std::size_t field) {
      return std::ranges::any_of(
          set.records, [&](const Record& record) { return record.fields[field].has_value(); });
    };
    std::vector<std::string_view> onlyA;
    std::vector<std::string_view> onlyB;
    for (std::size_t i = 0; i < fields.size(); ++i) {
      if (!choice_.has(fields[i].name)) continue;
      const bool inA = knows(a, i);
      const bool inB = knows(b, i);
      if (inA && !inB) onlyA.push_back(fields[i].name);
      if (inB && !inA) onlyB.push_back(fields[i].name);
    }
    tellUnknown(a.kind, "A", std::move(onlyA));
    tellUnknown(a.kind, "B", std::move(onlyB));
  }

  void tellUnknown(RecordKind kind, const char* source, std::vector<std::string_view> names) {
    if (names.empty()) return;
    constexpr std::size_t kMost = 12;
    const std::size_t more = names.size() - std::min(names.size(), kMost);
    names.resize(names.size() - more);
    result_.remarks.push_back(fmt::format("Not compared, since only the {} of {} have it: {}{}.",
                                          setName(kind), source, fmt::join(names, ", "),
                                          more > 0 ? fmt::format(", and {} more", more) : ""));
  }

  void compare(const RecordSet& a, const RecordSet& b) {
    session_.ui.status(fmt::format("Comparing {}...", setName(a.kind)));
    std::vector<Difference> tried;
    RecordComparison trial(a, b, choice_, options_, tried);
    const Pairing pairing = pairUp(a, b, options_,
                                   {.areSame =
                                        [&](const Record& inA, const Record& inB) {
                                          tried.clear();
                                          trial.compare(inA, inB, 0);
                                          return tried.empty();
                                        },
                                    .goOn = [&] { goOn(); }});
    std::ranges::copy(pairing.remarks, std::back_inserter(result_.remarks));
    RecordComparison comparison(a, b, choice_, options_, result_.differences);
    for (const Pair& pair : pairing.pairs) {
      goOn();
      ComparedPair& compared = result_.pairs.emplace_back();
      compared.kind = a.kind;
      compared.isAmbiguous = pair.isAmbiguous;
      if (pair.b) tellOf(b.records[*pair.b], compared.b, compared.groupB, compared.name);
      if (pair.a) tellOf(a.records[*pair.a], compared.a, compared.groupA, compared.name);
      compared.isWithoutData = pair.a && a.records[*pair.a].isWithoutData;
      const std::size_t position = result_.pairs.size() - 1;
      if (pair.a && pair.b) {
        const std::size_t before = result_.differences.size();
        comparison.compare(a.records[*pair.a], b.records[*pair.b], position);
        const bool isSame = before == result_.differences.size();
        compared.state = isSame ? State::same : State::changed;
        continue;
      }
      compared.state = pair.a ? State::removed : State::added;
      result_.differences.push_back({.pair = position});
    }
    tellLeft(a.kind, comparison);
  }

  void goOn() const {
    if (session_.ui.cancelled()) throw Cancelled("The comparison was cancelled.");
  }

  void tellLeft(RecordKind kind, const RecordComparison& comparison) {
    std::vector<std::string> left;
    for (const auto& [name, count] : comparison.leftAsTheyAre()) {
      left.push_back(fmt::format("{} ({})", name, count));
    }
    if (left.empty()) return;
    result_.remarks.push_back(fmt::format(
        "Different, but not brought by a copy, so that it stays as it is in B ({}): {}.",
        setName(kind), fmt::join(left, ", ")));
  }

  static void tellOf(const Record& record, std::vector<std::string>& identifiers,
                     std::string& group, std::string& name) {
    identifiers = record.identifiers;
    group = record.group;
    name = record.name;
  }

  Session& session_;
  const CompareOptions& options_;
  FieldChoice choice_;
  LongWork progress_;
  Grids grids_;
  Comparison result_;
};

}  // namespace

std::string_view nameOf(State state) {
  constexpr std::string_view kNames[] = {"same", "added", "removed", "changed"};
  return kNames[static_cast<std::size_t>(state)];
}

Node partOf(const Node& node, RecordKind kind) {
  if (node->Parent() != nullptr) return recordKind(*node) == kind ? node : nullptr;
  return recordSetOf(node, kind);
}

std::size_t Comparison::count(State state) const {
  return static_cast<std::size_t>(std::ranges::count(pairs, state, &ComparedPair::state));
}

std::string Comparison::summary() const {
  const std::size_t same = count(State::same);
  return fmt::format("{} record{} the same, {} added, {} removed, {} changed.", same,
                     same == 1 ? " is" : "s are", count(State::added), count(State::removed),
                     count(State::changed));
}

Comparison compareSources(Session& session, const Node& a, const Node& b,
                          const CompareOptions& options) {
  return Work(session, options).run(a, b);
}

}  // namespace orv::commands::compare
