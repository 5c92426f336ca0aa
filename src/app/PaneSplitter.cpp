#include "app/PaneSplitter.h"

#include "app/Twips.h"

namespace orv::app {

namespace {

constexpr int kTwipsToEdge = 500;
constexpr int kTreeTwips = 2400;

}  // namespace

PaneSplitter::PaneSplitter(QWidget* left, QWidget* right, QWidget* parent)
    : QSplitter(Qt::Horizontal, parent) {
  setObjectName("Splitter");
  addWidget(left);
  addWidget(right);
  setChildrenCollapsible(false);
  setOpaqueResize(false);
  setStretchFactor(0, 0);
  setStretchFactor(1, 1);
  handle(1)->setToolTip(tr("Drag to give the tree or the records more room"));
  SizeControls();
  const int tree = pixelsFromTwips(kTreeTwips, logicalDpiX());
  setSizes({tree, 4 * tree});
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
