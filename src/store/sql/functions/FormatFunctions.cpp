// The Format function and its kin.
#include <fmt/format.h>

#include <optional>

#include "store/sql/functions/Arguments.h"
#include "store/sql/functions/DateText.h"
#include "store/sql/functions/FormatPattern.h"
#include "store/sql/functions/Functions.h"

namespace orv::store::sql {
namespace {

/// Format(value [, pattern [, ...]]): by the pattern a number, a date or text.
void format(const Arguments& a, Result& result) {
  const std::string pattern = a.count() > 1 ? a.text(1) : "";
  if (isDatePattern(pattern)) {
    const std::optional<double> date =
        a.isText(0) ? parseDate(a.text(0)) : std::optional(a.number(0));
    result.text(date ? formatDate(*date, pattern) : a.text(0));
    return;
  }
  const std::optional<double> number = a.numberIfAny(0);
  const bool forText = pattern.find_first_of("@&<>") != std::string::npos;
  result.text(pattern.empty()      ? a.text(0)
              : forText || !number ? formatText(a.text(0), pattern)
                                   : formatNumber(*number, pattern));
}

std::string decimalsPattern(const Arguments& a, const char* head) {
  const std::int32_t decimals = a.wholeOr(1, 2);
  if (decimals > 30) {
    failCall("there are too many decimals");
  }
  const auto zeros = static_cast<std::size_t>(decimals < 0 ? 2 : decimals);
  return head + (zeros > 0 ? "." + std::string(zeros, '0') : std::string());
}

void formatNumberCall(const Arguments& a, Result& result) {
  result.text(formatNumber(a.number(0), decimalsPattern(a, "#,##0")));
}

void formatPercentCall(const Arguments& a, Result& result) {
  result.text(formatNumber(a.number(0), decimalsPattern(a, "#,##0") + "%"));
}

/// FormatDateTime(date [, 0 general | 1 long date | 2 short date | 3 long time | 4 short time])
void formatDateTimeCall(const Arguments& a, Result& result) {
  constexpr const char* kForms[] = {"General Date", "Long Date", "Short Date", "Long Time",
                                    "Short Time"};
  const std::int32_t form = a.wholeOr(1, 0);
  if (form < 0 || form > 4) {
    failCall("FormatDateTime takes forms from 0 to 4");
  }
  result.text(formatDate(a.date(0), kForms[form]));
}

constexpr FunctionDefinition kFormatFunctions[] = {
    {"jet_format", format},
    {"jet_formatnumber", formatNumberCall},
    {"jet_formatpercent", formatPercentCall},
    {"jet_formatdatetime", formatDateTimeCall},
};

}  // namespace

void registerFormatFunctions(sqlite3* db, CallbackFailure& failure) {
  for (const FunctionDefinition& definition : kFormatFunctions) {
    registerFunction(db, definition, failure);
  }
}

}  // namespace orv::store::sql
