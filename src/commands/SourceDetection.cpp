// Opening of sources whose kind is found out from the files themselves.
#include <algorithm>
#include <filesystem>
#include <fstream>

#include "commands/SourceOpener.h"
#include "model/Text.h"
#include "textfile/Likeness.h"
#include "textfile/TextFile.h"

namespace orv::commands {

namespace fs = std::filesystem;

namespace {

/// Enough of a file to tell what it is.
std::string beginningOf(const fs::path& path) {
  std::string text(16384, '\0');
  std::ifstream file(path, std::ios::binary);
  file.read(text.data(), static_cast<std::streamsize>(text.size()));
  text.resize(static_cast<std::size_t>(file.gcount()));
  return text;
}

/// Database files of every version begin with 4 bytes and the name of their engine. One that is
/// only called like them is damaged, which opening it as a database tells.
bool isDatabase(const fs::path& path, const std::string& beginning) {
  const std::string extension = lowerCase(path.extension().string());
  if (extension == ".mdb" || extension == ".accdb") {
    return true;
  }
  const std::string_view name =
      std::string_view(beginning).substr(std::min<std::size_t>(4, beginning.size()));
  return name.starts_with("Standard Jet DB") || name.starts_with("Standard ACE DB");
}

bool mayBeText(const std::string& beginning) {
  return textfile::hasUtf16Mark(beginning) || beginning.find('\0') == std::string::npos;
}

textfile::Likeness likenessOf(const fs::path& path) {
  if (productfile::isProduct(path.filename().string())) return textfile::Likeness::pane;
  try {
    return textfile::likenessOf(textfile::readText(path));
  } catch (const Error&) {
    return textfile::Likeness::neither;
  }
}

/// What text files are, as the first of them look.
struct Judgement {
  TextFileKind kind = TextFileKind::panes;
  std::string decider;  ///< the first file that tells what it is; empty when none does
  int looked = 0;
  int others = 0;  ///< files that look like the other kind
};

Judgement judge(const fs::path& folder, const std::vector<std::string>& filenames) {
  constexpr std::size_t kMostFiles = 20;
  Judgement judgement;
  for (std::size_t i = 0; i < std::min(filenames.size(), kMostFiles); ++i) {
    ++judgement.looked;
    const auto likeness = likenessOf(folder / filenames[i]);
    if (likeness == textfile::Likeness::neither) continue;
    const TextFileKind kind =
        likeness == textfile::Likeness::shading ? TextFileKind::shadings : TextFileKind::panes;
    if (judgement.decider.empty()) {
      judgement.kind = kind;
      judgement.decider = filenames[i];
    }
    if (kind != judgement.kind) ++judgement.others;
  }
  return judgement;
}

/// What is told of a judgement on the files of a place that may be wrong; empty when it may not.
std::string doubtsOf(const Judgement& judgement, const std::string& place) {
  const bool panes = judgement.kind == TextFileKind::panes;
  const std::string taken = panes ? "panes" : "shadings";
  const std::string other = panes ? "shadings" : "panes";
  const std::string remedy =
      " To read " + other + ", use --text " + other + ", or in the window File > Open.";
  if (judgement.decider.empty()) {
    return "No file of " + place + " tells whether it is of panes or of shadings; " + taken +
           " are read." + remedy;
  }
  if (judgement.others == 0) return {};
  return "The files of " + place + " are read as " + taken + ", since \"" + judgement.decider +
         "\" looks so; of the first " + std::to_string(judgement.looked) + ", " +
         std::to_string(judgement.others) + " look like " + other + "." + remedy;
}

/// The files of a folder that may be texts, in the order of their names, and what else is there.
struct FolderContent {
  std::vector<std::string> texts;
  std::vector<std::string> others;
};

FolderContent contentOf(const std::string& folder) {
  FolderContent content;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    const std::string name = entry.path().filename().string();
    if (name.starts_with(".")) continue;
    if (entry.is_regular_file() && mayBeText(beginningOf(entry.path()))) {
      content.texts.push_back(name);
    } else {
      const char* what = entry.is_directory()      ? " (a folder)"
                         : entry.is_regular_file() ? " (no text)"
                                                   : " (no file)";
      content.others.push_back(name + what);
    }
  }
  std::sort(content.texts.begin(), content.texts.end());
  std::sort(content.others.begin(), content.others.end());
  return content;
}

/// "2 entries of "folder" are passed over: old (a folder), photo.png (no text)."
std::string passedOver(const FolderContent& content, const std::string& folder) {
  const std::size_t count = content.others.size();
  if (count == 0) return {};
  std::string text = std::to_string(count) + (count == 1 ? " entry" : " entries") + " of \"" +
                     folder + (count == 1 ? "\" is" : "\" are") + " passed over: ";
  for (std::size_t i = 0; i < count; ++i) text += (i > 0 ? ", " : "") + content.others[i];
  return text + ".";
}

[[noreturn]] void raiseNotThere(const fs::path& path) {
  throw Error(kFileNotFound, "There is no file or folder \"" + path.string() + "\".");
}

bool holds(const std::vector<std::string>& names, const char* name) {
  return std::any_of(names.begin(), names.end(),
                     [&](const std::string& each) { return equalIgnoringCase(each, name); });
}

struct Place {
  std::string folder;
  std::string filename;
};

Place placeOf(const std::string& path) {
  const fs::path absolute = fs::absolute(path).lexically_normal();
  return {absolute.parent_path().string(), absolute.filename().string()};
}

}  // namespace

bool isDatabaseFile(const std::string& path) {
  return fs::is_regular_file(path) && isDatabase(path, beginningOf(path));
}

SourceOpener::Node SourceOpener::openAny(const std::string& path,
                                         std::optional<TextFileKind> kind) {
  if (fs::is_directory(path)) {
    return openTextFolder(fs::absolute(path).lexically_normal().string(), kind);
  }
  if (!fs::exists(path)) raiseNotThere(path);
  refuseOtherThanFile(path);
  const Place place = placeOf(path);
  const std::string beginning = beginningOf(path);
  if (isDatabase(path, beginning)) return openAnyDatabase(place.folder, place.filename);
  if (!mayBeText(beginning)) {
    const bool isInput = place.folder == session_.inputFolder;
    throw Error(kInvalidCall, (isInput ? "The standard input" : "\"" + path + "\"") +
                                  " is neither a database nor a text file.");
  }
  return openTexts(place.folder, {place.filename}, kind);
}

std::vector<std::vector<std::string>> SourceOpener::grouped(const std::vector<std::string>& paths) {
  std::vector<std::vector<std::string>> groups;
  std::vector<std::vector<std::string>> textFiles;
  for (const std::string& path : paths) {
    if (!fs::is_regular_file(path) || isDatabase(path, beginningOf(path))) {
      groups.push_back({path});
      continue;
    }
    const std::string folder = placeOf(path).folder;
    auto group = std::find_if(textFiles.begin(), textFiles.end(), [&](const auto& each) {
      return placeOf(each.front()).folder == folder;
    });
    if (group == textFiles.end()) group = textFiles.emplace(group);
    group->push_back(path);
  }
  groups.insert(groups.end(), textFiles.begin(), textFiles.end());
  return groups;
}

SourceOpener::Node SourceOpener::openGroup(const std::vector<std::string>& paths,
                                           std::optional<TextFileKind> kind) {
  if (paths.size() == 1) return openAny(paths.front(), kind);
  std::vector<std::string> filenames;
  for (const std::string& path : paths) filenames.push_back(placeOf(path).filename);
  return openTexts(placeOf(paths.front()).folder, filenames, kind);
}

std::vector<SourceOpener::Node> SourceOpener::openAll(const std::vector<std::string>& paths,
                                                      std::optional<TextFileKind> kind) {
  std::vector<Node> nodes;
  for (const auto& group : grouped(paths)) nodes.push_back(openGroup(group, kind));
  return nodes;
}

SourceOpener::Node SourceOpener::openAnyDatabase(const std::string& folder,
                                                 const std::string& filename) {
  const std::string path = (fs::path(folder) / filename).string();
  const DatabaseFile file = openDatabaseFile(path, session_.password);
  if (holds(file.connection->tableNames(), "ORVdata_version"))
    return openOrvDatabase(folder, filename);
  for (const store::LinkedTableInfo& linked : file.connection->linkedTables()) {
    if (equalIgnoringCase(linked.name, "ORVdata_version")) {
      throw Error(kInvalidCall, "\"" + path +
                                    "\" holds no records: its tables are linked, and their rows "
                                    "are in \"" +
                                    linked.database + "\". Open that database instead.");
    }
  }
  if (!holds(file.connection->queryNames(), "qryOptics5Grid")) {
    throw Error(kInvalidCall, "\"" + path +
                                  "\" is a database, but no ORV database (it has no table "
                                  "ORVdata_version) and no glazing database (it has no saved query "
                                  "qryOptics5Grid).");
  }
  const bool isIgdb = file.withIgdbPassword || equalIgnoringCase(filename, "glazing.mdb");
  return isIgdb ? openIgdb(folder, filename) : openOptics5UserDatabase(folder, filename);
}

SourceOpener::Node SourceOpener::openTextFolder(const std::string& folder,
                                                std::optional<TextFileKind> kind) {
  const FolderContent content = contentOf(folder);
  const std::string others = passedOver(content, folder);
  if (content.texts.empty()) {
    throw Error(kFileNotFound, "The folder \"" + folder + "\" holds no text files." +
                                   (others.empty() ? "" : " " + others));
  }
  if (!others.empty()) session_.ui.message(MessageKind::information, others, kProductName);
  return openTexts(folder, content.texts, kind);
}

/// Says so where it is not sure what the files are.
SourceOpener::Node SourceOpener::openTexts(const std::string& folder,
                                           const std::vector<std::string>& filenames,
                                           std::optional<TextFileKind> kind) {
  if (kind) return openTextFiles(folder, filenames, *kind);
  const Judgement judgement = judge(folder, filenames);
  const bool isInput = folder == session_.inputFolder;
  const std::string doubts =
      doubtsOf(judgement, isInput ? "the standard input" : "\"" + folder + "\"");
  if (!doubts.empty()) session_.ui.message(MessageKind::information, doubts, kProductName);
  return openTextFiles(folder, filenames, judgement.kind);
}

}  // namespace orv::commands
