#include "commands/Remarks.h"

#include <fmt/format.h>

#include <filesystem>

namespace orv::commands {

std::vector<std::string> indexRemarks(const store::Connection& database) {
  std::vector<std::string> lines;
  for (const std::string& table : database.tablesWithoutIndex()) {
    lines.push_back(fmt::format(
        "The table {} of {} has a damaged index; its rows were found without it, and none is lost. "
        "\"orv check\" names the page. Repair the database into a new one: this one cannot be "
        "relied on.",
        table, std::filesystem::path(database.path()).filename().string()));
  }
  return lines;
}

std::vector<std::string> newIndexRemarks(Session& session) {
  std::vector<std::string> lines;
  for (const auto& source : session.MainDataSources) {
    if (!source->ADOConnection() || !source->ADOConnection()->isOpen()) continue;
    for (std::string& line : indexRemarks(*source->ADOConnection())) {
      if (session.told.insert(line).second) lines.push_back(std::move(line));
    }
  }
  return lines;
}

std::vector<std::string> remarks(Session& session) {
  std::vector<std::string> lines = session.tolerant.takeLines();
  for (std::string& line : newIndexRemarks(session)) lines.push_back(std::move(line));
  return lines;
}

}  // namespace orv::commands
