// Conversions between types: CInt, CStr, Val, IsNumeric and their kin.
#include <fmt/format.h>

#include <charconv>
#include <cmath>

#include "errors/Error.h"
#include "store/Value.h"
#include "store/sql/functions/Arguments.h"
#include "store/sql/functions/DateText.h"
#include "store/sql/functions/Functions.h"
#include "store/sql/syntax/Text.h"

namespace orv::store::sql {
namespace {

void giveWhole(const Arguments& a, Result& result, std::int32_t least, std::int32_t most) {
  const std::int32_t number = a.whole(0);
  if (number < least || number > most) {
    throw Error(kOverflow, "Overflow");
  }
  result.whole(number);
}

void toByte(const Arguments& a, Result& result) {
  giveWhole(a, result, 0, 255);
}
void toInteger(const Arguments& a, Result& result) {
  giveWhole(a, result, -32768, 32767);
}
void toLong(const Arguments& a, Result& result) {
  result.whole(a.whole(0));
}
void toDouble(const Arguments& a, Result& result) {
  result.number(a.number(0));
}

/// A number as it is, and text that is one: what arithmetic takes.
void toNumber(const Arguments& a, Result& result) {
  a.isWhole(0) ? result.same(a.raw(0)) : result.number(a.number(0));
}

void toSingle(const Arguments& a, Result& result) {
  const auto single = static_cast<float>(a.number(0));
  if (!std::isfinite(single)) {
    throw Error(kOverflow, "Overflow");
  }
  result.number(static_cast<double>(single));
}

void toCurrency(const Arguments& a, Result& result) {
  const double scaled = a.number(0) * 10000;
  if (!(std::fabs(scaled) < 9.2e18)) {
    throw Error(kOverflow, "Overflow");
  }
  result.number(std::nearbyint(scaled) / 10000);
}

void toBoolean(const Arguments& a, Result& result) {
  result.boolean(a.isText(0) ? Value(a.text(0)).toBoolean() : a.number(0) != 0);
}

void toText(const Arguments& a, Result& result) {
  result.text(a.text(0));
}
void toDate(const Arguments& a, Result& result) {
  result.number(a.date(0));
}
void dateToText(const Arguments& a, Result& result) {
  result.text(Value(Date{a.number(0)}).toText());
}
void singleToText(const Arguments& a, Result& result) {
  result.text(Value(static_cast<float>(a.number(0))).toText());
}

/// Str(number): a blank stands where a minus sign would.
void str(const Arguments& a, Result& result) {
  const double number = a.number(0);
  result.text((number < 0 ? "" : " ") + numberText(number));
}

/// Val(text): the number that the text begins with, blanks passed over; 0 when there is none.
void val(const Arguments& a, Result& result) {
  std::string text = a.text(0);
  std::erase_if(text, [](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; });
  const std::string upper = upperWord(text);
  if (upper.starts_with("&H") || upper.starts_with("&O")) {
    std::int64_t whole = 0;
    std::from_chars(upper.data() + 2, upper.data() + upper.size(), whole, upper[1] == 'H' ? 16 : 8);
    result.whole(whole);
    return;
  }
  const char* begin = text.data() + (text.starts_with('+') ? 1 : 0);
  const char* end = text.data() + text.size();
  double number = 0;
  if (std::from_chars(begin, end, number).ec != std::errc()) number = 0;
  result.number(std::isfinite(number) ? number : 0);
}

void hex(const Arguments& a, Result& result) {
  result.text(fmt::format("{:X}", static_cast<std::uint32_t>(a.whole(0))));
}
void octal(const Arguments& a, Result& result) {
  result.text(fmt::format("{:o}", static_cast<std::uint32_t>(a.whole(0))));
}

void isNumeric(const Arguments& a, Result& result) {
  const int type = sqlite3_value_type(a.raw(0));
  result.boolean(type == SQLITE_INTEGER || type == SQLITE_FLOAT ||
                 (type == SQLITE_TEXT && numberOfText(a.text(0))));
}

void isDate(const Arguments& a, Result& result) {
  result.boolean(a.isText(0) && parseDate(a.text(0)).has_value());
}

constexpr FunctionDefinition kConversionFunctions[] = {
    {"jet_cbyte", toByte},
    {"jet_cint", toInteger},
    {"jet_clng", toLong},
    {"jet_cdbl", toDouble},
    {"jet_number", toNumber},
    {"jet_csng", toSingle},
    {"jet_ccur", toCurrency},
    {"jet_cbool", toBoolean},
    {"jet_cstr", toText},
    {"jet_cdate", toDate},
    {"jet_datetext", dateToText},
    {"jet_singletext", singleToText},
    {"jet_str", str},
    {"jet_val", val},
    {"jet_hex", hex},
    {"jet_oct", octal},
    {"jet_isnumeric", isNumeric, false},
    {"jet_isdate", isDate, false},
};

}  // namespace

void registerConversionFunctions(sqlite3* db, CallbackFailure& failure) {
  for (const FunctionDefinition& definition : kConversionFunctions) {
    registerFunction(db, definition, failure);
  }
}

}  // namespace orv::store::sql
