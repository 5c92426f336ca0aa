// What a user wants to see in one column.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "store/Value.h"

namespace orv::commands {

/// A condition on the fields of a column, as typed above it:
/// - `=text`: the field is this text; `=` alone: the field is empty;
/// - in a column of numbers `>n`, `>=n`, `<n`, `<=n`, `=n`, and `a..b` for a range with its ends;
/// - anything else: the field contains this text.
/// Case does not matter, and "true" and "false" say the same as "yes" and "no". What is not
/// finished yet (">" alone) filters nothing.
class CellFilter {
 public:
  CellFilter(std::string_view text, bool isNumber);

  /// Whether it lets everything through.
  bool isEmpty() const { return kind_ == Kind::all; }
  /// Whether the text is a whole condition of its column: no number is missing or followed by
  /// something else, both ends of a range are there, and texts are not compared with < and >.
  bool isFinished() const { return isFinished_; }
  /// `digits` as fields are shown with, since "contains" goes by what the user sees.
  bool accepts(const store::Value& value, int digits) const;

 private:
  enum class Kind { all, contains, equals, range };

  bool parseNumbers(std::string_view text);
  void atLeast(double number, bool orEqual);
  void atMost(double number, bool orEqual);

  Kind kind_ = Kind::all;
  bool isFinished_ = false;
  std::string text_;  ///< in lower case
  std::optional<double> low_;
  std::optional<double> high_;
};

}  // namespace orv::commands
