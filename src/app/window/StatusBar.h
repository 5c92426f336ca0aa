// The status bar of the main window.
#pragma once

#include <QStatusBar>

class QLabel;
class QToolButton;

namespace orv::app {

/// Panels: what is being done now; how many records there are and how many are selected; what has
/// been copied; a button with the result of the last work, which opens its report, and one
/// that takes it back.
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
  /// Offers to take the last work back; an empty title takes the button away.
  void offerUndo(const QString& title);

 signals:
  void undoWanted();

 private:
  void showReport();
  QLabel* addPanel(const char* name, int stretch, const QString& help);

  QLabel* status_;
  QLabel* counts_;
  QLabel* pending_;
  QToolButton* result_;
  QToolButton* undo_;
  QStringList report_;
};

}  // namespace orv::app
