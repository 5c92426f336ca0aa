#include "app/docks/changes/ChangesDock.h"

#include <QAction>
#include <QToolBar>
#include <set>

#include "app/Cells.h"
#include "app/Text.h"
#include "app/docks/list/ListTree.h"
#include "app/grid/RecordEdits.h"
#include "app/theme/Icons.h"

namespace orv::app {

using commands::edit::Change;
using commands::edit::fieldText;
using commands::edit::Refusal;

namespace {

enum Column { kRecord, kField, kWas, kBecomes, kRemark };

QString fieldName(const Change& change) {
  if (!change.angle) return qt(change.field);
  return ChangesDock::tr("%1 at %2°").arg(qt(change.field)).arg(*change.angle);
}

ListTree* makeList() {
  auto* list = new ListTree(
      "ChangesList", ChangesDock::tr("Changes"),
      ChangesDock::tr("A line a field that is changed and not saved. A click shows the record; "
                      "Backspace drops the selected changes."),
      {ChangesDock::tr("Record"), ChangesDock::tr("Field"), ChangesDock::tr("Was"),
       ChangesDock::tr("Becomes"), ChangesDock::tr("Remark")});
  list->setRootIsDecorated(false);
  return list;
}

}  // namespace

ChangesDock::ChangesDock(QWidget* parent) : ChangesDock(makeList(), parent) {}

ChangesDock::ChangesDock(ListTree* list, QWidget* parent)
    : ListDock({.name = "Changes",
                .iconName = "edit",
                .title = tr("Changes"),
                .menuText = tr("C&hanges"),
                .help = tr("What has been changed in the records shown and is not saved yet."),
                .openHelp = tr("Show what is changed and not saved yet")},
               list, parent),
      list_(list),
      bar_(addBar(tr("Tools for changes"), tr("Save the changes, drop them, take them back."))),
      drop_(addCommand(nullptr, "mnuChangesDrop", "delete", tr("&Drop These Changes"),
                       tr("Leave the selected fields as they are stored"), Qt::Key_Backspace)) {
  connect(drop_, &QAction::triggered, this, &ChangesDock::dropSelected);
  connect(list_, &ListTree::lineChosen, this, &ChangesDock::choose);
  fill();
}

void ChangesDock::offer(const QList<QAction*>& actions) {
  bar_->addActions(actions);
  bar_->addAction(drop_);
  addExport(*bar_, tr("changes"));
}

void ChangesDock::follow(RecordEdits* edits) {
  if (edits_ != nullptr) edits_->disconnect(this);
  edits_ = edits;
  if (edits != nullptr) connect(edits, &RecordEdits::changed, this, &ChangesDock::fill);
  fill();
}

void ChangesDock::fill() {
  const bool wereNone = changes_.empty();
  changes_ = edits_ ? edits_->pending().changes() : std::vector<Change>();
  list_->clear();
  QList<QTreeWidgetItem*> lines;
  std::set<std::int32_t> records;
  for (std::size_t i = 0; i < changes_.size(); ++i) {
    auto* line = new QTreeWidgetItem;
    line->setData(kRecord, Qt::UserRole, static_cast<qulonglong>(i));
    fillLine(*line, changes_[i]);
    lines << line;
    records.insert(changes_[i].record);
  }
  list_->addTopLevelItems(lines);
  tellRefusals();
  // All values are to be seen in a narrow dock.
  constexpr int kWidestInCharacters = 14;
  list_->fitColumns(kWidestInCharacters);
  drop_->setEnabled(!changes_.empty());
  const auto count = static_cast<qlonglong>(changes_.size());
  setWindowTitle(count == 0 ? tr("Changes") : tr("Changes (%L1)").arg(count));
  // The title has taken the place of the text, with the letter that chooses it.
  toggleViewAction()->setText(count == 0 ? tr("C&hanges") : tr("C&hanges (%L1)").arg(count));
  QStringList texts{count == 0
                        ? tr("Nothing is changed.")
                        : tr("%1 of %2 changed, not saved yet.")
                              .arg(counted(count, tr("field")),
                                   counted(static_cast<qlonglong>(records.size()), tr("record")))};
  if (edits_) {
    for (const std::string& remark : edits_->pending().review().remarks) texts << shownText(remark);
  }
  tell(texts.join('\n'));
  // Later, it stays closed where the user has closed it.
  if (wereNone && count > 0) open();
}

void ChangesDock::fillLine(QTreeWidgetItem& line, const Change& change) {
  const QString name = shownText(edits_->pending().name(change.record));
  const QString number = QString::number(change.record);
  setCell(line, kRecord, name.isEmpty() ? number : QStringLiteral("%1 (%2)").arg(name, number));
  setCell(line, kField, fieldName(change));
  setCell(line, kWas, qt(fieldText(change.before)));
  setCell(line, kBecomes, qt(fieldText(change.after)));
}

void ChangesDock::tellRefusals() {
  if (!edits_) return;
  for (const Refusal& refusal : edits_->pending().review().refusals) {
    auto* line = list_->topLevelItem(static_cast<int>(refusal.change));
    if (line == nullptr) continue;
    setCell(*line, kRemark, qt(refusal.reason));
    line->setIcon(kRemark, icon("box-warning"));
  }
}

void ChangesDock::choose(const QTreeWidgetItem* line) {
  emit chosen(changes_.at(line->data(kRecord, Qt::UserRole).toULongLong()).record);
}

void ChangesDock::dropSelected() {
  std::vector<Change> dropped;
  for (const QTreeWidgetItem* line : list_->selectedItems()) {
    dropped.push_back(changes_.at(line->data(kRecord, Qt::UserRole).toULongLong()));
  }
  if (edits_ && !dropped.empty()) {
    edits_->change([&](commands::edit::PendingEdits& pending) { pending.drop(dropped); });
  }
}

}  // namespace orv::app

#include "moc_ChangesDock.cpp"
