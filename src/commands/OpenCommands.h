// File > Open and File > Remove.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "commands/SourceOpener.h"

namespace orv::commands {

/// The commands of the File menu that change the list of data sources. Each opening shows what
/// went wrong in a message of its own and then gives null. That of a database with a password asks
/// for it, but for the IGDB, whose password is known.
class OpenCommands {
 public:
  using Node = SourceOpener::Node;

  explicit OpenCommands(Session& session) : session_(session), opener_(session) {}

  /// Makes an empty ORV database, never in place of a file that is there, and opens it.
  Node createOrvDatabase(const std::string& folder, const std::string& filename);
  Node openOrvDatabase(const std::string& folder, const std::string& filename);
  Node openIgdb(const std::string& folder, const std::string& filename);
  Node openOptics5UserDatabase(const std::string& folder, const std::string& filename);
  Node openTextFiles(const std::string& folder, const std::vector<std::string>& filenames,
                     TextFileKind kind);
  /// Files and folders of any kind, as they are dropped on a window. Those that cannot be opened
  /// are told of at the end; the others are opened all the same.
  std::vector<Node> openAll(const std::vector<std::string>& paths);

  /// What is to be told when an open database has been put in the place of one that is closed.
  void whenReplaced(std::function<void(const Node& closed, const Node& opened)> tell) {
    whenReplaced_ = std::move(tell);
  }

  /// Opens a database that has been made, or has taken the place of an open one, which is closed.
  Node reopen(const std::string& path);

  /// Asks for each open database in whose place another file stands now whether that is to be
  /// opened instead, once for each. The last one opened; null when none was.
  Node openReplacements();

  /// Asks, and takes a top-level source out of the list. False when it stays. `next` is the
  /// source that is to be shown then, null when none is left.
  bool remove(const std::string& key, Node& next);

 private:
  /// The node, after the question whether its files are to be read tolerantly.
  Node withOffer(Node node);
  Node tryToOpen(const std::function<Node()>& open, const std::string& advice);
  /// As `tryToOpen`; asks for the password of a database that wants one, until it is right or the
  /// user gives up. It stays that of the session. Null, without a message, where the user gives up.
  Node tryWithPassword(const std::string& filename, const std::function<Node()>& open,
                       const std::string& advice);

  void replace(const Node& closed, const Node& opened);

  Session& session_;
  SourceOpener opener_;
  std::function<void(const Node&, const Node&)> whenReplaced_;
  std::set<std::string> declined_;  ///< keys of replaced databases that are to stay as they are
};

}  // namespace orv::commands
