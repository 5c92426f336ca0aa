#include "app/window/RecordEditing.h"

#include <QMessageBox>
#include <algorithm>
#include <set>

#include "app/Text.h"
#include "app/dialogs/ConflictDialog.h"
#include "app/dialogs/ReportDialog.h"
#include "app/docks/changes/ChangesDock.h"
#include "app/grid/RecordGrid.h"
#include "commands/AccessUse.h"
#include "commands/ErrorText.h"
#include "commands/NodeContent.h"
#include "commands/edit/EditHistory.h"
#include "errors/Error.h"

namespace orv::app {

using commands::edit::Change;
using commands::edit::PendingEdits;
using commands::edit::Refusal;

namespace {

/// The last of the works that can be taken back, or the first that can be made again.
std::optional<store::HistoryWork> nextWork(store::Connection& database, bool back) {
  const auto works = store::History(database).works();
  std::optional<store::HistoryWork> next;
  for (const store::HistoryWork& work : works) {
    if (work.isUndone == back) continue;
    next = work;
    if (!back) break;
  }
  return next;
}

/// "3 fields of 2 records"
QString countOf(const std::vector<Change>& changes) {
  std::set<std::int32_t> records;
  for (const Change& change : changes) records.insert(change.record);
  return RecordEditing::tr("%1 of %2")
      .arg(counted(static_cast<qlonglong>(changes.size()), RecordEditing::tr("field")),
           counted(static_cast<qlonglong>(records.size()), RecordEditing::tr("record")));
}

QString whyNotEdited(const RecordEditing::Node& node) {
  if (node && node->isInVersion3()) {
    return RecordEditing::tr("The database is open for reading only: its file may not be changed.");
  }
  return RecordEditing::tr(
      "Only records of ORV databases of version 3.0.0 are edited; this source is read only. Copy "
      "them into such a database.");
}

}  // namespace

RecordEditing::RecordEditing(commands::Session& session, WindowUserInterface& ui, RecordGrid& grid,
                             QWidget& window)
    : QObject(&window),
      session_(session),
      ui_(ui),
      grid_(grid),
      window_(window),
      dock_(new ChangesDock(&window)) {
  connect(&grid_, &RecordGrid::editingTold, this, &RecordEditing::told);
}

/// The grid and the dock outlive this by a little.
RecordEditing::~RecordEditing() {
  grid_.editBy(nullptr, {});
  dock_->follow(nullptr);
}

void RecordEditing::follow(const Node& node) {
  node_ = node;
  edits_ = nullptr;
  if (node && node->isInVersion3() && !node->ADOConnection()->readOnly()) edits_ = editsOf(node);
  grid_.editBy(edits_, whyNotEdited(node));
  dock_->follow(edits_);
  forgetClosed();
  takenBack_ = 0;
  emit undoOffered({});
  emit stateChanged();
  lookAgain();
}

void RecordEditing::lookAgain() {
  if (!hasChanges()) return;
  try {
    edits_->change([](PendingEdits& pending) { pending.lookAgain(); });
  } catch (
      const Error& error) {  // Of a file that is gone or replaced; what to do with it is asked.
    emit told(qt(commands::describe(error)));
    return;
  }
  const auto& refusals = edits_->pending().review().refusals;
  const auto changed = std::ranges::count_if(
      refusals, [](const Refusal& refusal) { return refusal.present.has_value(); });
  if (changed == 0) return;
  emit told(tr("Fields that you have edited were changed in the database meanwhile (%L1): see the "
               "changes.")
                .arg(changed));
}

bool RecordEditing::hasChanges() const {
  return edits_ != nullptr && !edits_->pending().isEmpty();
}

std::shared_ptr<store::Connection> RecordEditing::database() const {
  const Node database = node_ && node_->isInVersion3() ? node_->Parent() : node_;
  const bool isOrv = database && database->DataType() == sources::DataType::orvDatabase3;
  const auto connection = isOrv ? database->ADOConnection() : nullptr;
  return connection && !connection->readOnly() ? connection : nullptr;
}

RecordEdits* RecordEditing::editsOf(const Node& node) {
  auto& edits = all_[node->key()];
  if (!edits) {
    edits = std::make_unique<RecordEdits>(session_, node);
    connect(edits.get(), &RecordEdits::changed, this, &RecordEditing::tellChanges);
  }
  return edits.get();
}

/// Edits hold their database open: those of a source that is closed, or has nothing changed, go.
void RecordEditing::forgetClosed() {
  std::erase_if(all_, [&](const auto& each) {
    RecordEdits* edits = each.second.get();
    if (edits == edits_) return false;
    const bool isOpen = session_.MainDataSources.findByKey(each.first) != nullptr;
    if (!edits->pending().isEmpty() && !isOpen) {
      emit told(tr("%1 were not saved: the file they belong to has been replaced.")
                    .arg(countOf(edits->pending().changes())));
    }
    return !isOpen || edits->pending().isEmpty();
  });
}

void RecordEditing::tellChanges() {
  if (hasChanges()) takenBack_ = 0;
  emit undoOffered({});
  emit stateChanged();
}

bool RecordEditing::save() {
  if (!grid_.finishEditing()) return false;
  return !hasChanges() || save(*edits_);
}

/// Until all is saved, or the user gives up.
bool RecordEditing::save(RecordEdits& edits) {
  if (!commands::mayBeChanged(*edits.node()->ADOConnection(), ui_)) return false;
  while (!edits.pending().isEmpty()) {
    const QString count = countOf(edits.pending().changes());
    if (saveOnce(edits)) {
      emit told(tr("%1 saved.").arg(count));
      return true;
    }
    if (!resolve(edits)) return false;
  }
  return true;
}

bool RecordEditing::saveOnce(RecordEdits& edits) {
  noteHistory();
  emit workBegins();
  bool isSaved = false;
  try {
    edits.change([&](PendingEdits& pending) { isSaved = pending.save().isFine(); });
  } catch (...) {
    emit workEnded();
    throw;
  }
  emit workEnded();
  offerUndo();
  return isSaved;
}

/// What is to become of changes that are refused. False when they are to stay as they are.
bool RecordEditing::resolve(RecordEdits& edits) {
  const std::vector<Change> changes = edits.pending().changes();
  QList<QStringList> lines;
  for (const Refusal& refusal : edits.pending().review().refusals) {
    if (!refusal.present) continue;
    const Change& change = changes[refusal.change];
    const auto text = [](const store::Value& value) {
      return shownText(commands::edit::fieldText(value));
    };
    lines << QStringList{shownText(edits.pending().name(change.record)), qt(change.field),
                         text(change.before), text(*refusal.present), text(change.after)};
  }
  if (lines.isEmpty()) {
    tellRefusals(edits);
    return false;
  }
  const auto choice = ConflictDialog(lines, &window_).choose();
  if (choice == ConflictDialog::Choice::cancel) return false;
  edits.change([&](PendingEdits& pending) {
    choice == ConflictDialog::Choice::keepMine ? pending.overrideOthers() : pending.leaveToOthers();
  });
  return true;
}

void RecordEditing::tellRefusals(const RecordEdits& edits) {
  QStringList reasons;
  const std::vector<Change> changes = edits.pending().changes();
  for (const Refusal& refusal : edits.pending().review().refusals) {
    const std::int32_t record = changes[refusal.change].record;
    reasons << QStringLiteral("%1 (%2): %3")
                   .arg(shownText(edits.pending().name(record)))
                   .arg(record)
                   .arg(shownText(refusal.reason));
  }
  ReportDialog(tr("Not Saved"), tr("Nothing is saved, since these changes cannot be made:"),
               reasons, tr("Each change that cannot be made, with the reason"), &window_)
      .exec();
}

void RecordEditing::discard() {
  if (!hasChanges()) return;
  const std::vector<Change> changes = edits_->pending().changes();
  edits_->change([&](PendingEdits& pending) { pending.drop(changes); });
  emit told(tr("%1 discarded. Undo brings the changes back.").arg(countOf(changes)));
}

/// All is asked before anything is done, so that nothing is lost to whoever cancels the last
/// question.
bool RecordEditing::settle(const Node& source) {
  if (!grid_.finishEditing()) return false;
  std::vector<RecordEdits*> saved;
  std::vector<RecordEdits*> discarded;
  for (const auto& [key, edits] : all_) {
    const Node& node = edits->node();
    const bool isMeant = !source || node == source || node->Parent() == source ||
                         (source->isInVersion3() && node->Parent() == source->Parent());
    if (!isMeant || edits->pending().isEmpty()) continue;
    const int answer = ask(*edits);
    if (answer == QMessageBox::Cancel) return false;
    (answer == QMessageBox::Save ? saved : discarded).push_back(edits.get());
  }
  const auto isSaved = [this](RecordEdits* edits) { return save(*edits); };
  if (!std::ranges::all_of(saved, isSaved)) return false;
  for (RecordEdits* edits : discarded) {
    edits->change([](PendingEdits& pending) { pending.drop(pending.changes()); });
  }
  return true;
}

/// What is to become of the changes of a record set: a standard button.
int RecordEditing::ask(const RecordEdits& edits) {
  const QString source = shownText(commands::nodeTitle(edits.node().get()));
  QMessageBox box(QMessageBox::Question, qt(commands::kApplicationTitle),
                  tr("%1 of %2 are changed and not saved. Save them first?")
                      .arg(countOf(edits.pending().changes()), source),
                  QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, &window_);
  box.setTextFormat(Qt::PlainText);
  box.setDefaultButton(QMessageBox::Save);
  return box.exec();
}

void RecordEditing::undo() {
  if (!grid_.finishEditing()) return;
  if (edits_ == nullptr || !edits_->pending().canUndo()) return reverse(true);
  edits_->change([](PendingEdits& pending) { pending.undo(); });
  emit told(tr("The last change was taken back."));
}

void RecordEditing::redo() {
  if (!grid_.finishEditing()) return;
  const bool isPending = edits_ != nullptr && edits_->pending().canRedo();
  const bool isAfterSaved = takenBack_ > 0 && !hasChanges();
  if (!isPending || isAfterSaved) return reverse(false);
  edits_->change([](PendingEdits& pending) { pending.redo(); });
  emit told(tr("The change was made again."));
}

void RecordEditing::reverse(bool back) {
  const auto connection = database();
  const auto work = connection ? nextWork(*connection, back) : std::nullopt;
  if (!work) {
    emit told(back ? tr("There is nothing to undo.") : tr("There is nothing to redo."));
    return;
  }
  if (!back && hasChanges()) {
    emit told(tr("There is nothing to redo."));
    return;
  }
  if (back && !isMeant(*work)) return;
  if (!commands::mayBeChanged(*connection, ui_)) return;
  emit workBegins();
  store::UndoResult result;
  try {
    store::History history(*connection);
    const auto references = commands::edit::historyReferences();
    result = back ? history.undo(1, references) : history.redo(1, references);
  } catch (const std::exception& error) {
    emit workEnded();
    ui_.message(commands::MessageKind::critical, commands::describe(error), commands::kProductName);
    return;
  }
  emit workEnded();
  const QString title = shownText(work->title);
  if (result.conflicts.empty()) {
    takenBack_ += back ? 1 : -1;
    takenBack_ = std::max(takenBack_, 0);
    emit undoOffered({});
    emit told(back ? tr("Taken back: %1.").arg(title) : tr("Made again: %1.").arg(title));
    return;
  }
  QStringList texts;
  for (const std::string& text : commands::edit::conflictTexts(result.conflicts)) {
    texts << shownText(text);
  }
  ReportDialog(back ? tr("Not Taken Back") : tr("Not Made Again"),
               tr("\"%1\" is left as it is, since other changes have followed:").arg(title), texts,
               tr("Each record that is not as the change has left it"), &window_)
      .exec();
}

/// Whoever takes back one step after another may not know that the next one is of others, or of
/// another day.
bool RecordEditing::isMeant(const store::HistoryWork& work) const {
  if (own_.contains(work.id)) return true;
  return ui_.ask({"\"" + work.title +
                      "\" was not done in this window. Do you want to take it back all the same?",
                  commands::kProductName, commands::Buttons::yesNo, commands::Answer::no}) ==
         commands::Answer::yes;
}

QString RecordEditing::titleOf(bool back) const {
  if (edits_ != nullptr) {
    const PendingEdits& pending = edits_->pending();
    if (back && pending.canUndo()) return tr("Last Change");
    if (!back && pending.canRedo() && (takenBack_ == 0 || hasChanges())) return tr("Last Change");
  }
  const auto connection = database();
  if (!connection || (!back && hasChanges())) return {};
  const auto work = nextWork(*connection, back);
  return work ? shownText(work->title) : QString();
}

void RecordEditing::noteHistory() {
  noted_.clear();
  const auto connection = database();
  if (!connection) return;
  for (const store::HistoryWork& work : store::History(*connection).works()) noted_.insert(work.id);
}

void RecordEditing::offerUndo() {
  const auto connection = database();
  const auto work = connection ? nextWork(*connection, true) : std::nullopt;
  if (!work || noted_.contains(work->id)) return;
  own_.insert(work->id);
  if (!work->isLost) emit undoOffered(shownText(work->title));
}

}  // namespace orv::app

#include "moc_RecordEditing.cpp"
