// What became of the records of one command.
#pragma once

#include <QDialog>
#include <QStringList>

namespace orv::app {

/// Lists what a command has to say of its records or tables, to be read and copied.
class ReportDialog : public QDialog {
  Q_OBJECT

 public:
  /// `help` says what is listed; empty: records.
  ReportDialog(const QString& title, const QString& heading, const QStringList& texts,
               const QString& help, QWidget* parent);
};

}  // namespace orv::app
