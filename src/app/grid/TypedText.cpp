#include "app/grid/TypedText.h"

#include <QCoreApplication>
#include <algorithm>

#include "app/Pointers.h"
#include "app/Text.h"
#include "app/grid/ChangePlan.h"
#include "app/grid/RecordEdits.h"
#include "app/grid/RecordModel.h"
#include "commands/ErrorText.h"
#include "commands/RecordReader.h"

namespace orv::app {

namespace {

using commands::edit::TypedValue;

QString tr(const char* text) {
  return QCoreApplication::translate("TypedText", text);
}

/// Why values typed into rows from `firstRow` on cannot be taken, where somebody else has changed a
/// field meanwhile: it would be lost unseen. Empty where nobody has.
QString outdated(const RecordModel& model, const std::vector<TypedValue>& typed, int firstRow,
                 const QModelIndex& cell, const QString& before) {
  const RecordEdits& edits = *model.edits();
  for (const commands::edit::Change& change : edits.editor().draft(typed).changes) {
    if (edits.pending().find(change.record, change.field) != nullptr) continue;
    const auto place = std::ranges::find(typed, change.record, &TypedValue::record);
    const int row = firstRow + static_cast<int>(place - typed.begin());
    const QString shown = row == cell.row() ? before : model.fieldText(row, cell.column());
    if (shown.toStdString() != commands::edit::fieldText(change.before)) {
      return qt(changedMeanwhile(change)) + tr(" Escape leaves this field.");
    }
  }
  return {};
}

}  // namespace

TypedText takeTyped(RecordModel& model, int firstRow, int lastRow, const QModelIndex& cell,
                    const QString& before, const QString& text) {
  const BusyPointer busy;
  try {
    std::vector<TypedValue> typed;
    for (int row = firstRow; row <= lastRow; ++row) {
      typed.push_back({commands::recordNumber(model.identifier(row)),
                       {model.editField(cell.column()), std::nullopt},
                       text.toStdString()});
    }
    const QString reason = outdated(model, typed, firstRow, cell, before);
    if (!reason.isEmpty()) return {.refusal = reason};
    std::size_t count = 0;
    model.edits()->change(
        [&](commands::edit::PendingEdits& pending) { count = pending.type(typed); });
    if (count == 0) return {.told = tr("The field holds that already.")};
    return {.told = tr("%1 changed, not saved yet.")
                        .arg(counted(static_cast<qlonglong>(count), tr("field")))};
  } catch (const std::exception& error) {
    const QString reason = qt(commands::describe(error));
    return {.refusal = reason, .told = reason.section('\n', 0, 0)};
  }
}

}  // namespace orv::app
