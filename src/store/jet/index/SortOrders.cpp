#include "store/jet/index/SortOrders.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace orv::store::jet {
namespace {

/// A sort order of version 0 in which ASCII text has the codes of "General". Its own letters that
/// are written in ASCII are not among them; a pair of letters that counts as one stands here in
/// lower case, but is one in any case.
struct AsciiOrder {
  std::uint16_t language;
  std::array<std::string_view, 2> ownLetters{};
};

constexpr AsciiOrder kAsciiOrders[] = {
    {1034, {"ch", "ll"}}, {1041, {"\\"}}, {1045}, {1050, {"lj", "nj"}},
    {1051, {"ch"}},       {1055, {"I"}},  {2052}, {3082},
};

const AsciiOrder* findAsciiOrder(const SortOrder& order) {
  const auto* const found = std::ranges::find(kAsciiOrders, order.language, &AsciiOrder::language);
  const bool known = found != std::end(kAsciiOrders) && order.version == 0 && !order.jet3;
  return known ? found : nullptr;
}

bool isAt(std::string_view text, std::size_t at, std::string_view letter) {
  if (letter.size() == 1) {
    return text[at] == letter.front();
  }
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  return std::ranges::equal(text.substr(at, letter.size()), letter, {}, lower);
}

}  // namespace

OrderKnowledge knowledgeOf(const SortOrder& order) {
  if (order.language == kGeneralLanguage && (order.jet3 || order.version <= 1)) {
    return OrderKnowledge::all;
  }
  return findAsciiOrder(order) != nullptr ? OrderKnowledge::ascii : OrderKnowledge::nothing;
}

bool isKnownIn(const SortOrder& order, std::string_view text) {
  const AsciiOrder& known = *findAsciiOrder(order);
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool own = std::ranges::any_of(known.ownLetters, [&](std::string_view letter) {
      return !letter.empty() && isAt(text, at, letter);
    });
    if (own || static_cast<unsigned char>(text[at]) >= 0x80) {
      return false;
    }
  }
  return true;
}

std::string describeKnownText(const SortOrder& order) {
  std::string without;
  for (const std::string_view letter : findAsciiOrder(order)->ownLetters) {
    if (!letter.empty()) {
      without += fmt::format("{} \"{}\"", without.empty() ? " without" : " and", letter);
    }
  }
  return "only ASCII text" + without;
}

std::string_view languageName(std::uint16_t language) {
  switch (language) {
    case 1025:
      return "Arabic";
    case 1026:
      return "Bulgarian";
    case 1027:
      return "Catalan";
    case 1028:
      return "Chinese (Taiwan)";
    case 1029:
      return "Czech";
    case 1030:
      return "Norwegian/Danish";
    case 1031:
      return "German";
    case 1032:
      return "Greek";
    case 1033:
      return "General";
    case 1034:
      return "Spanish (traditional)";
    case 1035:
      return "Swedish/Finnish";
    case 1036:
      return "French";
    case 1037:
      return "Hebrew";
    case 1038:
      return "Hungarian";
    case 1039:
      return "Icelandic";
    case 1041:
      return "Japanese";
    case 1042:
      return "Korean";
    case 1043:
      return "Dutch";
    case 1045:
      return "Polish";
    case 1048:
      return "Romanian";
    case 1049:
      return "Russian";
    case 1050:
      return "Croatian";
    case 1051:
      return "Slovak";
    case 1053:
      return "Swedish/Finnish";
    case 1054:
      return "Thai";
    case 1055:
      return "Turkish";
    case 1058:
      return "Ukrainian";
    case 1060:
      return "Slovenian";
    case 1061:
      return "Estonian";
    case 1062:
      return "Latvian";
    case 1063:
      return "Lithuanian";
    case 1066:
      return "Vietnamese";
    case 2052:
      return "Chinese (PRC)";
    case 3082:
      return "Spanish (modern)";
    default:
      return "unknown";
  }
}

}  // namespace orv::store::jet
