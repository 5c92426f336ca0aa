#include "app/dialogs/dlgExport.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QRadioButton>
#include <QVBoxLayout>

#include "app/Help.h"

namespace orv::app {

using commands::ExportForm;

dlgExport::dlgExport(const Choice& preset, QWidget* parent)
    : QDialog(parent),
      text_(new QRadioButton(tr("Spectral &text files"))),
      json_(new QRadioButton(tr("Products as &JSON"))),
      csv_(new QRadioButton(tr("Spectra as &CSV tables"))),
      joined_(new QCheckBox(tr("All in &one file"))) {
  setObjectName("dlgExport");
  setWindowTitle(tr("Export"));
  setModal(true);
  explain(text_, tr("A file a pane and angle, in the format of measured panes"));
  explain(json_,
          tr("Files with all that the records hold, for other programs and to be read back"));
  explain(csv_, tr("Tables of wavelengths, transmittances and reflectances, for spreadsheets"));
  explain(joined_, tr("A list of products, or a table with columns of each pane"));
  (preset.form == ExportForm::json  ? json_
   : preset.form == ExportForm::csv ? csv_
                                    : text_)
      ->setChecked(true);
  joined_->setChecked(preset.isJoined);
  for (QRadioButton* each : {text_, json_, csv_}) {
    connect(each, &QRadioButton::toggled, this, &dlgExport::updateJoined);
  }
  updateJoined();

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  for (QWidget* each : std::initializer_list<QWidget*>{text_, json_, csv_}) {
    layout->addWidget(each);
  }
  layout->addSpacing(fontMetrics().lineSpacing() / 2);
  layout->addWidget(joined_);
  layout->addSpacing(fontMetrics().lineSpacing() / 2);
  layout->addWidget(buttons);
}

std::optional<dlgExport::Choice> dlgExport::choose() {
  if (exec() != Accepted) return std::nullopt;
  return Choice{form(), joined_->isEnabled() && joined_->isChecked()};
}

ExportForm dlgExport::form() const {
  if (json_->isChecked()) return ExportForm::json;
  return csv_->isChecked() ? ExportForm::csv : ExportForm::text;
}

/// A text file holds one pane.
void dlgExport::updateJoined() {
  joined_->setEnabled(form() != ExportForm::text);
}

}  // namespace orv::app

#include "moc_dlgExport.cpp"
