// One value of a field: what a row holds in one column.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace orv::store {

using Bytes = std::vector<std::uint8_t>;

/// Days since 30 December 1899; the fraction is the time of day (for dates before that day it
/// counts on from the whole part's absolute value, as Access does).
struct Date {
  double days = 0;
  bool operator==(const Date&) const = default;
};

/// A fixed-point amount in ten-thousandths.
struct Currency {
  std::int64_t tenThousandths = 0;
  bool operator==(const Currency&) const = default;
};

/// A decimal of up to 28 digits: `magnitude` (big-endian) divided by ten to the `scale`.
struct Decimal {
  bool negative = false;
  std::uint8_t scale = 0;
  std::array<std::uint8_t, 16> magnitude{};
  bool operator==(const Decimal&) const = default;
  std::string toText() const;
  double toDouble() const;
  /// The decimal of a number in text, rounded to `scale` digits after the point. Raises
  /// kTypeMismatch, and kOverflow for more than `precision` digits.
  static Decimal fromText(const std::string& text, std::uint8_t precision, std::uint8_t scale);
};

/// A replication id, in the byte order of the file.
struct Guid {
  std::array<std::uint8_t, 16> bytes{};
  bool operator==(const Guid&) const = default;
  /// "{00112233-4455-6677-8899-AABBCCDDEEFF}"
  std::string toText() const;
};

/// Null, or a value of one of the store's types. Text is UTF-8.
///
/// The conversions give what the ordinary conversions of the system give; they raise error 94
/// (invalid use of Null) for Null, 13 (type mismatch) for a value that cannot be converted and
/// 6 (overflow) for a number that does not fit.
class Value {
 public:
  using Variant = std::variant<std::monostate, bool, std::int32_t, std::int64_t, float, double,
                               Currency, Date, Decimal, Guid, std::string, Bytes>;

  Value() = default;
  Value(std::monostate) {}
  Value(bool v) : v_(v) {}
  Value(std::int32_t v) : v_(v) {}
  Value(std::int64_t v) : v_(v) {}
  Value(float v) : v_(v) {}
  Value(double v) : v_(v) {}
  Value(Currency v) : v_(v) {}
  Value(Date v) : v_(v) {}
  Value(Decimal v) : v_(v) {}
  Value(Guid v) : v_(v) {}
  Value(std::string v) : v_(std::move(v)) {}
  Value(const char* v) : v_(std::string(v)) {}
  Value(Bytes v) : v_(std::move(v)) {}

  bool isNull() const { return v_.index() == 0; }
  const Variant& variant() const { return v_; }
  template <class T>
  const T* getIf() const {
    return std::get_if<T>(&v_);
  }

  /// Takes a number in the place of what it was.
  template <class T>
  void set(T number) {
    v_ = number;
  }

  bool toBoolean() const;  ///< a number is true unless it is 0; text "True", "False" or a number
  std::int32_t toLong() const;  ///< rounds to the nearest whole number, halves to even
  double toDouble() const;
  std::string toText() const;  ///< numbers in their shortest form, booleans "True" and "False"

  bool operator==(const Value&) const = default;

 private:
  Variant v_;
};

}  // namespace orv::store
