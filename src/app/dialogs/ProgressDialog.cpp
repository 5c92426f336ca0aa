#include "app/dialogs/ProgressDialog.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/Help.h"
#include "app/Text.h"
#include "commands/UserInterface.h"

namespace orv::app {

namespace {

constexpr int kMillisecondsBetweenBreaths = 25;
constexpr int kBarInCharacters = 52;

}  // namespace

ProgressDialog::ProgressDialog(const QString& text, QWidget* parent)
    : QDialog(parent), text_(new QLabel(text)), status_(new QLabel), bar_(new QProgressBar) {
  setObjectName("ProgressDialog");
  setWindowTitle(qt(commands::kProductName));
  setModal(true);
  status_->setObjectName("lblProgressStatus");
  status_->setTextFormat(Qt::PlainText);
  text_->setObjectName("lblProgressText");
  bar_->setRange(0, 0);
  bar_->setAccessibleName(tr("Progress"));
  bar_->setWhatsThis(tr("How much of the work is done"));
  setMinimumWidth(fontMetrics().averageCharWidth() * kBarInCharacters);

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
  cancel_ = buttons->button(QDialogButtonBox::Cancel);
  explain(cancel_, tr("End the work: after the record in hand, or without a new file"));
  connect(buttons, &QDialogButtonBox::rejected, this, &ProgressDialog::reject);

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(text_);
  layout->addWidget(bar_);
  layout->addWidget(status_);
  layout->addWidget(buttons);
  sinceBreath_.start();
}

void ProgressDialog::status(const QString& value) {
  status_->setText(fontMetrics().elidedText(value, Qt::ElideMiddle, bar_->width()));
  breathe();
}

void ProgressDialog::steps(int done, int total) {
  bar_->setRange(0, total);
  bar_->setValue(done);
  breathe();
}

void ProgressDialog::breathe() {
  if (sinceBreath_.elapsed() < kMillisecondsBetweenBreaths) return;
  QApplication::processEvents();
  sinceBreath_.restart();
}

void ProgressDialog::reject() {
  cancelled_ = true;
  cancel_->setEnabled(false);
  text_->setText(tr("Cancelling..."));
}

}  // namespace orv::app

#include "moc_ProgressDialog.cpp"
