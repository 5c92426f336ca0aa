// What a replacement changes of a row.
#pragma once

#include <string>

#include "database/Existing.h"
#include "database/SameValues.h"
#include "store/Recordset.h"

namespace orv::database {

/// Sets columns of the current row of a table, of those that the source gives, where they differ.
class RowUpdate {
 public:
  /// All outlive it.
  RowUpdate(store::Recordset& row, std::string table, const Replacement& how)
      : row_(row), table_(std::move(table)), how_(how) {}

  void set(const std::string& column, const store::Value& value, bool isCode = false);
  /// Of a text that has no case: the spelling that is there stays.
  void setCaseless(const std::string& column, const std::string& text);
  /// Whether this name has to take the place of the one that the row refers to.
  bool isOther(const std::string& column, const std::string& present,
               const std::string& name) const;
  /// Writes the row, where anything was set. True then.
  bool store();

 private:
  bool mayBeSet(const std::string& column) const;

  store::Recordset& row_;
  std::string table_;
  const Replacement& how_;
  bool isChanged_ = false;
};

}  // namespace orv::database
