#include "model/ErrorCatalogue.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "errors/Error.h"

namespace orv {

namespace {

/// The three shapes of a message: for no value, for an empty text, and what follows any other
/// value, which stands between apostrophes. A message without a tail is the same for every value.
struct Entry {
  std::int32_t number;
  std::string_view absent;
  std::string_view empty;
  std::string_view tail;
};

/// An entry whose text does not depend on the value.
constexpr Entry fixedText(std::int32_t number, std::string_view text) {
  return {number, text, text, {}};
}

constexpr std::string_view kGlazingIndexText =
    "Invalid glazing index (index must be either a long id or filename found in the glazing "
    "database)";
constexpr std::string_view kTokenText = "Received non-token when expected a token";
constexpr std::string_view kNumberText = "Received a non-number when expected a number";
constexpr std::string_view kNumberOrStarText =
    "Received a token which is not a number and not an * when expected either";
constexpr std::string_view kEqualSignText =
    "Received a token which is not an equal sign.  Expected an equal sign";

constexpr std::array kEntries{
    Entry{kInvalidSupplier, "Invalid supplier", "A supplier must be set",
          "' is not a valid supplier"},
    Entry{kInvalidCoatingName, "Invalid coating name", "Coating name must be set",
          "' is not a valid coating name"},
    fixedText(kCoatedSideNotSet, "Coated Side must be set"),
    Entry{kInvalidGlazingType, "Invalid glazing type", "Glazing type must be set",
          "' is not a valid glazing type in this context"},
    fixedText(kNoVersionEntries, "The database's version info has no entries!"),
    Entry{kInvalidGlazingIndex, kGlazingIndexText, kGlazingIndexText,
          "' is not a valid glazing filename"},
    fixedText(kNoGlazingData, "GlazingData reference is Nothing"),
    Entry{kNotAToken, kTokenText, kTokenText, "' is not a token"},
    Entry{kNotANumber, kNumberText, kNumberText, "' is not a number.  Expected a number"},
    Entry{kNotANumberOrStar, kNumberOrStarText, kNumberOrStarText,
          "' is not a number and not an *"},
    Entry{kNotAnEqualSign, kEqualSignText, kEqualSignText, "' is not an equal sign"},
    fixedText(kMismatchedParentheses, "Mismatched parantheses"),
    fixedText(kEmissivitiesNotSet, "Emissivities not set"),
    fixedText(kNoInfraredData, "Glazings without emissivities set must have IR data"),
};

bool isAbsent(const ErrorValue& value) {
  return std::holds_alternative<std::monostate>(value);
}

bool isEmptyText(const ErrorValue& value) {
  const auto* text = std::get_if<std::string>(&value);
  return text != nullptr && text->empty();
}

std::string shown(const ErrorValue& value) {
  if (const auto* text = std::get_if<std::string>(&value)) {
    return *text;
  }
  if (const auto* whole = std::get_if<std::int32_t>(&value)) {
    return fmt::format("{}", *whole);
  }
  if (const auto* number = std::get_if<double>(&value)) {
    return fmt::format("{}", *number);
  }
  throw Error(kNotDescribable, "Invalid parameter into ASSERT");
}

/// The index of a glazing is told apart by the kind of value: a file name, an id, or neither.
std::string describeGlazingIndex(const ErrorValue& value, std::string_view fileNameTail) {
  if (std::holds_alternative<std::string>(value)) {
    return "'" + shown(value) + std::string(fileNameTail);
  }
  if (std::holds_alternative<std::int32_t>(value)) {
    return "'" + shown(value) + "' is not a valid glazing id";
  }
  return "Glazing index is not a long or a string";
}

std::string describe(const Entry& entry, const ErrorValue& value) {
  if (isAbsent(value)) {
    return std::string(entry.absent);
  }
  if (isEmptyText(value)) {
    return std::string(entry.empty);
  }
  switch (entry.number) {
    case kInvalidGlazingIndex:
      return describeGlazingIndex(value, entry.tail);
    case kMismatchedParentheses:
      return std::string(entry.absent) + " in " + shown(value);
    default:
      return entry.tail.empty() ? std::string(entry.absent)
                                : "'" + shown(value) + std::string(entry.tail);
  }
}

}  // namespace

std::string DescribeError(std::int32_t number, const ErrorValue& value, ErrorContext context) {
  const auto* const entry = std::ranges::find(kEntries, number, &Entry::number);
  const std::string message = entry == kEntries.end() ? "" : describe(*entry, value);
  return context ? fmt::format("{}:  {}", *context, message) : message;
}

void RaiseUnless(bool condition, std::int32_t number, const ErrorValue& value,
                 ErrorContext context) {
  if (!condition) {
    throw Error(number, DescribeError(number, value, context));
  }
}

void Assert(bool condition) {
  if (!condition) {
    throw Error(kInvalidCall);
  }
}

}  // namespace orv
