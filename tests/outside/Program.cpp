#include "outside/Program.h"

#include <fmt/format.h>
#include <sys/wait.h>

#include <csignal>
#include <cstdlib>

#include "outside/FileCall.h"
#include "support/ReadFile.h"
#include "support/TemporaryFolder.h"

namespace orv::test {

Ended run(const Command& command, const Surroundings& surroundings) {
  const auto& [folder, plan, recording, isWatched] = surroundings;
  const TemporaryFolder notes;
  Ended ended;
  std::ofstream(notes / "calls") << std::string(sizeof ended.calls, '\0');
  // The shell becomes the program, so that its end is the program's.
  std::string line = "cd '" + folder.string() + "' && exec env";
  const auto add = [&](const std::string& word) { line += " '" + word + "'"; };
  if (isWatched) {
    const auto set = [&](const std::string& name, const auto& value) {
      add(fmt::format("{}={}", name, value));
    };
    set("LD_PRELOAD", ORV_FILE_CALLS);
    set(kFolderVariable, std::filesystem::canonical(folder).string());
    set(kCounterVariable, notes / "calls");
    set(kTerminalVariable, 1);
    set(kRecordingVariable, recording.string());
    set(kPlanVariable, fmt::format("{} {} {}", plan.word, plan.first, plan.count));
  }
  for (const std::string& word : command) add(word);
  line += fmt::format(" </dev/null >>'{}' 2>>'{}'", notes / "out", notes / "err");
  const int status = std::system(line.c_str());
  if (WIFEXITED(status)) ended.exit = WEXITSTATUS(status);
  ended.killed = WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
  ended.out = readFile(notes / "out");
  ended.err = readFile(notes / "err");
  readFile(notes / "calls").copy(reinterpret_cast<char*>(&ended.calls), sizeof ended.calls);
  return ended;
}

Command orv(Command arguments) {
  arguments.insert(arguments.begin(), ORV_PROGRAM);
  return arguments;
}

}  // namespace orv::test
