#include "commands/TolerantOffer.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "commands/RecordKind.h"

namespace orv::commands {

namespace {

/// What would be mended in a file that cannot be read as it is; empty for every other file.
std::string repairsOf(Session& session, const std::string& folder, const std::string& file) {
  if (productfile::isProduct(file)) return {};
  try {
    session.textFiles.ParseSpectralFile(folder, file);
    return {};
  } catch (const Error&) {
    // It may be readable once it is mended.
  }
  try {
    std::string repairs;
    session.textFiles.ParseSpectralFile(folder, file, &repairs);
    return repairs;
  } catch (const Error&) {
    return {};
  }
}

}  // namespace

void offerTolerantReading(Session& session, const sources::datasource& folder) {
  if (folder.DataType() != sources::DataType::textFolder) return;
  if (recordKind(folder) != RecordKind::panes || session.tolerant.isAllowedIn(folder.Folder())) {
    return;
  }
  constexpr std::size_t kMostNamed = 8;
  std::vector<std::string> lines;
  std::size_t found = 0;
  for (const auto& file : folder.DataSources()) {
    const std::string repairs = repairsOf(session, folder.Folder(), file->filename());
    if (repairs.empty() || ++found > kMostNamed) continue;
    lines.push_back(file->filename() + ": " + repairs);
  }
  if (found == 0) return;
  if (found > kMostNamed) lines.push_back(fmt::format("and {} more", found - kMostNamed));
  const std::string text = fmt::format(
      "Of the files of \"{}\", {} differ{} from the format, and can be read when {} mended on the "
      "way. The files stay as they are.\n\n{}\n\nDo you want to read them so?",
      folder.Folder(), found, found == 1 ? "s" : "", found == 1 ? "it is" : "they are",
      fmt::join(lines, "\n"));
  if (session.ui.ask({text, kProductName, Buttons::yesNo, Answer::yes}) == Answer::yes) {
    session.tolerant.allowIn(folder.Folder());
  }
}

}  // namespace orv::commands
