// What the menus, the tree and the grid of the main window do.
#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>
#include <QTimer>

#include "app/Text.h"
#include "app/dialogs/GuideWindow.h"
#include "app/dialogs/KeysDialog.h"
#include "app/dialogs/TableExport.h"
#include "app/dialogs/frmAbout.h"
#include "app/dialogs/frmOptions.h"
#include "app/docks/RecordDocks.h"
#include "app/docks/audit/AuditDock.h"
#include "app/docks/changes/ChangesDock.h"
#include "app/docks/compare/CompareDock.h"
#include "app/grid/ColumnChooser.h"
#include "app/grid/DataPane.h"
#include "app/grid/FilterHeader.h"
#include "app/grid/FindBar.h"
#include "app/grid/RecordGrid.h"
#include "app/sources/DataSourceTree.h"
#include "app/window/CompactCommands.h"
#include "app/window/CompareCommands.h"
#include "app/window/EditCommands.h"
#include "app/window/FieldCommands.h"
#include "app/window/FileCommands.h"
#include "app/window/FileWatch.h"
#include "app/window/Guarded.h"
#include "app/window/LookupCommands.h"
#include "app/window/MainActions.h"
#include "app/window/RecordEditing.h"
#include "app/window/StatusBar.h"
#include "app/window/SuggestedName.h"
#include "app/window/UserSettings.h"
#include "app/window/frmMain.h"
#include "commands/NodeContent.h"
#include "commands/RecordKind.h"
#include "commands/ValueColumns.h"
#include "model/Codes.h"

namespace orv::app {

/// Has a menu item run a handler, once the editing of a cell has come to an end, and its errors
/// shown.
template <class Handler>
void frmMain::onTriggered(QAction* action, Handler handler) {
  connect(action, &QAction::triggered, this, [this, handler] {
    guarded(ui_, [&] {
      if (grid_.finishEditing()) handler();
    });
  });
}

void frmMain::connectMenus() {
  onTriggered(actions_->mnuFileNewORVDatabase, [this] { file_->newOrvDatabase(); });
  onTriggered(actions_->mnuFileOpenORVDatabase, [this] { file_->openOrvDatabase(); });
  onTriggered(actions_->mnuFileOpenIGDB, [this] { file_->openIgdb(); });
  onTriggered(actions_->mnuFileOpenO5UserDatabase, [this] { file_->openOptics5UserDatabase(); });
  onTriggered(actions_->mnuFileOpenTextFiles, [this] { file_->openTextFiles(); });
  onTriggered(actions_->mnuFileRemove, [this] {
    if (editing_->settle(current_)) file_->remove(current_);
  });
  onTriggered(actions_->mnuFileExport, [this] { edit_->exportRecords(selection_); });
  onTriggered(actions_->mnuFileExit, [this] { close(); });
  onTriggered(actions_->mnuDatabaseCompact, [this] {
    if (editing_->settle(current_)) compact_->compact(current_);
  });
  onTriggered(actions_->mnuDatabaseRepair, [this] { compact_->repair(current_); });
  onTriggered(actions_->mnuHelpGuide, [this] { showGuide(); });
  onTriggered(actions_->mnuHelpKeys,
              [this] { KeysDialog(KeysDialog::partsOf(*this), this).exec(); });
  onTriggered(actions_->mnuHelpAbout, [this] { frmAbout(this).exec(); });
  connectEditMenu();
  connectViewMenu();
}

void frmMain::placeKeys() {
  const auto place = [](QAction* action, QWidget* widget) {
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    widget->addAction(action);
  };
  place(actions_->mnuEditDelete, &grid_);
  place(actions_->mnuEditPasteText, &grid_);
  for (QAction* action :
       {actions_->mnuEditCopy, actions_->mnuEditPaste, actions_->mnuEditSelectAll}) {
    place(action, centralWidget());
  }
}

void frmMain::connectEditMenu() {
  onTriggered(actions_->mnuEditCopy, [this] {
    edit_->copy(selection_);
    updateState();
  });
  onTriggered(actions_->mnuEditPaste, [this] {
    if (editing_->settle(current_)) edit_->paste(current_);
  });
  onTriggered(actions_->mnuEditDelete, [this] {
    const sources::RecordSelection records = selection_.Clone();
    const QString names = grid_.selectedNames();
    if (editing_->settle(current_)) edit_->remove(records, current_, names);
  });
  onTriggered(actions_->mnuEditIntegrate, [this] {
    const sources::RecordSelection records = selection_.Clone();
    if (!editing_->settle(current_)) return;
    edit_->computeValues(records, standardOfSpectra());
  });
  onTriggered(actions_->mnuEditSelectAll, [this] {
    grid_.records().complete();
    grid_.selectAll();
  });
  onTriggered(actions_->mnuEditCopyText, [this] { grid_.copyRowsAsText(); });
  onTriggered(actions_->mnuEditCopyCell, [this] { grid_.copyCellAsText(); });
  onTriggered(actions_->mnuEditSaveTable, [this] {
    std::vector<TableChoice> tables{{tr("Rows shown"), [this] { return grid_.wholeTable(); }}};
    if (selection_.HasRecords()) {
      tables.push_back({tr("Selected rows"), [this] { return grid_.selectedTable(); }});
    }
    saveTable(tables, suggestedName(*current_), this);
  });
  onTriggered(actions_->mnuEditReplace, [this] { fields_->replace(); });
  onTriggered(actions_->mnuEditPasteText, [this] { fields_->pasteText(); });
  onTriggered(actions_->mnuEditFind, [this] { dataPane_->findBar().open(); });
  onTriggered(actions_->mnuEditFindNext, [this] { dataPane_->findBar().findNext(); });
  onTriggered(actions_->mnuEditFindPrevious, [this] { dataPane_->findBar().findPrevious(); });
}

void frmMain::connectViewMenu() {
  onTriggered(actions_->mnuViewRefresh, [this] {
    reloadNode();
    offerReplacements();
  });
  connect(actions_->mnuViewFilters, &QAction::toggled, this, &frmMain::filterToggled);
  onTriggered(actions_->mnuViewEditFilter, [this] {
    actions_->mnuViewFilters->setChecked(true);
    grid_.filterHeader().editFilter(std::max(grid_.selectedColumn(), 0));
  });
  onTriggered(actions_->mnuViewClearFilters, [this] { grid_.filterHeader().clearFilters(); });
  onTriggered(actions_->mnuViewColumns, [this] { ColumnChooser(grid_, this).exec(); });
  onTriggered(actions_->mnuViewFitColumns, [this] { grid_.fitColumns(); });
  connect(actions_->mnuViewFreeze, &QAction::toggled, this, [this](bool freezes) {
    grid_.freezeFirstColumn(freezes);
    rememberFreezing(freezes);
  });
  actions_->mnuViewFreeze->setChecked(freezesFirstColumn());
  onTriggered(actions_->mnuViewStoredValues, [this] { reloadNode(); });
  onTriggered(actions_->mnuViewComputedValues, [this] { reloadNode(); });
  onTriggered(actions_->mnuViewOptions, [this] { showOptions(); });
  onTriggered(actions_->mnuSortAscending, [this] { grid_.sort(Qt::AscendingOrder); });
  onTriggered(actions_->mnuSortDescending, [this] { grid_.sort(Qt::DescendingOrder); });
}

void frmMain::connectParts() {
  connect(file_, &FileCommands::opened, this, &frmMain::showOpened);
  connect(file_, &FileCommands::folderOpened, this, &frmMain::showFirst);
  connect(file_, &FileCommands::removed, this, &frmMain::showSources);
  connect(compact_, &CompactCommands::opened, this, &frmMain::showOpened);
  connect(compact_, &CompactCommands::workBegins, this, &frmMain::beginWork);
  connect(compact_, &CompactCommands::workEnded, this,
          [this] { endWork(WorkEffect::readsRecords); });
  connect(compact_, &CompactCommands::replaced, this, &frmMain::followReplacement);
  connect(file_, &FileCommands::replaced, this, &frmMain::followReplacement);
  connect(watch_, &FileWatch::changed, this, [this] { guarded(ui_, [this] { followFile(); }); });
  connect(dataPane_, &DataPane::repairWanted, actions_->mnuDatabaseRepair, &QAction::trigger);
  connect(edit_, &EditCommands::workBegins, this, &frmMain::beginWork);
  connect(edit_, &EditCommands::workEnded, this, &frmMain::endWork);
  connect(edit_, &EditCommands::workBegins, this, [this] { sbStatusBar_->result({}, {}); });
  connect(edit_, &EditCommands::finished, sbStatusBar_, &StatusBar::result);

  connect(tvDataSources_, &DataSourceTree::nodeSelected, this, [this](const std::string& key) {
    guarded(ui_, [&] {
      if (grid_.finishEditing()) return showNode(session_.MainDataSources.findByKey(key));
      tvDataSources_->select(current_ ? current_->key() : std::string());
    });
  });
  // What is dropped is worked on when the dragging program has been let go.
  connect(tvDataSources_, &DataSourceTree::recordsDropped, this, [this](const std::string& key) {
    QTimer::singleShot(0, this, [this, key] {
      const Node destination = session_.MainDataSources.findByKey(key);
      const sources::RecordSelection records = selection_.Clone();
      if (editing_->settle(destination)) edit_->transfer(records, destination);
    });
  });
  connect(tvDataSources_, &DataSourceTree::pathsDropped, this, [this](const QStringList& paths) {
    QTimer::singleShot(0, this, [this, paths] { guarded(ui_, [&] { openPaths(paths); }); });
  });
  connect(tvDataSources_, &DataSourceTree::contextMenuWanted, this, &frmMain::treeMenu);

  connect(&grid_, &RecordGrid::selectedRowsChanged, this,
          [this] { guarded(ui_, [this] { takeSelection(); }); });
  connect(&grid_, &RecordGrid::detailsWanted, docks_, &RecordDocks::openDetails);
  connect(&grid_, &RecordGrid::contextMenuWanted, this, &frmMain::gridMenu);
  connect(&grid_, &RecordGrid::fillingTold, sbStatusBar_, &StatusBar::status);
  connect(&grid_, &RecordGrid::columnChooserWanted, actions_->mnuViewColumns, &QAction::trigger);
  connect(docks_, &RecordDocks::refreshWanted, actions_->mnuViewRefresh, &QAction::trigger);
  connect(docks_, &RecordDocks::standardChosen, this, &frmMain::chooseStandard);
  dataPane_->makeTablesBy([this](const Node& node) { return tableOf(node); });
  connect(&grid_.records(), &RecordModel::rowsCounted, this, &frmMain::updateCounts);
  connect(
      &grid_.records(), &RecordModel::readingFailed, this,
      [this](const QString& description, bool isDamage) {
        const QString remedy = isDamage ? tr(" Database > Repair saves what can be read.") : "";
        sbStatusBar_->status(tr("The records could not be read on: %1%2").arg(description, remedy));
      });
}

void frmMain::connectAudit() {
  onTriggered(actions_->mnuToolsAudit, [this] { audit(sources::RecordSelection()); });
  onTriggered(actions_->mnuToolsAuditRecords, [this] { audit(selection_.Clone()); });
  audit_->setLeftOut(rulesLeftOut());
  connect(audit_, &AuditDock::leftOutChanged, this, &rememberRulesLeftOut);
  connect(audit_, &AuditDock::chosen, this, [this](const commands::audit::Finding& finding) {
    guarded(ui_, [&] { showFinding(finding); });
  });
  connect(edit_, &EditCommands::audited, this,
          [this](const std::string& source, const Findings& findings, const QString& summary) {
            auditedSource_ = source;
            audit_->show(findings, summary);
          });
}

void frmMain::connectEditing() {
  onTriggered(actions_->mnuFileSave, [this] { editing_->save(); });
  onTriggered(actions_->mnuFileDiscard, [this] { editing_->discard(); });
  onTriggered(actions_->mnuEditUndo, [this] { editing_->undo(); });
  onTriggered(actions_->mnuEditRedo, [this] { editing_->redo(); });
  onTriggered(actions_->mnuEditCell, [this] { grid_.editCurrent(); });
  editing_->dock().offer({actions_->mnuFileSave, actions_->mnuFileDiscard, actions_->mnuEditUndo,
                          actions_->mnuEditRedo});
  connect(actions_->mnuEdit, &QMenu::aboutToShow, this, [this] {
    const auto name = [](QAction* action, const QString& verb, const QString& title) {
      action->setText(title.isEmpty() ? verb : QStringLiteral("%1: %2").arg(verb, title));
    };
    guarded(ui_, [&] {
      name(actions_->mnuEditUndo, tr("&Undo"), editing_->undoTitle());
      name(actions_->mnuEditRedo, tr("&Redo"), editing_->redoTitle());
    });
  });
  connect(editing_, &RecordEditing::told, sbStatusBar_, &StatusBar::status);
  connect(fields_, &FieldCommands::told, sbStatusBar_, &StatusBar::status);
  connect(editing_, &RecordEditing::undoOffered, sbStatusBar_, &StatusBar::offerUndo);
  connect(editing_, &RecordEditing::stateChanged, this, &frmMain::updateState);
  connect(editing_, &RecordEditing::workBegins, this, &frmMain::beginWork);
  connect(editing_, &RecordEditing::workEnded, this,
          [this] { endWork(WorkEffect::changesRecords); });
  connect(lookups_, &LookupCommands::settleWanted, this,
          [this](bool& mayGoOn) { mayGoOn = editing_->settle(current_); });
  connect(lookups_, &LookupCommands::told, sbStatusBar_, &StatusBar::status);
  connect(lookups_, &LookupCommands::workBegins, this, &frmMain::beginWork);
  connect(lookups_, &LookupCommands::workEnded, this,
          [this] { endWork(WorkEffect::changesRecords); });
  connect(sbStatusBar_, &StatusBar::undoWanted, actions_->mnuEditUndo, &QAction::trigger);
  connect(&editing_->dock(), &ChangesDock::chosen, this, [this](std::int32_t record) {
    guarded(ui_, [&] { showRecord(current_, std::to_string(record)); });
  });
}

void frmMain::audit(const sources::RecordSelection& records) {
  const Node parent = current_->Parent();
  edit_->audit(parent ? parent : current_, records);
}

/// Rows of other tables are shown nowhere.
void frmMain::showFinding(const commands::audit::Finding& finding) {
  const Node source = session_.MainDataSources.findByKey(auditedSource_);
  const Node node = source && finding.kind ? commands::recordSetOf(source, *finding.kind) : nullptr;
  if (!node) {
    const QString reason =
        source ? tr("This is no record, but a row of the table %1.").arg(shownText(finding.set))
               : tr("The source that was audited is not open any more.");
    return sbStatusBar_->status(reason);
  }
  if (!showRecord(node, finding.identifier)) return;
  constexpr double kPerMicron = 1000;
  if (finding.fault.wavelength) {
    docks_->pointAt(*finding.fault.wavelength / kPerMicron, finding.fault.angle);
  }
}

void frmMain::connectCompare() {
  onTriggered(actions_->mnuToolsCompare, [this] { compare(); });
  connect(compare_, &CompareCommands::workBegins, this, &frmMain::beginWork);
  connect(compare_, &CompareCommands::workEnded, this, [this](bool changed) {
    endWork(changed ? WorkEffect::changesRecords : WorkEffect::readsRecords);
  });
  connect(compare_, &CompareCommands::finished, sbStatusBar_, &StatusBar::result);
  connect(compare_, &CompareCommands::statusMessage, sbStatusBar_, &StatusBar::status);
  connect(compare_, &CompareCommands::compared, differences_, &CompareDock::show);
  connect(differences_, &CompareDock::copyWanted, this,
          [this](const std::vector<std::size_t>& pairs) {
            if (editing_->settle({})) compare_->copy(pairs);
          });
  connect(differences_, &CompareDock::refreshWanted, compare_, &CompareCommands::compareAgain);
  connect(differences_, &CompareDock::chosen, this,
          [this](const commands::compare::Difference& difference) {
            guarded(ui_, [&] { showDifference(difference); });
          });
}

/// What is compared is what is stored.
void frmMain::compare() {
  if (!editing_->settle({})) return;
  auto keys = tvDataSources_->selectedKeys();
  for (std::string& key : keys) {
    const Node node = session_.MainDataSources.findByKey(key);
    const Node parent = node ? node->Parent() : nullptr;
    if (parent && parent->DataType() == sources::DataType::textFolder) key = parent->key();
  }
  keys.resize(std::max<std::size_t>(keys.size(), 2));
  compare_->compare(keys[0], keys[1]);
}

/// The record is selected on the side that is shown, where it is there.
void frmMain::showDifference(const commands::compare::Difference& difference) {
  const auto places = compare_->placesOf(difference);
  if (!places) {
    return sbStatusBar_->status(tr("A source that was compared is not open any more."));
  }
  const auto& [left, right] = *places;
  const bool isLeft =
      right.identifiers.empty() || (!left.identifiers.empty() && right.node != current_);
  const auto& place = isLeft ? left : right;
  showRecord(place.node, place.identifiers.front());
  std::optional<int> angle;
  if (difference.angle) angle = static_cast<int>(*difference.angle);
  docks_->showDifference({left.node, left.identifiers}, {right.node, right.identifiers}, angle);
  constexpr double kPerMicron = 1000;
  if (difference.wavelength) docks_->pointAt(*difference.wavelength / kPerMicron);
}

bool frmMain::showRecord(const Node& node, const std::string& identifier) {
  if (!grid_.finishEditing()) return false;
  if (node != current_) {
    tvDataSources_->select(node->key());
    showNode(node);
  }
  const bool isThere = selectRecord(identifier);
  if (!isThere) sbStatusBar_->status(tr("The record is not among those shown."));
  return isThere;
}

bool frmMain::selectRecord(const std::string& identifier) {
  const auto rows = grid_.records().rowsOf({identifier}, grid_.currentIndex().row());
  if (rows.empty()) return false;
  grid_.selectRows({rows.front(), rows.front()});
  return true;
}

void frmMain::filterToggled(bool shown) {
  grid_.filterHeader().showFilters(shown);
}

/// Of panes with their integrated values, where the user wants these.
std::unique_ptr<commands::RecordTable> frmMain::tableOf(const Node& node) {
  auto table = commands::openRecordTable(node);
  const bool isOfPanes = commands::recordKind(*node) == commands::RecordKind::panes;
  commands::ValueChoice choice{.stored = actions_->mnuViewStoredValues->isChecked()};
  if (actions_->mnuViewComputedValues->isChecked()) choice.computedBy = standardOfSpectra();
  if (!isOfPanes || !(choice.stored || choice.computedBy)) return table;
  return std::make_unique<commands::ValueColumns>(std::move(table), session_, node, choice);
}

void frmMain::chooseStandard(optics::Standard standard) {
  rememberStandardOfSpectra(standard);
  if (actions_->mnuViewComputedValues->isChecked()) guarded(ui_, [this] { reloadNode(); });
}

void frmMain::showOptions() {
  frmOptions dialog(options_, this);
  if (dialog.exec() != QDialog::Accepted) return;
  const DisplayOptions old = std::exchange(options_, dialog.options());
  if (options_.theme != old.theme) applyTheme(options_.theme);
  edit_->integrateBy(options_.integrateBy);
  compare_->integrateBy(options_.integrateBy);
  docks_->wavelengthUnit(options_.plotUnit == PlotUnit::microns ? kMicrons : kNanometers);
  grid_.copyAsShown(options_.copiesAsShown);
  if (options_.digits != old.digits) grid_.digits(options_.digits);
}

void frmMain::showGuide() {
  if (guideFolder().isEmpty()) {
    return ui_.message(commands::MessageKind::information,
                       tr("The user guide is not installed with the program.").toStdString(),
                       commands::kProductName);
  }
  if (!guide_) guide_ = std::make_unique<GuideWindow>();
  guide_->open("the-window");
}

void frmMain::treeMenu(const QPoint& position) {
  QMenu menu(this);
  menu.addMenu(actions_->mnuFileOpen);
  menu.addAction(actions_->mnuFileNewORVDatabase);
  menu.addAction(actions_->mnuEditPaste);
  menu.addSeparator();
  menu.addAction(tr("Copy Pat&h"), this, [this] { copyPath(); })->setEnabled(current_ != nullptr);
  menu.addAction(actions_->mnuViewRefresh);
  menu.addAction(actions_->mnuFileRemove);
  menu.exec(position);
}

/// Of the file or folder that the shown node is or belongs to.
void frmMain::copyPath() {
  const bool isRecordSet = !current_->DisplayRecordSetName().empty();
  const Node source = isRecordSet ? current_->Parent() : current_;
  QGuiApplication::clipboard()->setText(qt(commands::nodeTitle(source.get())));
}

void frmMain::gridMenu(const QPoint& position) {
  QMenu menu(this);
  menu.addActions({actions_->mnuEditCell, actions_->mnuEditPasteText});
  menu.addActions({actions_->mnuEditCopy, actions_->mnuEditPaste, actions_->mnuEditDelete});
  menu.addSeparator();
  menu.addActions({actions_->mnuEditCopyText, actions_->mnuEditCopyCell, actions_->mnuEditSaveTable,
                   actions_->mnuFileExport});
  menu.addSeparator();
  QMenu* column = menu.addMenu(tr("Colu&mn"));
  grid_.addColumnCommands(*column, std::max(grid_.selectedColumn(), 0));
  menu.addActions({docks_->pinAction(), actions_->mnuViewEditFilter});
  menu.exec(position);
}

}  // namespace orv::app
