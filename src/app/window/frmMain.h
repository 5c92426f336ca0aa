// The main window.
#pragma once

#include <QMainWindow>

#include "app/dialogs/DisplayOptions.h"
#include "app/grid/GridPlace.h"
#include "app/window/WindowUserInterface.h"
#include "commands/RecordTable.h"
#include "commands/Session.h"
#include "commands/audit/Finding.h"
#include "commands/compare/Compare.h"
#include "sources/RecordSelection.h"

namespace orv::app {

class CompactCommands;
class CompareCommands;
class CompareDock;
class AuditDock;
class DataPane;
class DataSourceTree;
class EditCommands;
class FieldCommands;
class FileCommands;
class FileWatch;
class GuideWindow;
class LookupCommands;
class MainActions;
class RecordDocks;
class RecordEditing;
class RecordGrid;
class StatusBar;
enum class WorkEffect;

/// Ties the tree, the records, the menus and the commands together: which node is shown, which of
/// its records are selected, and what can be done with them.
class frmMain : public QMainWindow {
  Q_OBJECT

 public:
  /// Both outlive the window.
  frmMain(commands::Session& session, WindowUserInterface& ui);
  ~frmMain() override;

  /// Opens files and folders of any kind.
  void openPaths(const QStringList& paths);

 protected:
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  using Node = std::shared_ptr<sources::datasource>;

  void loadGeometry();
  void saveGeometry() const;
  template <class Handler>
  void onTriggered(QAction* action, Handler handler);
  void connectMenus();
  void connectEditMenu();
  void connectViewMenu();
  /// Has the keys of records act where the records are, and not in the docks.
  void placeKeys();
  void connectParts();

  /// Fills the tree anew and shows a node, which may be null.
  void showSources(const Node& node);
  void showOpened(const Node& source);
  /// Shows a node of a source that has been opened just now.
  void showFirst(const Node& node);
  void showNode(const Node& node);
  void reloadNode(GridPlace::Selection selection = GridPlace::Selection::kept);
  void beginWork();
  void endWork(WorkEffect effect);
  /// Has the copied and the audited records be those of a database that has taken the place of
  /// another.
  void followReplacement(const Node& closed, const Node& opened);
  /// Reads what is shown again when another program has changed its file.
  void followFile();
  void watchFile();
  /// Asks when the event at hand is done, unless a command is under way.
  void offerReplacements();
  void tellRemarks();

  void takeSelection();
  /// Has the docks show the selected records, or the text file that is shown.
  void showDetails();
  void updateState();
  void updateCounts();
  void filterToggled(bool shown);
  void showOptions();
  void showGuide();
  std::unique_ptr<commands::RecordTable> tableOf(const Node& node);
  void chooseStandard(optics::Standard standard);
  void connectAudit();
  void connectEditing();
  /// Audits the source of the node shown, or some of its records.
  void audit(const sources::RecordSelection& records);
  /// Selects the record of a finding, and points at the place on its curve.
  void showFinding(const commands::audit::Finding& finding);
  void connectCompare();
  /// Proposes the two that are selected in the tree, or the one that is shown.
  void compare();
  /// Selects the record of a difference, and shows both of its sides.
  void showDifference(const commands::compare::Difference& difference);
  /// False where it is not among those shown, which is told.
  bool showRecord(const Node& node, const std::string& identifier);
  bool selectRecord(const std::string& identifier);
  void treeMenu(const QPoint& position);
  void copyPath();
  void gridMenu(const QPoint& position);

  commands::Session& session_;
  WindowUserInterface& ui_;
  DisplayOptions options_;
  Node current_;  ///< the node shown; null when none is
  sources::RecordSelection selection_;

  DataSourceTree* tvDataSources_;
  DataPane* dataPane_;
  RecordGrid& grid_;
  StatusBar* sbStatusBar_;
  std::unique_ptr<MainActions> actions_;
  FileCommands* file_;
  EditCommands* edit_;
  CompactCommands* compact_;
  RecordDocks* docks_;
  AuditDock* audit_;
  RecordEditing* editing_;
  FieldCommands* fields_;
  LookupCommands* lookups_;
  CompareCommands* compare_;
  CompareDock* differences_;
  FileWatch* watch_;
  std::unique_ptr<GuideWindow> guide_;  ///< once it has been opened
  std::string auditedSource_;           ///< the key of that whose findings are shown
};

}  // namespace orv::app
