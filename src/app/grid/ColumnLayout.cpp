#include "app/grid/ColumnLayout.h"

#include <QHeaderView>

#include "app/grid/RecordModel.h"

namespace orv::app {

ColumnLayout ColumnLayout::of(const QHeaderView& header, const RecordModel& model,
                              const QList<int>& fitted) {
  ColumnLayout layout;
  for (int i = 0; i < header.count(); ++i) {
    const int width = header.sectionSize(i);  // 0 while it is hidden
    layout.columns_[model.recordColumns()[i].name] = {
        width == fitted.value(i) ? 0 : width, header.visualIndex(i), header.isSectionHidden(i)};
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
