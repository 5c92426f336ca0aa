// Which columns of the grid are shown, how wide, and in which order.
#pragma once

#include <map>
#include <string>

class QHeaderView;

namespace orv::app {

class RecordModel;

/// The columns of one kind of record set as the user left them, by the columns' names.
class ColumnLayout {
 public:
  static ColumnLayout of(const QHeaderView& header, const RecordModel& model);
  /// Columns that the layout does not know stay as they are.
  void applyTo(QHeaderView& header, const RecordModel& model) const;

 private:
  struct Column {
    int width;
    int visualIndex;
    bool hidden;
  };
  std::map<std::string, Column> columns_;
};

}  // namespace orv::app
