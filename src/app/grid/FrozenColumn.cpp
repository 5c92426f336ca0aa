#include "app/grid/FrozenColumn.h"

#include <QCoreApplication>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <functional>

#include "app/grid/FilterHeader.h"
#include "app/grid/RecordGrid.h"

namespace orv::app {

namespace {

/// A part of a view that lies over it and hands the mouse on to where it has been scrolled to.
class Cover : public QWidget {
 public:
  Cover(QWidget* parent, QWidget* below, std::function<void(QPainter&)> draw)
      : QWidget(parent), below_(below), draw_(std::move(draw)) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    hide();
  }

  /// How far to the left the column is below.
  void shift(int pixels) { shift_ = QPoint(pixels, 0); }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    draw_(painter);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawLine(rect().topRight(), rect().bottomRight());
  }

  bool event(QEvent* event) override {
    switch (event->type()) {
      case QEvent::MouseButtonPress:
      case QEvent::MouseButtonRelease:
      case QEvent::MouseButtonDblClick:
      case QEvent::MouseMove: {
        const auto& mouse = *static_cast<QMouseEvent*>(event);
        QMouseEvent there(mouse.type(), mouse.position() + shift_, mouse.globalPosition(),
                          mouse.button(), mouse.buttons(), mouse.modifiers());
        QCoreApplication::sendEvent(below_, &there);
        return true;
      }
      case QEvent::ToolTip: {
        const auto& help = *static_cast<QHelpEvent*>(event);
        QHelpEvent there(help.type(), help.pos() + shift_, help.globalPos());
        return QCoreApplication::sendEvent(below_, &there);
      }
      case QEvent::ContextMenu: {
        const auto& menu = *static_cast<QContextMenuEvent*>(event);
        QContextMenuEvent there(menu.reason(), menu.pos() + shift_, menu.globalPos());
        QCoreApplication::sendEvent(below_, &there);
        return true;
      }
      default:
        return QWidget::event(event);
    }
  }

 private:
  QWidget* below_;
  std::function<void(QPainter&)> draw_;
  QPoint shift_;
};

}  // namespace

FrozenColumn::FrozenColumn(RecordGrid& grid)
    : QObject(&grid),
      grid_(grid),
      cells_(new Cover(&grid, grid.viewport(),
                       [this](QPainter& painter) { grid_.drawColumn(painter, firstColumn()); })),
      heading_(new Cover(&grid.filterHeader(), grid.filterHeader().viewport(),
                         [this](QPainter& painter) {
                           grid_.filterHeader().drawHeading(painter, firstColumn());
                         })) {
  const FilterHeader* header = &grid.filterHeader();
  connect(header, &QHeaderView::sectionResized, this, &FrozenColumn::place);
  connect(header, &QHeaderView::sectionMoved, this, &FrozenColumn::place);
  connect(header, &QHeaderView::geometriesChanged, this, &FrozenColumn::place);
  connect(header, &QHeaderView::sortIndicatorChanged, heading_, qOverload<>(&QWidget::update));
  connect(grid.horizontalScrollBar(), &QScrollBar::valueChanged, this, &FrozenColumn::place);
  connect(&grid.records(), &QAbstractItemModel::modelReset, this, &FrozenColumn::place);
  connect(&grid.records(), &QAbstractItemModel::dataChanged, cells_, qOverload<>(&QWidget::update));
  grid.viewport()->installEventFilter(this);
}

/// What is drawn follows what is drawn below.
bool FrozenColumn::eventFilter(QObject* /*watched*/, QEvent* event) {
  if (event->type() == QEvent::Resize) place();
  if (event->type() == QEvent::Paint && cells_->isVisible()) cells_->update();
  return false;
}

void FrozenColumn::freeze(bool frozen) {
  frozen_ = frozen;
  place();
}

int FrozenColumn::firstColumn() const {
  const FilterHeader& header = grid_.filterHeader();
  for (int visual = 0; visual < header.count(); ++visual) {
    const int column = header.logicalIndex(visual);
    if (!header.isSectionHidden(column)) return column;
  }
  return -1;
}

int FrozenColumn::column() const {
  const int first = frozen_ ? firstColumn() : -1;
  return first >= 0 && grid_.columnViewportPosition(first) < 0 ? first : -1;
}

/// At most half of a narrow grid, so that something is left to scroll.
int FrozenColumn::width() const {
  const int standing = column();
  if (standing < 0) return 0;
  return std::min(grid_.columnWidth(standing), grid_.viewport()->width() / 2);
}

void FrozenColumn::place() {
  const int standing = column();
  const int covered = width();
  FilterHeader& header = grid_.filterHeader();
  for (QWidget* cover : {cells_, heading_}) {
    cover->setVisible(standing >= 0);
    static_cast<Cover*>(cover)->shift(standing < 0 ? 0 : grid_.columnViewportPosition(standing));
  }
  const QRect area = grid_.viewport()->geometry();
  cells_->setGeometry(QRect(area.topLeft(), QSize(covered, area.height())));
  heading_->setGeometry(0, 0, covered, header.height());
  cells_->raise();
  heading_->raise();
  heading_->update();
  header.keepEditor(standing, covered);
}

}  // namespace orv::app

#include "moc_FrozenColumn.cpp"
