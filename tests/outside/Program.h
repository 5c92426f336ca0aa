// The programs as processes, run as users run them or with the preload library before their files.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace orv::test {

/// A program and its arguments, in none of which there is a quotation mark.
using Command = std::vector<std::string>;

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

/// Runs a program to its end.
Ended run(const Command& command, const Surroundings& surroundings);

/// `orv` with these arguments.
Command orv(Command arguments);

}  // namespace orv::test
