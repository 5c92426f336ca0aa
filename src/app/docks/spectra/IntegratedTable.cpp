#include "app/docks/spectra/IntegratedTable.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>

#include "app/Text.h"
#include "app/dialogs/TableExport.h"
#include "app/theme/MarkColour.h"

namespace orv::app {

namespace {

constexpr int kWidestLabel = 64;  ///< pixels: a pane takes two columns beside the plot
constexpr QSize kMark(24, 12);

/// Shows a text that may come from a file, and keeps what is copied of it.
QTableWidgetItem* cell(const QString& shown, const QString& copied) {
  auto* item = new QTableWidgetItem(shownText(shown));
  item->setData(Qt::UserRole, copied);
  return item;
}

QString textOf(const QTableWidgetItem* item) {
  return item->data(Qt::UserRole).toString();
}

/// A field of a colour with a frame, so that it is seen on any background.
QIcon swatch(const QColor& colour, const QWidget& widget) {
  QPixmap pixmap(kMark * widget.devicePixelRatioF());
  pixmap.setDevicePixelRatio(widget.devicePixelRatioF());
  QPainter painter(&pixmap);
  painter.fillRect(QRect(QPoint(0, 0), kMark), colour);
  painter.setPen(widget.palette().color(QPalette::Mid));
  painter.drawRect(QRect(QPoint(0, 0), kMark - QSize(1, 1)));
  painter.end();
  QIcon icon;
  // The same picture in a selected row: its colour is what it tells.
  for (const auto mode : {QIcon::Normal, QIcon::Selected}) icon.addPixmap(pixmap, mode);
  return icon;
}

}  // namespace

IntegratedTable::IntegratedTable(QWidget* parent) : QTableWidget(parent) {
  setEditTriggers(NoEditTriggers);
  setAlternatingRowColors(true);
  setWordWrap(false);
  setTabKeyNavigation(false);
  setShowGrid(false);
  setIconSize(kMark);
  setHorizontalScrollMode(ScrollPerPixel);
  verticalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
  horizontalHeader()->setTextElideMode(Qt::ElideNone);  // of two lines it would leave out one
  setAccessibleName(tr("Integrated values"));
  setWhatsThis(
      tr("<p>The solar, visible and ultraviolet values of each pane and what else the standard "
         "has: as the data source stores them, and as they are computed from the spectrum.</p>"
         "<p>A computed value with the sign ≠ and a colour behind it differs from the stored one "
         "by more than 0.5 %. The tool tip of a value says how much of the weight the spectrum "
         "covers, or why there is no value.</p><p>The colours are those of daylight (D65) behind "
         "the pane and after its reflection.</p>"));
}

void IntegratedTable::showDataSets(const std::vector<SpectrumDataSet>& dataSets,
                                   optics::Standard standard) {
  rows_ = integratedRows(dataSets, standard);
  clear();
  setRowCount(static_cast<int>(rows_.size()));
  setColumnCount(rows_.empty() ? 0 : static_cast<int>(2 * dataSets.size()));
  if (rows_.empty()) return;
  fillHeader(dataSets);
  for (int row = 0; row < rowCount(); ++row) fillRow(row, rows_[static_cast<std::size_t>(row)]);
  resizeColumnsToContents();
}

void IntegratedTable::fillHeader(const std::vector<SpectrumDataSet>& dataSets) {
  const QFontMetrics metrics = horizontalHeader()->fontMetrics();
  int column = 0;
  for (const auto& set : dataSets) {
    const QString label = metrics.elidedText(shownText(set.label), Qt::ElideMiddle, kWidestLabel);
    for (const QString& kind : {tr("stored"), tr("computed")}) {
      auto* header = cell(QString(), tr("%1 (%2)").arg(set.label, kind));
      header->setText(label + u'\n' + kind);
      header->setToolTip(toolTipText(textOf(header)));
      setHorizontalHeaderItem(column++, header);
    }
  }
}

void IntegratedTable::fillRow(int row, const IntegratedRow& values) {
  setVerticalHeaderItem(row, cell(values.name, values.name));
  int column = 0;
  for (const IntegratedPair& pair : values.values) {
    fillCell(row, column++, pair.stored);
    fillCell(row, column++, pair.computed);
  }
}

void IntegratedTable::fillCell(int row, int column, const IntegratedCell& value) {
  const QString text = value.text.isEmpty() ? QStringLiteral("–") : value.text;
  auto* item = cell(value.differs ? QStringLiteral("≠ ") + text : text, value.text);
  item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
  if (!value.tip.isEmpty()) {
    item->setToolTip(toolTipText(value.tip));
    item->setData(Qt::AccessibleDescriptionRole, value.tip);
  }
  if (value.differs) {
    item->setBackground(markColour(palette()));
    item->setData(Qt::AccessibleTextRole, tr("%1, differs from the stored value").arg(text));
  }
  if (value.colour) {
    const auto [red, green, blue] = *value.colour;
    item->setIcon(swatch(QColor(red, green, blue), *this));
  }
  setItem(row, column, item);
}

/// The marks are mixed with the colours of the window.
void IntegratedTable::changeEvent(QEvent* event) {
  QTableWidget::changeEvent(event);
  if (event->type() != QEvent::PaletteChange) return;
  for (int row = 0; row < rowCount(); ++row) fillRow(row, rows_[static_cast<std::size_t>(row)]);
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

#include "moc_IntegratedTable.cpp"
