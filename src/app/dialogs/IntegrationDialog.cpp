#include "app/dialogs/IntegrationDialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "app/Help.h"
#include "app/Text.h"
#include "model/IntegratedColumns.h"

namespace orv::app {

using commands::IntegratedRow;
using commands::Storing;

namespace {

constexpr QSize kSizeInCharacters(150, 24);
constexpr int kDecimals = 4;
enum Column { kPane, kAngle, kOutcome, kFirstValue };

QTableWidgetItem* cell(const QString& text, const QString& tip = {}) {
  auto* item = new QTableWidgetItem(shownText(text));
  item->setToolTip(toolTipText(tip.isEmpty() ? text : tip));
  return item;
}

QString number(double value) {
  return QString::number(value, 'f', kDecimals);
}

QString outcome(const IntegratedRow& row) {
  switch (row.storing) {
    case Storing::written:
      return IntegrationDialog::tr("is stored");
    case Storing::isFrozen:
      return IntegrationDialog::tr("stays: the pane is frozen");
    case Storing::isThere:
      return IntegrationDialog::tr("stays: there are values");
    default:
      return IntegrationDialog::tr("stays: %1").arg(qt(row.note()));
  }
}

/// "0.7500 → 0.8338"; the value alone where it stays as it is.
QTableWidgetItem* valueCell(const IntegratedRow& row, const char* name) {
  const auto found = row.stored.find(name);
  const QString stored = found == row.stored.end() ? QStringLiteral("–") : number(found->second);
  const optics::Value* const computed = row.integration.find(name);
  QString text = stored;
  QString tip;
  if (computed != nullptr && computed->value && row.storing == Storing::written) {
    const QString value = number(*computed->value);
    if (value != stored) text = QStringLiteral("%1 → %2").arg(stored, value);
    tip = IntegrationDialog::tr("The spectrum covers %1 % of the weight.")
              .arg(QString::number(100 * computed->covered, 'f', 1));
  } else if (computed != nullptr) {
    tip = qt(computed->reason);
  }
  auto* item = cell(text, tip);
  item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
  return item;
}

}  // namespace

IntegrationDialog::IntegrationDialog(Rehearsal rehearse, optics::Standard standard, QWidget* parent)
    : QDialog(parent), rehearsal_(std::move(rehearse)), summary_(new QLabel) {
  setObjectName("IntegrationDialog");
  setWindowTitle(tr("Compute Integrated Values"));
  summary_->setObjectName("lblIntegration");
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
  store_ = buttons->addButton(tr("&Store"), QDialogButtonBox::AcceptRole);
  explain(store_, tr("Write the new values into the database"));
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

  buttons->button(QDialogButtonBox::Cancel)->setAutoDefault(false);

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(makeChoices(standard));
  table_ = makeTable();
  layout->addWidget(table_, 1);
  layout->addWidget(summary_);
  layout->addWidget(buttons);
  const QFontMetrics metrics = fontMetrics();
  resize(metrics.averageCharWidth() * kSizeInCharacters.width(),
         metrics.lineSpacing() * kSizeInCharacters.height());
}

QWidget* IntegrationDialog::makeChoices(optics::Standard standard) {
  auto* choices = new QWidget;
  standard_ = new QComboBox;
  standard_->setObjectName("cboIntegrateBy");
  explain(standard_, tr("The standard by which the values are computed from the spectra"));
  for (const auto& [each, word, name] : optics::kStandardNames) {
    standard_->addItem(qt(std::string(name)), static_cast<int>(each));
  }
  standard_->setCurrentIndex(standard_->findData(static_cast<int>(standard)));
  onlyMissing_ = new QCheckBox(tr("Only &missing values"));
  onlyMissing_->setObjectName("chkOnlyMissing");
  explain(onlyMissing_, tr("Leave panes alone that have values other than 0"));
  frozenToo_ = new QCheckBox(tr("&Frozen panes too"));
  frozenToo_->setObjectName("chkFrozenToo");
  explain(frozenToo_, tr("Change panes, too, that are marked as frozen"));
  connect(standard_, &QComboBox::activated, this, &IntegrationDialog::rehearse);
  connect(onlyMissing_, &QCheckBox::clicked, this, &IntegrationDialog::rehearse);
  connect(frozenToo_, &QCheckBox::clicked, this, &IntegrationDialog::rehearse);

  auto* label = new QLabel(tr("&By the standard:"));
  label->setBuddy(standard_);
  auto* layout = new QHBoxLayout(choices);
  layout->setContentsMargins(0, 0, 0, 0);
  for (QWidget* each : std::initializer_list<QWidget*>{label, standard_, onlyMissing_, frozenToo_})
    layout->addWidget(each);
  layout->addStretch(1);
  return choices;
}

QTableWidget* IntegrationDialog::makeTable() {
  QStringList titles{tr("Pane"), tr("Angle"), tr("What becomes of it")};
  QStringList tips{{}, tr("Degrees"), {}};
  for (const IntegratedColumn& column : kIntegratedColumns) {
    titles << column.name;
    tips << column.title;
  }
  auto* table = new QTableWidget(0, static_cast<int>(titles.size()));
  table->setHorizontalHeaderLabels(titles);
  for (int i = 0; i < tips.size(); ++i) table->horizontalHeaderItem(i)->setToolTip(tips[i]);
  table->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table->setSelectionBehavior(QAbstractItemView::SelectRows);
  table->setAlternatingRowColors(true);
  table->setWordWrap(false);
  table->setTabKeyNavigation(false);
  table->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  table->verticalHeader()->hide();
  table->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
  table->setAccessibleName(tr("What would change"));
  table->setWhatsThis(
      tr("Each pane at each of its angles, with the values that the database has and, behind an "
         "arrow, those that it would get. A value that the spectrum does not reach stays as it "
         "is."));
  return table;
}

commands::IntegrationOptions IntegrationDialog::options() const {
  return {.standard = static_cast<optics::Standard>(standard_->currentData().toInt()),
          .onlyMissing = onlyMissing_->isChecked(),
          .frozenToo = frozenToo_->isChecked()};
}

bool IntegrationDialog::rehearse() {
  const auto rows = rehearsal_(options());
  store_->setEnabled(false);
  table_->setRowCount(0);
  if (!rows) {
    summary_->setText(tr("Cancelled."));
    return false;
  }
  table_->setRowCount(static_cast<int>(rows->size()));
  for (int row = 0; row < table_->rowCount(); ++row) {
    fillRow(row, (*rows)[static_cast<std::size_t>(row)]);
  }
  table_->resizeColumnsToContents();
  showSummary(*rows);
  return true;
}

void IntegrationDialog::fillRow(int row, const IntegratedRow& values) {
  const QString name = qt(values.name);
  table_->setItem(row, kPane, cell(name, tr("%1, record %2").arg(name, qt(values.identifier))));
  auto* angle = cell(QString::number(values.angle));
  angle->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
  table_->setItem(row, kAngle, angle);
  table_->setItem(row, kOutcome, cell(outcome(values), qt(values.note())));
  for (int i = 0; i < static_cast<int>(kIntegratedColumns.size()); ++i) {
    table_->setItem(row, kFirstValue + i,
                    valueCell(values, kIntegratedColumns[static_cast<std::size_t>(i)].name));
  }
}

void IntegrationDialog::showSummary(const Rows& rows) {
  const auto stored = std::ranges::count(rows, Storing::written, &IntegratedRow::storing);
  summary_->setText(tr("Values are stored for %L1 of %L2 panes and angles.")
                        .arg(stored)
                        .arg(static_cast<qlonglong>(rows.size())));
  store_->setEnabled(stored > 0);
  store_->setDefault(stored > 0);
}

}  // namespace orv::app

#include "moc_IntegrationDialog.cpp"
