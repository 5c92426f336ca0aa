#include <iostream>

#include "cli/Arguments.h"
#include "cli/Verb.h"
#include "commands/ExportRecords.h"

namespace orv::cli {

namespace {

class ExportVerb : public Verb {
 public:
  explicit ExportVerb(CLI::App& app)
      : Verb(app, "export", "Write panes or shadings as text files",
             "  orv export orvdata.mdb --to panes/\n"
             "  orv export orvdata.mdb 12 13 --to panes/ --overwrite\n"
             "  orv export orvdata.mdb --set shadings --to shadings/\n") {
    source_.addSource(command());
    command()
        .add_option("ID", identifiers_, "Identifiers of the records; all when none is given")
        ->type_name("");
    command()
        .add_option("--to", options_.folder, "Folder for the files; made when it is not there")
        ->required()
        ->type_name("FOLDER");
    command().add_flag("--overwrite", options_.overwrite,
                       "Replace files of the same names; otherwise new files get other names");
    source_.addOptions(command());
    source_.addWhere(command());
    addQuiet(command(), answers_.quiet);
    source_.addTolerant(command());
  }

  ExitCode run(Console& console) override {
    const Node node = source_.openRecordSet(console);
    if (commands::recordKind(*node) == commands::RecordKind::frames) {
      throw wrongUse("Frames cannot be written as text files, only panes and shadings.");
    }
    console.ui.answers(answers_);
    const auto result =
        commands::exportRecords(console.session, source_.select(node, identifiers_), options_);
    for (const std::string& file : result.files) std::cout << file << '\n';
    if (!answers_.quiet) tell(result);
    return result.failed == 0 && !result.cancelled ? kAllWell : kRecordsFailed;
  }

 private:
  void tell(const commands::ExportResult& result) const {
    for (const commands::Note& note : result.filled.list()) {
      std::cerr << "orv: filled in: " << note.line() << '\n';
    }
    tellNotKept(result.notKept, "a text file");
    std::cout << counted(result.files.size(), "file") << " written to " << options_.folder;
    if (result.failed > 0) std::cout << ", " << counted(result.failed, "record") << " failed";
    std::cout << (result.cancelled ? ", then cancelled.\n" : ".\n");
  }

  SourceArgument source_;
  std::vector<std::string> identifiers_;
  commands::ExportOptions options_;
  Answers answers_;
};

}  // namespace

std::unique_ptr<Verb> makeExportVerb(CLI::App& app) {
  return std::make_unique<ExportVerb>(app);
}

}  // namespace orv::cli
