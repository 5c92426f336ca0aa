#include "app/docks/lookups/LookupsDock.h"

#include <QAction>
#include <QComboBox>
#include <QHeaderView>
#include <QStyleOptionHeader>
#include <QToolBar>
#include <algorithm>
#include <set>

#include "app/Text.h"
#include "app/docks/list/ListTree.h"

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

/// Its arrow goes up where the values do, as in the grid.
class NamesHeader : public QHeaderView {
 public:
  NamesHeader() : QHeaderView(Qt::Horizontal) { setSectionsClickable(true); }

 protected:
  void initStyleOptionForIndex(QStyleOptionHeader* option, int section) const override {
    QHeaderView::initStyleOptionForIndex(option, section);
    if (option->sortIndicator == QStyleOptionHeader::None) return;
    option->sortIndicator = sortIndicatorOrder() == Qt::AscendingOrder
                                ? QStyleOptionHeader::SortUp
                                : QStyleOptionHeader::SortDown;
  }
};

ListTree* makeNames() {
  auto* list = new ListTree(
      "LookupsList", LookupsDock::tr("Names"),
      LookupsDock::tr(
          "Each name with the number of panes, frames and shadings that have it. Select "
          "several to merge them."),
      {LookupsDock::tr("Name"), LookupsDock::tr("Panes"), LookupsDock::tr("Frames"),
       LookupsDock::tr("Shadings")});
  list->setHeader(new NamesHeader);
  list->setRootIsDecorated(false);
  list->setSortingEnabled(true);
  list->sortByColumn(0, Qt::AscendingOrder);
  return list;
}

}  // namespace

LookupsDock::LookupsDock(QWidget* parent) : LookupsDock(makeNames(), parent) {}

LookupsDock::LookupsDock(ListTree* list, QWidget* parent)
    : ListDock(
          {.name = "Lookups",
           .iconName = "names",
           .title = tr("Groups and Suppliers"),
           .menuText = tr("&Groups and Suppliers"),
           .help = tr("The names that records of the database refer to, and how many have each."),
           .openHelp = tr("Show the groups, suppliers and frame types of the database")},
          list, parent),
      list_(list) {
  addTools();
  connect(list_, &QTreeWidget::itemSelectionChanged, this, &LookupsDock::followSelection);
  connect(this, &QDockWidget::visibilityChanged, this, [this](bool isVisible) {
    if (isVisible) emit wanted();
  });
  followSelection();
}

void LookupsDock::addTools() {
  QToolBar* bar =
      addBar(tr("Tools for names"), tr("Which names are shown, and what can be done to them."));
  set_ = addChoice(*bar, "cboLookups", tr("Names shown"), tr("Which names are shown"));
  set_->addItem(tr("Groups"), static_cast<int>(EditSet::groups));
  set_->addItem(tr("Suppliers"), static_cast<int>(EditSet::suppliers));
  set_->addItem(tr("Frame types"), static_cast<int>(EditSet::frameTypes));
  rename_ = addCommand(bar, "mnuLookupRename", "edit", tr("&Rename..."),
                       tr("Give the selected name another one"));
  merge_ = addCommand(
      bar, "mnuLookupMerge", "merge", tr("&Merge..."),
      tr("Give the records of the selected names one of these names, and delete the others"));
  delete_ = addCommand(bar, "mnuLookupDelete", "delete", tr("&Delete"),
                       tr("Delete the selected names, which no record may have"));
  addExport(*bar, tr("names"));
  connect(rename_, &QAction::triggered, this, &LookupsDock::renameWanted);
  connect(merge_, &QAction::triggered, this, &LookupsDock::mergeWanted);
  connect(delete_, &QAction::triggered, this, &LookupsDock::deleteWanted);
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
  tell(tr("%1, %L2 unused.")
           .arg(counted(static_cast<qlonglong>(records_.size()), tr("name")))
           .arg(unused));
  followSelection();
}

void LookupsDock::tellNone(const QString& why) {
  fill({}, false);
  tell(why);
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

#include "moc_LookupsDock.cpp"
