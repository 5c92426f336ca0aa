#include "productfile/Item.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>
#include <limits>

#include "errors/Error.h"
#include "model/Text.h"

namespace orv::productfile {

namespace {

/// The first key of a pointer, which is then without it.
std::string_view takeKey(std::string_view& pointer) {
  pointer.remove_prefix(1);
  const auto end = std::min(pointer.find('/'), pointer.size());
  const std::string_view key = pointer.substr(0, end);
  pointer.remove_prefix(end);
  return key;
}

std::optional<double> numberIn(std::string_view text) {
  text = trimmed(text);
  double number = 0;
  const char* end = text.data() + text.size();
  const auto [last, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || last != end || !std::isfinite(number)) return std::nullopt;
  return number;
}

/// A value as it is shown in an error.
std::string shown(const Json& value) {
  constexpr std::size_t kLongest = 40;
  if (value.is_object()) return "an object";
  if (value.is_array()) return fmt::format("a list of {}", value.size());
  std::string text = value.dump(-1, ' ', true);
  if (text.size() > kLongest) text = text.substr(0, kLongest) + "...";
  return text;
}

}  // namespace

std::optional<Item> Item::find(std::string_view pointer) const {
  const Json* value = value_;
  for (std::string_view rest = pointer; !rest.empty();) {
    if (value->is_null()) return std::nullopt;
    if (!value->is_object()) {
      const auto way = pointer.substr(0, pointer.size() - rest.size());
      (way.empty() ? *this : Item(*value, *this, way, kNoIndex)).refuseType("an object");
    }
    const auto found = value->find(takeKey(rest));
    if (found == value->end()) return std::nullopt;
    value = &*found;
  }
  if (value->is_null()) return std::nullopt;
  return Item(*value, *this, pointer, kNoIndex);
}

Item Item::require(std::string_view pointer) const {
  if (const auto item = find(pointer)) return *item;
  const Json null;
  Item(null, *this, pointer, kNoIndex).refuse(kInvalidCall, "A value is missing");
}

std::size_t Item::count() const {
  if (!isList()) refuseType("a list");
  return value_->size();
}

Item Item::at(std::size_t index) const {
  return Item((*value_)[index], *this, {}, index);
}

void Item::requireObject() const {
  if (!isObject()) refuseType("an object");
}

std::string Item::text() const {
  if (!value_->is_string()) refuseType("a text");
  return value_->get<std::string>();
}

double Item::number() const {
  if (value_->is_number()) return value_->get<double>();
  if (!value_->is_string()) refuseType("a number");
  const auto number = numberIn(value_->get_ref<const std::string&>());
  if (!number) refuseType("a number");
  return *number;
}

float Item::single() const {
  const double value = number();
  if (std::abs(value) > std::numeric_limits<float>::max()) refuse(kOverflow, "Too large a number");
  return static_cast<float>(value);
}

float Item::quantity() const {
  const float value = single();
  if (value < 0) refuse(kInvalidCall, "This is negative, and no such value is below 0");
  return value;
}

float Item::fraction() const {
  constexpr float kMost = 2;
  const float value = quantity();
  if (value > kMost) refuse(kInvalidCall, "This is no fraction. Values are between 0 and 1");
  return value;
}

std::int32_t Item::whole() const {
  const double value = number();
  if (std::trunc(value) != value) refuseType("a whole number");
  if (value < std::numeric_limits<std::int32_t>::min() ||
      value > std::numeric_limits<std::int32_t>::max()) {
    refuse(kOverflow, "Too large a number");
  }
  return static_cast<std::int32_t>(value);
}

bool Item::flag() const {
  if (!value_->is_boolean()) refuseType("true or false");
  return value_->get<bool>();
}

std::string Item::pointer() const {
  const std::string before = parent_ ? parent_->pointer() : std::string();
  return before + (index_ == kNoIndex ? std::string(key_) : fmt::format("/{}", index_));
}

std::string Item::place() const {
  const std::string where = pointer();
  return where.empty() ? std::string(file_) : fmt::format("{}, {}", file_, where);
}

void Item::refuse(std::int32_t number, const std::string& description) const {
  throw Error(number, description, "", fmt::format("{}: {}", place(), shown(*value_)));
}

void Item::refuseType(const char* wanted) const {
  refuse(kTypeMismatch, fmt::format("Here {} is wanted", wanted));
}

}  // namespace orv::productfile
