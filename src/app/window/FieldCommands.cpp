#include "app/window/FieldCommands.h"

#include <QClipboard>
#include <QGuiApplication>
#include <algorithm>

#include "app/Pointers.h"
#include "app/Text.h"
#include "app/dialogs/ReplaceDialog.h"
#include "app/grid/FieldBlock.h"
#include "app/grid/RecordEdits.h"
#include "app/grid/RecordGrid.h"
#include "commands/ErrorText.h"

namespace orv::app {

FieldCommands::FieldCommands(RecordGrid& grid, WindowUserInterface& ui, QWidget& window)
    : QObject(&window), grid_(grid), ui_(ui), window_(window) {}

bool FieldCommands::mayEdit() {
  if (grid_.records().edits() != nullptr) return true;
  emit told(grid_.whyNotEdited());
  return false;
}

void FieldCommands::replace() {
  if (!mayEdit()) return;
  grid_.records().complete();
  const auto values = ReplaceDialog(grid_, grid_.selectedColumn(), &window_).choose();
  if (!values.empty()) take(values);
}

void FieldCommands::pasteText() {
  if (!mayEdit()) return;
  BlockPlan block;
  ChangePlan plan;
  try {
    const BusyPointer busy;
    block = planOfBlock(grid_, QGuiApplication::clipboard()->text());
    plan = judged(*grid_.records().edits(), std::move(block.changes));
  } catch (const std::exception& error) {
    return ui_.message(commands::MessageKind::information,
                       "Nothing is pasted. " + commands::describe(error), commands::kProductName);
  }
  const QString hidden =
      block.hidden.isEmpty()
          ? QString()
          : tr(" Columns that are hidden are left alone: %1.").arg(block.hidden.join(", "));
  if (plan.empty()) {
    return emit told(tr("Nothing is changed: the fields hold this already.") + hidden);
  }
  std::vector<commands::edit::TypedValue> values;
  for (const PlannedChange& each : plan) values.push_back(each.typed);
  const bool isRefused =
      std::ranges::any_of(plan, [](const PlannedChange& each) { return !each.refusal.empty(); });
  if (isRefused) {
    PlanDialog dialog(
        tr("Paste Text"), tr("&Paste"),
        tr("Some of the values cannot be in their fields: they are not ticked.") + hidden,
        &window_);
    dialog.setObjectName("PasteDialog");
    dialog.show(std::move(plan));
    values = dialog.choose();
    if (values.empty()) return;
  }
  take(values, hidden);
}

void FieldCommands::take(const std::vector<commands::edit::TypedValue>& values,
                         const QString& more) {
  const BusyPointer busy;
  std::size_t count = 0;
  try {
    grid_.records().edits()->change(
        [&](commands::edit::PendingEdits& pending) { count = pending.type(values); });
  } catch (const std::exception& error) {
    return ui_.message(commands::MessageKind::critical, commands::describe(error),
                       commands::kProductName);
  }
  emit told(
      tr("%1 changed, not saved yet.").arg(counted(static_cast<qlonglong>(count), tr("field"))) +
      more);
}

}  // namespace orv::app

#include "moc_FieldCommands.cpp"
