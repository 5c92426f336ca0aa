#include "app/dialogs/PlanList.h"

#include <QSignalBlocker>
#include <algorithm>

#include "app/Cells.h"
#include "app/theme/Icons.h"

namespace orv::app {

namespace {

enum PlanColumn { kRecord, kField, kWas, kBecomes, kRemark };
constexpr int kWidestOfPlan = 30;  // characters

}  // namespace

PlanList::PlanList(QWidget* parent) : QTreeWidget(parent) {
  setObjectName("lstPlan");
  setAccessibleName(tr("Changes"));
  setWhatsThis(
      tr("What each field is and what it would become. Those that are ticked are changed; one that "
         "cannot be has the reason beside it."));
  setHeaderLabels({tr("Record"), tr("Field"), tr("Was"), tr("Becomes"), tr("Remark")});
  setRootIsDecorated(false);
  setUniformRowHeights(true);
  setAlternatingRowColors(true);
  connect(this, &QTreeWidget::itemChanged, this, &PlanList::tickedChanged);
}

void PlanList::show(ChangePlan plan) {
  {
    const QSignalBlocker quiet(this);
    plan_ = std::move(plan);
    clear();
    QList<QTreeWidgetItem*> lines;
    for (const PlannedChange& each : plan_) {
      auto* line = new QTreeWidgetItem;
      const bool isRefused = !each.refusal.empty();
      line->setCheckState(kRecord, isRefused ? Qt::Unchecked : Qt::Checked);
      if (isRefused) line->setFlags(line->flags() & ~Qt::ItemIsUserCheckable);
      if (isRefused) line->setIcon(kRemark, icon("box-warning"));
      setCell(*line, kRecord, qt(each.name));
      setCell(*line, kField, qt(each.typed.place.field->name));
      setCell(*line, kWas, qt(each.before));
      setCell(*line, kBecomes, qt(isRefused ? each.typed.text : each.after));
      setCell(*line, kRemark, qt(each.refusal));
      lines << line;
    }
    addTopLevelItems(lines);
  }
  for (int column = 0; column < kRemark; ++column) {
    resizeColumnToContents(column);
    setColumnWidth(column,
                   std::min(columnWidth(column), kWidestOfPlan * fontMetrics().averageCharWidth()));
  }
  emit tickedChanged();
}

std::vector<commands::edit::TypedValue> PlanList::ticked() const {
  std::vector<commands::edit::TypedValue> values;
  for (std::size_t i = 0; i < plan_.size(); ++i) {
    const bool isTicked = topLevelItem(static_cast<int>(i))->checkState(kRecord) == Qt::Checked;
    if (isTicked) values.push_back(plan_[i].typed);
  }
  return values;
}

int PlanList::refusedCount() const {
  return static_cast<int>(
      std::ranges::count_if(plan_, [](const auto& each) { return !each.refusal.empty(); }));
}

}  // namespace orv::app

#include "moc_PlanList.cpp"
