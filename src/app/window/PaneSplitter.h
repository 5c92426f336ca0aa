// The splitter between the tree and the records.
#pragma once

#include <QSplitter>

namespace orv::app {

/// Shows a bar from the press of the mouse on, which follows the pointer while it is dragged, and
/// places the two sides when it is let go. It stays 500 twips at least from the window's left and
/// right edges.
class PaneSplitter : public QSplitter {
  Q_OBJECT

 public:
  PaneSplitter(QWidget* left, QWidget* right, QWidget* parent = nullptr);

  /// Gives both sides the room that the rule of the edges leaves them, on the window's screen.
  void SizeControls();
  /// Shows the moving bar with its left side at `x`.
  void showBar(int x) { setRubberBand(x); }

 protected:
  QSplitterHandle* createHandle() override;
  void resizeEvent(QResizeEvent* event) override;
};

}  // namespace orv::app
