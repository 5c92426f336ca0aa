// The sort orders of Access: their names, and of which texts the codes are known.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "store/jet/page/Format.h"

namespace orv::store::jet {

inline constexpr std::uint16_t kGeneralLanguage = 1033;

/// The name by which Access lists the sort order of a language: "General", "Swedish/Finnish";
/// "unknown" for one that it does not list.
std::string_view languageName(std::uint16_t language);

/// How much of a sort order is known.
enum class OrderKnowledge {
  nothing,
  ascii,  ///< ASCII text has the codes of "General", unless it has a letter of the order's own
  all
};
OrderKnowledge knowledgeOf(const SortOrder& order);

/// Whether the codes of a text (UTF-8) are known in a sort order of which ASCII text is.
bool isKnownIn(const SortOrder& order, std::string_view text);

/// What text an index in such a sort order takes, to be told to somebody who has given other text:
/// `only ASCII text without "ch" and "ll"`.
std::string describeKnownText(const SortOrder& order);

}  // namespace orv::store::jet
