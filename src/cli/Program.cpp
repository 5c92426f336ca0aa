#include "cli/Program.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <optional>

#include "cli/ShownStream.h"
#include "cli/StandardStreams.h"
#include "cli/Verb.h"
#include "commands/ErrorText.h"
#include "commands/Remarks.h"

namespace orv::cli {
namespace {

/// Says which verbs there are where the first word is none of them.
void checkVerb(const CLI::App& app, const std::string& word) {
  std::vector<std::string> names;
  for (const CLI::App* verb : app.get_subcommands([](const CLI::App*) { return true; })) {
    names.push_back(verb->get_name());
  }
  if (word.starts_with('-') || std::ranges::find(names, word) != names.end()) return;
  throw wrongUse(
      fmt::format("There is no verb \"{}\". There are: {}.", word, fmt::join(names, ", ")));
}

int runChosen(CLI::App& app, const std::vector<std::unique_ptr<Verb>>& verbs, int argc,
              char** argv) {
  try {
    if (argc > 1) checkVerb(app, argv[1]);
    app.parse(argc, argv);
    Console console;
    for (const auto& verb : verbs) {
      if (!verb->isChosen()) continue;
      const ExitCode exit = verb->run(console);
      if (console.ui.isQuiet()) return exit;
      for (const std::string& line : commands::remarks(console.session)) {
        std::cerr << "orv: " << line << '\n';
      }
      return exit;
    }
    std::cerr << app.help();
    return kWrongUse;
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kAllWell : kWrongUse;
  } catch (const Failure& failure) {
    std::cerr << "orv: " << failure.what() << '\n';
    return failure.code();
  } catch (const std::exception& error) {
    std::cerr << "orv: " << commands::describe(error) << '\n';
    return kRecordsFailed;
  }
}

}  // namespace

int runProgram(int argc, char** argv) {
  occupyClosedStreams();
  std::ios::sync_with_stdio(false);
  const ShownStream messages(std::cerr);
  std::optional<ShownStream> results;
  if (isatty(STDOUT_FILENO) != 0) results.emplace(std::cout);
  const auto app = makeApp();
  const auto verbs = makeVerbs(*app);
  const int exit = runChosen(*app, verbs, argc, argv);
  if (finishOutput()) return exit;
  std::cerr
      << "orv: The standard output could not be written: what was written there is not whole. "
         "Look whether the disk is full.\n";
  return kCannotOpen;
}

}  // namespace orv::cli
