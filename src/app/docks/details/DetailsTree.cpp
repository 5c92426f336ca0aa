#include "app/docks/details/DetailsTree.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QSet>
#include <algorithm>

#include "app/Text.h"
#include "app/dialogs/TableExport.h"

namespace orv::app {

namespace {

enum Column { kName, kValue, kUnit, kColumns };

constexpr int kLongestName = 28;  ///< characters; longer names are cut
constexpr int kNarrowest = 40;    ///< characters for all columns

/// With a capital letter at its start.
QString displayName(const std::string& name) {
  QString text = shownText(name);
  if (!text.isEmpty()) text[0] = text[0].toUpper();
  return text;
}

QTreeWidgetItem* addSection(QTreeWidget* tree, const QString& name, bool isOpen) {
  auto* section = new QTreeWidgetItem(tree, {name});
  section->setFlags(Qt::ItemIsEnabled);
  QFont bold = tree->font();
  bold.setBold(true);
  section->setFont(kName, bold);
  section->setFirstColumnSpanned(true);
  section->setExpanded(isOpen);
  return section;
}

}  // namespace

DetailsTree::DetailsTree(QWidget* parent) : QTreeWidget(parent) {
  setColumnCount(kColumns);
  setHeaderLabels({tr("Field"), tr("Value"), tr("Unit")});
  setSelectionMode(ExtendedSelection);
  setAlternatingRowColors(true);
  setUniformRowHeights(true);
  setIndentation(12);
  setMinimumWidth(kNarrowest * fontMetrics().averageCharWidth());
  header()->setSectionsMovable(false);
  header()->setStretchLastSection(false);
  header()->setSectionResizeMode(kName, QHeaderView::Interactive);
  header()->setSectionResizeMode(kValue, QHeaderView::Stretch);
  header()->setSectionResizeMode(kUnit, QHeaderView::ResizeToContents);
  connect(header(), &QHeaderView::sectionResized, this, [this](int column, int, int width) {
    if (column == kName && !placing_) wantedNames_ = width;
  });
  setAccessibleName(tr("Fields of the record"));
  setWhatsThis(
      tr("All fields of the selected record. Type above to search; Ctrl+C copies the "
         "selected rows."));
}

void DetailsTree::showFields(const std::vector<commands::DetailField>& fields) {
  QSet<QString> closed;
  for (int i = 0; i < topLevelItemCount(); ++i) {
    if (!topLevelItem(i)->isExpanded()) closed.insert(topLevelItem(i)->text(kName));
  }
  clear();
  QTreeWidgetItem* section = nullptr;
  for (const auto& field : fields) {
    const QString name = qt(field.section);
    if (!section || section->text(kName) != name) {
      section = addSection(this, name, !closed.contains(name));
    }
    const QString value = qt(field.value);
    auto* item = new QTreeWidgetItem(
        section, {displayName(field.name), shownText(value.simplified()), qt(field.unit)});
    item->setToolTip(kName, toolTipText(item->text(kName)));
    item->setToolTip(kValue, toolTipText(value));
    item->setData(kValue, Qt::UserRole, value);
  }
  applyFilter();
  fitNames();
}

void DetailsTree::fitNames() {
  // Records of another kind have other names; among those of one kind the user's width stays.
  const QString kind = topLevelItemCount() > 0 ? topLevelItem(0)->text(kName) : QString();
  if (kind == kind_) return;
  kind_ = kind;
  resizeColumnToContents(kName);
  wantedNames_ = std::min(columnWidth(kName), kLongestName * fontMetrics().averageCharWidth());
  placeNames();
}

/// In a narrow dock, too, the values are seen beside the names.
void DetailsTree::placeNames() {
  placing_ = true;
  setColumnWidth(kName, std::min(wantedNames_, viewport()->width() / 2));
  placing_ = false;
}

void DetailsTree::resizeEvent(QResizeEvent* event) {
  QTreeWidget::resizeEvent(event);
  if (wantedNames_ > 0) placeNames();
}

void DetailsTree::setFilter(const QString& text) {
  filter_ = text;
  applyFilter();
}

void DetailsTree::applyFilter() {
  for (int i = 0; i < topLevelItemCount(); ++i) {
    QTreeWidgetItem* section = topLevelItem(i);
    bool any = false;
    for (int j = 0; j < section->childCount(); ++j) {
      QTreeWidgetItem* item = section->child(j);
      const bool matches = item->text(kName).contains(filter_, Qt::CaseInsensitive) ||
                           item->text(kValue).contains(filter_, Qt::CaseInsensitive);
      item->setHidden(!matches);
      any = any || matches;
    }
    section->setHidden(!any);
  }
}

void DetailsTree::focusFirst() {
  setFocus(Qt::OtherFocusReason);
  for (int i = 0; i < topLevelItemCount(); ++i) {
    if (topLevelItem(i)->isHidden()) continue;
    topLevelItem(i)->setExpanded(true);
    return setCurrentItem(itemBelow(topLevelItem(i)));
  }
}

QList<QStringList> DetailsTree::rows(bool onlySelected) const {
  const QTreeWidgetItem* headings = headerItem();
  QList<QStringList> rows;
  rows << QStringList{headings->text(kName), headings->text(kValue), headings->text(kUnit)};
  for (int i = 0; i < topLevelItemCount(); ++i) {
    const QTreeWidgetItem* section = topLevelItem(i);
    for (int j = 0; j < section->childCount(); ++j) {
      const QTreeWidgetItem* item = section->child(j);
      if (item->isHidden() || (onlySelected && !item->isSelected())) continue;
      // A value of several lines is one cell.
      const QString value = item->data(kValue, Qt::UserRole).toString().simplified();
      rows << QStringList{item->text(kName), value, item->text(kUnit)};
    }
  }
  return rows;
}

QString DetailsTree::text(bool onlySelected) const {
  QString text;
  for (const QStringList& row : rows(onlySelected)) text += row.join(u'\t') + u'\n';
  return text;
}

void DetailsTree::copy(bool onlySelected) const {
  QGuiApplication::clipboard()->setText(text(onlySelected));
}

/// The keys of copying are for this, not for the window's command of the same keys.
bool DetailsTree::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride &&
      static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy)) {
    event->accept();
    return true;
  }
  return QTreeWidget::event(event);
}

void DetailsTree::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    copy(!selectedItems().isEmpty());
  } else {
    QTreeWidget::keyPressEvent(event);
  }
}

void DetailsTree::contextMenuEvent(QContextMenuEvent* event) {
  QMenu menu(this);
  auto* copySelected = menu.addAction(tr("&Copy"), this, [this] { copy(true); });
  copySelected->setShortcut(QKeySequence::Copy);
  copySelected->setEnabled(!selectedItems().isEmpty());
  if (const auto* item = currentItem(); item && item->isSelected()) {
    menu.addAction(tr("Copy &Value"), this, [item] {
      QGuiApplication::clipboard()->setText(item->data(kValue, Qt::UserRole).toString());
    });
  }
  menu.addAction(tr("Copy &All"), this, [this] { copy(false); });
  menu.addAction(tr("&Save as CSV..."), this,
                 [this] { saveAsCsv(rows(false), tr("fields"), this); });
  menu.addSeparator();
  menu.addAction(tr("&Expand All"), this, &QTreeWidget::expandAll);
  menu.addAction(tr("Collapse A&ll"), this, &QTreeWidget::collapseAll);
  menu.exec(event->globalPos());
}

}  // namespace orv::app
