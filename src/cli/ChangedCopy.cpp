#include "cli/ChangedCopy.h"

#include <fmt/format.h>

#include <algorithm>
#include <iostream>

#include "cli/ComparedRows.h"
#include "commands/compare/CopyChanges.h"
#include "errors/Counted.h"

namespace orv::cli {

using commands::compare::ComparedPair;
using commands::compare::Comparison;
using commands::compare::State;

namespace {

/// What is new to B is only in A.
const std::map<std::string, State> kStatesToCopy{{"added", State::removed},
                                                 {"changed", State::changed}};

std::size_t countOf(const Comparison& comparison, const std::vector<std::size_t>& pairs,
                    State state) {
  return static_cast<std::size_t>(std::ranges::count_if(
      pairs, [&](std::size_t each) { return comparison.pairs[each].state == state; }));
}

constexpr const char* kNoGroup =
    "The group to put new records into has to be given with --group NAME.";

bool haveGroups(const Comparison& comparison, const std::vector<std::size_t>& pairs) {
  return std::ranges::none_of(pairs, [&](std::size_t each) {
    return commands::compare::groupOf(comparison.pairs[each]).empty();
  });
}

}  // namespace

CLI::Option* ChangedCopy::addTo(CLI::App& command, bool& yes) {
  yes_ = &yes;
  auto* changed = command.add_flag(
      "--changed", isWanted_,
      "Copy only what is new in the source or differs from the database, of all kinds of record "
      "unless --set is given, after the list and a question. Records keep their groups, or go into "
      "that of --group, with whose records they are compared then");
  command
      .add_option("--only", only_,
                  "With --changed, copy only what is added, or only what is changed")
      ->transform(oneOf(kStatesToCopy))
      ->type_name("STATE")
      ->needs(changed);
  command
      .add_option("--tolerance", tolerance_,
                  "With --changed, how far apart numbers may be that count as the same (default: "
                  "0)")
      ->type_name("X")
      ->needs(changed);
  command
      .add_flag("--dry-run", isRehearsal_,
                "With --changed, show the list and copy nothing; the exit status is 1 where "
                "something is to be copied")
      ->needs(changed);
  command.add_flag("--yes", yes, "With --changed, do not ask")->needs(changed);
  addFormat(command, format_)->needs(changed);
  return changed;
}

std::vector<std::size_t> ChangedCopy::wanted(const Comparison& comparison, const std::string& group,
                                             Outcome& outcome) const {
  auto copyable = commands::compare::copyablePairs(comparison, group);
  outcome.leftOut = copyable.leftOut() + comparison.failures.size();
  tellFailures(comparison.failures);
  tellFailures(copyable.remarks());
  std::erase_if(copyable.pairs,
                [&](std::size_t each) { return only_ && comparison.pairs[each].state != *only_; });
  return copyable.pairs;
}

/// The list is left out only where nobody is asked.
void ChangedCopy::show(const Request& request, const Comparison& comparison,
                       const std::vector<std::size_t>& pairs) const {
  if (request.isQuiet && *yes_ && !isRehearsal_) return;
  if (!request.isQuiet) tellFailures(comparison.remarks);
  if (!pairs.empty()) {
    ComparedRows(request.a, request.b).writeChanges(comparison, pairs, format_, std::cout);
  } else if (!request.isQuiet && format_ == Format::table) {
    std::cout << "There is nothing to copy.\n";
  }
}

bool ChangedCopy::isConfirmed(Console& console, const Comparison& comparison,
                              const std::vector<std::size_t>& pairs) const {
  if (!*yes_ && !canAsk()) {
    throw wrongUse(
        "Without a terminal to ask on, a copy of changes has to be confirmed with --yes.");
  }
  const std::string text = fmt::format(
      "Add {} and replace {}?", counted(countOf(comparison, pairs, State::removed), "record"),
      countOf(comparison, pairs, State::changed));
  return console.ui.ask({text, commands::kApplicationTitle, commands::Buttons::yesNoCancel,
                         commands::Answer::no}) == commands::Answer::yes;
}

ChangedCopy::Outcome ChangedCopy::run(Console& console, const Request& request) const {
  commands::compare::CompareOptions options{
      .tolerance = tolerance_, .kind = request.kind, .isForCopy = true};
  if (!request.options.group.empty()) options.group = request.options.group;
  const Comparison comparison = opening([&] {
    return usedRightly(
        [&] { return compareSources(console.session, request.a, request.b, options); });
  });
  Outcome outcome;
  const auto pairs = wanted(comparison, request.options.group, outcome);
  show(request, comparison, pairs);
  outcome.isDue = !pairs.empty();
  const bool lacksGroup = request.options.group.empty() && !haveGroups(comparison, pairs);
  if (isRehearsal_ && lacksGroup && !request.isQuiet) tellFailures({kNoGroup});
  if (isRehearsal_ || pairs.empty()) return outcome;
  if (lacksGroup && !canAsk()) throw wrongUse(kNoGroup);
  outcome.wasTried = true;
  if (!isConfirmed(console, comparison, pairs)) {
    outcome.result.cancelled = true;
    return outcome;
  }
  commands::PasteOptions pasting = request.options;
  pasting.tolerance = tolerance_;
  outcome.result =
      copyPairs(console.session, request.a, request.b, comparison, pairs, pasting, [](auto&) {});
  return outcome;
}

}  // namespace orv::cli
