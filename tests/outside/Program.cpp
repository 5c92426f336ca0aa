#include "outside/Program.h"

#include <fcntl.h>
#include <grp.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <stdexcept>
#include <utility>

#include "outside/FileCall.h"
#include "support/ReadFile.h"

extern char** environ;

namespace orv::test {

namespace fs = std::filesystem;

namespace {

fs::path makeNotes() {
  std::string pattern = (fs::temp_directory_path() / "orv-notes-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no folder for notes");
  const std::uint64_t none = 0;
  std::ofstream(fs::path(pattern) / "calls", std::ios::binary)
      .write(reinterpret_cast<const char*>(&none), sizeof none);
  return pattern;
}

std::vector<std::string> environmentOf(const Surroundings& surroundings, const fs::path& notes) {
  std::vector<std::string> variables;
  for (char** variable = environ; *variable != nullptr; ++variable)
    variables.emplace_back(*variable);
  if (!surroundings.isWatched) return variables;
  const auto add = [&](const char* name, const std::string& value) {
    variables.push_back(std::string(name) + "=" + value);
  };
  const Plan& plan = surroundings.plan;
  add("LD_PRELOAD", ORV_FILE_CALLS);
  add(kFolderVariable, fs::canonical(surroundings.folder).string());
  add(kCounterVariable, (notes / "calls").string());
  add(kTerminalVariable, "1");
  add(kRecordingVariable, surroundings.recording.string());
  add(kPlanVariable,
      std::string(plan.word) + " " + std::to_string(plan.first) + " " + std::to_string(plan.count));
  return variables;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

/// In the new process, before the program: where it is and what it prints to.
bool settle(const Surroundings& surroundings, const fs::path& notes) {
  const auto opens = [](int as, const fs::path& path, int flags) {
    const int descriptor = open(path.c_str(), flags, 0600);
    return descriptor >= 0 && dup2(descriptor, as) == as &&
           (descriptor == as || !close(descriptor));
  };
  if (!opens(STDIN_FILENO, "/dev/null", O_RDONLY) ||
      !opens(STDOUT_FILENO, notes / "out", O_WRONLY | O_CREAT | O_APPEND) ||
      !opens(STDERR_FILENO, notes / "err", O_WRONLY | O_CREAT | O_APPEND)) {
    return false;
  }
  return chdir(surroundings.folder.c_str()) == 0;
}

}  // namespace

Program::Program(const Command& command, const Surroundings& surroundings) : notes_(makeNotes()) {
  std::vector<std::string> arguments = {command.program.string()};
  arguments.insert(arguments.end(), command.arguments.begin(), command.arguments.end());
  std::vector<std::string> environment = environmentOf(surroundings, notes_);
  const std::vector<char*> argumentPointers = pointersTo(arguments);
  const std::vector<char*> environmentPointers = pointersTo(environment);
  id_ = fork();
  if (id_ != 0) return;
  if (settle(surroundings, notes_)) {
    execve(command.program.c_str(), argumentPointers.data(), environmentPointers.data());
  }
  _exit(127);
}

Program::Program(Program&& other) noexcept
    : notes_(std::exchange(other.notes_, {})),
      id_(std::exchange(other.id_, -1)),
      status_(other.status_) {}

Program::~Program() {
  if (id_ > 0) {
    kill(id_, SIGKILL);
    waitpid(id_, &status_, 0);
  }
  std::error_code ignored;
  if (!notes_.empty()) fs::remove_all(notes_, ignored);
}

bool Program::hasEnded() {
  if (id_ > 0 && waitpid(id_, &status_, WNOHANG) == id_) id_ = -1;
  return id_ < 0;
}

Ended Program::end() {
  if (id_ > 0) waitpid(id_, &status_, 0);
  id_ = -1;
  Ended ended;
  if (WIFEXITED(status_)) ended.exit = WEXITSTATUS(status_);
  ended.killed = WIFSIGNALED(status_) && WTERMSIG(status_) == SIGKILL;
  ended.out = readFile(notes_ / "out");
  ended.err = readFile(notes_ / "err");
  const std::string calls = readFile(notes_ / "calls");
  if (calls.size() == sizeof ended.calls) calls.copy(reinterpret_cast<char*>(&ended.calls), 8);
  return ended;
}

Ended run(const Command& command, const Surroundings& surroundings) {
  return Program(command, surroundings).end();
}

Command orv(std::vector<std::string> arguments) {
  return {ORV_PROGRAM, std::move(arguments)};
}

}  // namespace orv::test
