// The status bar of the main window.
#pragma once

#include <QStatusBar>

class QLabel;
class QToolButton;

namespace orv::app {

/// Panels: what is being done now; how many records there are and how many are selected; what has
/// been copied; and a button with the result of the last work, which opens its report.
class StatusBar : public QStatusBar {
  Q_OBJECT

 public:
  explicit StatusBar(QWidget* parent = nullptr);

  void status(const QString& text);
  void counts(const QString& text);
  void pending(const QString& text);
  /// `report`: what there is to say of the records, in parts. An empty summary takes the button
  /// away.
  void result(const QString& summary, const QStringList& report);

 private:
  void showReport();
  QLabel* addPanel(const char* name, int stretch, const QString& help);

  QLabel* status_;
  QLabel* counts_;
  QLabel* pending_;
  QToolButton* result_;
  QStringList report_;
};

}  // namespace orv::app
