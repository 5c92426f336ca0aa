// Functions of text: Left, Mid, InStr, Replace, Like and their kin.
#include <algorithm>
#include <memory>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/sql/functions/Arguments.h"
#include "store/sql/functions/Functions.h"
#include "store/sql/functions/LikePattern.h"
#include "store/sql/functions/TextOrder.h"
#include "store/sql/syntax/Text.h"

namespace orv::store::sql {
namespace {

constexpr std::int32_t kBinaryCompare = 0;
constexpr std::size_t kLongestText = 100'000'000;

std::size_t length(const Arguments& a, int i) {
  const std::int32_t count = a.whole(i);
  if (count < 0) {
    failCall("a length is negative");
  }
  return static_cast<std::size_t>(count);
}

void concat(const Arguments& a, Result& result) {
  if (a.isNull(0) && a.isNull(1)) {
    result.null();
    return;
  }
  result.text(a.text(0) + a.text(1));  // of Null nothing
}

/// `+` between operands of which at least one may be text: joins text with text, adds otherwise.
void plus(const Arguments& a, Result& result) {
  if (a.isText(0) && a.isText(1)) {
    result.text(a.text(0) + a.text(1));
  } else {
    result.number(a.number(0) + a.number(1));
  }
}

void left(const Arguments& a, Result& result) {
  result.characters(a.characters(0).substr(0, length(a, 1)));
}

void right(const Arguments& a, Result& result) {
  const std::u32string text = a.characters(0);
  result.characters(text.substr(text.size() - std::min(length(a, 1), text.size())));
}

void mid(const Arguments& a, Result& result) {
  const std::u32string text = a.characters(0);
  const std::size_t start = length(a, 1);
  if (start == 0) {
    failCall("Mid starts before the first character");
  }
  const std::size_t count = a.count() > 2 ? length(a, 2) : text.size();
  result.characters(start > text.size() ? std::u32string() : text.substr(start - 1, count));
}

void len(const Arguments& a, Result& result) {
  result.whole(static_cast<std::int64_t>(a.characters(0).size()));
}

std::u32string folded(std::u32string text) {
  for (char32_t& c : text) {
    c = foldCharacter(c);
  }
  return text;
}

std::u32string forComparison(const Arguments& a, int i, bool binary) {
  return binary ? a.characters(i) : folded(a.characters(i));
}

/// InStr([start,] text, wanted [, compare]); with a start when there are three or four arguments.
void inStr(const Arguments& a, Result& result) {
  const int first = a.count() > 2 ? 1 : 0;
  const std::int32_t start = first > 0 ? a.whole(0) : 1;
  const bool binary = a.count() > 3 && a.whole(3) == kBinaryCompare;
  if (start < 1) {
    failCall("InStr starts before the first character");
  }
  const std::u32string text = forComparison(a, first, binary);
  const auto found =
      text.find(forComparison(a, first + 1, binary), static_cast<std::size_t>(start - 1));
  // Behind the last character is nothing, not even an empty text.
  result.whole(found < text.size() ? static_cast<std::int64_t>(found) + 1 : 0);
}

/// InStrRev(text, wanted [, start [, compare]])
void inStrRev(const Arguments& a, Result& result) {
  const bool binary = a.count() > 3 && a.whole(3) == kBinaryCompare;
  const std::u32string text = forComparison(a, 0, binary);
  const std::u32string wanted = forComparison(a, 1, binary);
  const std::int32_t start = a.wholeOr(2, -1);
  const std::size_t end = start < 0 ? text.size() : static_cast<std::size_t>(start);
  if (wanted.size() > end || end > text.size()) {
    result.whole(0);
    return;
  }
  const auto found = text.rfind(wanted, end - wanted.size());
  // An empty text is found at the last character that is searched.
  result.whole(found == std::u32string::npos ? 0
                                             : static_cast<std::int64_t>(std::min(found + 1, end)));
}

/// Replace(text, wanted, instead [, start [, count [, compare]]])
void replace(const Arguments& a, Result& result) {
  const bool binary = a.count() > 5 && a.whole(5) == kBinaryCompare;
  const std::int32_t start = a.wholeOr(3, 1);
  if (start < 1) {
    failCall("Replace starts before the first character");
  }
  const auto from = static_cast<std::size_t>(start - 1);
  const std::u32string whole = a.characters(0);
  const std::u32string text = from < whole.size() ? whole.substr(from) : std::u32string();
  const std::u32string searched = binary ? text : folded(text);
  const std::u32string wanted = forComparison(a, 1, binary);
  const std::u32string instead = a.characters(2);
  std::int32_t left = a.wholeOr(4, -1);
  std::u32string replaced;
  std::size_t at = 0;
  while (left != 0 && !wanted.empty()) {
    const std::size_t found = searched.find(wanted, at);
    if (found == std::u32string::npos) {
      break;
    }
    replaced.append(text, at, found - at).append(instead);
    if (replaced.size() > kLongestText) {
      failCall("the text becomes too long");
    }
    at = found + wanted.size();
    --left;
  }
  result.characters(replaced.append(text, at));
}

template <char32_t (*change)(char32_t)>
void changeCase(const Arguments& a, Result& result) {
  std::u32string text = a.characters(0);
  std::transform(text.begin(), text.end(), text.begin(), change);
  result.characters(text);
}

/// StrConv(text, 1 upper | 2 lower | 3 each word's first letter upper)
void strConv(const Arguments& a, Result& result) {
  std::u32string text = a.characters(0);
  const std::int32_t form = a.whole(1);
  if (form < 1 || form > 3) {
    failCall("StrConv takes the forms 1, 2 and 3");
  }
  bool wordStarts = true;
  for (char32_t& c : text) {
    c = form == 1 || (form == 3 && wordStarts) ? upperCharacter(c) : lowerCharacter(c);
    wordStarts = c == U' ' || c == U'\t';
  }
  result.characters(text);
}

void trimTo(const Arguments& a, Result& result, bool front, bool back) {
  std::string text = a.text(0);
  if (back) {
    text.erase(text.find_last_not_of(' ') + 1);
  }
  if (front) {
    text.erase(0, std::min(text.find_first_not_of(' '), text.size()));
  }
  result.text(text);
}

void trim(const Arguments& a, Result& result) {
  trimTo(a, result, true, true);
}
void ltrim(const Arguments& a, Result& result) {
  trimTo(a, result, true, false);
}
void rtrim(const Arguments& a, Result& result) {
  trimTo(a, result, false, true);
}

void strReverse(const Arguments& a, Result& result) {
  std::u32string text = a.characters(0);
  std::reverse(text.begin(), text.end());
  result.characters(text);
}

std::size_t repeatCount(const Arguments& a, int i) {
  const std::size_t count = length(a, i);
  if (count > kLongestText) {
    failCall("the text becomes too long");
  }
  return count;
}

void space(const Arguments& a, Result& result) {
  result.text(std::string(repeatCount(a, 0), ' '));
}

/// String(count, character or its code)
void string(const Arguments& a, Result& result) {
  char32_t character = 0;
  if (a.isText(1)) {
    const std::u32string text = a.characters(1);
    if (text.empty()) {
      failCall("String has no character to repeat");
    }
    character = text[0];
  } else {
    character = static_cast<char32_t>(a.whole(1) & 0xff);
  }
  result.characters(std::u32string(repeatCount(a, 0), character));
}

/// Asc gives the code of Windows-1252; AscW that of Unicode.
constexpr char32_t kWindows1252[32] = {
    0x20AC, 0x81,   0x201A, 0x192,  0x201E, 0x2026, 0x2020, 0x2021, 0x2C6,  0x2030, 0x160,
    0x2039, 0x152,  0x8D,   0x17D,  0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x2DC,  0x2122, 0x161,  0x203A, 0x153,  0x9D,   0x17E,  0x178};

char32_t firstCharacter(const Arguments& a) {
  const std::u32string text = a.characters(0);
  if (text.empty()) {
    failCall("there is no character");
  }
  return text[0];
}

void asc(const Arguments& a, Result& result) {
  const char32_t character = firstCharacter(a);
  const auto* const found = std::find(std::begin(kWindows1252), std::end(kWindows1252), character);
  const bool extra = found != std::end(kWindows1252);
  result.whole(extra             ? 0x80 + (found - std::begin(kWindows1252))
               : character < 256 ? static_cast<std::int64_t>(character)
                                 : static_cast<std::int64_t>('?'));
}

void ascW(const Arguments& a, Result& result) {
  result.whole(static_cast<std::int64_t>(firstCharacter(a)));
}

void chr(const Arguments& a, Result& result) {
  const std::int32_t code = a.whole(0);
  if (code < 0 || code > 255) {
    failCall("Chr takes codes from 0 to 255");
  }
  const char32_t character =
      code >= 0x80 && code < 0xA0 ? kWindows1252[code - 0x80] : static_cast<char32_t>(code);
  result.characters(std::u32string(1, character));
}

void chrW(const Arguments& a, Result& result) {
  const std::int32_t code = a.whole(0);
  if (code < 0 || code > 0x10FFFF) {
    failCall("ChrW takes codes of Unicode");
  }
  result.characters(std::u32string(1, static_cast<char32_t>(code)));
}

/// StrComp(a, b [, compare])
void strComp(const Arguments& a, Result& result) {
  const bool binary = a.count() > 2 && a.whole(2) == kBinaryCompare;
  const std::string first = a.text(0);
  const std::string second = a.text(1);
  const int order = binary ? first.compare(second) : TextOrder::standard().compare(first, second);
  result.whole(order < 0 ? -1 : order > 0 ? 1 : 0);
}

template <Wildcards wildcards>
void like(const Arguments& a, Result& result) {
  // SQLite keeps the compiled pattern while it is the same from row to row.
  auto* pattern = static_cast<LikePattern*>(sqlite3_get_auxdata(result.context(), 1));
  std::unique_ptr<LikePattern> made;
  if (pattern == nullptr) {
    made = std::make_unique<LikePattern>(a.characters(1), wildcards);
    pattern = made.get();
  }
  const bool matches = pattern->matches(a.characters(0));
  if (made) {
    sqlite3_set_auxdata(result.context(), 1, made.release(),
                        [](void* p) { delete static_cast<LikePattern*>(p); });
  }
  result.whole(matches ? 1 : 0);
}

constexpr FunctionDefinition kTextFunctions[] = {
    {"jet_concat", concat, false},
    {"jet_plus", plus},
    {"jet_left", left},
    {"jet_right", right},
    {"jet_mid", mid},
    {"jet_len", len},
    {"jet_instr", inStr},
    {"jet_instrrev", inStrRev},
    {"jet_replace", replace},
    {"jet_ucase", changeCase<upperCharacter>},
    {"jet_lcase", changeCase<lowerCharacter>},
    {"jet_strconv", strConv},
    {"jet_trim", trim},
    {"jet_ltrim", ltrim},
    {"jet_rtrim", rtrim},
    {"jet_strreverse", strReverse},
    {"jet_space", space},
    {"jet_string", string},
    {"jet_asc", asc},
    {"jet_ascw", ascW},
    {"jet_chr", chr},
    {"jet_chrw", chrW},
    {"jet_strcomp", strComp},
    {"jet_like", like<Wildcards::jet>},
    {"jet_alike", like<Wildcards::ansi>},
};

}  // namespace

void registerTextFunctions(sqlite3* db, CallbackFailure& failure) {
  for (const FunctionDefinition& definition : kTextFunctions) {
    registerFunction(db, definition, failure);
  }
}

}  // namespace orv::store::sql
