#include "commands/compare/Values.h"

#include <fmt/format.h>

#include <algorithm>

#include "commands/NumberText.h"
#include "model/Text.h"

namespace orv::commands::compare {

namespace {

using store::Bytes;
using store::Value;

/// What a column of double precision holds of a number in single precision.
Value shortest(const Value& value) {
  const auto* number = value.getIf<double>();
  if (number == nullptr || double{static_cast<float>(*number)} != *number) return value;
  return static_cast<float>(*number);
}

Value told(const Value& value) {
  if (const auto* flag = value.getIf<bool>()) return *flag ? "yes" : "no";
  const auto* bytes = value.getIf<Bytes>();
  if (bytes != nullptr) return fmt::format("{} bytes", bytes->size());
  return shortest(value);
}

std::string textOf(const Value& value) {
  return value.isNull() ? std::string() : value.toText();
}

std::string allDigits(const Value& value) {
  return fmt::format("{}", value.isNull() ? 0.0 : value.toDouble());
}

}  // namespace

bool areSameInField(const Field& field, const Value& a, const Value& b, double tolerance) {
  if (!field.hasCase) return equalIgnoringCase(textOf(a), textOf(b));
  database::Likeness likeness = field.likeness;
  likeness.tolerance = tolerance;
  return database::areSameValues(a, b, likeness);
}

std::pair<Value, Value> toldValues(const Value& a, const Value& b) {
  const bool areBytes = a.getIf<Bytes>() && b.getIf<Bytes>();
  if (!areBytes) {
    const std::pair both{told(a), told(b)};
    const bool isFraction = a.getIf<double>() || b.getIf<double>();
    if (!isFraction || textOf(both.first) != textOf(both.second)) return both;
    return {allDigits(a), allDigits(b)};
  }
  const Bytes inA = database::pictureBytes(a);
  const Bytes inB = database::pictureBytes(b);
  if (inA.size() != inB.size()) return {told(a), told(b)};
  const auto at = std::ranges::mismatch(inA, inB).in1 - inA.begin();
  return {told(a), fmt::format("{} bytes, others from byte {} on", inB.size(), at + 1)};
}

std::pair<std::string, std::string> toldNumbers(double a, double b) {
  std::pair both{numberText(a), numberText(b)};
  return both.first != both.second ? both : std::pair{fmt::format("{}", a), fmt::format("{}", b)};
}

}  // namespace orv::commands::compare
