#include "app/docks/spectra/IntegratedTable.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>

#include "app/Text.h"
#include "app/dialogs/TableExport.h"
#include "app/docks/spectra/IntegratedValues.h"

namespace orv::app {

namespace {

constexpr int kWidestColumn = 110;

/// Shows a text that may come from a file, and keeps it as it is for copying.
QTableWidgetItem* cell(const QString& text) {
  auto* item = new QTableWidgetItem(shownText(text));
  item->setData(Qt::UserRole, text);
  return item;
}

QString textOf(const QTableWidgetItem* item) {
  return item->data(Qt::UserRole).toString();
}

}  // namespace

IntegratedTable::IntegratedTable(QWidget* parent) : QTableWidget(parent) {
  setEditTriggers(NoEditTriggers);
  setAlternatingRowColors(true);
  setWordWrap(false);
  setTabKeyNavigation(false);
  setShowGrid(false);
  setHorizontalScrollMode(ScrollPerPixel);
  verticalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
  horizontalHeader()->setTextElideMode(Qt::ElideMiddle);
  setAccessibleName(tr("Integrated values"));
  setWhatsThis(
      tr("The solar, visible and ultraviolet values that the data source holds beside the "
         "spectrum. They are shown as they are stored."));
}

void IntegratedTable::showDataSets(const std::vector<SpectrumDataSet>& dataSets) {
  const auto rows = integratedRows(dataSets);
  clear();
  setRowCount(static_cast<int>(rows.size()));
  setColumnCount(rows.empty() ? 0 : static_cast<int>(dataSets.size()));
  for (int column = 0; column < columnCount(); ++column) {
    const auto& label = dataSets[static_cast<std::size_t>(column)].label;
    auto* header = cell(label);
    header->setToolTip(toolTipText(label));
    setHorizontalHeaderItem(column, header);
  }
  for (int row = 0; row < rowCount(); ++row) {
    const auto& [name, values] = rows[static_cast<std::size_t>(row)];
    setVerticalHeaderItem(row, cell(name));
    for (int column = 0; column < columnCount(); ++column) {
      const QString& value = values[static_cast<std::size_t>(column)];
      auto* item = cell(value.isEmpty() ? QStringLiteral("–") : value);
      item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
      setItem(row, column, item);
    }
  }
  resizeColumnsToContents();
  for (int column = 0; column < columnCount(); ++column) {
    if (columnWidth(column) > kWidestColumn) setColumnWidth(column, kWidestColumn);
  }
}

/// The keys of copying are for this, not for the window's command of the same keys.
bool IntegratedTable::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride &&
      static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy)) {
    event->accept();
    return true;
  }
  return QTableWidget::event(event);
}

void IntegratedTable::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    copySelection();
  } else {
    QTableWidget::keyPressEvent(event);
  }
}

void IntegratedTable::contextMenuEvent(QContextMenuEvent* event) {
  QMenu menu(this);
  auto* copy = menu.addAction(tr("&Copy"), this, [this] { copySelection(); });
  copy->setShortcut(QKeySequence::Copy);
  copy->setEnabled(!selectedRanges().isEmpty());
  menu.addAction(tr("Select &All"), this, &QTableWidget::selectAll);
  menu.addAction(tr("&Save as CSV..."), this,
                 [this] { saveAsCsv(wholeTable(), tr("integrated values"), this); })
      ->setEnabled(rowCount() > 0);
  menu.exec(event->globalPos());
}

QList<QStringList> IntegratedTable::wholeTable() const {
  QList<QStringList> rows;
  rows << QStringList{tr("Value")};
  for (int column = 0; column < columnCount(); ++column) {
    rows.last() << textOf(horizontalHeaderItem(column));
  }
  for (int row = 0; row < rowCount(); ++row) {
    rows << QStringList{textOf(verticalHeaderItem(row))};
    for (int column = 0; column < columnCount(); ++column) rows.last() << textOf(item(row, column));
  }
  return rows;
}

void IntegratedTable::copySelection() const {
  const auto ranges = selectedRanges();
  if (ranges.isEmpty()) return;
  const QTableWidgetSelectionRange& range = ranges.first();
  QString text;
  for (int column = range.leftColumn(); column <= range.rightColumn(); ++column) {
    text += u'\t' + textOf(horizontalHeaderItem(column));
  }
  for (int row = range.topRow(); row <= range.bottomRow(); ++row) {
    text += u'\n' + textOf(verticalHeaderItem(row));
    for (int column = range.leftColumn(); column <= range.rightColumn(); ++column) {
      text += u'\t' + textOf(item(row, column));
    }
  }
  QGuiApplication::clipboard()->setText(text + u'\n');
}

}  // namespace orv::app
