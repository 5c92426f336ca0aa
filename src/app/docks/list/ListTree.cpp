#include "app/docks/list/ListTree.h"

#include <QHeaderView>
#include <algorithm>

#include "app/Text.h"

namespace orv::app {

ListTree::ListTree(const char* name, const QString& accessibleName, const QString& help,
                   const QStringList& titles, QWidget* parent)
    : QTreeWidget(parent) {
  setObjectName(QLatin1String(name));
  setAccessibleName(accessibleName);
  setWhatsThis(help);
  setHeaderLabels(titles);
  setUniformRowHeights(true);
  setAlternatingRowColors(true);
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  setContextMenuPolicy(Qt::ActionsContextMenu);
  // Of clicks only those of the left button come: a right click opens the menu and leads nowhere.
  connect(this, &QTreeWidget::itemClicked, this, &ListTree::lineChosen);
  connect(this, &QTreeWidget::itemActivated, this, &ListTree::lineChosen);
}

void ListTree::keyPressEvent(QKeyEvent* event) {
  const QTreeWidgetItem* const before = currentItem();
  QTreeWidget::keyPressEvent(event);
  if (currentItem() != nullptr && currentItem() != before) emit lineChosen(currentItem());
}

void ListTree::fitColumns(int mostCharacters) {
  int all = 0;
  for (int column = 0; column < columnCount(); ++column) {
    resizeColumnToContents(column);
    all += columnWidth(column);
  }
  if (all <= viewport()->width()) return;
  const int most = mostCharacters * fontMetrics().averageCharWidth();
  for (int column = 0; column < columnCount(); ++column) {
    setColumnWidth(column, std::min(columnWidth(column), most));
  }
}

QStringList ListTree::headings() const {
  QStringList titles;
  for (int column = 0; column < columnCount(); ++column) titles << headerItem()->text(column);
  return titles;
}

QStringList ListTree::rowOf(const QTreeWidgetItem& line) const {
  QStringList cells;
  for (int column = 0; column < columnCount(); ++column) cells << line.text(column);
  return cells;
}

TableRows ListTree::rows(bool onlySelected) const {
  TableRows rows{headings()};
  const auto add = [&](const QTreeWidgetItem& line, bool isMeant) {
    if (isMeant && !line.isHidden()) rows << rowOf(line);
  };
  for (int i = 0; i < topLevelItemCount(); ++i) {
    const QTreeWidgetItem& line = *topLevelItem(i);
    const bool isMeant = !onlySelected || line.isSelected();
    if (line.childCount() == 0) add(line, isMeant);
    for (int k = 0; k < line.childCount(); ++k) {
      add(*line.child(k), isMeant || line.child(k)->isSelected());
    }
  }
  return rows;
}

}  // namespace orv::app

#include "moc_ListTree.cpp"
