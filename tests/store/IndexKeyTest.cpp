// Keys of single values, and their order.

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>

#include "model/Raised.h"
#include "store/FileContent.h"
#include "store/StoreError.h"
#include "store/TableDesign.h"
#include "store/jet/index/IndexKey.h"
#include "store/jet/index/SortOrders.h"
#include "store/jet/page/Text.h"

namespace orv::store::jet {
namespace {

constexpr SortOrder kLegacyOrder{1033, 0, false};

Column column(ColumnType type) {
  Column column;
  column.name = "c";
  column.type = type;
  return column;
}

Column textColumn(const SortOrder& order) {
  Column made = column(ColumnType::text);
  made.sortOrder = order;
  return made;
}

Bytes key(const Column& column, const Value& value, bool ascending = true) {
  Bytes bytes;
  appendKey(bytes, column, value, ascending);
  return bytes;
}

std::string hex(const Bytes& bytes) {
  return fmt::format("{:02x}", fmt::join(bytes, ""));
}

Bytes bytesOf(const std::string& hex) {
  Bytes bytes;
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
    bytes.push_back(static_cast<std::uint8_t>(std::stoul(hex.substr(i, 2), nullptr, 16)));
  }
  return bytes;
}

/// "longInteger", or "text LANGUAGE VERSION", where version 3 is that of Jet 3.
Column columnOf(const std::string& kind) {
  std::istringstream words(kind);
  std::string word;
  int language = 0, version = 0;
  words >> word >> language >> version;
  Column made = word == "text" ? textColumn({static_cast<std::uint16_t>(language),
                                             static_cast<std::uint8_t>(version % 3), version == 3})
                               : column(test::design("", "c " + word).columns[0].type);
  made.scale = 4;
  return made;
}

Value valueOf(const Column& column, const std::string& text) {
  if (text == "Null") return {};
  if (text == "'wrong'") return Bytes{1};
  switch (column.type) {
    case ColumnType::boolean:
      return text == "True";
    case ColumnType::bigInteger:
      return static_cast<std::int64_t>(std::stoll(text));
    case ColumnType::currency:
      return Currency{std::stoll(text)};
    case ColumnType::single:
      return std::stof(text);
    case ColumnType::double_:
      return std::stod(text);
    case ColumnType::dateTime:
      return Date{std::stod(text)};
    case ColumnType::numeric: {
      const std::size_t point = std::min(text.find('.'), text.size() - 1);
      return Decimal::fromText(text, 38, static_cast<std::uint8_t>(text.size() - 1 - point));
    }
    case ColumnType::guid: {
      Guid guid;
      std::ranges::copy(bytesOf(text), guid.bytes.begin());
      return guid;
    }
    case ColumnType::binary:
    case ColumnType::ole:
      return bytesOf(text);
    case ColumnType::text: {
      std::string repeated = text;  // "abc*255d": that many of the letter before
      if (const std::size_t star = text.rfind('*'); star != std::string::npos && star > 0) {
        std::size_t digits = 0;
        const auto count = std::stoul(text.substr(star + 1), &digits);
        repeated = text.substr(0, star) + std::string(count - 1, text[star - 1]) +
                   text.substr(star + 1 + digits);
      }
      return repeated;
    }
    default:
      return static_cast<std::int32_t>(std::stol(text));
  }
}

/// Keys that the format has, a column a paragraph: its values in ascending order, with the bytes of
/// their keys in ascending and in descending order. Values below a line "=" have those of the one
/// above, in another form.
TEST(IndexKey, IsWhatTheTableOfExamplesSays) {
  std::ifstream table(ORV_SOURCE_DIR "/tests/store/keys.txt");
  Column column;
  std::string last;
  int keys = 0;
  for (std::string line; std::getline(table, line);) {
    const std::size_t arrow = line.find(" -> ");
    if (line.empty() || line[0] == '#') continue;
    if (arrow == std::string::npos) {
      column = columnOf(line);
      last.clear();
      continue;
    }
    const bool isSame = line[0] == '=';
    const std::string text = line.substr(isSame ? 1 : 0, arrow - (isSame ? 1 : 0));
    std::string found;
    const test::Raised raised = test::raisedBy([&] {
      const Value value = valueOf(column, text);
      found = hex(key(column, value)) + " " + hex(key(column, value, false));
    });
    if (raised.number != 0) found = fmt::format("error {}: {}", raised.number, raised.description);
    EXPECT_EQ(found, line.substr(arrow + 4)) << line;
    EXPECT_TRUE(raised.number != 0 || (isSame ? last == found : last < found)) << line;
    if (raised.number == 0) last = found;
    ++keys;
  }
  EXPECT_GT(keys, 100);
}

/// The form of another program, in which letters that expand count as one.
TEST(IndexKey, LettersThatExpandCanCountAsOne) {
  Bytes oneLetter;
  appendTextKey(oneLetter, "\u00df-\u00e9", kLegacyOrder, true, Expansion::oneLetter);
  EXPECT_EQ(hex(oneLetter), "6b6b5101020e010101800b068200");
  EXPECT_EQ(makeSearchKey(textColumn({1053, 0, false}), "a", true), std::nullopt);
  EXPECT_EQ(test::raisedBy([] { makeSearchKey(textColumn(kLegacyOrder), 7, true); }).number,
            kTypeMismatch);
}

/// Of each order the keys of all characters between others, and their bytes as texts and in files.
TEST(IndexKey, EveryCharacterHasItsKey) {
  const std::pair<SortOrder, std::uint64_t> sums[] = {
      {{1033, 0, true}, 0xc66c8d04243115ef},  // of Jet 3
      {kLegacyOrder, 0x1a220fb8020ddcf6},
      {{1033, 1, false}, 0x499508eeea3221b1}};  // since Access 2010
  for (const auto& [order, sum] : sums) {
    std::string keys;
    for (std::uint32_t unit = 0; unit < 0x10000; ++unit) {
      const bool isHalf = unit >= 0xd800 && unit < 0xe000;
      const std::uint32_t high = isHalf ? 0xd800 + unit % 0x400 : unit;
      const std::uint32_t low = isHalf ? 0xdc00 + unit % 0x400 : 'e';
      Bytes text{'a', 0};
      for (const std::uint32_t each : {high, low, std::uint32_t{0x301}}) {
        text.push_back(static_cast<std::uint8_t>(each));
        text.push_back(static_cast<std::uint8_t>(each >> 8));
      }
      const std::string utf8 = utf8FromUtf16(text);
      keys += utf8 + utf8FromUtf16(Bytes{static_cast<std::uint8_t>(unit),
                                         static_cast<std::uint8_t>(unit >> 8), 'x', 0});
      for (const Bytes& made : {key(textColumn(order), utf8),
                                encodeUnicodeText(utf8.substr(0, utf8.size() - 2), true)}) {
        keys.append(made.begin(), made.end());
      }
    }
    EXPECT_EQ(test::sumOf(keys), sum) << fmt::format("{:#x}", test::sumOf(keys));
  }
}

TEST(SortOrders, AreNamed) {
  std::string names;
  for (std::uint16_t language = 1000; language < 3200; ++language) {
    const std::string_view name = languageName(language);
    if (name != "unknown") names += fmt::format("{} {}, ", language, name);
  }
  EXPECT_EQ(test::sumOf(names), 0x55e707257918dd65u) << names;
}

}  // namespace
}  // namespace orv::store::jet
