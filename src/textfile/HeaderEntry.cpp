#include "textfile/HeaderEntry.h"

#include <fmt/format.h>

#include "errors/Error.h"
#include "model/Text.h"
#include "textfile/Number.h"

namespace orv::textfile {

namespace {

template <class T>
T converted(const HeaderEntry& entry, std::optional<T> value, T ifEmpty, std::string_view kind) {
  if (entry.value.empty()) {
    return ifEmpty;
  }
  if (!value) {
    raiseAt(entry.place, kTypeMismatch,
            fmt::format("{} '{}' is not a {}", entry.key, entry.value, kind));
  }
  return *value;
}

}  // namespace

bool HeaderEntry::hasKey(std::string_view name) const {
  return equalIgnoringCase(key, name);
}

double HeaderEntry::number(double ifEmpty) const {
  return converted(*this, parseDouble(value), ifEmpty, "number");
}

std::int32_t HeaderEntry::wholeNumber(std::int32_t ifEmpty) const {
  return converted(*this, parseWhole(value), ifEmpty, "whole number of 32 bits");
}

std::vector<HeaderEntry> headerEntries(const Tokenizer& tokenizer) {
  std::vector<HeaderEntry> entries;
  for (const Comment& comment : tokenizer.comments()) {
    const auto colon = comment.text.find(':');
    if (colon != std::string_view::npos) {
      entries.push_back({trimmed(comment.text.substr(0, colon)),
                         trimmed(comment.text.substr(colon + 1)), tokenizer.placeOf(comment)});
    }
  }
  return entries;
}

}  // namespace orv::textfile
