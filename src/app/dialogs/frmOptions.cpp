#include "app/dialogs/frmOptions.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QSpinBox>
#include <QVBoxLayout>

#include "app/Help.h"

namespace orv::app {

namespace {

constexpr int kMostDigits = 15;

template <class Choice>
QComboBox* choices(const char* name, std::initializer_list<std::pair<Choice, QString>> entries,
                   Choice current, const QString& help) {
  auto* box = new QComboBox;
  box->setObjectName(name);
  explain(box, help);
  for (const auto& [value, text] : entries) box->addItem(text, static_cast<int>(value));
  box->setCurrentIndex(box->findData(static_cast<int>(current)));
  return box;
}

QComboBox* standards(optics::Standard current) {
  auto* box =
      choices<optics::Standard>("cboStandard", {}, current,
                                frmOptions::tr("The standard by which these values are computed"));
  for (const auto& [standard, word, name] : optics::kStandardNames) {
    box->addItem(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())),
                 static_cast<int>(standard));
  }
  box->setCurrentIndex(box->findData(static_cast<int>(current)));
  return box;
}

}  // namespace

frmOptions::frmOptions(const DisplayOptions& options, QWidget* parent)
    : QDialog(parent),
      digits_(new QSpinBox),
      copiesAsShown_(new QCheckBox(tr("Copy and sa&ve them with these digits, too"))),
      plotUnit_(choices<PlotUnit>(
          "cboPlotUnit",
          {{PlotUnit::nanometers, tr("Nanometers (nm)")}, {PlotUnit::microns, tr("Microns (µm)")}},
          options.plotUnit, tr("Unit of the wavelengths in plots"))),
      theme_(choices<Theme>("cboTheme",
                            {{Theme::system, tr("As the desktop")},
                             {Theme::light, tr("Light")},
                             {Theme::dark, tr("Dark")}},
                            options.theme, tr("Colours of the windows"))),
      integrates_(new QCheckBox(tr("Compute &missing integrated values when copying"))),
      standard_(standards(options.integrateBy.value_or(optics::kUsualStandard))) {
  setObjectName("frmOptions");
  setWindowTitle(tr("Options"));
  digits_->setObjectName("txtDigits");
  digits_->setRange(commands::kAllDigits, kMostDigits);
  digits_->setSpecialValueText(tr("All"));
  digits_->setValue(options.digits);
  explain(digits_, tr("Significant digits of the numbers in the grid"));

  copiesAsShown_->setObjectName("chkCopiesAsShown");
  copiesAsShown_->setChecked(options.copiesAsShown);
  explain(copiesAsShown_,
          tr("Otherwise the fields of the grid are copied and saved with all digits"));
  integrates_->setObjectName("chkIntegrate");
  integrates_->setChecked(options.integrateBy.has_value());
  explain(integrates_,
          tr("Panes whose source has no solar, visible and ultraviolet values get them "
             "from their spectra"));
  standard_->setEnabled(integrates_->isChecked());
  connect(integrates_, &QCheckBox::toggled, standard_, &QWidget::setEnabled);

  auto* form = new QFormLayout;
  form->addRow(tr("&Digits of numbers:"), digits_);
  form->addRow(copiesAsShown_);
  form->addRow(tr("&Wavelengths in plots:"), plotUnit_);
  form->addRow(tr("&Colours:"), theme_);
  form->addRow(integrates_);
  form->addRow(tr("By the &standard:"), standard_);
  auto* note = new QLabel(tr("These choices hold until the program ends."));
  note->setForegroundRole(QPalette::PlaceholderText);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  layout->addLayout(form);
  layout->addWidget(note);
  layout->addWidget(buttons);
}

DisplayOptions frmOptions::options() const {
  return {digits_->value(), copiesAsShown_->isChecked(),
          static_cast<PlotUnit>(plotUnit_->currentData().toInt()),
          static_cast<Theme>(theme_->currentData().toInt()),
          integrates_->isChecked()
              ? std::optional(static_cast<optics::Standard>(standard_->currentData().toInt()))
              : std::nullopt};
}

}  // namespace orv::app

#include "moc_frmOptions.cpp"
