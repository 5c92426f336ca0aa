#include "app/window/FileWatch.h"

#include <QFileInfo>

namespace orv::app {

namespace {

/// Who replaces a file may take it away before.
constexpr int kMillisecondsOfRest = 500;

}  // namespace

FileWatch::FileWatch(QObject* parent) : QObject(parent) {
  rest_.setSingleShot(true);
  rest_.setInterval(kMillisecondsOfRest);
  connect(&watcher_, &QFileSystemWatcher::fileChanged, this, [this] { rest_.start(); });
  connect(&rest_, &QTimer::timeout, this, &FileWatch::look);
}

FileWatch::State FileWatch::stateOf(const QString& path) {
  const QFileInfo file(path);
  return {file.exists(), file.size(), file.lastModified()};
}

void FileWatch::watch(const QString& path) {
  if (path_ != path && !watcher_.files().isEmpty()) watcher_.removePaths(watcher_.files());
  path_ = path;
  rest_.stop();
  if (path.isEmpty()) return;
  seen_ = stateOf(path);
  if (!seen_.isThere) {
    rest_.start();
  } else if (!watcher_.files().contains(path)) {
    watcher_.addPath(path);
  }
}

void FileWatch::look() {
  if (path_.isEmpty()) return;
  const State now = stateOf(path_);
  if (now != seen_) {
    emit changed();
  } else if (!now.isThere) {
    rest_.start();
  }
}

}  // namespace orv::app

#include "moc_FileWatch.cpp"
