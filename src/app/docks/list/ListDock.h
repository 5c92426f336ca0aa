// A dock with a list beside the records.
#pragma once

#include <QDockWidget>
#include <QKeySequence>

class QComboBox;
class QLabel;
class QLineEdit;
class QToolBar;

namespace orv::app {

class ListTree;

/// Tool bars, a list below them, and a summary below that. It is closed at first.
class ListDock : public QDockWidget {
  Q_OBJECT

 protected:
  struct Manner {
    const char* name;  ///< "Audit" gives AuditDock, mnuViewAudit, mnuAuditCopy, lblAudit
    const char* iconName;
    QString title;
    QString menuText;
    QString help;      ///< what the dock shows
    QString openHelp;  ///< what opening it does
  };

  ListDock(const Manner& manner, ListTree* list, QWidget* parent);

  /// A further bar, below the others.
  QToolBar* addBar(const QString& name, const QString& help);
  /// A field whose text the list is filtered by when the typing rests.
  QLineEdit* addFilter(QToolBar& bar, const char* name, const QString& hint, const QString& help);
  /// A list to choose from; followFilter() is called when another entry is chosen.
  QComboBox* addChoice(QToolBar& bar, const char* name, const QString& title, const QString& help);
  /// A command in the menu of the list, with a button where a bar is given.
  QAction* addCommand(QToolBar* bar, const char* name, const char* iconName, const QString& text,
                      const QString& help, const QKeySequence& keys = {});
  /// Buttons that copy and save the rows, of which `what` is the name.
  void addExport(QToolBar& bar, const QString& what);

  void tell(const QString& summary);
  QLabel& summary() { return *summary_; }
  void open();

  /// What is to be shown may be another now.
  virtual void followFilter() {}

 private:
  void makeOpener(const Manner& manner);
  void copy() const;

  QString name_;
  ListTree* list_;
  QLabel* summary_;
};

}  // namespace orv::app
