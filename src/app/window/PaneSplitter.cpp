#include "app/window/PaneSplitter.h"

#include <algorithm>

#include "app/Help.h"
#include "app/window/Twips.h"

namespace orv::app {

namespace {

constexpr int kTwipsToEdge = 500;
constexpr int kTreeTwips = 2400;
constexpr int kTwipsToBar = 20;
/// Docks never take more room than leaves this; the window grows when they need it.
constexpr QSize kLeastRoom(300, 160);

class Handle : public QSplitterHandle {
 public:
  explicit Handle(PaneSplitter& splitter)
      : QSplitterHandle(Qt::Horizontal, &splitter), splitter_(splitter) {}

 protected:
  void mousePressEvent(QMouseEvent* event) override {
    QSplitterHandle::mousePressEvent(event);
    splitter_.showBar(std::max(x() - pixelsFromTwips(kTwipsToBar, logicalDpiX()), 0));
  }

 private:
  PaneSplitter& splitter_;
};

}  // namespace

PaneSplitter::PaneSplitter(QWidget* left, QWidget* right, QWidget* parent)
    : QSplitter(Qt::Horizontal, parent) {
  setObjectName("Splitter");
  addWidget(left);
  addWidget(right);
  setMinimumSize(kLeastRoom);
  setChildrenCollapsible(false);
  setOpaqueResize(false);
  setStretchFactor(0, 0);
  setStretchFactor(1, 1);
  explain(handle(1), tr("Drag to give the tree or the records more room"));
  SizeControls();
  const int tree = pixelsFromTwips(kTreeTwips, logicalDpiX());
  setSizes({tree, 4 * tree});
}

QSplitterHandle* PaneSplitter::createHandle() {
  return new Handle(*this);
}

void PaneSplitter::SizeControls() {
  const int least = pixelsFromTwips(kTwipsToEdge, logicalDpiX());
  for (int i = 0; i < count(); ++i) {
    if (widget(i)->minimumWidth() != least) widget(i)->setMinimumWidth(least);
  }
}

void PaneSplitter::resizeEvent(QResizeEvent* event) {
  SizeControls();
  QSplitter::resizeEvent(event);
}

}  // namespace orv::app

#include "moc_PaneSplitter.cpp"
