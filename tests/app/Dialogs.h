// A user who answers the program's modal windows.
#pragma once

#include <QAbstractButton>
#include <QStringList>
#include <QTimer>
#include <QWidget>
#include <deque>
#include <functional>
#include <set>

namespace orv::test {

/// The button of this text (without "&"), or none.
QAbstractButton* buttonOf(const QWidget& window, const QString& text);

/// What a modal window showed.
struct SeenDialog {
  QString title;
  QString text;  ///< of a message or input box; of other windows their first label
  QStringList buttons;
  QString defaultButton;
};

/// Watches for modal windows while it lives, notes each, and does to it what was planned. A window
/// that nobody planned for is closed by its escape key, so that no test hangs.
class Dialogs : public QObject {
 public:
  using Handler = std::function<void(QWidget&)>;

  Dialogs();

  /// Plans what to do to the next window that is not planned for yet.
  Dialogs& then(Handler handler);
  /// Presses the button of this text (without "&").
  Dialogs& press(const QString& button);
  /// Presses a key.
  Dialogs& press(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
  /// Notes the long text of a window, and closes it.
  Dialogs& read(QString& text);
  /// Chooses files in a file dialog.
  Dialogs& choose(const QStringList& paths);
  /// Answers an input box.
  Dialogs& type(const QString& text);

  const std::vector<SeenDialog>& seen() const { return seen_; }
  QStringList texts() const;
  /// The same, for the message of a test that fails.
  std::string told() const { return texts().join('|').toStdString(); }
  /// Whether every planned window came.
  bool isDone() const { return handlers_.empty(); }

 private:
  void look();

  QTimer timer_;
  std::deque<Handler> handlers_;
  std::vector<SeenDialog> seen_;
  std::set<QWidget*> handled_;
};

}  // namespace orv::test
