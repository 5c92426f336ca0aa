#include "app/dialogs/PlanDialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/Help.h"
#include "app/Text.h"
#include "app/dialogs/PlanList.h"

namespace orv::app {

namespace {

constexpr QSize kPlanInCharacters(100, 24);

}  // namespace

PlanDialog::PlanDialog(const QString& title, const QString& verb, const QString& heading,
                       QWidget* parent)
    : QDialog(parent),
      verb_(verb),
      top_(new QVBoxLayout),
      list_(new PlanList),
      summary_(new QLabel) {
  setWindowTitle(title);
  if (!heading.isEmpty()) {
    auto* label = new QLabel(heading);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    top_->addWidget(label);
  }
  summary_->setObjectName("lblPlan");
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
  make_ = buttons->addButton(verb_, QDialogButtonBox::AcceptRole);
  make_->setObjectName("cmdMakeChanges");
  make_->setDefault(true);
  explain(make_, tr("Change the fields that are ticked. Nothing is written before it is saved, and "
                    "Undo takes all back at once"));
  buttons->button(QDialogButtonBox::Cancel)->setAutoDefault(false);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(list_, &PlanList::tickedChanged, this, &PlanDialog::follow);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(top_);
  layout->addWidget(list_, 1);
  layout->addWidget(summary_);
  layout->addWidget(buttons);
  resize(fontMetrics().averageCharWidth() * kPlanInCharacters.width(),
         fontMetrics().lineSpacing() * kPlanInCharacters.height());
  follow();
}

void PlanDialog::show(ChangePlan plan) {
  list_->show(std::move(plan));
}

std::vector<commands::edit::TypedValue> PlanDialog::choose() {
  if (exec() != QDialog::Accepted) return {};
  return list_->ticked();
}

void PlanDialog::follow() {
  const auto count = static_cast<qlonglong>(list_->ticked().size());
  QString text = tr("%1 would be changed.").arg(counted(count, tr("field")));
  if (list_->refusedCount() > 0) text += tr(" Refused: %L1.").arg(list_->refusedCount());
  summary_->setText(text);
  make_->setText(count > 0 ? tr("%1 %L2").arg(verb_).arg(count) : verb_);
  make_->setEnabled(count > 0);
}

}  // namespace orv::app

#include "moc_PlanDialog.cpp"
