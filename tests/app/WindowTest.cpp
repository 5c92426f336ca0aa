#include "app/WindowTest.h"

#include <QLabel>
#include <QPlainTextEdit>

namespace orv::test {

QString WindowTest::text() {
  auto& box = find<QPlainTextEdit>("DataSourceTextBox");
  return box.isVisible() ? box.toPlainText() : QString();
}

void WindowTest::selectNode(const QStringList& path) {
  QTreeWidgetItem* item = tree().invisibleRootItem();
  for (const QString& name : path) {
    QTreeWidgetItem* found = nullptr;
    for (int i = 0; i < item->childCount(); ++i) {
      if (item->child(i)->text(0) == name) found = item->child(i);
    }
    if (found == nullptr) throw std::logic_error("no node " + name.toStdString());
    item = found;
  }
  tree().setCurrentItem(item);
}

}  // namespace orv::test
