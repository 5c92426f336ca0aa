// The commands of the main window as menus and buttons.
#pragma once

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QToolBar>

namespace orv::app {

/// What the commands' enabling depends on.
struct CommandState {
  bool sourceShown = false;
  bool databaseShown = false;
  bool recordsShown = false;
  bool recordsSelected = false;
  bool exportable = false;  ///< text files can hold the selected records
  bool integrable = false;  ///< the selected records can get integrated values
  bool recordsPending = false;
  bool changed = false;     ///< fields are changed and not saved
  bool undoable = false;    ///< there may be something to undo or redo
  bool comparable = false;  ///< there are two sources, or a source and its record sets
};

/// Makes the menu bar and the tool bar of a window. Each action has its name in the menus as its
/// object name, a status tip, a tool tip and a text for What's This.
class MainActions {
 public:
  explicit MainActions(QMainWindow& window);

  /// Offers the actions that open and close docks.
  void addDocks(std::initializer_list<QAction*> docks);

  /// Offers the actions that keep records in sight.
  void addPins(std::initializer_list<QAction*> pins);

  /// Fits the menus and buttons to what is shown and selected.
  void enable(const CommandState& state);

  QMenu* mnuFile;
  QMenu* mnuFileOpen;
  QMenu* mnuEdit;
  QMenu* mnuView;
  QMenu* mnuSort;
  QMenu* mnuDatabase;
  QMenu* mnuTools;
  QMenu* mnuHelp;
  QToolBar* tbToolBar;

  QAction* mnuFileNewORVDatabase;
  QAction* mnuFileOpenORVDatabase;
  QAction* mnuFileOpenIGDB;
  QAction* mnuFileOpenO5UserDatabase;
  QAction* mnuFileOpenTextFiles;
  QAction* mnuFileRemove;
  QAction* mnuFileSave;
  QAction* mnuFileDiscard;
  QAction* mnuFileExport;
  QAction* mnuFileExit;
  QAction* mnuEditUndo;
  QAction* mnuEditRedo;
  QAction* mnuEditCell;
  QAction* mnuEditCopy;
  QAction* mnuEditPaste;
  QAction* mnuEditDelete;
  QAction* mnuEditIntegrate;
  QAction* mnuEditCopyText;
  QAction* mnuEditCopyCell;
  QAction* mnuEditSaveTable;
  QAction* mnuEditSelectAll;
  QAction* mnuEditPasteText;
  QAction* mnuEditReplace;
  QAction* mnuEditFind;
  QAction* mnuEditFindNext;
  QAction* mnuEditFindPrevious;
  QAction* mnuViewRefresh;
  QAction* mnuViewFilters;
  QAction* mnuViewEditFilter;
  QAction* mnuViewClearFilters;
  QAction* mnuViewColumns;
  QAction* mnuViewFitColumns;
  QAction* mnuViewFreeze;
  QAction* mnuViewStoredValues;
  QAction* mnuViewComputedValues;
  QAction* mnuViewOptions;
  QAction* mnuSortAscending;
  QAction* mnuSortDescending;
  QAction* mnuDatabaseCompact;
  QAction* mnuDatabaseRepair;
  QAction* mnuToolsAudit;
  QAction* mnuToolsAuditRecords;
  QAction* mnuToolsCompare;
  QAction* mnuHelpGuide;
  QAction* mnuHelpKeys;
  QAction* mnuHelpWhatsThis;
  QAction* mnuHelpAbout;

 private:
  QMenu* menu(const char* name, const QString& title, const QString& help);
  QAction* add(QMenu* menu, const char* name, const char* iconName, const QString& text,
               const QKeySequence& shortcut, const QString& help);
  void makeFileMenu();
  void makeEditMenu();
  void makeViewMenu();
  void makeSortMenu();
  void makeDatabaseMenu();
  void makeToolsMenu();
  void makeHelpMenu();
  void makeToolBar();
  void addButton(QAction* action, const char* key);

  QMainWindow& window_;
};

}  // namespace orv::app
