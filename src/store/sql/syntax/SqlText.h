// The text of a statement, and errors that name a place in it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace orv::store::sql {

/// Access SQL as it was given, and what it is for messages: "the statement", or
/// `the saved query "qryPaneImport"`.
struct SqlText {
  std::string text;
  std::string title = "the statement";

  /// Raises an error whose description ends with the place: byte `at` of the text, told as a
  /// character counted from 1.
  [[noreturn]] void fail(std::int32_t number, const std::string& message, std::size_t at) const;
};

}  // namespace orv::store::sql
