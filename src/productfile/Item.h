// A value within the JSON of a file, and where it stands.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "productfile/JsonText.h"

namespace orv::productfile {

/// A value that knows its place, so that whatever is wrong with it is told with the file and the
/// JSON pointer. An item refers to the one that it was found in, which has to outlive it.
///
/// Where a file has "0.84" in quotes for a number, the number is taken. The readings raise error 13
/// for another type and 6 for a number that does not fit.
class Item {
 public:
  /// The value that an identifier or a file stands for. `pointer` is where it stands in the file.
  Item(const Json& value, std::string_view file, std::string_view pointer)
      : value_(&value), file_(file), key_(pointer) {}

  /// What is at a pointer such as "/measured_data/thickness" below this one; none where a part of
  /// it is not there or null. Raises error 13 where a part of the way is no object.
  std::optional<Item> find(std::string_view pointer) const;
  /// As `find`, but raises error 5 where there is nothing.
  Item require(std::string_view pointer) const;

  /// The number of items of a list.
  std::size_t count() const;
  Item at(std::size_t index) const;

  const Json& value() const { return *value_; }
  bool isList() const { return value_->is_array(); }
  bool isObject() const { return value_->is_object(); }
  void requireObject() const;

  std::string text() const;
  double number() const;
  float single() const;
  /// A number that is not negative; raises error 5.
  float quantity() const;
  /// A fraction of what falls on a pane: measured ones may lie a little above 1, percentages lie
  /// far above. Raises error 5.
  float fraction() const;
  /// A whole number.
  std::int32_t whole() const;
  bool flag() const;

  /// "list.json, /2/measured_data/thickness"
  std::string place() const;
  /// Raises an error that describes what is wrong here, and shows what is found.
  [[noreturn]] void refuse(std::int32_t number, const std::string& description) const;

 private:
  static constexpr std::size_t kNoIndex = SIZE_MAX;

  Item(const Json& value, const Item& parent, std::string_view key, std::size_t index)
      : value_(&value), parent_(&parent), file_(parent.file_), key_(key), index_(index) {}
  std::string pointer() const;
  [[noreturn]] void refuseType(const char* wanted) const;

  const Json* value_;
  const Item* parent_ = nullptr;
  std::string_view file_;
  std::string_view key_;
  std::size_t index_ = kNoIndex;
};

}  // namespace orv::productfile
