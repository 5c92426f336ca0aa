#include "app/window/frmMain.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QTabBar>
#include <QTimer>

#include "app/Pointers.h"
#include "app/Text.h"
#include "app/dialogs/GuideWindow.h"
#include "app/docks/RecordDocks.h"
#include "app/docks/audit/AuditDock.h"
#include "app/docks/changes/ChangesDock.h"
#include "app/docks/compare/CompareDock.h"
#include "app/docks/lookups/LookupsDock.h"
#include "app/grid/DataPane.h"
#include "app/grid/RecordGrid.h"
#include "app/sources/DataSourceTree.h"
#include "app/theme/Icons.h"
#include "app/window/CompactCommands.h"
#include "app/window/CompareCommands.h"
#include "app/window/EditCommands.h"
#include "app/window/FieldCommands.h"
#include "app/window/FileCommands.h"
#include "app/window/FileWatch.h"
#include "app/window/Guarded.h"
#include "app/window/LookupCommands.h"
#include "app/window/MainActions.h"
#include "app/window/PaneSplitter.h"
#include "app/window/RecordEditing.h"
#include "app/window/StatusBar.h"
#include "app/window/UserSettings.h"
#include "app/window/WindowGeometry.h"
#include "commands/RecordKind.h"
#include "commands/Remarks.h"
#include "store/Connection.h"

namespace orv::app {

namespace {

/// In a smaller window the docks are closed at first: they would leave the grid no room.
constexpr QSize kRoomForDocks(900, 600);

}  // namespace

frmMain::frmMain(commands::Session& session, WindowUserInterface& ui)
    : session_(session),
      ui_(ui),
      tvDataSources_(new DataSourceTree),
      dataPane_(new DataPane),
      grid_(dataPane_->grid()),
      sbStatusBar_(new StatusBar),
      actions_(std::make_unique<MainActions>(*this)),
      file_(new FileCommands(session, *this)),
      edit_(new EditCommands(session, ui, *this)),
      compact_(new CompactCommands(session, ui, *this)),
      docks_(new RecordDocks(session, *this)),
      audit_(new AuditDock(this)),
      editing_(new RecordEditing(session, ui, grid_, *this)),
      fields_(new FieldCommands(grid_, ui, *this)),
      lookups_(new LookupCommands(session, ui, *this)),
      compare_(new CompareCommands(session, ui, *this)),
      differences_(new CompareDock(this)),
      watch_(new FileWatch(this)) {
  setObjectName("frmMain");
  setWindowTitle(qt(commands::kProductName));
  setWindowIcon(applicationIcon());
  setAcceptDrops(true);
  setStatusBar(sbStatusBar_);
  setCentralWidget(new PaneSplitter(tvDataSources_, dataPane_));
  file_->setParent(this);
  edit_->setParent(this);
  compact_->setParent(this);
  compare_->setParent(this);
  ui_.attach(this, [this](const QString& text) { sbStatusBar_->status(text); });
  actions_->addDocks({docks_->spectrumAction(), docks_->detailsAction(), audit_->toggleViewAction(),
                      editing_->dock().toggleViewAction(), lookups_->dock().toggleViewAction(),
                      differences_->toggleViewAction()});
  actions_->addPins({docks_->pinAction(), docks_->unpinAction()});
  docks_->layOverDetails(*audit_);
  docks_->layOverDetails(editing_->dock());
  docks_->layOverDetails(lookups_->dock());
  docks_->layOverDetails(*differences_);
  connectMenus();
  placeKeys();
  connectParts();
  connectAudit();
  connectEditing();
  connectCompare();
  loadGeometry();
  docks_->standard(standardOfSpectra());
  docks_->open(width() >= kRoomForDocks.width() && height() >= kRoomForDocks.height());
  showSources(nullptr);
}

/// The changes go before the parts that show them, which are deleted in any order.
frmMain::~frmMain() {
  delete editing_;
}

void frmMain::openPaths(const QStringList& paths) {
  if (grid_.finishEditing()) file_->openPaths(paths);
}

void frmMain::loadGeometry() {
  QSettings settings = userSettings();
  WindowGeometry::load(settings).applyTo(*this);
}

void frmMain::saveGeometry() const {
  QSettings settings = userSettings();
  WindowGeometry::of(*this).save(settings);
}

/// The names of docks that lie over each other are shown whole: where there is no room for all, the
/// tabs scroll.
bool frmMain::event(QEvent* event) {
  if (event->type() == QEvent::ChildPolished) {
    auto* tabs = qobject_cast<QTabBar*>(static_cast<QChildEvent*>(event)->child());
    if (tabs != nullptr) tabs->setElideMode(Qt::ElideNone);
  }
  return QMainWindow::event(event);
}

/// Files are replaced while the user is with another program.
void frmMain::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::ActivationChange && isActiveWindow()) offerReplacements();
}

void frmMain::closeEvent(QCloseEvent* event) {
  if (ui_.isWorking() || !editing_->settle(nullptr)) {
    event->ignore();
    return;
  }
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window != this && window->isVisible()) window->close();
  }
  if (!isMinimized()) saveGeometry();
  QMainWindow::closeEvent(event);
}

void frmMain::dragEnterEvent(QDragEnterEvent* event) {
  if (!localPaths(*event->mimeData()).isEmpty()) event->acceptProposedAction();
}

void frmMain::dropEvent(QDropEvent* event) {
  event->acceptProposedAction();
  emit tvDataSources_->pathsDropped(localPaths(*event->mimeData()));
}

/// Escape leads back to the records from wherever it has nothing else to end.
void frmMain::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Escape) return QMainWindow::keyPressEvent(event);
  QWidget& records = grid_;
  (dataPane_->showsRecords() ? records : *tvDataSources_).setFocus(Qt::OtherFocusReason);
}

void frmMain::showSources(const Node& node) {
  tvDataSources_->rebuild(session_.MainDataSources);
  tvDataSources_->select(node ? node->key() : std::string());
  showNode(node);
}

void frmMain::showOpened(const Node& source) {
  const auto& children = source->DataSources();
  showFirst(children.count() > 0 ? children.Item(1) : source);
}

void frmMain::showFirst(const Node& node) {
  showSources(node);
  if (dataPane_->showsRecords()) grid_.setFocus();
}

void frmMain::showNode(const Node& node) {
  const BusyPointer busy;
  current_ = node;
  selection_.RecordsCount(0);
  editing_->follow(node);
  lookups_->follow(node);
  dataPane_->show(node, options_.digits);
  showDetails();
  updateState();
  watchFile();
  tellRemarks();
}

void frmMain::reloadNode(GridPlace::Selection selection) {
  const BusyPointer busy;
  selection_.RecordsCount(0);
  dataPane_->reload(current_, options_.digits, selection);
  editing_->lookAgain();
  lookups_->fill();
  showDetails();
  updateState();
  watchFile();
}

/// The grid reads no more from a database that a command may change.
void frmMain::beginWork() {
  docks_->rest();
  editing_->noteHistory();
  guarded(ui_, [this] { grid_.records().complete(); });
}

void frmMain::endWork(WorkEffect effect) {
  switch (effect) {
    case WorkEffect::readsRecords:
      showDetails();
      break;
    case WorkEffect::changesRecords:
      reloadNode();
      break;
    case WorkEffect::deletesRecords:
      reloadNode(GridPlace::Selection::deleted);
      break;
  }
  if (effect != WorkEffect::readsRecords) {
    editing_->offerUndo();
    differences_->outdate();
  }
  tellRemarks();
  offerReplacements();
}

void frmMain::followReplacement(const Node& closed, const Node& opened) {
  edit_->follow(closed, opened);
  if (auditedSource_ == closed->key()) auditedSource_ = opened->key();
}

void frmMain::watchFile() {
  const auto connection = current_ ? current_->ADOConnection() : nullptr;
  watch_->watch(connection ? qt(connection->path()) : QString());
}

void frmMain::followFile() {
  const bool isBusy = ui_.isWorking() || QApplication::activeModalWidget() != nullptr;
  const bool isEdited = grid_.viewport()->isAncestorOf(QApplication::focusWidget());
  if (isBusy || isEdited) return watch_->lookLater();
  reloadNode();
  differences_->outdate();
  sbStatusBar_->status(tr("Another program has changed the file; its records were read again."));
  if (isActiveWindow()) offerReplacements();
}

/// Each once, however often the source is shown.
void frmMain::tellRemarks() {
  for (const std::string& line : commands::newIndexRemarks(session_)) {
    ui_.message(commands::MessageKind::information, line, commands::kProductName);
  }
}

void frmMain::offerReplacements() {
  QTimer::singleShot(0, this, [this] {
    const bool isBusy = ui_.isWorking() || QApplication::activeModalWidget() != nullptr;
    if (!isBusy) guarded(ui_, [this] { file_->offerReplacements(); });
  });
}

/// The block of rows between the grid's anchor and its current row, as identifiers of records.
void frmMain::takeSelection() {
  const RecordGrid::RowBlock rows = grid_.selectedRows();
  selection_.RecordsCount(rows.count());
  selection_.DataSourcePtr(current_);
  for (int i = 0; i < rows.count(); ++i) {
    selection_.SelectedRecordID(i + 1, grid_.records().identifier(rows.low + i));
  }
  showDetails();
  updateState();
}

void frmMain::showDetails() {
  std::vector<std::string> identifiers;
  if (selection_.HasRecords()) {
    for (int i = 1; i <= selection_.RecordsCount(); ++i) {
      identifiers.push_back(selection_.SelectedRecordID(i));
    }
    docks_->show(current_, std::move(identifiers));
    return;
  }
  const Node folder = current_ ? current_->Parent() : nullptr;
  if (folder && folder->DataType() == sources::DataType::textFolder) {
    identifiers.push_back(current_->filename());
  }
  docks_->show(folder, std::move(identifiers));
}

void frmMain::updateState() {
  const auto kind = current_ ? commands::recordKind(*current_) : std::nullopt;
  CommandState state;
  state.sourceShown = current_ != nullptr;
  state.databaseShown = CompactCommands::databaseOf(current_) != nullptr;
  state.recordsShown = dataPane_->showsRecords();
  state.recordsSelected = selection_.HasRecords();
  state.exportable = state.recordsSelected && kind && kind != commands::RecordKind::frames;
  state.integrable =
      state.recordsSelected && current_ && current_->DataType() == sources::DataType::orv3Panes;
  state.recordsPending = edit_->hasPendingRecords();
  state.changed = editing_->hasChanges();
  state.undoable = editing_->canUndo();
  const Node copied = edit_->pending().DataSourcePtr();
  tvDataSources_->mark(copied ? copied->key() : std::string());
  state.comparable = session_.MainDataSources.count() > 1;
  actions_->enable(state);
  updateCounts();
}

void frmMain::updateCounts() {
  QString counts;
  if (dataPane_->showsRecords()) {
    const RecordModel& records = grid_.records();
    counts = counted(records.rowCount(), tr("record"));
    if (records.isFiltered()) {
      counts = tr("%L1 of %2").arg(records.rowCount()).arg(counted(records.rowsRead(), "record"));
    }
    if (!records.isComplete()) counts = tr("more than %1").arg(counts);
    if (selection_.HasRecords()) counts += tr(", %L1 selected").arg(selection_.RecordsCount());
  }
  sbStatusBar_->counts(counts);
  const int pending = edit_->pending().RecordsCount();
  sbStatusBar_->pending(pending > 0 ? tr("%L1 copied").arg(pending) : QString());
}

}  // namespace orv::app

#include "moc_frmMain.cpp"
