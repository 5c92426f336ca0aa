// What became of the records of one command.
#pragma once

#include <QDialog>
#include <QStringList>

namespace orv::app {

/// Lists what a command has to say of its records, to be read and copied.
class ReportDialog : public QDialog {
  Q_OBJECT

 public:
  ReportDialog(const QString& title, const QString& heading, const QStringList& texts,
               QWidget* parent);
};

}  // namespace orv::app
