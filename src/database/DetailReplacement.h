// Rows of details of a record that take the place of those that are there.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "database/Existing.h"
#include "store/Connection.h"

namespace orv::database {

/// What a row is to hold.
struct DetailRow {
  double place = 0;                  ///< nm, or degrees
  std::vector<store::Value> values;  ///< one for each of the columns
};

struct Details {
  std::string table;
  std::string condition;  ///< the rows that are there
  std::string place;      ///< the column by which rows are the same
  std::vector<std::string> columns;
  std::vector<std::pair<std::string, store::Value>> keys;  ///< of rows that are added
  std::vector<DetailRow> rows;
};

/// Rows at the same place stay, and get the values that differ; the others go, or are added. True
/// when anything was written. Nothing is where the source does not give the table.
bool replaceDetails(const Details& details, const Replacement& how, store::Connection& dc);

}  // namespace orv::database
