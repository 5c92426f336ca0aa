#include "app/ColumnLayout.h"

#include <QHeaderView>

#include "app/RecordModel.h"

namespace orv::app {

ColumnLayout ColumnLayout::of(const QHeaderView& header, const RecordModel& model) {
  ColumnLayout layout;
  for (int i = 0; i < header.count(); ++i) {
    // A hidden column has no width; QHeaderView gives back the old one when it is shown again.
    layout.columns_[model.recordColumns()[i].name] = {header.sectionSize(i), header.visualIndex(i),
                                                      header.isSectionHidden(i)};
  }
  return layout;
}

void ColumnLayout::applyTo(QHeaderView& header, const RecordModel& model) const {
  std::map<int, int> wanted;  // logical index by visual index
  for (int i = 0; i < header.count(); ++i) {
    const auto found = columns_.find(model.recordColumns()[i].name);
    if (found == columns_.end()) continue;
    const Column& column = found->second;
    if (column.width > 0) header.resizeSection(i, column.width);
    header.setSectionHidden(i, column.hidden);
    wanted[column.visualIndex] = i;
  }
  for (const auto& [visual, logical] : wanted) {
    if (visual < header.count()) header.moveSection(header.visualIndex(logical), visual);
  }
}

}  // namespace orv::app
