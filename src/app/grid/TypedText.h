// What is typed into a cell of the grid.
#pragma once

#include <QModelIndex>
#include <QString>

namespace orv::app {

class RecordModel;

/// What became of a text that was typed into a cell.
struct TypedText {
  QString refusal = {};  ///< why it is not taken, or nothing
  QString told = {};     ///< for the status bar
};

/// Takes a text into the field of a cell, of all records from `firstRow` to `lastRow`, as changes
/// that are not saved yet; `before` is what the user has seen in the cell. The records can be
/// edited.
TypedText takeTyped(RecordModel& model, int firstRow, int lastRow, const QModelIndex& cell,
                    const QString& before, const QString& text);

}  // namespace orv::app
