#include <algorithm>
#include <filesystem>
#include <iostream>
#include <map>

#include "cli/Arguments.h"
#include "cli/ChangedCopy.h"
#include "cli/ColumnsArgument.h"
#include "cli/Verb.h"
#include "commands/ChangeHistory.h"
#include "commands/CopyRules.h"
#include "commands/GroupName.h"
#include "commands/PasteRecords.h"
#include "commands/edit/Field.h"
#include "errors/Counted.h"

namespace orv::cli {

namespace {

const std::map<std::string, SubstratePolicy> kPolicies = {{"ask", SubstratePolicy::ask},
                                                          {"drop", SubstratePolicy::drop},
                                                          {"refuse", SubstratePolicy::refuse}};

class CopyVerb : public Verb {
 public:
  explicit CopyVerb(CLI::App& app)
      : Verb(app, "copy", "Copy records into an ORV database of version 3.0.0",
             "  orv copy measured-panes/ orvdata.mdb --group Demo\n"
             "  orv copy clear.txt lowe.txt orvdata.mdb --group Demo\n"
             "  orv copy catalogue.json orvdata.mdb catalogue.json#/3 --group Demo\n"
             "  orv copy glazing.mdb orvdata.mdb CLEAR_3.DAT CLEAR_6.DAT\n"
             "  orv copy old.mdb orvdata.mdb --set frames --group Old\n"
             "  orv copy colleague.mdb orvdata.mdb --changed --dry-run\n"
             "  orv copy - orvdata.mdb --name clear.json --group Demo < product.json\n",
             "Each record is copied entirely or not at all. What it loses on its way is told.") {
    command()
        .add_option(
            "SOURCE... DB [ID]", arguments_,
            "Sources: a database, a folder, or one or several text files or files of products "
            "(.json), of which - is one from the standard input; the database to copy into; and "
            "identifiers of records, all when none is given")
        ->required()
        ->expected(2, -1)
        ->type_name("");
    source_.addOptions(command());
    source_.addTolerant(command());
    source_.addWhere(command());
    source_.addSourceOptions(command());
    ColumnsArgument::refuseIn(command());
    addQuiet(command(), answers_.quiet);
    addForce(command(), answers_.force);
    command()
        .add_option(
            "--group", answers_.group,
            "Group to put the records into. It is asked for on a terminal where it is needed "
            "and missing; panes of the IGDB need none")
        ->type_name("NAME");
    command()
        .add_option("--substrate", substrate_,
                    "Panes whose substrate has no data at the same wavelengths: ask (default on a "
                    "terminal), drop the substrate, or refuse the pane (default elsewhere)")
        ->transform(oneOf(kPolicies))
        ->type_name("ANSWER");
    auto* replace = command().add_flag("--replace", replace_,
                                       "Replace records of the same name and group, which keep "
                                       "their keys: a pane of a database as a whole, a text file "
                                       "the data at its angle");
    auto* skip = command()
                     .add_flag("--skip-existing", skipExisting_,
                               "Pass over records of the same name and group; they are counted, "
                               "and are no failure")
                     ->excludes(replace);
    changed_.addTo(command(), answers_.yes)->excludes(replace)->excludes(skip);
    auto* standard =
        command()
            .add_option("--standard", standard_,
                        "Standard by which integrated values are computed where the source has "
                        "none: nfrc300, en410 (default) or iso9050")
            ->transform(oneOf(kStandards))
            ->type_name("NAME");
    command()
        .add_flag("--no-integrate", doesNotIntegrate_,
                  "Store the integrated values as the source has them, 0 where it has none")
        ->excludes(standard);
  }

  ExitCode run(Console& console) override {
    checkOptions();
    source_.applyTo(console);
    console.ui.answers(answers_);
    commands::SourceOpener opener(console.session);
    const auto split = findDestination();
    const auto paths = source_.withInput(console, {arguments_.cbegin(), split});
    const auto nodes = opening([&] {
      return source_.withPassword(console,
                                  [&] { return opener.openAll(paths, source_.textKind()); });
    });
    source_.requireTexts(nodes);
    checkUseOfGroup(nodes);
    const Node destination = destinationNode(console, nodes, opener, *split);
    settleGroup(console, *destination);
    const std::vector<std::string> identifiers(split + 1, arguments_.cend());
    if (changed_.isWanted()) return copyChanges(console, nodes, destination, identifiers);
    if (nodes.size() > 1 && !identifiers.empty()) {
      throw wrongUse("Identifiers of records can be given for one source only.");
    }
    commands::PasteResult total;
    std::optional<commands::HistoryScope> history;
    if (nodes.size() > 1) {
      history.emplace(console.ui, *destination->ADOConnection(),
                      "Copy the records of " + counted(nodes.size(), "source"));
    }
    for (const Node& node : nodes) {
      const auto result = copy(console, source_.recordSet(node), destination, identifiers);
      total.add(result);
      if (result.cancelled || result.refused) break;
    }
    if (!total.refused && !answers_.quiet) std::cout << total.summary() << '\n';
    return exitOf(total);
  }

 private:
  using Position = std::vector<std::string>::const_iterator;

  void checkOptions() {
    if (!answers_.group.empty()) {
      const std::string refusal = commands::groupNameRefusal(answers_.group);
      if (!refusal.empty()) throw wrongUse(refusal);
    }
    answers_.substrate =
        substrate_.value_or(canAsk() ? SubstratePolicy::ask : SubstratePolicy::refuse);
    if (answers_.substrate == SubstratePolicy::ask && !canAsk()) {
      throw wrongUse("--substrate ask needs a terminal to ask on.");
    }
  }

  /// The group as the database can hold it, by the rules of an edit.
  void settleGroup(Console& console, const sources::datasource& destination) {
    const bool isFit = destination.DataType() == sources::DataType::orvDatabase3;
    if (answers_.group.empty() || !isFit) return;  // what is unfit is refused by itself
    using namespace commands::edit;
    for (const EditField& field : editFields(EditSet::panes, *destination.ADOConnection())) {
      if (field.name != commands::kGroupField) continue;
      answers_.group = usedRightly([&] { return fieldValue(field, answers_.group).toText(); });
    }
    console.ui.answers(answers_);
  }

  /// Panes of the IGDB go into a group of their own.
  void checkUseOfGroup(const std::vector<Node>& sources) const {
    if (answers_.group.empty()) return;
    const auto igdbs = std::count_if(sources.begin(), sources.end(), [](const Node& source) {
      return source->DataType() == sources::DataType::igdb;
    });
    if (igdbs == 0) return;
    const std::string reason = "The panes of the IGDB go into the group IGDB";
    if (igdbs == std::ssize(sources)) throw wrongUse(reason + ": leave --group out.");
    if (answers_.quiet) return;
    std::cerr << "orv: " << reason << "; " << answers_.group << " is for the others.\n";
  }

  /// The first database behind the first argument.
  Position findDestination() const {
    const auto found = std::find_if(arguments_.begin() + 1, arguments_.end(), [](const auto& path) {
      return commands::isDatabaseFile(path);
    });
    if (found != arguments_.end()) return found;
    const std::string& second = arguments_[1];
    refuseStandardStream(second);
    if (std::filesystem::exists(second))
      throw Failure(kCannotOpen, "No database to copy into is among the arguments.");
    throw Failure(kCannotOpen, "There is no database \"" + second +
                                   "\". An empty one is made with: orv new " + second);
  }

  /// The node of a source, when the database is one of the sources too.
  Node destinationNode(Console& console, const std::vector<Node>& sources,
                       commands::SourceOpener& opener, const std::string& path) const {
    for (const Node& source : sources) {
      const auto file = std::filesystem::path(source->Folder()) / source->filename();
      if (std::filesystem::equivalent(file, path)) return source;
    }
    return opening(
        [&] { return source_.withPassword(console, [&] { return opener.openAny(path); }); });
  }

  commands::PasteResult copy(Console& console, const Node& node, const Node& destination,
                             const std::vector<std::string>& identifiers) const {
    requireGroup(*node);
    const auto result = commands::pasteRecords(
        console.session, source_.select(console, node, identifiers), destination, options());
    if (!result.refused && !answers_.quiet) tell(result);
    return result;
  }

  ExitCode copyChanges(Console& console, const std::vector<Node>& nodes, const Node& destination,
                       const std::vector<std::string>& identifiers) const {
    if (nodes.size() > 1) throw wrongUse("--changed is for one source.");
    if (!identifiers.empty() || source_.hasConditions()) {
      throw wrongUse("--changed chooses the records by itself: leave identifiers and --where out.");
    }
    if (destination->DataType() != sources::DataType::orvDatabase3) {
      throw wrongUse("Changes can only be copied into an ORV database of version 3.0.0.");
    }
    commands::PasteOptions pasting = options();
    pasting.group = answers_.group;
    const auto outcome = changed_.run(console, {.a = nodes.front(),
                                                .b = destination,
                                                .kind = source_.kind(),
                                                .options = pasting,
                                                .isQuiet = answers_.quiet});
    if (outcome.wasTried && !outcome.result.refused && !answers_.quiet) {
      tell(outcome.result);
      changed_.summaryStream() << outcome.result.summary() << '\n';
    }
    const ExitCode exit = exitOf(outcome.result);
    const bool isLeft = outcome.leftOut > 0 || (outcome.isDue && !outcome.wasTried);
    return exit == kAllWell && isLeft ? kRecordsFailed : exit;
  }

  static ExitCode exitOf(const commands::PasteResult& result) {
    if (result.refused) return kWrongUse;
    const bool allWell =
        result.failed == 0 && result.partly == 0 && result.withoutData == 0 && !result.cancelled;
    return allWell ? kAllWell : kRecordsFailed;
  }

  /// What the records lost on their way, or gained.
  static void tell(const commands::PasteResult& result) {
    for (const commands::Note& note : result.notes.list()) {
      std::cerr << "orv: " << note.line() << '\n';
    }
    if (!result.zeros.list().empty()) {
      std::cerr << "orv: not given by the source, 0 is stored: " << result.zeros.counts() << ".\n";
    }
    tellNotKept(result.notKept, "an ORV database");
  }

  commands::PasteOptions options() const {
    commands::PasteOptions options{.ifThere = ifThere(), .integrateBy = standard_};
    if (doesNotIntegrate_) options.integrateBy.reset();
    return options;
  }

  std::optional<commands::IfThere> ifThere() const {
    if (replace_) return commands::IfThere::replace;
    if (skipExisting_) return commands::IfThere::skip;
    return std::nullopt;
  }

  void requireGroup(const sources::datasource& node) const {
    const auto database = node.Parent();
    const bool isIgdb = database && database->DataType() == sources::DataType::igdb;
    if (!isIgdb && answers_.group.empty() && !canAsk()) {
      throw wrongUse("The group to put the records into has to be given with --group NAME.");
    }
  }

  SourceArgument source_;
  std::vector<std::string> arguments_;
  Answers answers_;
  std::optional<SubstratePolicy> substrate_;
  bool replace_ = false;
  bool skipExisting_ = false;
  ChangedCopy changed_;
  optics::Standard standard_ = optics::kUsualStandard;
  bool doesNotIntegrate_ = false;
};

}  // namespace

std::unique_ptr<Verb> makeCopyVerb(CLI::App& app) {
  return std::make_unique<CopyVerb>(app);
}

}  // namespace orv::cli
