#include "app/docks/changes/ChangesDock.h"

#include <QAction>
#include <QHeaderView>
#include <QLabel>
#include <QToolBar>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <set>

#include "app/Help.h"
#include "app/Text.h"
#include "app/grid/RecordEdits.h"
#include "app/theme/Icons.h"

namespace orv::app {

using commands::edit::Change;
using commands::edit::fieldText;
using commands::edit::Refusal;

namespace {

enum Column { kRecord, kField, kWas, kBecomes, kRemark };

/// One line, whatever the text is.
QString lineText(const store::Value& value) {
  return shownText(qt(fieldText(value)).replace('\n', ' ').remove('\r'));
}

QString fieldName(const Change& change) {
  if (!change.angle) return qt(change.field);
  return ChangesDock::tr("%1 at %2°").arg(qt(change.field)).arg(*change.angle);
}

}  // namespace

ChangesDock::ChangesDock(QWidget* parent)
    : QDockWidget(tr("Changes"), parent),
      bar_(new QToolBar),
      list_(new QTreeWidget),
      summary_(new QLabel),
      drop_(new QAction(icon("delete"), tr("&Drop These Changes"), this)) {
  setObjectName(QStringLiteral("ChangesDock"));
  setAccessibleName(tr("Changes"));
  setWhatsThis(tr("What has been changed in the records shown and is not saved yet."));
  bar_->setIconSize({16, 16});
  bar_->setAccessibleName(tr("Tools for changes"));
  bar_->setWhatsThis(tr("Save the changes, drop them, take them back."));
  list_->setObjectName(QStringLiteral("ChangesList"));
  list_->setAccessibleName(tr("Changes"));
  list_->setWhatsThis(tr(
      "A line a field that is changed and not saved. A click shows the record; Backspace drops the "
      "selected changes."));
  list_->setHeaderLabels({tr("Record"), tr("Field"), tr("Was"), tr("Becomes"), tr("Remark")});
  list_->setRootIsDecorated(false);
  list_->setUniformRowHeights(true);
  list_->setAlternatingRowColors(true);
  list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  list_->setContextMenuPolicy(Qt::ActionsContextMenu);
  summary_->setObjectName(QStringLiteral("lblChanges"));
  summary_->setTextFormat(Qt::PlainText);
  summary_->setWordWrap(true);
  summary_->setMargin(2);
  drop_->setObjectName(QStringLiteral("mnuChangesDrop"));
  drop_->setShortcut(Qt::Key_Backspace);
  drop_->setShortcutContext(Qt::WidgetShortcut);
  explain(drop_, tr("Leave the selected fields as they are stored"));
  list_->addAction(drop_);

  auto* content = new QWidget(this);
  auto* layout = new QVBoxLayout(content);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(bar_);
  layout->addWidget(list_, 1);
  layout->addWidget(summary_);
  setWidget(content);
  connect(drop_, &QAction::triggered, this, &ChangesDock::dropSelected);
  connect(list_, &QTreeWidget::itemClicked, this, &ChangesDock::choose);
  connect(list_, &QTreeWidget::itemActivated, this, &ChangesDock::choose);
  toggleViewAction()->setObjectName(QStringLiteral("mnuViewChanges"));
  toggleViewAction()->setText(tr("C&hanges"));
  toggleViewAction()->setIcon(icon("edit"));
  explain(toggleViewAction(), tr("Show what is changed and not saved yet"));
  connect(toggleViewAction(), &QAction::triggered, this, [this](bool isOpened) {
    if (isOpened) raise();
  });
  hide();
  fill();
}

void ChangesDock::offer(const QList<QAction*>& actions) {
  bar_->addActions(actions);
  bar_->addAction(drop_);
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
  fitColumns();
  drop_->setEnabled(!changes_.empty());
  const auto count = static_cast<qlonglong>(changes_.size());
  setWindowTitle(count == 0 ? tr("Changes") : tr("Changes (%L1)").arg(count));
  QStringList texts{count == 0
                        ? tr("Nothing is changed.")
                        : tr("%1 of %2 changed, not saved yet.")
                              .arg(counted(count, tr("field")),
                                   counted(static_cast<qlonglong>(records.size()), tr("record")))};
  if (edits_) {
    for (const std::string& remark : edits_->pending().review().remarks) texts << shownText(remark);
  }
  summary_->setText(texts.join('\n'));
  // Later, it stays closed where the user has closed it.
  if (wereNone && count > 0) {
    show();
    raise();
  }
}

/// All values are to be seen in a narrow dock.
void ChangesDock::fitColumns() {
  constexpr int kWidestInCharacters = 14;
  const int widest = fontMetrics().averageCharWidth() * kWidestInCharacters;
  for (const int column : {kRecord, kField, kWas, kBecomes}) {
    list_->resizeColumnToContents(column);
    if (list_->columnWidth(column) > widest) list_->setColumnWidth(column, widest);
  }
}

void ChangesDock::fillLine(QTreeWidgetItem& line, const Change& change) {
  const QString name = shownText(edits_->pending().name(change.record));
  const QString number = QString::number(change.record);
  line.setText(kRecord, name.isEmpty() ? number : QStringLiteral("%1 (%2)").arg(name, number));
  line.setText(kField, fieldName(change));
  line.setText(kWas, lineText(change.before));
  line.setText(kBecomes, lineText(change.after));
  line.setToolTip(kRecord, toolTipText(line.text(kRecord)));
  line.setToolTip(kField, toolTipText(line.text(kField)));
  line.setToolTip(kWas, toolTipText(qt(fieldText(change.before))));
  line.setToolTip(kBecomes, toolTipText(qt(fieldText(change.after))));
}

void ChangesDock::tellRefusals() {
  if (!edits_) return;
  for (const Refusal& refusal : edits_->pending().review().refusals) {
    auto* line = list_->topLevelItem(static_cast<int>(refusal.change));
    if (line == nullptr) continue;
    line->setText(kRemark, shownText(refusal.reason));
    line->setToolTip(kRemark, toolTipText(qt(refusal.reason)));
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
