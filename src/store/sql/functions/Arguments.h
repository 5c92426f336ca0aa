// Arguments and results of the functions that SQLite calls.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "store/sql/functions/Callbacks.h"

namespace orv::store::sql {

/// The arguments of one call, converted as Access converts them.
class Arguments {
 public:
  Arguments(sqlite3_value** values, int count) : values_(values), count_(count) {}

  int count() const { return count_; }
  bool isNull(int i) const { return sqlite3_value_type(values_[i]) == SQLITE_NULL; }
  bool isText(int i) const { return sqlite3_value_type(values_[i]) == SQLITE_TEXT; }
  bool isWhole(int i) const { return sqlite3_value_type(values_[i]) == SQLITE_INTEGER; }
  bool anyNull() const;
  sqlite3_value* raw(int i) const { return values_[i]; }

  /// Numbers and text as text; numbers in their shortest form.
  std::string text(int i) const;
  std::u32string characters(int i) const;
  /// Raises kTypeMismatch for text that is no number.
  double number(int i) const;
  /// The number, or the number that a text is; none for other text.
  std::optional<double> numberIfAny(int i) const;
  /// Rounded to the nearest whole number, halves to even. Raises kTypeMismatch, kOverflow.
  std::int32_t whole(int i) const;
  std::int32_t wholeOr(int i, std::int32_t absent) const { return i < count_ ? whole(i) : absent; }
  /// A date in days: a number, or text that is a date. Raises kTypeMismatch.
  double date(int i) const;

 private:
  sqlite3_value** values_;
  int count_;
};

/// Where the result of a call goes.
class Result {
 public:
  explicit Result(sqlite3_context* context) : context_(context) {}
  void null() { sqlite3_result_null(context_); }
  void text(std::string_view text);
  void characters(std::u32string_view characters);
  void whole(std::int64_t number) { sqlite3_result_int64(context_, number); }
  /// Null for what is no number.
  void number(double number) { sqlite3_result_double(context_, number); }
  void boolean(bool value) { sqlite3_result_int64(context_, value ? -1 : 0); }
  void same(sqlite3_value* value) { sqlite3_result_value(context_, value); }
  sqlite3_context* context() const { return context_; }

 private:
  sqlite3_context* context_;
};

using Function = void (*)(const Arguments&, Result&);

struct FunctionDefinition {
  const char* name;
  Function function;
  bool nullGivesNull = true;  ///< with a Null among its arguments the result is Null
};

/// Raises kInvalidCall, "Invalid procedure call: <what>".
[[noreturn]] void failCall(const char* what);

/// Registers a function; what it raises is kept in `failure`.
void registerFunction(sqlite3* db, const FunctionDefinition& definition, CallbackFailure& failure);

/// The number that a text is, blanks around it passed over; none for other text.
std::optional<double> numberOfText(std::string_view text);

/// The text of a number as the `&` operator gives it.
std::string numberText(double number);

}  // namespace orv::store::sql
