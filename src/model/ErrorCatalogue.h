// The numbered errors of the records and their readers, the texts that describe them, and the
// checks that raise them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace orv {

/// The numbers of the catalogue. `kBackEmissivity` has no text in it: the reader of the
/// emissivity line brings its own.
enum CatalogueError : std::int32_t {
  kNotDescribable = 1000,  ///< a description could not be composed
  kInvalidSupplier = 1001,
  kInvalidCoatingName = 1002,
  kCoatedSideNotSet = 1003,
  kInvalidGlazingType = 1004,
  kNoVersionEntries = 1005,  ///< a database's version table has no rows
  kInvalidGlazingIndex = 1006,
  kNoGlazingData = 1007,
  kNotAToken = 1012,
  kNotANumber = 1013,
  kNotANumberOrStar = 1014,
  kNotAnEqualSign = 1015,
  kBackEmissivity = 1016,
  kMismatchedParentheses = 1021,
  kEmissivitiesNotSet = 1022,
  kNoInfraredData = 1023,
};

/// The value that a check refused: absent, a text, a number, or a null reference (which no
/// description can show).
using ErrorValue = std::variant<std::monostate, std::string, std::int32_t, double, std::nullptr_t>;

/// Where a check was made ("Units", "Spectral Data"), or absent.
using ErrorContext = std::optional<std::string_view>;

/// The text of a catalogue number about this value in this context. A number outside the
/// catalogue has an empty text. Raises error 1000 for a value that cannot be shown.
std::string DescribeError(std::int32_t number, const ErrorValue& value = {},
                          ErrorContext context = std::nullopt);

/// Raises error `number` with the text of `DescribeError` unless the condition holds.
void RaiseUnless(bool condition, std::int32_t number, const ErrorValue& value = {},
                 ErrorContext context = std::nullopt);

/// Raises error 5, without a description, unless the condition holds. For what only a fault in
/// the program can break.
void Assert(bool condition);

}  // namespace orv
