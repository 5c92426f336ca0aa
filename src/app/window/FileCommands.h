// The File menu: dialogs that ask what to open, and the opening.
#pragma once

#include <QObject>
#include <QStringList>

#include "app/window/WindowUserInterface.h"
#include "commands/OpenCommands.h"

namespace orv::app {

class FileCommands : public QObject {
  Q_OBJECT

 public:
  using Node = commands::OpenCommands::Node;

  FileCommands(commands::Session& session, QWidget& window);

  void newOrvDatabase();
  void openOrvDatabase();
  void openIgdb();
  void openOptics5UserDatabase();
  void openTextFiles();
  /// Files and folders of any kind.
  void openPaths(const QStringList& paths);
  /// Offers to open the files that have taken the places of open databases.
  void offerReplacements();
  /// Asks, and takes the source that `shown` is or belongs to out of the list.
  void remove(const Node& shown);

 signals:
  void opened(const orv::app::FileCommands::Node& node);
  /// The same of a whole folder, whose files are shown together at first.
  void folderOpened(const orv::app::FileCommands::Node& node);
  /// `next` is to be shown now; null when the list is empty.
  void removed(const orv::app::FileCommands::Node& next);

  void replaced(const std::shared_ptr<orv::sources::datasource>& closed,
                const std::shared_ptr<orv::sources::datasource>& opened);

 private:
  struct Choice {
    std::string folder;
    std::vector<std::string> files;
  };
  enum class Mode { openOne, openSeveral, make };

  /// Asks for files; an empty choice when the user cancels.
  Choice chooseFiles(const QStringList& filters, Mode mode);
  void openDatabase(const QStringList& filters,
                    Node (commands::OpenCommands::*open)(const std::string&, const std::string&));
  void announce(const Node& node);

  commands::OpenCommands commands_;
  QWidget& window_;
};

}  // namespace orv::app
