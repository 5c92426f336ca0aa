#include "app/dialogs/DialogFolders.h"

#include <QDir>
#include <QMap>

namespace orv::app {

namespace {

QMap<QString, QString>& foldersByKind() {
  static QMap<QString, QString> folders;
  return folders;
}

}  // namespace

QString dialogFolder(const QString& kind) {
  const auto& folders = foldersByKind();
  const QString last = folders.value({}, QDir::homePath());
  return folders.value(kind, last);
}

void rememberDialogFolder(const QString& kind, const QString& folder) {
  foldersByKind()[kind] = folder;
  foldersByKind()[{}] = folder;
}

}  // namespace orv::app
