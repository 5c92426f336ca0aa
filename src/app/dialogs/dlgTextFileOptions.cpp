#include "app/dialogs/dlgTextFileOptions.h"

#include <QButtonGroup>
#include <QCloseEvent>
#include <QDialogButtonBox>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "app/Help.h"
#include "app/Text.h"
#include "commands/UserInterface.h"

namespace orv::app {

dlgTextFileOptions::dlgTextFileOptions(QWidget* parent)
    : QDialog(parent),
      paneData_(new QRadioButton(tr("Spectral pane data"))),
      shadingData_(new QRadioButton(tr("Spectral shading data"))) {
  setObjectName("dlgTextFileOptions");
  setWindowTitle(tr("Text file type"));
  setModal(true);
  auto* optTextFileType = new QButtonGroup(this);
  optTextFileType->setObjectName("optTextFileType");
  optTextFileType->addButton(paneData_, kPaneData);
  optTextFileType->addButton(shadingData_, kShadingData);
  paneData_->setChecked(true);
  explain(paneData_, tr("The files hold the spectra of glass panes or films"));
  explain(shadingData_, tr("The files hold the spectra of shading devices"));

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  buttons->button(QDialogButtonBox::Ok)->setObjectName("OKButton");
  buttons->button(QDialogButtonBox::Cancel)->setObjectName("CancelButton");
  connect(buttons, &QDialogButtonBox::accepted, this, &dlgTextFileOptions::OKButton_Click);
  connect(buttons, &QDialogButtonBox::rejected, this, &dlgTextFileOptions::CancelButton_Click);

  auto* layout = new QVBoxLayout(this);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  layout->addWidget(paneData_);
  layout->addWidget(shadingData_);
  layout->addSpacing(fontMetrics().lineSpacing() / 2);
  layout->addWidget(buttons);
}

std::int16_t dlgTextFileOptions::choose() {
  return exec() == Accepted ? textFileType_ : kCancelled;
}

void dlgTextFileOptions::OKButton_Click() {
  textFileType_ = paneData_->isChecked() ? kPaneData : kShadingData;
  closingByButton_ = true;
  accept();
}

void dlgTextFileOptions::CancelButton_Click() {
  textFileType_ = kCancelled;
  closingByButton_ = true;
  QDialog::reject();
}

/// The escape key does what the Cancel button does.
void dlgTextFileOptions::reject() {
  CancelButton_Click();
}

void dlgTextFileOptions::closeEvent(QCloseEvent* event) {
  if (!closingByButton_) {
    QMessageBox box(QMessageBox::Question, qt(commands::kApplicationTitle),
                    tr("This will cancel the operation. Are you sure you want to close this window "
                       "without making a choice?"),
                    QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, this);
    box.setDefaultButton(QMessageBox::Cancel);
    if (box.exec() != QMessageBox::Yes) {
      event->ignore();
      return;
    }
  }
  event->accept();
  QDialog::done(Rejected);
}

}  // namespace orv::app

#include "moc_dlgTextFileOptions.cpp"
