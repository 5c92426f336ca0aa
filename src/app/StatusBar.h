// The status bar of the main window.
#pragma once

#include <QStatusBar>

class QLabel;

namespace orv::app {

/// Panels: what is being done now; how many records there are and how many are selected; what has
/// been copied.
class StatusBar : public QStatusBar {
  Q_OBJECT

 public:
  explicit StatusBar(QWidget* parent = nullptr);

  void status(const QString& text);
  void counts(const QString& text);
  void pending(const QString& text);

 private:
  QLabel* addPanel(const char* name, int stretch, const QString& help);

  QLabel* status_;
  QLabel* counts_;
  QLabel* pending_;
};

}  // namespace orv::app
