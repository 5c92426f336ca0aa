// A block of cells of a spreadsheet, and the fields that it is meant for.
#pragma once

#include <QStringList>

#include "app/grid/ChangePlan.h"

namespace orv::app {

class RecordGrid;

struct BlockPlan {
  ChangePlan changes;  ///< as they are typed, not judged yet
  QStringList hidden;  ///< titles of columns amid the block that are not shown, and are left alone
};

/// What a text with tabs between its cells brings into the fields of a grid that are edited: from
/// the current column to the right, over the columns shown, and from the first selected row down. A
/// single line goes to all selected rows. A first line with the headings of the columns is passed
/// over, and so are cells that hold what is there. Raises kInvalidCall, with row and column, where
/// the block does not fit.
BlockPlan planOfBlock(RecordGrid& grid, const QString& text);

}  // namespace orv::app
