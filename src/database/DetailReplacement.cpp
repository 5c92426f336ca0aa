#include "database/DetailReplacement.h"

#include <cmath>
#include <deque>
#include <map>

#include "database/Fields.h"
#include "database/Recordsets.h"
#include "database/RowUpdate.h"

namespace orv::database {

namespace {

/// A place to a thousandth, as wavelengths are compared.
std::int64_t rounded(double place) {
  constexpr double kPerUnit = 1000;
  return std::llround(place * kPerUnit);
}

class DetailReplacement {
 public:
  DetailReplacement(const Details& details, const Replacement& how, store::Connection& dc)
      : details_(details), how_(how), dc_(dc) {
    for (std::size_t i = 0; i < details.rows.size(); ++i) {
      left_[rounded(details.rows[i].place)].push_back(i);
    }
  }

  bool run() {
    changeRows();
    addRows();
    return isChanged_;
  }

 private:
  void changeRows() {
    auto rows =
        openForChange(dc_, "SELECT * FROM " + details_.table + " WHERE " + details_.condition);
    const std::size_t place = rows->fieldIndex(details_.place);
    for (; !rows->eof(); rows->moveNext()) {
      const auto same = left_.find(rounded(FieldToDouble(rows->value(place))));
      if (same == left_.end()) {
        rows->deleteRow();
        isChanged_ = true;
      } else {
        change(*rows, details_.rows[same->second.front()]);
        same->second.pop_front();
        if (same->second.empty()) left_.erase(same);
      }
    }
  }

  void change(store::Recordset& rows, const DetailRow& row) {
    RowUpdate update(rows, details_.table, how_);
    for (std::size_t i = 0; i < details_.columns.size(); ++i) {
      update.set(details_.columns[i], row.values[i]);
    }
    isChanged_ = update.store() || isChanged_;
  }

  void addRows() {
    if (left_.empty()) return;
    isChanged_ = true;
    auto rows = openBatch(dc_, details_.table);
    for (const auto& [place, positions] : left_) {
      for (const std::size_t position : positions) add(*rows, details_.rows[position]);
    }
    rows->updateBatch();
  }

  void add(store::Recordset& rows, const DetailRow& row) const {
    rows.addNew();
    for (const auto& [column, value] : details_.keys) rows.setValue(column, value);
    rows.setValue(details_.place, row.place);
    for (std::size_t i = 0; i < details_.columns.size(); ++i) {
      const std::string& column = details_.columns[i];
      const auto field = findField(rows, column.c_str());
      if (field && how_.gives(details_.table, column)) rows.setValue(*field, row.values[i]);
    }
  }

  const Details& details_;
  const Replacement& how_;
  store::Connection& dc_;
  std::map<std::int64_t, std::deque<std::size_t>> left_;  ///< rows by their places
  bool isChanged_ = false;
};

}  // namespace

bool replaceDetails(const Details& details, const Replacement& how, store::Connection& dc) {
  return how.gives(details.table) && DetailReplacement(details, how, dc).run();
}

}  // namespace orv::database
