// Functions of numbers: Int, Round, Mod, Sqr and their kin.
#include <cmath>
#include <limits>

#include "errors/Error.h"
#include "store/sql/functions/Arguments.h"
#include "store/sql/functions/Functions.h"

namespace orv::store::sql {
namespace {

/// A result that stays whole where the argument was.
void giveLike(const Arguments& a, Result& result, double number) {
  if (a.isWhole(0) && std::fabs(number) < 9e15) {
    result.whole(static_cast<std::int64_t>(number));
  } else {
    result.number(number);
  }
}

void finite(Result& result, double number) {
  if (!std::isfinite(number)) {
    throw Error(kOverflow, "Overflow");
  }
  result.number(number);
}

void absolute(const Arguments& a, Result& result) {
  giveLike(a, result, std::fabs(a.number(0)));
}
void toFloor(const Arguments& a, Result& result) {
  giveLike(a, result, std::floor(a.number(0)));
}
void toTruncated(const Arguments& a, Result& result) {
  giveLike(a, result, std::trunc(a.number(0)));
}

/// Round(number [, digits]): halves to the even neighbour, digits after the point.
void roundHalfEven(const Arguments& a, Result& result) {
  const std::int32_t digits = a.wholeOr(1, 0);
  if (digits < 0 || digits > 22) {
    failCall("Round takes 0 to 22 digits");
  }
  const double number = a.number(0);
  const double factor = std::pow(10.0, digits);
  const double scaled = number * factor;
  // Far from halves nothing is to be rounded: so large a double has no such digits.
  giveLike(a, result, std::fabs(scaled) < 9e15 ? std::nearbyint(scaled) / factor : number);
}

void sign(const Arguments& a, Result& result) {
  const double number = a.number(0);
  result.whole(number > 0 ? 1 : number < 0 ? -1 : 0);
}

void squareRoot(const Arguments& a, Result& result) {
  if (a.number(0) < 0) {
    failCall("Sqr takes no negative number");
  }
  result.number(std::sqrt(a.number(0)));
}

void logarithm(const Arguments& a, Result& result) {
  if (a.number(0) <= 0) {
    failCall("Log takes a number above 0");
  }
  result.number(std::log(a.number(0)));
}

template <double (*function)(double)>
void apply(const Arguments& a, Result& result) {
  finite(result, function(a.number(0)));
}

void power(const Arguments& a, Result& result) {
  finite(result, std::pow(a.number(0), a.number(1)));
}

/// The operands of `\` and Mod are rounded first; a divisor of 0 gives Null, as `/` does.
void divideWhole(const Arguments& a, Result& result) {
  const std::int64_t divisor = a.whole(1);
  divisor == 0 ? result.null() : result.whole(a.whole(0) / divisor);
}

void modulo(const Arguments& a, Result& result) {
  const std::int64_t divisor = a.whole(1);
  divisor == 0 ? result.null() : result.whole(a.whole(0) % divisor);
}

constexpr FunctionDefinition kNumberFunctions[] = {
    {"jet_abs", absolute},
    {"jet_int", toFloor},
    {"jet_fix", toTruncated},
    {"jet_round", roundHalfEven},
    {"jet_sgn", sign},
    {"jet_sqr", squareRoot},
    {"jet_log", logarithm},
    {"jet_exp", apply<std::exp>},
    {"jet_sin", apply<std::sin>},
    {"jet_cos", apply<std::cos>},
    {"jet_tan", apply<std::tan>},
    {"jet_atn", apply<std::atan>},
    {"jet_power", power},
    {"jet_idiv", divideWhole},
    {"jet_mod", modulo},
};

}  // namespace

void registerNumberFunctions(sqlite3* db, CallbackFailure& failure) {
  for (const FunctionDefinition& definition : kNumberFunctions) {
    registerFunction(db, definition, failure);
  }
}

}  // namespace orv::store::sql
