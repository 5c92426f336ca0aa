// Sources that come from the standard input.
#pragma once

#include <string>

namespace orv::cli {

/// What stands for the standard input, or output, in place of a file.
inline constexpr const char* kStandardStream = "-";

/// Raises Failure where a database is to come from, or go to, a standard stream.
void refuseStandardStream(const std::string& database);

/// The standard input as a file, since records are read from files, each when it is asked for. The
/// file lasts as long as this.
class StandardInput {
 public:
  StandardInput() = default;
  StandardInput(const StandardInput&) = delete;
  StandardInput& operator=(const StandardInput&) = delete;
  ~StandardInput();

  /// Reads the standard input to its end and returns the path of the file. Without a name the file
  /// gets one that says whether it looks like a text or like products. Raises Failure where nothing
  /// comes, or more than any file of records has, or a database, and where it was read before.
  std::string read(const std::string& name);

  /// The folder of the file; empty before it is read.
  const std::string& folder() const { return folder_; }

 private:
  std::string folder_;
};

}  // namespace orv::cli
