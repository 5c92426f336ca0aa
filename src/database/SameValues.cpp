#include "database/SameValues.h"

#include <algorithm>
#include <cmath>

#include "model/Codes.h"
#include "store/TextKey.h"

namespace orv::database {

namespace {

using store::Bytes;
using store::Value;

bool isFlag(const Value& value) {
  return value.getIf<bool>() != nullptr;
}

double numberOf(const Value& value) {
  if (const auto* flag = value.getIf<bool>()) return *flag ? 1 : 0;
  return value.isNull() ? 0 : value.toDouble();
}

}  // namespace

bool areSameNumbers(double a, double b, const Likeness& likeness) {
  if (a == b || (std::isnan(a) && std::isnan(b))) return true;
  if (likeness.inSingle && static_cast<float>(a) == static_cast<float>(b)) return true;
  constexpr double kRounding = 1e-7;  // of 32-bit floats, at the tolerance itself
  const double slack = kRounding * std::max(std::abs(a), std::abs(b));
  return likeness.tolerance > 0 && std::abs(a - b) <= likeness.tolerance + slack;
}

bool areSameValues(const Value& a, const Value& b, const Likeness& likeness) {
  if (a.getIf<Bytes>() || b.getIf<Bytes>()) return pictureBytes(a) == pictureBytes(b);
  const auto isNumeric = [](const Value& value) {
    return !value.getIf<std::string>() && !value.getIf<store::Date>() &&
           !value.getIf<store::Guid>();
  };
  if (isNumeric(a) && isNumeric(b)) {
    Likeness numbers = likeness;
    numbers.inSingle = likeness.inSingle || a.getIf<float>() || b.getIf<float>();
    if (likeness.isCode || isFlag(a) || isFlag(b)) numbers.tolerance = 0;
    return areSameNumbers(numberOf(a), numberOf(b), numbers);
  }
  return (a.isNull() ? "" : a.toText()) == (b.isNull() ? "" : b.toText());
}

Bytes pictureBytes(const Value& value) {
  if (const auto* bytes = value.getIf<Bytes>()) return *bytes;
  const std::string text = value.isNull() ? "" : value.toText();
  return {text.begin(), text.end()};
}

bool areSameNames(const std::string& a, const std::string& b) {
  const auto known = [](const std::string& name) {
    return name.empty() ? std::string(kUnknown) : name;
  };
  return known(a) == known(b) || store::textKey(known(a)) == store::textKey(known(b));
}

}  // namespace orv::database
