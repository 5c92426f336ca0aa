#include "app/dialogs/PlanList.h"

#include <QSignalBlocker>
#include <algorithm>

#include "app/Text.h"
#include "app/theme/Icons.h"

namespace orv::app {

namespace {

enum PlanColumn { kRecord, kField, kWas, kBecomes, kRemark };
constexpr int kWidestOfPlan = 30;  // characters

void putCell(QTreeWidgetItem& line, int column, const std::string& text) {
  line.setText(column, shownText(qt(text).replace(u'\n', u' ').remove(u'\r')));
  line.setToolTip(column, toolTipText(qt(text)));
}

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
      putCell(*line, kRecord, each.name);
      putCell(*line, kField, each.typed.place.field->name);
      putCell(*line, kWas, each.before);
      putCell(*line, kBecomes, isRefused ? each.typed.text : each.after);
      putCell(*line, kRemark, each.refusal);
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
