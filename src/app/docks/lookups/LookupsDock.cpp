#include "app/docks/lookups/LookupsDock.h"

#include <QAction>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QToolBar>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <set>

#include "app/Help.h"
#include "app/Text.h"
#include "app/theme/Icons.h"

namespace orv::app {

using commands::edit::EditSet;
using commands::edit::LookupRecord;

namespace {

/// Counts are in order as numbers.
class LookupLine : public QTreeWidgetItem {
 public:
  LookupLine(const LookupRecord& record, int place) {
    setText(0, shownText(record.name));
    setToolTip(0,
               toolTipText(LookupsDock::tr("%1, number %2").arg(qt(record.name)).arg(record.id)));
    setData(0, Qt::UserRole, place);
    int column = 1;
    for (const int count : {record.panes, record.frames, record.shadings}) {
      setData(column, Qt::DisplayRole, count);
      setTextAlignment(column++, Qt::AlignRight | Qt::AlignVCenter);
    }
  }

  bool operator<(const QTreeWidgetItem& other) const override {
    const int column = treeWidget()->sortColumn();
    if (column > 0) {
      return data(column, Qt::DisplayRole).toInt() < other.data(column, Qt::DisplayRole).toInt();
    }
    return text(0).localeAwareCompare(other.text(0)) < 0;
  }
};

}  // namespace

LookupsDock::LookupsDock(QWidget* parent)
    : QDockWidget(tr("Groups and Suppliers"), parent),
      set_(new QComboBox),
      list_(new QTreeWidget),
      summary_(new QLabel) {
  setObjectName(QStringLiteral("LookupsDock"));
  setAccessibleName(windowTitle());
  setWhatsThis(tr("The names that records of the database refer to, and how many have each."));
  set_->setObjectName(QStringLiteral("cboLookups"));
  set_->addItem(tr("Groups"), static_cast<int>(EditSet::groups));
  set_->addItem(tr("Suppliers"), static_cast<int>(EditSet::suppliers));
  set_->addItem(tr("Frame types"), static_cast<int>(EditSet::frameTypes));
  set_->setAccessibleName(tr("Names shown"));
  explain(set_, tr("Which names are shown"));
  list_->setObjectName(QStringLiteral("LookupsList"));
  list_->setAccessibleName(tr("Names"));
  list_->setWhatsThis(
      tr("Each name with the number of panes, frames and shadings that have it. Select several to "
         "merge them."));
  list_->setHeaderLabels({tr("Name"), tr("Panes"), tr("Frames"), tr("Shadings")});
  list_->setRootIsDecorated(false);
  list_->setUniformRowHeights(true);
  list_->setAlternatingRowColors(true);
  list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  list_->setSortingEnabled(true);
  list_->sortByColumn(0, Qt::AscendingOrder);
  list_->setContextMenuPolicy(Qt::ActionsContextMenu);
  summary_->setObjectName(QStringLiteral("lblLookups"));
  summary_->setTextFormat(Qt::PlainText);
  summary_->setWordWrap(true);
  summary_->setMargin(2);
  rename_ = add("mnuLookupRename", "edit", tr("&Rename..."),
                tr("Give the selected name another one"), &LookupsDock::renameWanted);
  merge_ =
      add("mnuLookupMerge", "merge", tr("&Merge..."),
          tr("Give the records of the selected names one of these names, and delete the others"),
          &LookupsDock::mergeWanted);
  delete_ =
      add("mnuLookupDelete", "delete", tr("&Delete"),
          tr("Delete the selected names, which no record may have"), &LookupsDock::deleteWanted);

  auto* bar = new QToolBar;
  bar->setIconSize({16, 16});
  bar->setAccessibleName(tr("Tools for names"));
  bar->setWhatsThis(tr("Which names are shown, and what can be done to them."));
  bar->addWidget(set_);
  bar->addActions(list_->actions());
  auto* content = new QWidget(this);
  auto* layout = new QVBoxLayout(content);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(bar);
  layout->addWidget(list_, 1);
  layout->addWidget(summary_);
  setWidget(content);
  connect(set_, &QComboBox::currentIndexChanged, this, &LookupsDock::wanted);
  connect(list_, &QTreeWidget::itemSelectionChanged, this, &LookupsDock::followSelection);
  connect(this, &QDockWidget::visibilityChanged, this, [this](bool isVisible) {
    if (isVisible) emit wanted();
  });
  toggleViewAction()->setObjectName(QStringLiteral("mnuViewLookups"));
  toggleViewAction()->setText(tr("&Groups and Suppliers"));
  toggleViewAction()->setIcon(icon("names"));
  explain(toggleViewAction(), tr("Show the groups, suppliers and frame types of the database"));
  connect(toggleViewAction(), &QAction::triggered, this, [this](bool isOpened) {
    if (isOpened) raise();
  });
  followSelection();
  hide();
}

QAction* LookupsDock::add(const char* name, const char* iconName, const QString& text,
                          const QString& help, void (LookupsDock::*wanted)()) {
  auto* action = new QAction(icon(iconName), text, this);
  action->setObjectName(QLatin1String(name));
  explain(action, help);
  connect(action, &QAction::triggered, this, wanted);
  list_->addAction(action);
  return action;
}

EditSet LookupsDock::set() const {
  return static_cast<EditSet>(set_->currentData().toInt());
}

void LookupsDock::fill(Records records, bool mayChange) {
  std::set<std::int32_t> chosen;
  for (const LookupRecord& record : selected()) {
    if (filled_ == set()) chosen.insert(record.id);
  }
  filled_ = set();
  records_ = std::move(records);
  mayChange_ = mayChange;
  list_->clear();
  QList<QTreeWidgetItem*> lines;
  for (std::size_t i = 0; i < records_.size(); ++i) {
    lines << new LookupLine(records_[i], static_cast<int>(i));
  }
  list_->addTopLevelItems(lines);
  for (std::size_t i = 0; i < records_.size(); ++i) {
    lines[static_cast<int>(i)]->setSelected(chosen.contains(records_[i].id));
  }
  list_->sortItems(list_->sortColumn(), list_->header()->sortIndicatorOrder());
  for (int column = 1; column < list_->columnCount(); ++column) {
    list_->resizeColumnToContents(column);
  }
  const auto unused = std::ranges::count(records_, 0, &LookupRecord::uses);
  summary_->setText(tr("%1, %L2 unused.")
                        .arg(counted(static_cast<qlonglong>(records_.size()), tr("name")))
                        .arg(unused));
  followSelection();
}

void LookupsDock::tell(const QString& text) {
  fill({}, false);
  summary_->setText(text);
}

LookupsDock::Records LookupsDock::selected() const {
  Records chosen;
  for (int i = 0; i < list_->topLevelItemCount(); ++i) {
    const QTreeWidgetItem* line = list_->topLevelItem(i);
    if (line->isSelected()) chosen.push_back(records_.at(line->data(0, Qt::UserRole).toInt()));
  }
  return chosen;
}

void LookupsDock::followSelection() {
  const Records chosen = selected();
  rename_->setEnabled(mayChange_ && chosen.size() == 1);
  merge_->setEnabled(mayChange_ && chosen.size() > 1);
  delete_->setEnabled(
      mayChange_ && !chosen.empty() &&
      std::ranges::all_of(chosen, [](const LookupRecord& record) { return record.uses() == 0; }));
}

}  // namespace orv::app
