// Compacting, repairing and converting a database, as a command.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "commands/UserInterface.h"
#include "store/CompactReport.h"

namespace orv::commands {

/// What is to be written anew, and where to.
struct CompactRequest {
  enum class Work {
    compact,
    repair,   ///< take what can be read of a damaged file; into a new one
    convert,  ///< of format Jet 3, into a new one of Jet 4
  };
  std::string path;
  std::string password{};
  std::string target{};     ///< the new file; empty: in place of the old one
  bool keepsBackup = true;  ///< in place: whether the old file is kept beside the new one
  Work work = Work::compact;
  store::Losses losses = store::Losses::refuse;  ///< of what Jet 4 cannot hold
};

/// The user has ended the work; no file was made or changed.
class Cancelled : public std::runtime_error {
 public:
  explicit Cancelled(const char* text = "The work was cancelled, and no file was made.")
      : std::runtime_error(text) {}
};

struct CompactResult {
  bool refused = false;  ///< in place: Access seems to have the file open, and that is too risky
  std::string target{};  ///< the new file
  std::string backup{};  ///< where the old one is now; empty when it was not replaced or not kept
  store::CompactReport report{};
};

/// Writes a database into a new file without free space, with progress; with the password of the
/// IGDB where it wants another than is given. Raises what store/Compact.h says, and
/// Cancelled when the user ends it; then everything is as before.
CompactResult compactDatabase(const CompactRequest& request, UserInterface& ui);

/// What a repair has saved, and what it or a conversion has lost and where, a line each.
std::vector<std::string> describeSalvage(const store::CompactReport& report);

/// "369 kB", "3.0 MB"
std::string sizeText(std::uint64_t bytes);

/// "3.0 MB to 1.2 MB: 14 tables, 2,345 rows, 20 indexes"
std::string describe(const store::CompactReport& report);

}  // namespace orv::commands
