#include "commands/OpenCommands.h"

#include <filesystem>

#include "commands/ErrorText.h"
#include "commands/PasswordQuestion.h"
#include "commands/TolerantOffer.h"

namespace orv::commands {

namespace {

constexpr const char* kAdviceOnFiles = "One or more files may not have been added, please check.";
constexpr const char* kAdviceOnDamage = "Database > Repair takes what can be read into a new file.";

}  // namespace

OpenCommands::Node OpenCommands::createOrvDatabase(const std::string& folder,
                                                   const std::string& filename) {
  return tryToOpen(
      [&] {
        createDatabaseFile((std::filesystem::path(folder) / filename).string());
        return opener_.openOrvDatabase(folder, filename);
      },
      "The new ORV database could not be made.");
}

OpenCommands::Node OpenCommands::openOrvDatabase(const std::string& folder,
                                                 const std::string& filename) {
  return tryWithPassword(
      filename, [&] { return opener_.openOrvDatabase(folder, filename); },
      "This may not be a valid ORV database, please check and try again.");
}

OpenCommands::Node OpenCommands::openIgdb(const std::string& folder, const std::string& filename) {
  return tryToOpen(
      [&] { return opener_.openIgdb(folder, filename); },
      "This may not be a valid International Glazing Database, please check and try again.");
}

OpenCommands::Node OpenCommands::openOptics5UserDatabase(const std::string& folder,
                                                         const std::string& filename) {
  return tryWithPassword(
      filename, [&] { return opener_.openOptics5UserDatabase(folder, filename); },
      "This may not be a valid Optics5 user database, please check and try again.");
}

OpenCommands::Node OpenCommands::openTextFiles(const std::string& folder,
                                               const std::vector<std::string>& filenames,
                                               TextFileKind kind) {
  return withOffer(
      tryToOpen([&] { return opener_.openTextFiles(folder, filenames, kind); }, kAdviceOnFiles));
}

std::vector<OpenCommands::Node> OpenCommands::openAll(const std::vector<std::string>& paths) {
  std::vector<Node> nodes;
  std::vector<std::string> failures;
  bool isDamaged = false;
  for (const auto& group : SourceOpener::grouped(paths)) {
    const std::string name = std::filesystem::path(group.front()).filename().string();
    Node node;
    try {
      withPassword(session_, name, [&] { node = opener_.openGroup(group); });
    } catch (const std::exception& error) {
      failures.push_back(describe(error));
      isDamaged = isDamaged || isDamage(error);
    }
    if (node) nodes.push_back(withOffer(node));
  }
  const std::string advice = isDamaged ? kAdviceOnDamage : kAdviceOnFiles;
  if (failures.size() == 1) {
    session_.ui.message(MessageKind::information, failures.front() + "\n\n" + advice, kProductName);
  } else if (!failures.empty()) {
    session_.ui.list(std::to_string(failures.size()) + " sources could not be opened. " + advice,
                     failures, kProductName);
  }
  return nodes;
}

OpenCommands::Node OpenCommands::reopen(const std::string& path) {
  std::vector<Node> replaced;
  for (const Node& source : session_.MainDataSources) {
    const auto connection = source->ADOConnection();
    if (connection && connection->path() == path) replaced.push_back(source);
  }
  const auto nodes = openAll({path});
  if (nodes.empty()) return nullptr;
  for (const Node& source : replaced) replace(source, nodes.back());
  return nodes.back();
}

void OpenCommands::replace(const Node& closed, const Node& opened) {
  session_.MainDataSources.RemoveDataSource(closed->key());
  if (whenReplaced_) whenReplaced_(closed, opened);
}

OpenCommands::Node OpenCommands::openReplacements() {
  std::vector<Node> replaced;
  for (const Node& source : session_.MainDataSources) {
    const auto connection = source->ADOConnection();
    if (connection && !declined_.contains(source->key()) && connection->isReplaced()) {
      replaced.push_back(source);
    }
  }
  Node opened;
  for (const Node& source : replaced) {
    const std::string path = source->ADOConnection()->path();
    declined_.insert(source->key());
    const Answer answer =
        session_.ui.ask({"\"" + path +
                             "\" has been replaced by another file since it was opened. "
                             "Do you want to open the new file in its place?",
                         kProductName, Buttons::yesNo, Answer::yes});
    if (answer != Answer::yes) continue;
    source->ADOConnection()
        ->close();  // with its log, which would be taken for that of the new file
    const auto nodes = openAll({path});
    if (nodes.empty()) continue;
    opened = nodes.back();
    replace(source, opened);
  }
  return opened;
}

bool OpenCommands::remove(const std::string& key, Node& next) {
  const Answer answer = session_.ui.ask(
      {"Are you sure you want to remove this datasource from the list of available datasources?",
       kProductName, Buttons::yesNoCancel, Answer::yes});
  if (answer != Answer::yes) return false;
  next = session_.MainDataSources.RemoveDataSource(key);
  return true;
}

OpenCommands::Node OpenCommands::withOffer(Node node) {
  if (node) offerTolerantReading(session_, *node);
  return node;
}

OpenCommands::Node OpenCommands::tryToOpen(const std::function<Node()>& open,
                                           const std::string& advice) {
  try {
    return open();
  } catch (const std::exception& error) {
    session_.ui.message(MessageKind::information,
                        describe(error) + "\n\n" + (isDamage(error) ? kAdviceOnDamage : advice),
                        kProductName);
    return nullptr;
  }
}

OpenCommands::Node OpenCommands::tryWithPassword(const std::string& filename,
                                                 const std::function<Node()>& open,
                                                 const std::string& advice) {
  return tryToOpen(
      [&] {
        Node node;
        withPassword(session_, filename, [&] { node = open(); });
        return node;
      },
      advice);
}

}  // namespace orv::commands
