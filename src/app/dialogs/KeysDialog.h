// All keys of the window.
#pragma once

#include <QDialog>
#include <QList>

class QAction;
class QTreeWidget;

namespace orv::app {

/// The keys of actions, as they are at this moment, in parts with headings, and a search for them.
class KeysDialog : public QDialog {
  Q_OBJECT

 public:
  /// The actions of a menu, a dock or another part of the window.
  struct Part {
    QString title;
    QList<QAction*> actions;
  };
  explicit KeysDialog(const QList<Part>& parts, QWidget* parent = nullptr);

  /// The parts of a window: its menus, then whatever else has actions with keys.
  static QList<Part> partsOf(const QWidget& window);

 private:
  void fill(const QList<Part>& parts);
  void search(const QString& text);

  QTreeWidget* list_;
};

}  // namespace orv::app
