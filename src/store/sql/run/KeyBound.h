// Values of a query made into keys of an index.
#pragma once

#include <sqlite3.h>

#include "store/Value.h"
#include "store/jet/definition/TableDefinition.h"

namespace orv::store::sql {

/// Whether a value is looked up itself, or bounds a range from below or above.
enum class BoundSide { equal, lower, upper };

/// What a constraint on a column means for its index.
struct KeyBound {
  enum class Kind {
    value,    ///< the key of `value`; for a bound, rows with the key are among the range
    nothing,  ///< no row can meet the constraint
    all,      ///< every row of the column's type meets it
    unknown,  ///< keys do not tell: SQLite has to look at every row
  };
  Kind kind = Kind::unknown;
  Value value{};
};

/// The bound that `value` is for `column`. What an index finds with it is at least what meets
/// the constraint; SQLite checks each row again.
KeyBound keyBound(const jet::Column& column, sqlite3_value* value, BoundSide side);

/// Whether constraints on columns of this type can be served by an index.
bool isSearchable(ColumnType type);

/// Whether -0 and 0, which are equal, have different keys in an index of this type.
bool hasTwoZeros(ColumnType type);

}  // namespace orv::store::sql
