// The program `orv`.
#include <iostream>

#include "cli/Verb.h"
#include "commands/ErrorText.h"

namespace {

using namespace orv::cli;

int run(CLI::App& app, const std::vector<std::unique_ptr<Verb>>& verbs, int argc, char** argv) {
  try {
    app.parse(argc, argv);
    Console console;
    for (const auto& verb : verbs) {
      if (verb->isChosen()) return verb->run(console);
    }
    std::cerr << app.help();
    return kWrongUse;
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kAllWell : kWrongUse;
  } catch (const Failure& failure) {
    std::cerr << "orv: " << failure.what() << '\n';
    return failure.code();
  } catch (const std::exception& error) {
    std::cerr << "orv: " << orv::commands::describe(error) << '\n';
    return kRecordsFailed;
  }
}

}  // namespace

int main(int argc, char** argv) {
  std::ios::sync_with_stdio(false);
  CLI::App app("Keeps the optical and thermal data of building glazing in ORV databases.", "orv");
  app.footer(
      "Run \"orv VERB --help\" for the arguments of a verb and examples.\n"
      "Exit codes: 0 all went well; 1 some records failed; 2 wrong use; 3 a file cannot be "
      "opened.");
  app.set_version_flag("--version", std::string("orv ") + ORV_VERSION);
  app.require_subcommand(0, 1);
  app.get_formatter()->label("SUBCOMMAND", "VERB");
  app.get_formatter()->label("REQUIRED", "");
  const auto verbs = makeVerbs(app);
  return run(app, verbs, argc, argv);
}
