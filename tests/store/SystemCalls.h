// The calls of the system that open, read, write and lock files: of those of this program a test
// says how they end.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace orv::test {

/// While one lives, calls end as it says, where it says something; else as ever.
class SystemCalls {
 public:
  SystemCalls();
  ~SystemCalls();
  SystemCalls(const SystemCalls&) = delete;
  SystemCalls& operator=(const SystemCalls&) = delete;

  /// The call is made with half of its length.
  static constexpr int kInPart = -1;
  /// The next ones of `call` ("pread") end with these errors; 0 for one that is made.
  std::map<std::string, std::vector<int>> ends;
  /// Whether the disk does not give what stands there in a file that is open.
  std::function<bool(int file, off_t place)> isBad = [](int, off_t) { return false; };
  /// Those of changes of owners, rights and attributes, with what they were given.
  std::vector<std::string> made;

  /// Time passes by sleeping only.
  std::chrono::nanoseconds time{0};
  std::vector<std::chrono::nanoseconds> sleeps;
  /// Is called after each.
  std::function<void()> slept = [] {};
};

}  // namespace orv::test
