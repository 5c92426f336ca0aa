#include "commands/CompactDatabase.h"

#include <fmt/format.h>

#include <filesystem>

#include "commands/AccessUse.h"
#include "commands/IgdbPassword.h"
#include "commands/LongWork.h"
#include "commands/SourceOpener.h"
#include "errors/Counted.h"
#include "store/Compact.h"

namespace orv::commands {

namespace fs = std::filesystem;

namespace {

/// A name beside the database that nothing has: NAME.bak, NAME.bak-1, ...
std::string backupName(const std::string& path) {
  const std::string real = fs::canonical(path).string();
  std::string name = real + ".bak";
  for (int number = 1; fs::exists(fs::symlink_status(name)); ++number) {
    name = real + ".bak-" + std::to_string(number);
  }
  return name;
}

const char* nameOf(CompactRequest::Work work) {
  return work == CompactRequest::Work::repair    ? "Repairing..."
         : work == CompactRequest::Work::convert ? "Converting..."
                                                 : "Compacting...";
}

store::CompactReport writeNew(const CompactRequest& request, const std::string& password,
                              const store::CompactProgress& progress) {
  switch (request.work) {
    case CompactRequest::Work::repair:
      return store::repairFile(request.path, password, request.target, progress);
    case CompactRequest::Work::convert:
      return store::convertFile(request.path, password, request.target, request.losses, progress);
    default:
      return store::compactFile(request.path, password, request.target, progress);
  }
}

}  // namespace

std::string sizeText(std::uint64_t bytes) {
  return bytes < 1'000'000 ? fmt::format("{:.0f} kB", static_cast<double>(bytes) / 1e3)
                           : fmt::format("{:.1f} MB", static_cast<double>(bytes) / 1e6);
}

CompactResult compactDatabase(const CompactRequest& request, UserInterface& ui) {
  refuseSemicolon(request.path);
  refuseOtherThanFile(request.path);
  CompactResult result;
  if (request.target.empty()) {
    result.target = request.path;
    if (const std::string sign = signOfAccess(request.path);
        !sign.empty() && !ui.acceptRisk(sign + " What is changed there now would be lost.")) {
      result.refused = true;
      return result;
    }
    result.backup = request.keepsBackup ? backupName(request.path) : "";
  } else {
    refuseSemicolon(request.target);
    result.target = request.target;
  }
  const LongWork work(ui, nameOf(request.work));
  const auto progress = [&](std::size_t done, std::size_t pages) {
    ui.progressSteps(static_cast<int>(done), static_cast<int>(pages));
    if (ui.cancelled()) throw Cancelled();
  };
  result.report = withPasswordOfIgdb(request.password, [&](const std::string& password) {
    return request.target.empty()
               ? store::compactInPlace(request.path, password, result.backup, progress)
               : writeNew(request, password, progress);
  });
  return result;
}

std::vector<std::string> describeSalvage(const store::CompactReport& report) {
  std::vector<std::string> lines;
  for (const std::string& what : report.lost) lines.push_back("Lost: " + what + ".");
  for (const store::SalvagedTable& table : report.salvaged) {
    std::string line = fmt::format("Table '{}': {} saved, {} lost", table.table,
                                   counted(table.rowsSaved, "row"), table.rowsLost);
    if (table.pagesLost > 0) {
      line += ", " + counted(table.pagesLost, "page") + " unreadable";
    }
    if (table.valuesCut > 0) {
      line +=
          ", " + counted(table.valuesCut, "memo or picture", "memos or pictures") + " cut short";
    }
    lines.push_back(line + ".");
    for (const std::string& what : table.lost) lines.push_back("  Lost: " + what + ".");
    for (const std::string& place : table.places) lines.push_back("  " + place + ".");
    for (const std::string& note : table.notes) lines.push_back("  Remark: " + note + ".");
  }
  for (const std::string& note : report.notes) lines.push_back("Remark: " + note + ".");
  return lines;
}

std::string describe(const store::CompactReport& report) {
  return fmt::format("{} to {}: {}, {}, {}", sizeText(report.sizeBefore),
                     sizeText(report.sizeAfter), counted(report.tables, "table"),
                     counted(report.rows, "row"), counted(report.indexes, "index", "indexes"));
}

}  // namespace orv::commands
