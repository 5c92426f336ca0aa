#include "app/window/MainActions.h"

#include <QMenuBar>
#include <QToolButton>
#include <QWhatsThis>

#include "app/Help.h"
#include "app/Text.h"
#include "app/theme/Icons.h"

namespace orv::app {

namespace {

QString tr(const char* text) {
  return QMainWindow::tr(text);
}

}  // namespace

MainActions::MainActions(QMainWindow& window) : window_(window) {
  makeFileMenu();
  makeEditMenu();
  makeViewMenu();
  makeSortMenu();
  makeDatabaseMenu();
  makeToolsMenu();
  makeHelpMenu();
  makeToolBar();
}

void MainActions::enable(const CommandState& state) {
  mnuFileRemove->setEnabled(state.sourceShown);
  mnuFileSave->setEnabled(state.changed);
  mnuFileDiscard->setEnabled(state.changed);
  mnuFileExport->setEnabled(state.exportable);
  mnuEditUndo->setEnabled(state.undoable);
  mnuEditRedo->setEnabled(state.undoable);
  mnuEditCell->setEnabled(state.recordsShown);
  mnuDatabaseCompact->setEnabled(state.databaseShown);
  mnuEditCopy->setEnabled(state.recordsSelected);
  mnuEditDelete->setEnabled(state.recordsSelected);
  mnuEditPaste->setEnabled(state.recordsPending);
  mnuEditIntegrate->setEnabled(state.integrable);
  mnuViewRefresh->setEnabled(state.sourceShown);
  mnuToolsAudit->setEnabled(state.sourceShown);
  mnuToolsAuditRecords->setEnabled(state.recordsSelected);
  mnuToolsCompare->setEnabled(state.comparable);
  mnuSort->setEnabled(state.recordsShown);
  for (QAction* action : {mnuEditCopyText, mnuEditCopyCell, mnuEditPasteText}) {
    action->setEnabled(state.recordsSelected);
  }
  for (QAction* action :
       {mnuEditSelectAll, mnuEditSaveTable, mnuEditFind, mnuEditFindNext, mnuEditFindPrevious,
        mnuEditReplace, mnuViewEditFilter, mnuViewClearFilters, mnuViewColumns, mnuViewFitColumns,
        mnuSortAscending, mnuSortDescending}) {
    action->setEnabled(state.recordsShown);
  }
}

void MainActions::addDocks(std::initializer_list<QAction*> docks) {
  mnuView->insertSeparator(mnuViewOptions);
  QAction* before = mnuView->insertSeparator(mnuViewOptions);
  tbToolBar->addSeparator();
  for (QAction* dock : docks) {
    mnuView->insertAction(before, dock);
    tbToolBar->addAction(dock);
  }
}

void MainActions::addPins(std::initializer_list<QAction*> pins) {
  for (QAction* pin : pins) mnuView->insertAction(mnuViewOptions, pin);
  mnuView->insertSeparator(mnuViewOptions);
}

QMenu* MainActions::menu(const char* name, const QString& title, const QString& help) {
  QMenu* menu = window_.menuBar()->addMenu(title);
  menu->setObjectName(name);
  menu->setToolTipsVisible(true);
  explain(menu->menuAction(), help);
  return menu;
}

QAction* MainActions::add(QMenu* menu, const char* name, const char* iconName, const QString& text,
                          const QKeySequence& shortcut, const QString& help) {
  auto* action = new QAction(icon(iconName), text, &window_);
  action->setObjectName(name);
  action->setShortcut(shortcut);
  explain(action, help);
  menu->addAction(action);
  return action;
}

void MainActions::makeFileMenu() {
  mnuFile =
      menu("mnuFile", tr("&File"), tr("Open, make and export data sources, and end the program"));
  mnuFileNewORVDatabase = add(mnuFile, "mnuFileNewORVDatabase", "new", tr("&New ORV Database..."),
                              QKeySequence::New, tr("Make an empty ORV database and open it"));
  mnuFileOpen = mnuFile->addMenu(icon("open"), tr("&Open"));
  mnuFileOpen->setObjectName("mnuFileOpen");
  mnuFileOpen->setToolTipsVisible(true);
  mnuFileOpenORVDatabase =
      add(mnuFileOpen, "mnuFileOpenORVDatabase", "database", tr("&ORV Database..."),
          QKeySequence::Open, tr("Open an ORV database"));
  mnuFileOpenIGDB =
      add(mnuFileOpen, "mnuFileOpenIGDB", "database", tr("&International Glazing Database..."),
          QKeySequence(tr("Ctrl+I")), tr("Open the International Glazing Database"));
  mnuFileOpenO5UserDatabase =
      add(mnuFileOpen, "mnuFileOpenO5UserDatabase", "database", tr("Optics5 &User Database..."),
          QKeySequence(tr("Ctrl+U")), tr("Open a user database of the Optics5 program"));
  mnuFileOpenTextFiles =
      add(mnuFileOpen, "mnuFileOpenTextFiles", "text-file", tr("Spectral &Text Files..."),
          QKeySequence(tr("Ctrl+T")),
          tr("Open spectral data of panes or shadings as text files, or products as JSON"));
  mnuFileRemove = add(mnuFile, "mnuFileRemove", "remove", tr("Re&move"), QKeySequence::Close,
                      tr("Remove the data source from the list; its file stays as it is"));
  mnuFile->addSeparator();
  mnuFileSave = add(mnuFile, "mnuFileSave", "save", tr("&Save Changes"), QKeySequence::Save,
                    tr("Write the changed fields of the records shown into the database"));
  mnuFileDiscard = add(mnuFile, "mnuFileDiscard", "cancel", tr("&Discard Changes"), {},
                       tr("Leave the fields of the records shown as they are stored"));
  mnuFile->addSeparator();
  mnuFileExport =
      add(mnuFile, "mnuFileExport", "export", tr("&Export..."), QKeySequence(tr("Ctrl+E")),
          tr("Write the selected records as text files, JSON or CSV"));
  mnuFile->addSeparator();
  mnuFileExit =
      add(mnuFile, "mnuFileExit", "exit", tr("E&xit"), QKeySequence::Quit, tr("End the program"));
  mnuFileExit->setMenuRole(QAction::QuitRole);
}

void MainActions::makeEditMenu() {
  mnuEdit = menu("mnuEdit", tr("&Edit"), tr("Change, copy, paste, delete and find records"));
  mnuEditUndo = add(mnuEdit, "mnuEditUndo", "undo", tr("&Undo"), QKeySequence::Undo,
                    tr("Take back the last change of the database shown, saved or not"));
  mnuEditRedo = add(mnuEdit, "mnuEditRedo", "redo", tr("&Redo"),
                    QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z),
                    tr("Make the change again that was taken back last"));
  mnuEdit->addSeparator();
  mnuEditCell = add(mnuEdit, "mnuEditCell", "edit", tr("Edit Fie&ld"), {},
                    tr("Edit the field under the cursor, for all selected records (F2)"));
  mnuEdit->addSeparator();
  mnuEditCopy = add(mnuEdit, "mnuEditCopy", "copy", tr("&Copy Records"), QKeySequence::Copy,
                    tr("Remember the selected records, to paste them into an ORV database"));
  mnuEditPaste = add(mnuEdit, "mnuEditPaste", "paste", tr("&Paste Records"), QKeySequence::Paste,
                     tr("Copy the remembered records into the ORV database shown"));
  mnuEditDelete = add(mnuEdit, "mnuEditDelete", "delete", tr("&Delete Records"),
                      QKeySequence::Delete, tr("Delete the selected records from the database"));
  mnuEditIntegrate =
      add(mnuEdit, "mnuEditIntegrate", "", tr("Compute &Integrated Values..."),
          QKeySequence(tr("Ctrl+Shift+I")),
          tr("Compute the solar, visible and ultraviolet values of the selected panes"));
  mnuEdit->addSeparator();
  mnuEditSelectAll = add(mnuEdit, "mnuEditSelectAll", "", tr("Select &All"),
                         QKeySequence::SelectAll, tr("Select all records shown"));
  mnuEditCopyText = add(mnuEdit, "mnuEditCopyText", "table", tr("Copy as &Text"),
                        QKeySequence(tr("Ctrl+Shift+C")),
                        tr("Put the fields of the selected records on the clipboard as a table"));
  mnuEditCopyCell =
      add(mnuEdit, "mnuEditCopyCell", "", tr("Cop&y Cell"), QKeySequence(tr("Ctrl+Alt+C")),
          tr("Put the field under the cursor on the clipboard"));
  mnuEditPasteText = add(
      mnuEdit, "mnuEditPasteText", "", tr("Paste Te&xt into Fields"),
      QKeySequence(tr("Ctrl+Shift+V")),
      tr("Paste the text on the clipboard, also a block of a spreadsheet, from the field under the "
         "cursor on; one value goes to all selected records"));
  mnuEditSaveTable =
      add(mnuEdit, "mnuEditSaveTable", "save", tr("&Save Table..."), {},
          tr("Save the records shown or selected, in the columns shown, as a table for other "
             "programs"));
  mnuEdit->addSeparator();
  mnuEditFind = add(mnuEdit, "mnuEditFind", "find", tr("&Find..."), QKeySequence::Find,
                    tr("Find a text in the records shown"));
  mnuEditFindNext = add(mnuEdit, "mnuEditFindNext", "next", tr("Find &Next"),
                        QKeySequence::FindNext, tr("Find the text further on"));
  mnuEditFindPrevious = add(mnuEdit, "mnuEditFindPrevious", "previous", tr("Find Pre&vious"),
                            QKeySequence::FindPrevious, tr("Find the text further back"));
  mnuEditReplace =
      add(mnuEdit, "mnuEditReplace", "edit", tr("Find and R&eplace..."), QKeySequence(tr("Ctrl+H")),
          tr("Replace a text in a column, after a look at all that it would change"));
}

void MainActions::makeViewMenu() {
  mnuView = menu("mnuView", tr("&View"), tr("Choose what the window shows, and how"));
  mnuViewRefresh = add(mnuView, "mnuViewRefresh", "refresh", tr("&Refresh"), QKeySequence::Refresh,
                       tr("Read the data source shown again"));
  mnuView->addSeparator();
  mnuViewFilters =
      add(mnuView, "mnuViewFilters", "filter", tr("&Filter Row"), QKeySequence(tr("Ctrl+Shift+F")),
          tr("Show a row of filters above the records"));
  mnuViewFilters->setCheckable(true);
  mnuViewFilters->setChecked(true);
  mnuViewEditFilter = add(mnuView, "mnuViewEditFilter", "", tr("Go to F&ilter"),
                          QKeySequence(tr("Ctrl+L")), tr("Type a filter for the selected column"));
  mnuViewClearFilters = add(mnuView, "mnuViewClearFilters", "", tr("Cl&ear Filters"),
                            QKeySequence(tr("Ctrl+Shift+L")), tr("Show all rows again"));
  mnuViewColumns = add(mnuView, "mnuViewColumns", "columns", tr("&Columns..."), QKeySequence(),
                       tr("Choose the columns of the grid"));
  mnuViewFitColumns = add(mnuView, "mnuViewFitColumns", "", tr("Fit Column &Widths"),
                          QKeySequence(), tr("Make the columns as wide as their fields need"));
  mnuViewFreeze = add(mnuView, "mnuViewFreeze", "", tr("Free&ze First Column"), QKeySequence(),
                      tr("Keep the first column in sight while the others scroll"));
  mnuViewFreeze->setCheckable(true);
  mnuViewStoredValues =
      add(mnuView, "mnuViewStoredValues", "", tr("Stored Integrated &Values"), QKeySequence(),
          tr("Add columns with the stored solar and visible values of panes to "
             "the grid"));
  mnuViewStoredValues->setCheckable(true);
  mnuViewComputedValues =
      add(mnuView, "mnuViewComputedValues", "", tr("Co&mputed Integrated Values"), QKeySequence(),
          tr("Add columns with the solar and visible values that the spectra of panes have to the "
             "grid"));
  mnuViewComputedValues->setCheckable(true);
  mnuViewOptions = add(mnuView, "mnuViewOptions", "options", tr("&Options..."),
                       QKeySequence(tr("Ctrl+,")), tr("Choose how data are displayed"));
  mnuViewOptions->setMenuRole(QAction::PreferencesRole);
}

void MainActions::makeSortMenu() {
  mnuSort = menu("mnuSort", tr("&Sort"), tr("Put the records in order"));
  mnuSortAscending = add(mnuSort, "mnuSortAscending", "sort-ascending", tr("&Ascending"),
                         QKeySequence(tr("Ctrl+Shift+Up")),
                         tr("Sort the records by the selected column, least first"));
  mnuSortDescending = add(mnuSort, "mnuSortDescending", "sort-descending", tr("&Descending"),
                          QKeySequence(tr("Ctrl+Shift+Down")),
                          tr("Sort the records by the selected column, greatest first"));
}

void MainActions::makeDatabaseMenu() {
  mnuDatabase = menu("mnuDatabase", tr("&Database"), tr("Compact and repair whole files"));
  mnuDatabaseCompact =
      add(mnuDatabase, "mnuDatabaseCompact", "", tr("&Compact..."), QKeySequence(),
          tr("Write the database shown anew, without the space that deletions have left"));
  mnuDatabaseRepair = add(mnuDatabase, "mnuDatabaseRepair", "", tr("&Repair..."), QKeySequence(),
                          tr("Take what can be read of a damaged database into a new file"));
}

void MainActions::makeToolsMenu() {
  mnuTools = menu("mnuTools", tr("&Tools"), tr("Judge the data of sources"));
  mnuToolsAudit =
      add(mnuTools, "mnuToolsAudit", "audit", tr("&Audit Source"), QKeySequence(tr("F9")),
          tr("Find faults in the data of all records of the source, and change nothing"));
  mnuToolsAuditRecords =
      add(mnuTools, "mnuToolsAuditRecords", "", tr("Audit Selected &Records"),
          QKeySequence(tr("Shift+F9")), tr("Find faults in the data of the selected records"));
  mnuTools->addSeparator();
  mnuToolsCompare =
      add(mnuTools, "mnuToolsCompare", "compare", tr("&Compare..."), QKeySequence(tr("Ctrl+D")),
          tr("Tell what differs between two sources or record sets, and change nothing"));
}

void MainActions::makeHelpMenu() {
  mnuHelp = menu("mnuHelp", tr("&Help"), tr("Explain the window and the program"));
  mnuHelpGuide = add(mnuHelp, "mnuHelpGuide", "help", tr("User &Guide"), QKeySequence::HelpContents,
                     tr("Open the user guide"));
  mnuHelpKeys = add(mnuHelp, "mnuHelpKeys", "", tr("&Keys..."), QKeySequence(),
                    tr("List the keys of all commands"));
  mnuHelpWhatsThis = QWhatsThis::createAction(&window_);
  mnuHelpWhatsThis->setObjectName("mnuHelpWhatsThis");
  mnuHelpWhatsThis->setText(tr("&What's This?"));
  mnuHelpWhatsThis->setIcon(icon("help"));
  explain(mnuHelpWhatsThis, tr("Explain what is clicked on next"));
  mnuHelp->addAction(mnuHelpWhatsThis);
  mnuHelp->addSeparator();
  mnuHelpAbout = add(mnuHelp, "mnuHelpAbout", "about", tr("&About..."), QKeySequence(),
                     tr("Show the version of the program"));
  mnuHelpAbout->setMenuRole(QAction::AboutRole);
}

void MainActions::makeToolBar() {
  tbToolBar = new QToolBar(tr("Tool Bar"), &window_);
  tbToolBar->setObjectName("tbToolBar");
  tbToolBar->setMovable(false);
  tbToolBar->setAccessibleName(tr("Tool bar"));
  tbToolBar->setWhatsThis(tr("The commands that are used most"));
  explain(tbToolBar->toggleViewAction(), tr("Show or hide the tool bar"));
  window_.addToolBar(tbToolBar);
  QAction* open = mnuFileOpen->menuAction();
  explain(open, tr("Open a database or text files and add them to the list"));
  addButton(open, "Open");
  tbToolBar->addSeparator();
  addButton(mnuEditCopy, "Copy");
  addButton(mnuEditPaste, "Paste");
  addButton(mnuEditDelete, "Delete");
  tbToolBar->addSeparator();
  addButton(mnuSortAscending, "Sort Ascending");
  addButton(mnuSortDescending, "Sort Descending");
}

void MainActions::addButton(QAction* action, const char* key) {
  tbToolBar->addAction(action);
  auto* button = static_cast<QToolButton*>(tbToolBar->widgetForAction(action));
  button->setObjectName(key);
  button->setAccessibleName(qt(key));
  if (action->menu() != nullptr) button->setPopupMode(QToolButton::InstantPopup);
}

}  // namespace orv::app
