#include "store/sql/functions/Arguments.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>

#include "errors/Error.h"
#include "store/Value.h"
#include "store/sql/functions/DateText.h"
#include "store/sql/syntax/Text.h"

namespace orv::store::sql {
namespace {

struct Registered {
  Function function;
  bool nullGivesNull;
  CallbackFailure* failure;
};

void callFunction(sqlite3_context* context, int count, sqlite3_value** values) {
  const auto* registered = static_cast<const Registered*>(sqlite3_user_data(context));
  const Arguments arguments(values, count);
  Result result(context);
  if (registered->nullGivesNull && arguments.anyNull()) {
    result.null();
    return;
  }
  if (!registered->failure->guard([&] { registered->function(arguments, result); })) {
    sqlite3_result_error(context, "a function failed", -1);
  }
}

}  // namespace

bool Arguments::anyNull() const {
  for (int i = 0; i < count_; ++i) {
    if (isNull(i)) {
      return true;
    }
  }
  return false;
}

std::string Arguments::text(int i) const {
  if (sqlite3_value_type(values_[i]) == SQLITE_FLOAT) {
    return numberText(sqlite3_value_double(values_[i]));
  }
  const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(values_[i]));
  return text == nullptr
             ? std::string()
             : std::string(text, static_cast<std::size_t>(sqlite3_value_bytes(values_[i])));
}

std::u32string Arguments::characters(int i) const {
  return decodeUtf8(text(i));
}

double Arguments::number(int i) const {
  const int type = sqlite3_value_type(values_[i]);
  if (type == SQLITE_INTEGER || type == SQLITE_FLOAT) {
    return sqlite3_value_double(values_[i]);
  }
  if (type == SQLITE_BLOB) {
    throw Error(kTypeMismatch, "Type mismatch: binary data is no number");
  }
  return Value(text(i)).toDouble();
}

std::optional<double> Arguments::numberIfAny(int i) const {
  return isText(i) ? numberOfText(text(i)) : std::optional(number(i));
}

std::int32_t Arguments::whole(int i) const {
  return Value(number(i)).toLong();
}

double Arguments::date(int i) const {
  if (!isText(i)) {
    return number(i);
  }
  const std::string text = this->text(i);
  const std::optional<double> days = parseDate(text);
  if (!days) {
    throw Error(kTypeMismatch, fmt::format("Type mismatch: \"{}\" is no date", text));
  }
  return *days;
}

void Result::text(std::string_view text) {
  sqlite3_result_text64(context_, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

void Result::characters(std::u32string_view characters) {
  text(encodeUtf8(characters));
}

void failCall(const char* what) {
  throw Error(kInvalidCall, fmt::format("Invalid procedure call: {}", what));
}

void registerFunction(sqlite3* db, const FunctionDefinition& definition, CallbackFailure& failure) {
  auto* registered = new Registered{definition.function, definition.nullGivesNull, &failure};
  sqlite3_create_function_v2(db, definition.name, -1, SQLITE_UTF8 | SQLITE_DETERMINISTIC,
                             registered, callFunction, nullptr, nullptr,
                             [](void* p) { delete static_cast<Registered*>(p); });
}

std::optional<double> numberOfText(std::string_view text) {
  while (!text.empty() && text.front() == ' ') {
    text.remove_prefix(1);
  }
  while (!text.empty() && text.back() == ' ') {
    text.remove_suffix(1);
  }
  if (text.starts_with('+')) {
    text.remove_prefix(1);
  }
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool whole = error == std::errc() && end == text.data() + text.size();
  return whole && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

std::string numberText(double number) {
  return Value(number).toText();
}

}  // namespace orv::store::sql
