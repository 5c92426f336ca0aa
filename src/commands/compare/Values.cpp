#include "commands/compare/Values.h"

#include <fmt/format.h>

#include <algorithm>

#include "commands/CellText.h"
#include "commands/compare/CurveDifference.h"

namespace orv::commands::compare {

namespace {

using store::Bytes;
using store::Value;

bool holdsBytes(const Value& value) {
  return value.getIf<Bytes>() != nullptr;
}

/// The text that stands in a picture's column is kept as bytes by some.
Bytes bytesOf(const Value& value) {
  if (const auto* bytes = value.getIf<Bytes>()) return *bytes;
  const std::string text = value.isNull() ? "" : value.toText();
  return {text.begin(), text.end()};
}

bool isNumeric(const Value& value) {
  return isNumber(value) || value.getIf<bool>() != nullptr;
}

double numberOf(const Value& value) {
  if (const auto* flag = value.getIf<bool>()) return *flag ? 1 : 0;
  return value.isNull() ? 0 : value.toDouble();
}

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

}  // namespace

bool areSameValues(const Value& a, const Value& b, double tolerance) {
  if (holdsBytes(a) || holdsBytes(b)) return bytesOf(a) == bytesOf(b);
  const bool areNumbers = (isNumeric(a) || a.isNull()) && (isNumeric(b) || b.isNull());
  if (areNumbers) {
    const bool inSingle = a.getIf<float>() != nullptr || b.getIf<float>() != nullptr;
    const bool isFlag = a.getIf<bool>() != nullptr || b.getIf<bool>() != nullptr;
    return areSame(numberOf(a), numberOf(b), inSingle, isFlag ? 0 : tolerance);
  }
  return (a.isNull() ? "" : a.toText()) == (b.isNull() ? "" : b.toText());
}

std::pair<Value, Value> toldValues(const Value& a, const Value& b) {
  if (!holdsBytes(a) || !holdsBytes(b)) return {told(a), told(b)};
  const Bytes inA = bytesOf(a);
  const Bytes inB = bytesOf(b);
  if (inA.size() != inB.size()) return {told(a), told(b)};
  const auto at = std::ranges::mismatch(inA, inB).in1 - inA.begin();
  return {told(a), fmt::format("{} bytes, others from byte {} on", inB.size(), at + 1)};
}

}  // namespace orv::commands::compare
