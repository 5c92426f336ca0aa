#include "commands/OpenCommands.h"

#include <filesystem>

#include "commands/ErrorText.h"
#include "commands/TolerantOffer.h"
#include "store/StoreError.h"

namespace orv::commands {

namespace {

InputRequest passwordRequest(const std::string& prompt) {
  return {.prompt = prompt,
          .title = kProductName,
          .help =
              "The database password that the file was given in Access. It is kept in memory "
              "until the program ends, for the next database that has the same.",
          .isSecret = true};
}

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
  return withOffer(tryToOpen([&] { return opener_.openTextFiles(folder, filenames, kind); },
                             "One or more files may not have been added, please check."));
}

std::vector<OpenCommands::Node> OpenCommands::openAll(const std::vector<std::string>& paths) {
  std::vector<Node> nodes;
  for (const auto& group : SourceOpener::grouped(paths)) {
    const std::string name = std::filesystem::path(group.front()).filename().string();
    const Node node = tryWithPassword(
        name, [&] { return opener_.openGroup(group); },
        "One or more files may not have been added, please check.");
    if (node) nodes.push_back(withOffer(node));
  }
  return nodes;
}

OpenCommands::Node OpenCommands::reopen(const std::string& path) {
  std::vector<std::string> replaced;
  for (const Node& source : session_.MainDataSources) {
    const auto connection = source->ADOConnection();
    if (connection && connection->path() == path) replaced.push_back(source->key());
  }
  const auto nodes = openAll({path});
  if (nodes.empty()) return nullptr;
  for (const std::string& key : replaced) session_.MainDataSources.RemoveDataSource(key);
  return nodes.back();
}

OpenCommands::Node OpenCommands::openReplacements() {
  std::vector<Node> replaced;
  for (const Node& source : session_.MainDataSources) {
    const auto connection = source->ADOConnection();
    if (connection && connection->isReplaced() && !declined_.contains(source->key())) {
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
    const auto nodes = openAll({path});
    if (nodes.empty()) continue;
    session_.MainDataSources.RemoveDataSource(source->key());
    opened = nodes.back();
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
    session_.ui.message(
        MessageKind::information,
        describe(error) + "\n\n" +
            (isDamage(error) ? "Database > Repair takes what can be read into a new file."
                             : advice),
        kProductName);
    return nullptr;
  }
}

OpenCommands::Node OpenCommands::tryWithPassword(const std::string& filename,
                                                 const std::function<Node()>& open,
                                                 const std::string& advice) {
  std::string prompt = "\"" + filename + "\" has a database password:";
  const auto openOrAsk = [&]() -> Node {
    while (true) {
      try {
        return open();
      } catch (const Error& error) {
        if (error.number() != store::kNotAuthenticated) throw;
      }
      session_.password = session_.ui.input(passwordRequest(prompt));
      if (session_.password.empty()) return nullptr;
      prompt = "This is not the password of \"" + filename + "\". Please try again:";
    }
  };
  return tryToOpen(openOrAsk, advice);
}

}  // namespace orv::commands
