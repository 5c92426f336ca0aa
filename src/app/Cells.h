// Cells of lists.
#pragma once

#include <QTreeWidgetItem>

#include "app/Text.h"

namespace orv::app {

/// Shows a text on one line, and as it is in the cell's tip.
inline void setCell(QTreeWidgetItem& line, int column, const QString& text) {
  line.setText(column, shownText(QString(text).replace(u'\n', u' ').remove(u'\r')));
  line.setToolTip(column, toolTipText(text));
}

}  // namespace orv::app
