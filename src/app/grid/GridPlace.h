// Where the user is in the grid.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace orv::app {

class RecordGrid;

/// The records that are selected, the current one, and what is in sight, by the identifiers of the
/// records, so that the place is found again when the rows are others or in another order.
class GridPlace {
 public:
  enum class Selection { kept, cleared, deleted };

  GridPlace() = default;
  explicit GridPlace(const RecordGrid& grid);

  /// Goes to the place. Of records that do not follow each other any more those around the current
  /// one are selected. With `cleared` none is; with `deleted` neither, and the record that followed
  /// the selected ones becomes the current one.
  void restore(RecordGrid& grid, Selection selection) const;

 private:
  int currentRowIn(RecordGrid& grid, Selection selection) const;

  std::vector<std::string> selected_;
  int low_ = -1;      ///< row of the first of them
  std::string next_;  ///< the record that follows them; empty for none
  std::string current_;
  int currentRow_ = -1;
  int column_ = 0;
  std::optional<int> offset_;  ///< of the current row from the top, in pixels, while it is in sight
  int scrolled_ = 0;
};

}  // namespace orv::app
