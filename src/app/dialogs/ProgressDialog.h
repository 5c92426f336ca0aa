// The display of a long work.
#pragma once

#include <QDialog>
#include <QElapsedTimer>

class QLabel;
class QProgressBar;
class QPushButton;

namespace orv::app {

/// A small window over the main window with what is being done, how far it is, and a button that
/// ends the work after the record in hand. It keeps all windows painted, and blocks their input.
class ProgressDialog : public QDialog {
  Q_OBJECT

 public:
  ProgressDialog(const QString& text, QWidget* parent);

  /// What is being done now, under the text that names the whole work.
  void status(const QString& value);
  void steps(int done, int total);
  bool isCancelled() const { return cancelled_; }

  /// Lets windows paint themselves and buttons be pressed, not more often than needed.
  void breathe();

 protected:
  /// Also what the close box and the escape key do.
  void reject() override;

 private:
  QLabel* text_;
  QLabel* status_;
  QProgressBar* bar_;
  QPushButton* cancel_;
  QElapsedTimer sinceBreath_;
  bool cancelled_ = false;
};

}  // namespace orv::app
