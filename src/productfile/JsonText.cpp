#include "productfile/JsonText.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>

#include "errors/Error.h"

namespace orv::productfile {

namespace {

/// Goes through a text and tells how far the parser has read, whoever holds the copy that it reads
/// with.
class Cursor {
 public:
  using iterator_category = std::forward_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  Cursor(const char* at, const char** furthest) : at_(at), furthest_(furthest) {}

  reference operator*() const { return *at_; }
  Cursor& operator++() {
    *furthest_ = ++at_;
    return *this;
  }
  Cursor operator++(int) {
    Cursor before = *this;
    ++*this;
    return before;
  }
  bool operator==(const Cursor& other) const { return at_ == other.at_; }

 private:
  const char* at_;
  const char** furthest_;
};

class Parser {
 public:
  Parser(std::string_view text, std::string_view file)
      : text_(text), file_(file), furthest_(text.data()) {}

  Json parse() {
    const auto keepsLimits = [&](int depth, Json::parse_event_t event, Json&) {
      requireLimits(depth, event);
      return true;
    };
    try {
      return Json::parse(Cursor(text_.data(), &furthest_),
                         Cursor(text_.data() + text_.size(), &furthest_), keepsLimits);
    } catch (const Json::parse_error& error) {
      refuse(kInvalidCall, "This is no JSON: " + explanationOf(error.what()));
    } catch (const Json::out_of_range&) {
      goToNumber();
      refuse(kOverflow, "This number is too large");
    }
  }

 private:
  void requireLimits(int depth, Json::parse_event_t event) {
    if (depth > kDeepest) {
      refuse(kInvalidCall,
             fmt::format("Lists and objects are within each other more than {} times, as in no "
                         "file of products",
                         kDeepest));
    }
    const bool begins = event == Json::parse_event_t::object_start ||
                        event == Json::parse_event_t::array_start ||
                        event == Json::parse_event_t::value;
    if (begins && ++values_ > kMostValues) {
      refuse(kInvalidCall,
             fmt::format("There are more than {} values in this file. Divide it", kMostValues));
    }
  }

  /// What the parser says, without its name for the error and without the place.
  static std::string explanationOf(std::string text) {
    for (const char* end : {"] ", ": "}) {
      const auto found = text.find(end);
      if (found != std::string::npos) text.erase(0, found + 2);
    }
    return text;
  }

  /// From what follows a number to its first character.
  void goToNumber() {
    constexpr std::string_view kOfNumbers = "0123456789+-.eE";
    const char* begin = text_.data();
    const auto isOfNumber = [&](const char* at) { return kOfNumbers.find(*at) != kOfNumbers.npos; };
    const char* at = furthest_ - 1;
    while (at > begin && isOfNumber(at - 1)) --at;
    furthest_ = at + 1;
  }

  [[noreturn]] void refuse(std::int32_t number, const std::string& description) const {
    // The parser has read the character that it does not understand.
    const auto read = static_cast<std::size_t>(furthest_ - text_.data());
    const std::string_view before = text_.substr(0, read > 0 ? read - 1 : 0);
    const auto lineStart = before.rfind('\n') == before.npos ? 0 : before.rfind('\n') + 1;
    const auto isLetter = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; };
    throw Error(number, description, "",
                fmt::format("{}, line {}, column {}", file_, 1 + std::ranges::count(before, '\n'),
                            1 + std::ranges::count_if(before.substr(lineStart), isLetter)));
  }

  std::string_view text_;
  std::string_view file_;
  const char* furthest_;
  std::size_t values_ = 0;
};

}  // namespace

Json parseJson(std::string_view text, std::string_view file) {
  return Parser(text, file).parse();
}

}  // namespace orv::productfile
