// The Database menu's work on whole files.
#pragma once

#include <QObject>

#include "app/window/WindowUserInterface.h"
#include "commands/CompactDatabase.h"
#include "commands/OpenCommands.h"

namespace orv::app {

/// Tells before the work begins and after it ends, so that the window can leave the database alone
/// meanwhile.
class CompactCommands : public QObject {
  Q_OBJECT

 public:
  using Node = commands::OpenCommands::Node;

  CompactCommands(commands::Session& session, WindowUserInterface& ui, QWidget& window);

  /// Asks where to, and compacts the database that `shown` is or belongs to. Where it is damaged,
  /// offers to repair it.
  void compact(const Node& shown);
  /// Asks for a damaged file, which may be that of `shown`, and for the new one.
  void repair(const Node& shown);

  /// The source that a node is or belongs to; null where that is no database.
  static Node databaseOf(const Node& node);

 signals:
  void workBegins();
  void workEnded();
  /// A database that has been made or replaced, opened.
  void opened(const std::shared_ptr<orv::sources::datasource>& node);

  void replaced(const std::shared_ptr<orv::sources::datasource>& closed,
                const std::shared_ptr<orv::sources::datasource>& opened);

 private:
  using Work = commands::CompactRequest::Work;

  void ask(Work work, const QString& path);
  void run(const commands::CompactRequest& request);
  void offerRepair(const std::string& path, const std::string& why);
  void tell(const commands::CompactResult& result, Work work);

  commands::Session& session_;
  WindowUserInterface& ui_;
  QWidget& window_;
  commands::OpenCommands open_;
};

}  // namespace orv::app
