// Fields that somebody else has changed meanwhile.
#pragma once

#include <QDialog>
#include <QList>
#include <QStringList>

class QTreeWidget;

namespace orv::app {

/// Shows what such fields were, what they are now, and what they would become, and asks which is
/// to be.
class ConflictDialog : public QDialog {
  Q_OBJECT

 public:
  enum class Choice { cancel, keepMine, keepTheirs };

  /// A line a field: the record, the field, what it was, is, and would become.
  ConflictDialog(const QList<QStringList>& lines, QWidget* parent);

  Choice choose();

 private:
  Choice choice_ = Choice::cancel;
};

}  // namespace orv::app
