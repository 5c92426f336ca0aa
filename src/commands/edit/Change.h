// Changes of records as a list, before they are made.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "store/Value.h"

namespace orv::commands::edit {

/// What one field of one record is to become.
struct Change {
  std::int32_t record = 0;
  std::string field;                       ///< EditField::name
  std::optional<std::int16_t> angle = {};  ///< of a field that has a value for each
  store::Value before;                     ///< as Editor::value() gives it
  store::Value after;

  bool operator==(const Change&) const = default;
};

/// Why a change cannot be made.
struct Refusal {
  std::size_t change = 0;  ///< its place in the list
  std::string reason;      ///< a sentence
  /// What is there now, where that is not `before`: somebody else has changed it.
  std::optional<store::Value> present = {};
};

/// What there is to say of a list of changes.
struct Review {
  std::vector<Refusal> refusals = {};
  /// What the changes make untrue elsewhere, a sentence each: values that were computed from what
  /// is edited, flags that no longer fit.
  std::vector<std::string> remarks = {};

  bool isFine() const { return refusals.empty(); }
};

}  // namespace orv::commands::edit
