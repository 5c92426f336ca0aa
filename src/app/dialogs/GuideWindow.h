// The user guide in a window.
#pragma once

#include <QWidget>

class QLabel;
class QLineEdit;
class QTreeWidget;

namespace orv::app {

class GuideBrowser;

/// The folder of the guide beside the program: of an installation, or of the build. Empty where
/// there is none.
QString guideFolder();

/// Shows the guide, with its headings to choose from and a search.
class GuideWindow : public QWidget {
  Q_OBJECT

 public:
  explicit GuideWindow(QWidget* parent = nullptr);

  /// Opens the guide at a heading: "the-window".
  void open(const QString& anchor);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QWidget* buildBar();
  void buildContents();
  void listHeadings();
  void find(bool forward);

  GuideBrowser* browser_;
  QTreeWidget* contents_;
  QLineEdit* search_;
  QLabel* note_;
};

}  // namespace orv::app
