// Changes of the file shown that other programs make.
#pragma once

#include <QDateTime>
#include <QFileSystemWatcher>
#include <QTimer>

namespace orv::app {

/// Looks at a file whenever the system says that something has happened to it, a moment later, and
/// while it is not there.
class FileWatch : public QObject {
  Q_OBJECT

 public:
  explicit FileWatch(QObject* parent);

  /// Watches a file from now on, as it is now, in place of the former; none with an empty path.
  void watch(const QString& path);
  /// Says again that the file has changed, in a while.
  void lookLater() { rest_.start(); }

 signals:
  /// The file is not as it was when watch() was called: changed, replaced or gone.
  void changed();

 private:
  struct State {
    bool isThere = false;
    qint64 size = 0;
    QDateTime modified;
    bool operator==(const State&) const = default;
  };
  static State stateOf(const QString& path);
  void look();

  QString path_;
  State seen_;
  QFileSystemWatcher watcher_;
  QTimer rest_;
};

}  // namespace orv::app
