#include "cli/Verb.h"

namespace orv::cli {

std::unique_ptr<CLI::App> makeApp() {
  auto app = std::make_unique<CLI::App>(
      "Keeps the optical and thermal data of building glazing in ORV databases.", "orv");
  app->footer(
      "Run \"orv VERB --help\" for the arguments of a verb and examples.\n"
      "Exit codes: 0 all went well; 1 some records failed, differ or have faults; 2 wrong use; 3 a "
      "file cannot be opened or written.");
  app->set_help_flag("-h,--help", "Explain orv or, after a verb, the verb, with examples");
  app->set_version_flag("--version", std::string("orv ") + ORV_VERSION, "Show the version");
  app->failure_message([](const CLI::App* command, const CLI::Error& error) {
    return "orv: " + CLI::FailureMessage::simple(command, error);
  });
  app->require_subcommand(0, 1);
  app->get_formatter()->label("SUBCOMMAND", "VERB");
  app->get_formatter()->label("REQUIRED", "");
  return app;
}

std::vector<std::unique_ptr<Verb>> makeVerbs(CLI::App& app) {
  std::vector<std::unique_ptr<Verb>> verbs;
  for (const auto make :
       {makeNewVerb, makeInfoVerb, makeListVerb, makeShowVerb, makeCopyVerb, makeIntegrateVerb,
        makeAuditVerb, makeDiffVerb, makeExportVerb, makeEditVerb, makeMergeVerb, makeDeleteVerb,
        makeHistoryVerb, makeUndoVerb, makeSqlVerb, makeTablesVerb, makeCheckVerb, makeCompactVerb,
        makeCompletionVerb}) {
    verbs.push_back(make(app));
  }
  return verbs;
}

}  // namespace orv::cli
