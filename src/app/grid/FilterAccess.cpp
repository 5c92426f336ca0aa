#include "app/grid/FilterAccess.h"

#include <QAccessibleWidget>
#include <QLineEdit>

#include "app/grid/DataPane.h"
#include "app/grid/FilterHeader.h"
#include "app/grid/RecordGrid.h"

namespace orv::app {

namespace {

/// The fields that are shown, in the order of their columns.
class FilterRowAccess : public QAccessibleWidget {
 public:
  explicit FilterRowAccess(FilterHeader& header)
      : QAccessibleWidget(&header, QAccessible::Grouping, FilterHeader::tr("Filters")),
        header_(header) {}

  QAccessibleInterface* parent() const override {
    QObject* ancestor = header_.parent();
    while (ancestor != nullptr && qobject_cast<DataPane*>(ancestor) == nullptr) {
      ancestor = ancestor->parent();
    }
    return QAccessible::queryAccessibleInterface(ancestor);
  }
  int childCount() const override { return static_cast<int>(header_.shownEditors().size()); }
  QAccessibleInterface* child(int index) const override {
    return QAccessible::queryAccessibleInterface(header_.shownEditors().value(index));
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    return static_cast<int>(
        header_.shownEditors().indexOf(qobject_cast<QLineEdit*>(child->object())));
  }

 private:
  FilterHeader& header_;
};

/// The parts of the pane, and behind them the filters.
class DataPaneAccess : public QAccessibleWidget {
 public:
  explicit DataPaneAccess(DataPane& pane) : QAccessibleWidget(&pane), pane_(pane) {}

  int childCount() const override { return QAccessibleWidget::childCount() + 1; }
  QAccessibleInterface* child(int index) const override {
    return index == QAccessibleWidget::childCount() ? filters() : QAccessibleWidget::child(index);
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    return child == filters() ? QAccessibleWidget::childCount()
                              : QAccessibleWidget::indexOfChild(child);
  }

 private:
  QAccessibleInterface* filters() const {
    return QAccessible::queryAccessibleInterface(&pane_.grid().filterHeader());
  }

  DataPane& pane_;
};

QAccessibleInterface* accessOf(const QString& /*kind*/, QObject* object) {
  if (auto* header = qobject_cast<FilterHeader*>(object)) return new FilterRowAccess(*header);
  if (auto* pane = qobject_cast<DataPane*>(object)) return new DataPaneAccess(*pane);
  return nullptr;
}

}  // namespace

void offerFiltersToReaders() {
  QAccessible::installFactory(accessOf);  // once, however often it is called
}

}  // namespace orv::app
