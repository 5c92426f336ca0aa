// Opening of sources whose kind is found out from the files themselves.
#include <algorithm>
#include <filesystem>
#include <fstream>

#include "commands/SourceOpener.h"
#include "model/Text.h"

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
  return beginning.find('\0') == std::string::npos;
}

/// Header entries that only files of shadings have tell what a text is.
TextFileKind textKindOf(const std::string& beginning) {
  const std::string lower = lowerCase(beginning);
  for (const char* key : {"product type", "crown height", "pitch", "permeability"}) {
    for (std::size_t at = lower.find('{'); at != std::string::npos; at = lower.find('{', at + 1)) {
      const std::size_t word = lower.find_first_not_of(" \t\r\n", at + 1);
      if (word != std::string::npos && lower.compare(word, std::string(key).size(), key) == 0) {
        return TextFileKind::shadings;
      }
    }
  }
  return TextFileKind::panes;
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
  const Place place = placeOf(path);
  const std::string beginning = beginningOf(path);
  if (isDatabase(path, beginning)) return openAnyDatabase(place.folder, place.filename);
  if (!mayBeText(beginning)) {
    throw Error(kInvalidCall, "\"" + path + "\" is neither a database nor a text file.");
  }
  return openTextFiles(place.folder, {place.filename}, kind.value_or(textKindOf(beginning)));
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
  return openTextFiles(placeOf(paths.front()).folder, filenames,
                       kind.value_or(textKindOf(beginningOf(paths.front()))));
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
  const DatabaseFile file = openDatabaseFile(path);
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
  std::vector<std::string> filenames;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    const std::string name = entry.path().filename().string();
    if (!entry.is_regular_file() || name.starts_with(".")) continue;
    if (const std::string beginning = beginningOf(entry.path()); mayBeText(beginning)) {
      filenames.push_back(name);
    }
  }
  if (filenames.empty()) {
    throw Error(kFileNotFound, "The folder \"" + folder + "\" holds no text files.");
  }
  std::sort(filenames.begin(), filenames.end());
  const fs::path first = fs::path(folder) / filenames.front();
  return openTextFiles(folder, filenames, kind.value_or(textKindOf(beginningOf(first))));
}

}  // namespace orv::commands
