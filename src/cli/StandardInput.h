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

  /// Reads the standard input to its end and returns the path of the file. The file gets the name
  /// that is given, "stdin.txt" without one; what looks like products, one that ends with ".json".
  /// Raises Failure where nothing comes, or more than any file of records has, or a database, where
  /// it cannot be read or kept, for a name that no such file can have, and where it was read
  /// before.
  std::string read(const std::string& name);

  /// The folder of the file; empty before it is read.
  const std::string& folder() const { return folder_; }

 private:
  std::string folder_;
};

}  // namespace orv::cli
