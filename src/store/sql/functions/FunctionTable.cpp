#include "store/sql/functions/FunctionTable.h"

#include <algorithm>
#include <array>

namespace orv::store::sql {
namespace {

using enum ResultType;

constexpr std::array kFunctions = {
    // Text.
    FunctionInfo{"ASC", 1, 1, whole, "jet_asc", true},
    FunctionInfo{"ASCW", 1, 1, whole, "jet_ascw", true},
    FunctionInfo{"CHR", 1, 1, text, "jet_chr"},
    FunctionInfo{"CHRW", 1, 1, text, "jet_chrw"},
    FunctionInfo{"INSTR", 2, 4, whole, "jet_instr", true},
    FunctionInfo{"INSTRREV", 2, 4, whole, "jet_instrrev", true},
    FunctionInfo{"LCASE", 1, 1, text, "jet_lcase", true},
    FunctionInfo{"LEFT", 2, 2, text, "jet_left", true},
    FunctionInfo{"LEN", 1, 1, whole, "jet_len", true},
    FunctionInfo{"LTRIM", 1, 1, text, "jet_ltrim", true},
    FunctionInfo{"MID", 2, 3, text, "jet_mid", true},
    FunctionInfo{"REPLACE", 3, 6, text, "jet_replace", true},
    FunctionInfo{"RIGHT", 2, 2, text, "jet_right", true},
    FunctionInfo{"RTRIM", 1, 1, text, "jet_rtrim", true},
    FunctionInfo{"SPACE", 1, 1, text, "jet_space"},
    FunctionInfo{"STR", 1, 1, text, "jet_str"},
    FunctionInfo{"STRCOMP", 2, 3, whole, "jet_strcomp", true},
    FunctionInfo{"STRCONV", 2, 2, text, "jet_strconv", true},
    FunctionInfo{"STRING", 2, 2, text, "jet_string"},
    FunctionInfo{"STRREVERSE", 1, 1, text, "jet_strreverse", true},
    FunctionInfo{"TRIM", 1, 1, text, "jet_trim", true},
    FunctionInfo{"UCASE", 1, 1, text, "jet_ucase", true},
    FunctionInfo{"VAL", 1, 1, number, "jet_val", true},
    FunctionInfo{"HEX", 1, 1, text, "jet_hex"},
    FunctionInfo{"OCT", 1, 1, text, "jet_oct"},
    FunctionInfo{"FORMAT", 1, 4, text, "jet_format"},
    FunctionInfo{"FORMATNUMBER", 1, 2, text, "jet_formatnumber"},
    FunctionInfo{"FORMATPERCENT", 1, 2, text, "jet_formatpercent"},
    FunctionInfo{"FORMATDATETIME", 1, 2, text, "jet_formatdatetime"},
    // Numbers.
    FunctionInfo{"ABS", 1, 1, ofArgument, "jet_abs"},
    FunctionInfo{"ATN", 1, 1, number, "jet_atn"},
    FunctionInfo{"COS", 1, 1, number, "jet_cos"},
    FunctionInfo{"EXP", 1, 1, number, "jet_exp"},
    FunctionInfo{"FIX", 1, 1, ofArgument, "jet_fix"},
    FunctionInfo{"INT", 1, 1, ofArgument, "jet_int"},
    FunctionInfo{"LOG", 1, 1, number, "jet_log"},
    FunctionInfo{"ROUND", 1, 2, ofArgument, "jet_round"},
    FunctionInfo{"SGN", 1, 1, whole, "jet_sgn"},
    FunctionInfo{"SIN", 1, 1, number, "jet_sin"},
    FunctionInfo{"SQR", 1, 1, number, "jet_sqr"},
    FunctionInfo{"TAN", 1, 1, number, "jet_tan"},
    // Conversions.
    FunctionInfo{"CBOOL", 1, 1, boolean, "jet_cbool"},
    FunctionInfo{"CBYTE", 1, 1, whole, "jet_cbyte"},
    FunctionInfo{"CCUR", 1, 1, currency, "jet_ccur"},
    FunctionInfo{"CDATE", 1, 1, date, "jet_cdate"},
    FunctionInfo{"CVDATE", 1, 1, date, "jet_cdate"},
    FunctionInfo{"CDBL", 1, 1, number, "jet_cdbl"},
    FunctionInfo{"CDEC", 1, 1, number, "jet_cdbl"},
    FunctionInfo{"CINT", 1, 1, whole, "jet_cint"},
    FunctionInfo{"CLNG", 1, 1, whole, "jet_clng"},
    FunctionInfo{"CSNG", 1, 1, number, "jet_csng"},
    FunctionInfo{"CSTR", 1, 1, text, "jet_cstr", true},
    FunctionInfo{"ISDATE", 1, 1, boolean, "jet_isdate", true},
    FunctionInfo{"ISNUMERIC", 1, 1, boolean, "jet_isnumeric", true},
    // Dates.
    FunctionInfo{"DATE", 0, 0, date, "jet_date"},
    FunctionInfo{"DATEADD", 3, 3, date, "jet_dateadd"},
    FunctionInfo{"DATEDIFF", 3, 5, whole, "jet_datediff"},
    FunctionInfo{"DATEPART", 2, 4, whole, "jet_datepart"},
    FunctionInfo{"DATESERIAL", 3, 3, date, "jet_dateserial"},
    FunctionInfo{"DATEVALUE", 1, 1, date, "jet_datevalue"},
    FunctionInfo{"DAY", 1, 1, whole, "jet_day"},
    FunctionInfo{"HOUR", 1, 1, whole, "jet_hour"},
    FunctionInfo{"MINUTE", 1, 1, whole, "jet_minute"},
    FunctionInfo{"MONTH", 1, 1, whole, "jet_month"},
    FunctionInfo{"MONTHNAME", 1, 2, text, "jet_monthname"},
    FunctionInfo{"NOW", 0, 0, date, "jet_now"},
    FunctionInfo{"SECOND", 1, 1, whole, "jet_second"},
    FunctionInfo{"TIME", 0, 0, date, "jet_time"},
    FunctionInfo{"TIMESERIAL", 3, 3, date, "jet_timeserial"},
    FunctionInfo{"TIMEVALUE", 1, 1, date, "jet_timevalue"},
    FunctionInfo{"WEEKDAY", 1, 2, whole, "jet_weekday"},
    FunctionInfo{"WEEKDAYNAME", 1, 3, text, "jet_weekdayname"},
    FunctionInfo{"YEAR", 1, 1, whole, "jet_year"},
};

constexpr std::array<std::string_view, 12> kDomainFunctions = {
    "DLOOKUP", "DCOUNT", "DSUM",   "DAVG",    "DMIN", "DMAX",
    "DFIRST",  "DLAST",  "DSTDEV", "DSTDEVP", "DVAR", "DVARP"};

}  // namespace

const FunctionInfo* findFunction(std::string_view upperName) {
  const auto found = std::find_if(kFunctions.begin(), kFunctions.end(),
                                  [&](const FunctionInfo& f) { return f.name == upperName; });
  return found == kFunctions.end() ? nullptr : &*found;
}

bool isDomainFunction(std::string_view upperName) {
  return std::find(kDomainFunctions.begin(), kDomainFunctions.end(), upperName) !=
         kDomainFunctions.end();
}

}  // namespace orv::store::sql
