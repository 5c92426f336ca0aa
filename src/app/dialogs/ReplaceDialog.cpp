#include "app/dialogs/ReplaceDialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QVBoxLayout>

#include "app/Help.h"
#include "app/Pointers.h"
#include "app/Text.h"
#include "app/grid/RecordEdits.h"
#include "app/grid/RecordGrid.h"
#include "commands/RecordReader.h"

namespace orv::app {

ReplaceDialog::ReplaceDialog(RecordGrid& grid, int column, QWidget* parent)
    : PlanDialog(tr("Find and Replace"), tr("&Replace"), {}, parent),
      grid_(grid),
      column_(new QComboBox),
      find_(new QLineEdit),
      by_(new QLineEdit),
      whole_(new QCheckBox(tr("&Whole field"))),
      case_(new QCheckBox(tr("&Case matters"))),
      selected_(new QCheckBox(tr("Only &selected records"))) {
  setObjectName("ReplaceDialog");
  setWhatsThis(tr("Replaces a text in the fields of a column, in all records shown."));
  makeForm(column);
  constexpr int kRest = 150;  // ms
  rest_.setSingleShot(true);
  rest_.setInterval(kRest);
  connect(&rest_, &QTimer::timeout, this, &ReplaceDialog::preview);
  for (const QLineEdit* edit : {find_, by_}) {
    connect(edit, &QLineEdit::textChanged, &rest_, qOverload<>(&QTimer::start));
  }
  for (const QCheckBox* box : {whole_, case_, selected_}) {
    connect(box, &QCheckBox::toggled, this, &ReplaceDialog::preview);
  }
  connect(column_, &QComboBox::currentIndexChanged, this, &ReplaceDialog::preview);
  find_->setFocus();
}

void ReplaceDialog::makeForm(int column) {
  const RecordModel& records = grid_.records();
  column_->setObjectName("cboReplaceColumn");
  explain(column_, tr("In which column is replaced"));
  for (const int each : grid_.visibleColumns()) {
    if (records.editField(each) == nullptr) continue;
    column_->addItem(records.headings({each}).constFirst(), each);
  }
  column_->setCurrentIndex(std::max(column_->findData(column), 0));
  find_->setObjectName("txtReplaceFind");
  explain(find_, tr("The text that is replaced; with Whole field, nothing finds empty fields"));
  by_->setObjectName("txtReplaceBy");
  explain(by_, tr("The text that takes its place; nothing takes it out"));
  whole_->setObjectName("chkReplaceWhole");
  explain(whole_, tr("Replace only where a field holds nothing else"));
  case_->setObjectName("chkReplaceCase");
  explain(case_, tr("Tell capital letters from small ones"));
  selected_->setObjectName("chkReplaceSelected");
  explain(selected_, tr("Replace in the selected records, and not in all that are shown"));
  selected_->setEnabled(grid_.selectedRows().count() > 1);
  auto* boxes = new QHBoxLayout;
  for (QCheckBox* box : {whole_, case_, selected_}) boxes->addWidget(box);
  boxes->addStretch(1);
  auto* form = new QFormLayout;
  form->addRow(tr("C&olumn:"), column_);
  form->addRow(tr("&Find:"), find_);
  form->addRow(tr("Replace &by:"), by_);
  form->addRow(QString(), boxes);
  top().addLayout(form);
}

/// What is accepted has been seen.
void ReplaceDialog::accept() {
  if (rest_.isActive()) return preview();
  PlanDialog::accept();
}

QString ReplaceDialog::replaced(const QString& text) const {
  const auto sensitivity = case_->isChecked() ? Qt::CaseSensitive : Qt::CaseInsensitive;
  if (whole_->isChecked()) {
    return text.compare(find_->text(), sensitivity) == 0 ? by_->text() : text;
  }
  if (find_->text().isEmpty()) return text;
  return QString(text).replace(find_->text(), by_->text(), sensitivity);
}

void ReplaceDialog::preview() {
  rest_.stop();
  const BusyPointer busy;
  RecordModel& records = grid_.records();
  const int column = column_->currentData().toInt();
  RecordGrid::RowBlock rows{0, records.rowCount() - 1};
  if (selected_->isChecked()) rows = grid_.selectedRows();
  ChangePlan plan;
  for (int row = rows.low; row <= rows.high; ++row) {
    const QString before = records.fieldText(row, column);
    const QString after = replaced(before);
    if (after == before) continue;
    plan.push_back({.typed = {commands::recordNumber(records.identifier(row)),
                              {records.editField(column), {}},
                              after.toStdString()},
                    .name = records.recordName(row).toStdString(),
                    .before = before.toStdString()});
  }
  show(judged(*records.edits(), std::move(plan)));
}

}  // namespace orv::app

#include "moc_ReplaceDialog.cpp"
