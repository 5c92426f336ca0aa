#include <iostream>

#include "cli/Arguments.h"
#include "cli/ComparedRows.h"
#include "cli/Verb.h"
#include "commands/compare/Compare.h"

namespace orv::cli {

namespace {

using commands::compare::CompareOptions;
using commands::compare::Comparison;
using commands::compare::Match;

const std::map<std::string, Match> kMatches{{"name", Match::name},
                                            {"id", Match::id},
                                            {"filename", Match::filename},
                                            {"spectrum", Match::spectrum}};

class DiffVerb : public Verb {
 public:
  explicit DiffVerb(CLI::App& app)
      : Verb(app, "diff", "Tell what differs between two sources, and change nothing",
             "  orv diff orvdata.mdb changed.mdb\n"
             "  orv diff glazing.mdb orvdata.mdb --format tsv\n"
             "  orv diff measured-panes/ orvdata.mdb --fields thickness,spectrum\n"
             "  orv diff old.mdb orvdata.mdb --set frames --ignore supplier --tolerance 0.001\n"
             "  orv diff old.mdb orvdata.mdb --match spectrum\n",
             "Records are put together by name and group. Of those that both sources have each "
             "field that differs is told, of a spectrum each curve with its largest difference; "
             "added are records that are only in B, removed those only in A. The exit status is 0 "
             "when nothing differs, and nothing is written then; 1 when something does; and 3 when "
             "a source or a record cannot be read.") {
    const char* const help = "Sources of any kinds: databases, folders, files";
    command().add_option("A", a_, help)->required()->type_name("");
    command().add_option("B", b_, help)->required()->type_name("");
    source_.addOptions(command(), "Only these records: panes, frames or shadings");
    source_.addTolerant(command());
    source_.addSourceOptions(command());
    command()
        .add_option("--match", options_.match,
                    "Put records together by name (default; and group), id, filename (without its "
                    "extension, whatever the group) or spectrum")
        ->transform(oneOf(kMatches))
        ->type_name("BY");
    addNames(command(), "--fields", options_.fields,
             "Compare only these fields, as show names them, parted by commas; spectrum and "
             "\"integrated values\" stand for all of theirs");
    addNames(command(), "--ignore", options_.ignored, "Compare all fields but these");
    command()
        .add_option("--tolerance", options_.tolerance,
                    "How far apart numbers may be that count as the same (default: 0)")
        ->type_name("X");
    addQuiet(command(), answers_.quiet);
    addFormat(command(), format_);
  }

  ExitCode run(Console& console) override {
    source_.applyTo(console);
    console.ui.answers(answers_);
    options_.kind = source_.kind();
    const auto paths = source_.withInput(console, {a_, b_});
    const Node a = open(console, paths[0]);
    const Node b = open(console, paths[1]);
    source_.requireTexts({a, b});
    const Comparison comparison = opening([&] {
      return usedRightly(
          [&] { return commands::compare::compareSources(console.session, a, b, options_); });
    });
    ComparedRows(a, b).write(comparison, format_, std::cout);
    tellFailures(comparison.failures);
    if (!answers_.quiet) {
      tellFailures(comparison.remarks);
      std::cerr << "orv: " << comparison.summary() << '\n';
    }
    if (!comparison.failures.empty()) return kCannotOpen;
    return comparison.isEqual() ? kAllWell : kRecordsFailed;
  }

 private:
  Node open(Console& console, const std::string& path) const {
    return opening([&] {
      return source_.withPassword(console, [&] {
        return commands::SourceOpener(console.session).openAny(path, source_.textKind());
      });
    });
  }

  std::string a_;
  std::string b_;
  SourceArgument source_;
  CompareOptions options_;
  Format format_ = Format::table;
  Answers answers_;
};

}  // namespace

std::unique_ptr<Verb> makeDiffVerb(CLI::App& app) {
  return std::make_unique<DiffVerb>(app);
}

}  // namespace orv::cli
