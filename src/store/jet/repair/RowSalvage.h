// The rows of one table that a damaged file still has.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "store/CompactReport.h"
#include "store/jet/definition/TableDefinition.h"
#include "store/jet/page/DataPage.h"
#include "store/jet/page/Pager.h"
#include "store/jet/page/RowId.h"
#include "store/jet/repair/PageSurvey.h"
#include "store/jet/row/Row.h"

namespace orv::store::jet {

/// Looks at every page that the table's map names or that says it is the table's, and finds the
/// rows that can be decoded.
class RowSalvage {
 public:
  struct Place {
    RowId home;
    RowId content;  ///< where the row was moved to, or its home
    auto operator<=>(const Place&) const = default;
  };

  /// `isSure` says that the definition is whole, so that rows on pages that the map does not name
  /// may be put back.
  RowSalvage(Pager& pager, const PageSurvey& survey, std::shared_ptr<const TableDefinition> table,
             bool isSure);

  /// The rows, ascending by their homes.
  const std::vector<Place>& rows() const { return rows_; }
  /// Leaves rows out, and counts them as lost.
  void drop(const std::function<bool(const Place&, const RowView&)>& isToGo,
            const std::string& why);
  RowView view(const Place& place) const;
  /// How many rows the table says that it has.
  std::size_t rowsSaid() const;
  std::size_t rowsMissing() const;
  /// What is to be said of them: number of rows saved and lost, and where.
  SalvagedTable report() const;

 private:
  /// A page, on which a number of rows that cannot be is mended.
  PageRef pageAt(PageNumber number) const;
  void readMap();
  void readPage(PageNumber number, std::vector<Place>& rows);
  void readRow(const DataPage& page, RowId id, std::vector<Place>& rows);
  RowId follow(RowId home);
  void checkIsThere(RowId row, const Slot& slot) const;
  void addStrayPages();
  void addStrayMovedRows();
  void lose(RowId id, const std::string& why);

  Pager& pager_;
  const PageSurvey& survey_;
  std::shared_ptr<const TableDefinition> table_;
  bool isSure_;
  bool mapIsWhole_ = true;
  std::set<PageNumber> listed_{};
  std::vector<Place> rows_{};
  std::vector<RowId> moved_{};   ///< contents of moved rows
  std::set<RowId> pointedAt_{};  ///< those that a home leads to
  std::size_t pagesLost_ = 0;
  std::size_t pagesOfOthers_ = 0;  ///< on the map
  SalvagedTable report_;
};

/// Raises kCorruptFile unless the columns of a row can be read.
void checkDecodes(const TableDefinition& table, const RowView& row);

}  // namespace orv::store::jet
