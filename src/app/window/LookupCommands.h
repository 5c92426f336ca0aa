// What is done to the groups, suppliers and frame types of a database.
#pragma once

#include <QObject>
#include <functional>
#include <memory>

#include "app/window/WindowUserInterface.h"
#include "commands/Session.h"

namespace orv::app {

class LookupsDock;

/// Fills the dock while it is open, and renames, merges and deletes names, each in one commit.
class LookupCommands : public QObject {
  Q_OBJECT

 public:
  using Node = std::shared_ptr<sources::datasource>;

  /// All outlive it.
  LookupCommands(commands::Session& session, WindowUserInterface& ui, QWidget& window);

  LookupsDock& dock() const { return *dock_; }
  /// The source whose names are shown; it may be null.
  void follow(const Node& node);
  /// Reads the names again.
  void fill();

 signals:
  /// Before a database is changed: handlers that cannot have that now say so.
  void settleWanted(bool& mayGoOn);
  void workBegins();
  void workEnded();
  void told(const QString& text);

 private:
  void rename();
  void merge();
  void remove();
  /// Runs a change of the names; shows why it is refused.
  void run(const QString& done, const std::function<void()>& change);

  commands::Session& session_;
  WindowUserInterface& ui_;
  QWidget& window_;
  LookupsDock* dock_;
  Node database_;  ///< null where there is none of version 3.0.0
};

}  // namespace orv::app
