#include "app/Dialogs.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

#include "app/dialogs/ProgressDialog.h"

namespace orv::test {

namespace {

QString plain(QString text) {
  return text.remove('&');
}

SeenDialog describe(const QWidget& window) {
  SeenDialog dialog;
  dialog.title = window.windowTitle();
  if (const auto* label = window.findChild<QLabel*>()) dialog.text = label->text();
  if (const auto* box = qobject_cast<const QMessageBox*>(&window)) dialog.text = box->text();
  if (const auto* box = qobject_cast<const QInputDialog*>(&window)) dialog.text = box->labelText();
  for (const QPushButton* button : window.findChildren<QPushButton*>()) {
    dialog.buttons << plain(button->text());
    if (button->isDefault()) dialog.defaultButton = plain(button->text());
  }
  return dialog;
}

void pressEscape(QWidget& window) {
  QTest::keyClick(&window, Qt::Key_Escape);
}

}  // namespace

QAbstractButton* buttonOf(const QWidget& window, const QString& text) {
  for (QAbstractButton* each : window.findChildren<QAbstractButton*>()) {
    if (plain(each->text()) == text) return each;
  }
  return nullptr;
}

Dialogs::Dialogs() {
  connect(&timer_, &QTimer::timeout, this, &Dialogs::look);
  timer_.start(5);
}

Dialogs& Dialogs::then(Handler handler) {
  handlers_.push_back(std::move(handler));
  return *this;
}

Dialogs& Dialogs::press(const QString& button) {
  return then([button](QWidget& window) {
    if (QAbstractButton* found = buttonOf(window, button)) return found->click();
    qWarning("no button %s", qPrintable(button));
    pressEscape(window);
  });
}

Dialogs& Dialogs::press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
  return then([=](QWidget& window) { QTest::keyClick(&window, key, modifiers); });
}

Dialogs& Dialogs::read(QString& text) {
  return then([&text](QWidget& window) {
    if (const auto* box = window.findChild<QPlainTextEdit*>()) text = box->toPlainText();
    window.close();
  });
}

Dialogs& Dialogs::choose(const QStringList& paths) {
  return then([paths](QWidget& window) {
    auto* dialog = qobject_cast<QFileDialog*>(&window);
    if (dialog == nullptr) return pressEscape(window);
    QStringList names;
    for (const QString& path : paths) names << '"' + QFileInfo(path).fileName() + '"';
    dialog->setDirectory(QFileInfo(paths.front()).absolutePath());
    dialog->findChild<QLineEdit*>("fileNameEdit")
        ->setText(paths.size() == 1 ? paths.front() : names.join(' '));
    QMetaObject::invokeMethod(dialog, "accept");
  });
}

Dialogs& Dialogs::type(const QString& text) {
  return then([text](QWidget& window) {
    auto* box = qobject_cast<QInputDialog*>(&window);
    if (box == nullptr) return pressEscape(window);
    box->setTextValue(text);
    box->accept();
  });
}

QStringList Dialogs::texts() const {
  QStringList texts;
  for (const SeenDialog& dialog : seen_) texts << dialog.text;
  return texts;
}

void Dialogs::look() {
  QWidget* window = QApplication::activeModalWidget();
  if (window == nullptr || qobject_cast<app::ProgressDialog*>(window) != nullptr) return;
  if (!window->isVisible() || !handled_.insert(window).second) return;
  // Another window may get the address of one that is gone.
  connect(window, &QObject::destroyed, this, [this, window] { handled_.erase(window); });
  seen_.push_back(describe(*window));
  Handler handler = pressEscape;
  if (!handlers_.empty()) {
    handler = std::move(handlers_.front());
    handlers_.pop_front();
  }
  // From the event loop, so that this can look for windows that open meanwhile.
  QTimer::singleShot(0, window, [window, handler] { handler(*window); });
}

}  // namespace orv::test
