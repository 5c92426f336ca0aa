// The search criterion of Recordset::find().
#pragma once

#include <string>
#include <string_view>

#include "store/Schema.h"
#include "store/Value.h"

namespace orv::store {

/// `column operator value`, as find() takes it.
struct Criterion {
  enum class Operator { equal, notEqual, less, lessOrEqual, greater, greaterOrEqual, like };

  std::string column;
  Operator op = Operator::equal;
  Value value;  ///< text, a date or a number as it stands; Null for the word Null

  /// Raises kSyntaxError, quoting the criterion, when it is not of that form.
  static Criterion parse(std::string_view text);

  /// The value in the form in which a column of this type is compared: a number between
  /// apostrophes becomes a number for a numeric column. Raises kTypeMismatch naming the column.
  Criterion forColumn(const ColumnInfo& info) const;

  /// Whether a field of the column meets it. Text compares without regard to case; Null meets
  /// nothing but `= Null`.
  bool isMetBy(const Value& field) const;
};

}  // namespace orv::store
