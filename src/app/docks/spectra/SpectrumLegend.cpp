#include "app/docks/spectra/SpectrumLegend.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QSignalBlocker>
#include <algorithm>

#include "app/Text.h"
#include "app/docks/spectra/PlotTheme.h"
#include "app/theme/Icons.h"

namespace orv::app {

namespace {

enum Column { kLabel, kPin, kColumns };

constexpr QSize kSwatch{24, 14};
constexpr int kPinWidth = 28;  ///< pixels

QString toolTipOf(const SpectrumDataSet& set) {
  const GlazingData& pane = *set.record;
  QStringList lines{set.name};
  for (const std::string& text : {pane.productname(), pane.supplier(), pane.group()}) {
    if (!text.empty()) lines << qt(text);
  }
  lines << SpectrumLegend::tr("Angle of incidence %1°").arg(set.angle);
  if (!set.hasSpectrum()) lines << SpectrumLegend::tr("No spectral data");
  lines.removeDuplicates();
  return toolTipText(lines.join(u'\n'));
}

}  // namespace

SpectrumLegend::SpectrumLegend(SpectrumPlot& plot, QWidget* parent)
    : QTreeWidget(parent), plot_(plot) {
  setColumnCount(kColumns);
  setHeaderHidden(true);
  header()->setStretchLastSection(false);
  header()->setMinimumSectionSize(kPinWidth);
  header()->setSectionResizeMode(kLabel, QHeaderView::Stretch);
  header()->setSectionResizeMode(kPin, QHeaderView::Fixed);
  header()->resizeSection(kPin, kPinWidth);
  setRootIsDecorated(false);
  setUniformRowHeights(true);
  setMouseTracking(true);
  setIconSize(kSwatch);
  setTextElideMode(Qt::ElideMiddle);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setAccessibleName(tr("Panes of the plot"));
  setWhatsThis(
      tr("The panes of the plot and their colours. Untick one to hide its curves. A click on "
         "the pin, or the key P, keeps a pane in the plot while others are selected."));
  connect(this, &QTreeWidget::itemClicked, this, [this](const QTreeWidgetItem* item, int column) {
    if (column == kPin) emit pinWanted(static_cast<std::size_t>(indexFromItem(item).row()));
  });
  connect(this, &QTreeWidget::itemChanged, this,
          [this](const QTreeWidgetItem* item) { itemWasTicked(*item); });
  connect(this, &QTreeWidget::itemEntered, this, [this](const QTreeWidgetItem* item) {
    emit pointed(static_cast<std::size_t>(indexFromItem(item).row()));
  });
  connect(this, &QTreeWidget::currentItemChanged, this, [this](const QTreeWidgetItem* item) {
    if (item && hasFocus()) emit pointed(static_cast<std::size_t>(indexFromItem(item).row()));
  });
}

void SpectrumLegend::refresh() {
  const QSignalBlocker blocker(this);
  clear();
  const QIcon pinned = pin(true);
  const QIcon loose = pin(false);
  for (std::size_t i = 0; i < plot_.dataSets.size(); ++i) {
    const SpectrumDataSet& set = plot_.dataSets[i];
    auto* item = new QTreeWidgetItem(this, {shownText(set.label)});
    item->setIcon(0, swatch(set));
    item->setToolTip(0, toolTipOf(set));
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    item->setCheckState(0, plot_.hidden[i] ? Qt::Unchecked : Qt::Checked);
    item->setHidden(plot_.angle && set.angle != *plot_.angle);
    item->setDisabled(!set.hasSpectrum());
    item->setIcon(kPin, set.isPinned ? pinned : loose);
    item->setToolTip(kPin, set.isPinned ? tr("Pinned: it stays while others are selected")
                                        : tr("Keep it in the plot while others are selected"));
    item->setData(kPin, Qt::AccessibleTextRole, set.isPinned ? tr("pinned") : tr("not pinned"));
  }
}

/// A pane that is not pinned has a pale pin, to be clicked on.
QIcon SpectrumLegend::pin(bool isPinned) const {
  const QSize size(kSwatch.height(), kSwatch.height());
  const QPixmap pixmap =
      icon("pin").pixmap(size, devicePixelRatioF(), isPinned ? QIcon::Normal : QIcon::Disabled);
  QIcon icon;
  for (const auto mode : {QIcon::Normal, QIcon::Selected}) icon.addPixmap(pixmap, mode);
  return icon;
}

QIcon SpectrumLegend::swatch(const SpectrumDataSet& set) const {
  const PlotTheme theme = PlotTheme::of(palette());
  QPixmap pixmap(kSwatch * devicePixelRatioF());
  pixmap.setDevicePixelRatio(devicePixelRatioF());
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  QPen pen = theme.pen(set, plot_.paneCount(), SpectralQuantity::transmittance);
  pen.setWidthF(pen.widthF() * 2);
  painter.setPen(pen);
  const double middle = kSwatch.height() / 2.0;
  painter.drawLine(QPointF(1, middle), QPointF(kSwatch.width() - 1, middle));
  painter.end();
  QIcon icon;
  // The same picture in a selected row: its colour is what it tells.
  for (const auto mode : {QIcon::Normal, QIcon::Selected}) icon.addPixmap(pixmap, mode);
  return icon;
}

void SpectrumLegend::itemWasTicked(const QTreeWidgetItem& item) {
  const auto row = static_cast<std::size_t>(indexFromItem(&item).row());
  if (row >= plot_.hidden.size()) return;
  const bool hidden = item.checkState(0) == Qt::Unchecked;
  if (plot_.hidden[row] == hidden) return;
  plot_.hidden[row] = hidden;
  emit visibilityChanged();
}

void SpectrumLegend::showOnly(std::optional<std::size_t> dataSet) {
  for (std::size_t i = 0; i < plot_.hidden.size(); ++i) plot_.hidden[i] = dataSet && i != *dataSet;
  refresh();
  emit visibilityChanged();
}

void SpectrumLegend::changeEvent(QEvent* event) {
  QTreeWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) refresh();
}

void SpectrumLegend::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_P && event->modifiers() == Qt::NoModifier && currentItem()) {
    emit pinWanted(static_cast<std::size_t>(indexFromItem(currentItem()).row()));
  } else {
    QTreeWidget::keyPressEvent(event);
  }
}

void SpectrumLegend::leaveEvent(QEvent* event) {
  QTreeWidget::leaveEvent(event);
  emit pointed({});
}

void SpectrumLegend::contextMenuEvent(QContextMenuEvent* event) {
  const QTreeWidgetItem* item =
      event->reason() == QContextMenuEvent::Keyboard ? currentItem() : itemAt(event->pos());
  QMenu menu(this);
  if (item) {
    const auto row = static_cast<std::size_t>(indexFromItem(item).row());
    menu.addAction(tr("Show &Only This"), this, [this, row] { showOnly(row); });
    menu.addAction(plot_.dataSets[row].isPinned ? tr("Un&pin") : tr("&Pin"), this,
                   [this, row] { emit pinWanted(row); });
  }
  menu.addAction(tr("Show &All"), this, [this] { showOnly({}); });
  menu.exec(event->globalPos());
}

}  // namespace orv::app

#include "moc_SpectrumLegend.cpp"
