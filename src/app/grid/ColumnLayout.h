// Which columns of the grid are shown, how wide, and in which order.
#pragma once

#include <QList>
#include <map>
#include <string>

class QHeaderView;

namespace orv::app {

class RecordModel;

/// The columns of one kind of record set as the user left them, by the columns' names.
class ColumnLayout {
 public:
  /// `fitted`: the widths that the columns got by themselves, which are not worth keeping: other
  /// records of the kind want others.
  static ColumnLayout of(const QHeaderView& header, const RecordModel& model,
                         const QList<int>& fitted);
  /// Columns that the layout does not know stay as they are.
  void applyTo(QHeaderView& header, const RecordModel& model) const;

 private:
  struct Column {
    int width;  ///< 0 when the user has not chosen it
    int visualIndex;
    bool hidden;
  };
  std::map<std::string, Column> columns_;
};

}  // namespace orv::app
