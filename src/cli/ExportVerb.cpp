#include <iostream>
#include <map>

#include "cli/Arguments.h"
#include "cli/ColumnsArgument.h"
#include "cli/Verb.h"
#include "commands/ExportRecords.h"
#include "errors/Counted.h"

namespace orv::cli {

namespace {

using commands::ExportForm;

const std::map<std::string, ExportForm> kForms = {
    {"text", ExportForm::text}, {"json", ExportForm::json}, {"csv", ExportForm::csv}};

class ExportVerb : public Verb {
 public:
  explicit ExportVerb(CLI::App& app)
      : Verb(app, "export", "Write panes as text files, JSON or CSV, and shadings as text files",
             "  orv export orvdata.mdb --to panes/\n"
             "  orv export orvdata.mdb 12 13 --to panes/ --overwrite\n"
             "  orv export orvdata.mdb --form json --to products/\n"
             "  orv export orvdata.mdb 12 13 --form csv --single spectra.csv\n"
             "  orv export orvdata.mdb 12 --form json --single -\n"
             "  orv export orvdata.mdb --set shadings --to shadings/\n",
             "What a file needs and the source does not have is filled in, and told; so is what a "
             "file has no place for.") {
    source_.addSource(command());
    addIdentifiers(command(), identifiers_);
    auto* folder = command()
                       .add_option("--to", options_.folder,
                                   "Folder for the files, one a pane and angle; made when it is "
                                   "not there. - is standard output, as with --single")
                       ->type_name("FOLDER");
    command()
        .add_option("--single", single_,
                    "One file for all panes: a list of products, or a table with columns of each "
                    "pane. - is standard output")
        ->type_name("FILE")
        ->excludes(folder);
    command()
        .add_option("--form", options_.form,
                    "Form of the files: text (default), json (products with all that the records "
                    "hold) or csv (the spectra)")
        ->transform(oneOf(kForms))
        ->type_name("FORM");
    command().add_flag("--overwrite", options_.overwrite,
                       "Replace files of the same names; otherwise new files get other names");
    source_.addOptions(command());
    source_.addWhere(command());
    addQuiet(command(), answers_.quiet);
    source_.addTolerant(command());
    ColumnsArgument::refuseIn(command());
  }

  ExitCode run(Console& console) override {
    const std::string file = options_.folder == kStandardStream ? kStandardStream : single_;
    if (file.empty() && options_.folder.empty()) {
      throw wrongUse("Where to write has to be given: --to FOLDER or --single FILE.");
    }
    console.ui.answers(answers_);
    const Node node = source_.openRecordSet(console);
    const auto records = source_.select(console, node, identifiers_);
    return file.empty() ? exportSeparately(console, records)
                        : exportIntoOne(console, records, file);
  }

 private:
  ExitCode exportSeparately(Console& console, const sources::RecordSelection& records) {
    const auto result =
        usedRightly([&] { return commands::exportRecords(console.session, records, options_); });
    for (const std::string& file : result.files) std::cout << file << '\n';
    if (!answers_.quiet) {
      tell(result);
      tellEnd(std::cout, counted(result.files.size(), "file"), options_.folder, result);
    }
    return exitOf(result);
  }

  /// The data are what goes to standard output, where they are to go there; the rest is told
  /// beside.
  ExitCode exportIntoOne(Console& console, const sources::RecordSelection& records,
                         const std::string& file) {
    const bool toOutput = file == kStandardStream;
    const auto result = usedRightly(
        [&] { return commands::exportJoined(console.session, records, options_.form); });
    if (toOutput) {
      std::cout << result.text;
    } else if (!result.text.empty()) {
      usedRightly([&] { commands::writeJoined(file, result.text, options_.overwrite); });
    }
    if (!answers_.quiet) {
      tell(result);
      tellEnd(toOutput ? std::cerr : std::cout,
              result.text.empty() ? "Nothing is" : counted(result.dataSets, "pane"),
              toOutput ? "standard output" : file, result);
    }
    return exitOf(result);
  }

  template <class Result>
  static ExitCode exitOf(const Result& result) {
    return result.failed == 0 && !result.cancelled ? kAllWell : kRecordsFailed;
  }

  template <class Result>
  static void tell(const Result& result) {
    for (const commands::Note& note : result.filled.list()) {
      std::cerr << "orv: filled in: " << note.line() << '\n';
    }
    tellNotKept(result.notKept, "the file");
  }

  template <class Result>
  static void tellEnd(std::ostream& out, const std::string& what, const std::string& place,
                      const Result& result) {
    out << what << " written to " << place;
    if (result.failed > 0) out << ", " << counted(result.failed, "record") << " failed";
    out << (result.cancelled ? ", then cancelled.\n" : ".\n");
  }

  SourceArgument source_;
  std::vector<std::string> identifiers_;
  commands::ExportOptions options_;
  std::string single_;
  Answers answers_;
};

}  // namespace

std::unique_ptr<Verb> makeExportVerb(CLI::App& app) {
  return std::make_unique<ExportVerb>(app);
}

}  // namespace orv::cli
