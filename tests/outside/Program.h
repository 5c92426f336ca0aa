// The programs as processes, run as users run them or with the preload library before their files.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace orv::test {

struct Command {
  std::filesystem::path program;
  std::vector<std::string> arguments;
};

struct Ended {
  int exit = -1;        ///< -1 when it was ended by a signal
  bool killed = false;  ///< by SIGKILL
  std::string out;
  std::string err;
  std::uint64_t calls = 0;  ///< that changed a file in the folder
};

/// What the preload library does at which calls; see FileCall.h.
struct Plan {
  const char* word = "";
  std::uint64_t first = 0;
  std::uint64_t count = 1;
};

struct Surroundings {
  std::filesystem::path folder;  ///< in which it runs, and whose files are watched
  Plan plan = {};
  std::filesystem::path recording = {};  ///< where the calls are recorded; nowhere when empty
  bool isWatched = true;                 ///< whether the preload library is there
};

/// A process; killed at the latest with this object.
class Program {
 public:
  Program(const Command& command, const Surroundings& surroundings);
  ~Program();
  Program(Program&& other) noexcept;
  Program& operator=(Program&&) = delete;

  /// Whether it has ended.
  bool hasEnded();
  /// Waits for its end.
  Ended end();

 private:
  std::filesystem::path notes_;  ///< a folder for what it prints and the count of its calls
  pid_t id_ = -1;
  int status_ = 0;
};

/// Runs a program to its end.
Ended run(const Command& command, const Surroundings& surroundings);

/// `orv` with these arguments.
Command orv(std::vector<std::string> arguments);

}  // namespace orv::test
