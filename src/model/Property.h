// The named properties of the record classes.
#pragma once

#include <fmt/format.h>

#include <string>
#include <type_traits>
#include <utility>

#include "errors/Error.h"

namespace orv {

/// What reading a property of type T gives: scalars by value, everything else by reference.
template <class T>
using PropertyRead = std::conditional_t<std::is_scalar_v<T>, T, const T&>;

/// A named property of a record. Called without an argument it reads, with one it writes:
///
///     record.productname("Clear");
///     if (record.productname() == "Clear") ...
///
/// A pointer to member (`Property<double> ShadingDataClass::*`) lets a table of keys or columns
/// name the property that each of its rows stands for.
template <class T>
class Property {
 public:
  Property() = default;
  explicit Property(T initial) : value_(std::move(initial)) {}

  PropertyRead<T> operator()() const { return value_; }
  void operator()(T value) { value_ = std::move(value); }

 private:
  T value_{};
};

/// A property that takes only values that `accepts` approves. Writing any other raises error 5,
/// whose source names the property and the value, and keeps the old value. The initial value is
/// not checked, so it can be a marker ("not set") that the setter never takes.
template <class T, bool (*accepts)(const T&)>
class CheckedProperty {
 public:
  explicit CheckedProperty(const char* name, T initial = T{})
      : name_(name), initial_(initial), value_(std::move(initial)) {}

  PropertyRead<T> operator()() const { return value_; }
  void operator()(T value) {
    if (!accepts(value)) {
      throw Error(kInvalidCall, "", fmt::format("{} cannot be {}", name_, value));
    }
    value_ = std::move(value);
  }

  /// Goes back to the initial value.
  void reset() { value_ = initial_; }

 private:
  const char* name_;
  T initial_;
  T value_;
};

/// The test of quantities: at least 0, and a number.
inline bool isNotNegative(const float& value) {
  return value >= 0;
}

/// A 32-bit float that is never negative.
using Quantity = CheckedProperty<float, isNotNegative>;

}  // namespace orv
