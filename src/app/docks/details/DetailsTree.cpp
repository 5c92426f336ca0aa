#include "app/docks/details/DetailsTree.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QSet>
#include <QTreeWidgetItemIterator>
#include <algorithm>
#include <map>

#include "app/Text.h"
#include "app/dialogs/TableExport.h"
#include "app/theme/MarkColour.h"

namespace orv::app {

namespace {

enum Column { kName, kFirstValue };

constexpr int kValueRole = Qt::UserRole;        ///< the whole value
constexpr int kDiffersRole = Qt::UserRole + 1;  ///< of the name: the records differ here
constexpr int kNarrowestValue = 12;             ///< characters

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
  setSelectionMode(ExtendedSelection);
  setAlternatingRowColors(true);
  setUniformRowHeights(true);
  setIndentation(12);
  setMinimumWidth(kNarrowest * fontMetrics().averageCharWidth());
  header()->setSectionsMovable(false);
  header()->setStretchLastSection(false);
  header()->setTextElideMode(Qt::ElideMiddle);
  setTextElideMode(Qt::ElideMiddle);  // what tells front from back stands at the end of names
  showHeadings({QString()});
  connect(header(), &QHeaderView::sectionResized, this, [this](int column, int, int width) {
    if (column == kName && !placing_) wantedNames_ = width;
  });
  setAccessibleName(tr("Fields of the record"));
  setWhatsThis(
      tr("All fields of the selected record. Type above to search; Ctrl+C copies the "
         "selected rows."));
}

bool DetailsTree::Row::differs() const {
  return std::ranges::any_of(values, [&](const QString& value) { return value != values.front(); });
}

/// A field that is there several times, such as a use, is put together by its number.
std::vector<DetailsTree::Row> DetailsTree::rowsOf(
    const std::vector<std::vector<commands::DetailField>>& records) {
  std::vector<Row> rows;
  for (std::size_t record = 0; record < records.size(); ++record) {
    std::map<std::pair<std::string, std::string>, int> count;
    std::size_t place = 0;  // behind the field before
    for (const commands::DetailField& field : records[record]) {
      const QString section = qt(field.section);
      const QString name = qt(field.name);
      int number = count[{field.section, field.name}]++;
      auto row = std::ranges::find_if(rows, [&](const Row& each) {
        return each.name == name && each.section == section && number-- == 0;
      });
      if (row == rows.end()) {
        row = rows.insert(
            rows.begin() + static_cast<std::ptrdiff_t>(place),
            {section, name, qt(field.unit), QStringList(static_cast<qsizetype>(records.size()))});
      }
      row->values[static_cast<qsizetype>(record)] = qt(field.value);
      place = static_cast<std::size_t>(row - rows.begin()) + 1;
    }
  }
  return rows;
}

void DetailsTree::showFields(const QStringList& titles,
                             const std::vector<std::vector<commands::DetailField>>& records) {
  QSet<QString> closed;
  for (int i = 0; i < topLevelItemCount(); ++i) {
    if (!topLevelItem(i)->isExpanded()) closed.insert(topLevelItem(i)->text(kName));
  }
  clear();
  showHeadings(titles);
  QTreeWidgetItem* section = nullptr;
  for (const Row& row : rowsOf(records)) {
    if (!section || section->text(kName) != row.section) {
      section = addSection(this, row.section, !closed.contains(row.section));
    }
    addRow(section, row);
  }
  applyFilter();
  fitNames();
}

void DetailsTree::showHeadings(const QStringList& titles) {
  const bool areSeveral = titles.size() > 1;
  setColumnCount(static_cast<int>(titles.size()) + 2);
  QStringList labels{tr("Field")};
  for (const QString& title : titles) labels << (areSeveral ? shownText(title) : tr("Value"));
  setHeaderLabels(labels << tr("Unit"));
  header()->setSectionResizeMode(kName, QHeaderView::Interactive);
  for (int column = kFirstValue; column < unitColumn(); ++column) {
    headerItem()->setToolTip(column, areSeveral ? toolTipText(labels[column]) : QString());
  }
  header()->setSectionResizeMode(unitColumn(), QHeaderView::ResizeToContents);
  placeValues();
}

/// The values share what the names leave; many are scrolled through.
void DetailsTree::placeValues() {
  const int narrowest = kNarrowestValue * fontMetrics().averageCharWidth();
  const int values = unitColumn() - kFirstValue;
  const bool fits = values == 1 || values * narrowest <= viewport()->width() / 2;
  for (int column = kFirstValue; column < unitColumn(); ++column) {
    header()->setSectionResizeMode(column, fits ? QHeaderView::Stretch : QHeaderView::Interactive);
    if (!fits) header()->resizeSection(column, std::max(columnWidth(column), narrowest));
  }
}

void DetailsTree::addRow(QTreeWidgetItem* section, const Row& row) {
  auto* item = new QTreeWidgetItem(section, {displayName(row.name.toStdString())});
  item->setToolTip(kName, toolTipText(item->text(kName)));
  item->setData(kName, kDiffersRole, row.differs());
  item->setText(unitColumn(), row.unit);
  int column = kFirstValue;
  for (const QString& value : row.values) {
    item->setText(column, value.isNull() ? QStringLiteral("–") : shownText(value.simplified()));
    item->setToolTip(column, toolTipText(value));
    item->setData(column, kValueRole, value);
    ++column;
  }
  mark(*item);
}

/// The values that are not that of the first record, and the name by its weight.
void DetailsTree::mark(QTreeWidgetItem& item) const {
  if (!item.data(kName, kDiffersRole).toBool()) return;
  QFont bold = font();
  bold.setBold(true);
  item.setFont(kName, bold);
  item.setData(kName, Qt::AccessibleDescriptionRole, tr("The records differ."));
  for (int column = kFirstValue; column < unitColumn(); ++column) {
    const bool isOther = item.data(column, kValueRole) != item.data(kFirstValue, kValueRole);
    if (isOther) item.setBackground(column, markColour(palette()));
  }
}

void DetailsTree::fitNames() {
  // Records of another kind have other names; among those of one kind the user's width stays.
  const QString section = topLevelItemCount() > 0 ? topLevelItem(0)->text(kName) : QString();
  const QString kind = QStringLiteral("%1 %2").arg(columnCount()).arg(section);
  if (kind == kind_) return;
  kind_ = kind;
  resizeColumnToContents(kName);
  wantedNames_ = std::min(columnWidth(kName), kLongestName * fontMetrics().averageCharWidth());
  placeNames();
}

/// In a narrow dock, too, the values are seen beside the names.
void DetailsTree::placeNames() {
  placing_ = true;
  setColumnWidth(kName,
                 std::min(wantedNames_, viewport()->width() / std::min(columnCount() - 1, 3)));
  placing_ = false;
}

void DetailsTree::resizeEvent(QResizeEvent* event) {
  QTreeWidget::resizeEvent(event);
  placeValues();
  if (wantedNames_ > 0) placeNames();
}

void DetailsTree::setFilter(const QString& text) {
  filter_ = text;
  applyFilter();
}

void DetailsTree::showOnlyDifferences(bool only) {
  onlyDifferences_ = only;
  applyFilter();
}

bool DetailsTree::matches(const QTreeWidgetItem& item) const {
  const bool areSeveral = columnCount() > 3;
  if (onlyDifferences_ && areSeveral && !item.data(kName, kDiffersRole).toBool()) return false;
  for (int column = kName; column < unitColumn(); ++column) {
    if (item.text(column).contains(filter_, Qt::CaseInsensitive)) return true;
  }
  return false;
}

void DetailsTree::applyFilter() {
  for (int i = 0; i < topLevelItemCount(); ++i) {
    QTreeWidgetItem* section = topLevelItem(i);
    bool any = false;
    for (int j = 0; j < section->childCount(); ++j) {
      const bool isSeen = matches(*section->child(j));
      section->child(j)->setHidden(!isSeen);
      any = any || isSeen;
    }
    section->setHidden(!any);
  }
}

/// The marks are mixed with the colours of the window.
void DetailsTree::changeEvent(QEvent* event) {
  QTreeWidget::changeEvent(event);
  if (event->type() != QEvent::PaletteChange) return;
  for (QTreeWidgetItemIterator each(this); *each != nullptr; ++each) mark(**each);
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
  QList<QStringList> rows;
  rows << QStringList();
  for (int column = 0; column < columnCount(); ++column) rows.last() << headerItem()->text(column);
  for (int i = 0; i < topLevelItemCount(); ++i) {
    const QTreeWidgetItem* section = topLevelItem(i);
    for (int j = 0; j < section->childCount(); ++j) {
      const QTreeWidgetItem* item = section->child(j);
      if (item->isHidden() || (onlySelected && !item->isSelected())) continue;
      rows << QStringList{item->text(kName)};
      for (int column = kFirstValue; column < unitColumn(); ++column) {
        // A value of several lines is one cell.
        rows.last() << item->data(column, kValueRole).toString().simplified();
      }
      rows.last() << item->text(unitColumn());
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
    const int column = std::clamp(currentColumn(), int{kFirstValue}, unitColumn() - 1);
    menu.addAction(tr("Copy &Value"), this, [item, column] {
      QGuiApplication::clipboard()->setText(item->data(column, kValueRole).toString());
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

#include "moc_DetailsTree.cpp"
