// All failures of one command.
#pragma once

#include <QDialog>
#include <QStringList>

namespace orv::app {

/// Lists the records that a command could not work on, with the reasons, to be read and copied.
class FailureSummary : public QDialog {
  Q_OBJECT

 public:
  FailureSummary(const QString& heading, const QStringList& failures, QWidget* parent);
};

}  // namespace orv::app
