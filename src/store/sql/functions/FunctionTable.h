// The functions of Access SQL that can be run: how many arguments each takes, and what it gives.
#pragma once

#include <cstddef>
#include <string_view>

namespace orv::store::sql {

enum class ResultType { text, whole, number, date, boolean, currency, ofArgument, unknown };

struct FunctionInfo {
  std::string_view name;  ///< in upper case
  int least;              ///< number of arguments
  int most;
  ResultType result;
  std::string_view sqlName;  ///< as it is registered with SQLite
  /// Whether a date that is given to it is to become text first, as `Left(#2020-01-31#, 4)` wants.
  bool wantsText = false;
};

/// A function by name (in upper case, without a trailing $); null when it is not known.
/// IIf, Switch and others whose arguments are not all evaluated, and aggregates, are not among
/// them: ExpressionWriter writes those.
const FunctionInfo* findFunction(std::string_view upperName);

/// Whether it is a domain function (DLookup, DSum, ...), which would open a query of its own.
bool isDomainFunction(std::string_view upperName);

}  // namespace orv::store::sql
