#include "app/WindowTest.h"

#include <QApplication>
#include <QPlainTextEdit>
#include <fstream>

#include "database/OrvSchema.h"

namespace orv::test {

QString WindowTest::text() {
  auto& box = find<QPlainTextEdit>("DataSourceTextBox");
  return box.isVisible() ? box.toPlainText() : QString();
}

int WindowTest::column(const QString& heading) {
  for (int i = 0; i < columns(); ++i) {
    if (grid().model()->headerData(i, Qt::Horizontal) == heading) return i;
  }
  return -1;
}

QString WindowTest::writeFile(const std::string& name, const std::string& text) {
  std::ofstream(folder / name) << text;
  return file(folder / name);
}

QString WindowTest::makeRows(const char* name, int panes) {
  const std::string path = folder / name;
  const auto connection = database::CreateEmptyDatabase(path);
  auto rows = connection->openRecordset("Pane", store::CursorType::keyset,
                                        store::LockType::batchOptimistic);
  for (int i = 0; i < panes; ++i) {
    rows->addNew();
    rows->setValue("name", "PANE" + std::to_string(10000 + i).substr(1) + ".DAT");
    rows->setValue("product_name", "Product " + std::to_string(i % 97));
    rows->setValue("thickness", static_cast<float>(3 + i % 10));
    rows->update();
  }
  rows->updateBatch();
  rows->close();
  connection->close();
  return QString::fromStdString(path);
}

void WindowTest::resize(int width, int height) {
  static const QStringList room = qEnvironmentVariable("ORV_TEST_SIZE").split('x');
  QSize size(width, height);
  if (room.size() == 2) size = size.boundedTo({room[0].toInt(), room[1].toInt()});
  window.resize(size);
}

void WindowTest::press(int key, Qt::KeyboardModifiers modifiers) {
  QWidget* target = QApplication::activePopupWidget();
  if (target == nullptr && QApplication::activeModalWidget() == nullptr) {
    window.activateWindow();  // without a window manager no one else does when a dialog has closed
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  }
  if (target == nullptr) target = QApplication::focusWidget();
  if (target == nullptr) target = QApplication::activeWindow();
  ASSERT_NE(target, nullptr);
  QTest::keyClick(target, static_cast<Qt::Key>(key), modifiers);
}

void WindowTest::type(const QString& text) {
  for (const QChar c : text) {
    QWidget* target = QApplication::focusWidget();
    ASSERT_NE(target, nullptr);
    QTest::sendKeyEvent(QTest::Click, target, Qt::Key_unknown, QString(c), Qt::NoModifier);
  }
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

void WindowTest::clickCell(int row, int column, Qt::KeyboardModifiers modifiers) {
  const QModelIndex index = grid().model()->index(row, column);
  grid().scrollTo(index);
  QTest::mouseClick(grid().viewport(), Qt::LeftButton, modifiers,
                    grid().visualRect(index).center());
}

void WindowTest::clickItem(QTreeWidget& list, const QTreeWidgetItem* item, Qt::MouseButton button,
                           Qt::KeyboardModifiers modifiers) {
  list.scrollToItem(item);
  const QPoint middle(list.viewport()->width() / 2, list.visualItemRect(item).center().y());
  QTest::mouseClick(list.viewport(), button, modifiers, middle);
}

}  // namespace orv::test
