#include "app/window/StatusBar.h"

#include <QLabel>
#include <QToolButton>

#include "app/dialogs/ReportDialog.h"
#include "app/theme/Icons.h"

namespace orv::app {

StatusBar::StatusBar(QWidget* parent) : QStatusBar(parent) {
  setObjectName("sbStatusBar");
  status_ = addPanel("lblStatus", 1, tr("What the program is doing"));
  counts_ = addPanel("lblCounts", 0, tr("Records shown and selected"));
  result_ = new QToolButton;
  result_->setObjectName("btnResult");
  result_->setAutoRaise(true);
  result_->setFocusPolicy(Qt::TabFocus);
  result_->setToolTip(tr("What became of the records of the last work"));
  result_->setWhatsThis(result_->toolTip());
  result_->setAccessibleName(tr("Result of the last work"));
  result_->hide();
  connect(result_, &QToolButton::clicked, this, &StatusBar::showReport);
  addPermanentWidget(result_);
  undo_ = new QToolButton;
  undo_->setObjectName("btnUndo");
  undo_->setText(tr("Undo"));
  undo_->setIcon(icon("undo"));
  undo_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  undo_->setAutoRaise(true);
  undo_->setFocusPolicy(Qt::TabFocus);
  undo_->setWhatsThis(tr("Takes the last change of the database back"));
  undo_->setToolTip(undo_->whatsThis());
  undo_->hide();
  connect(undo_, &QToolButton::clicked, this, &StatusBar::undoWanted);
  addPermanentWidget(undo_);
  pending_ = addPanel("lblPending", 0, tr("Records that Paste will copy"));
  status(tr("Ready"));
}

void StatusBar::status(const QString& text) {
  status_->setText(text);
  clearMessage();  // what has happened is more than what a button would do
}

void StatusBar::counts(const QString& text) {
  counts_->setText(text);
  counts_->setVisible(!text.isEmpty());
}

void StatusBar::pending(const QString& text) {
  pending_->setText(text);
  pending_->setVisible(!text.isEmpty());
}

void StatusBar::result(const QString& summary, const QStringList& report) {
  report_ = report;
  result_->setText(summary);
  result_->setVisible(!summary.isEmpty());
  result_->setEnabled(!report.isEmpty());
}

void StatusBar::offerUndo(const QString& title) {
  undo_->setVisible(!title.isEmpty());
  if (!title.isEmpty()) undo_->setToolTip(tr("Take back: %1").arg(title));
}

void StatusBar::showReport() {
  ReportDialog(tr("Records"), result_->text(), report_, {}, window()).exec();
}

QLabel* StatusBar::addPanel(const char* name, int stretch, const QString& help) {
  auto* label = new QLabel;
  label->setObjectName(name);
  label->setTextFormat(Qt::PlainText);
  label->setToolTip(help);
  label->setWhatsThis(help);
  // The first panel gives way to the others, and to what is said of the part under the pointer; none
  // forces the window to be wider.
  if (stretch > 0) {
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    addWidget(label, stretch);
  } else {
    addPermanentWidget(label);
  }
  return label;
}

}  // namespace orv::app

#include "moc_StatusBar.cpp"
