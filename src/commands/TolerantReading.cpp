#include "commands/TolerantReading.h"

#include <filesystem>
#include <utility>

namespace orv::commands {

void TolerantReading::told(const std::string& folder, const std::string& file,
                           const std::string& repairs) {
  if (repairs.empty()) return;
  if (!files_.insert((std::filesystem::path(folder) / file).string()).second) return;
  lines_.push_back(file + " is read tolerantly: " + repairs + ".");
}

std::vector<std::string> TolerantReading::takeLines() {
  return std::exchange(lines_, {});
}

}  // namespace orv::commands
