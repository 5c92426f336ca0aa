// Keys of single values, and their order.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "errors/Error.h"
#include "model/Raised.h"
#include "store/FileContent.h"
#include "store/StoreError.h"
#include "store/jet/index/IndexKey.h"
#include "store/jet/index/SortOrders.h"
#include "store/jet/page/Text.h"

namespace orv::store::jet {
namespace {

constexpr SortOrder kJet3Order{1033, 0, true};
constexpr SortOrder kLegacyOrder{1033, 0, false};
constexpr SortOrder kOrderOf2010{1033, 1, false};

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
  std::string text;
  for (const std::uint8_t byte : bytes) text += fmt::format("{:02x}", byte);
  return text;
}

std::string textKey(const std::string& text, const SortOrder& order = kLegacyOrder,
                    bool ascending = true) {
  return hex(key(textColumn(order), text, ascending));
}

/// Values given in ascending order have ascending keys, and descending ones in a descending
/// column; Null comes before them (behind them).
void expectOrder(const Column& column, const std::vector<Value>& values) {
  Bytes last = key(column, Value(), true);
  Bytes lastDescending = key(column, Value(), false);
  for (std::size_t i = 0; i < values.size(); ++i) {
    const Bytes ascending = key(column, values[i], true);
    const Bytes descending = key(column, values[i], false);
    EXPECT_LT(last, ascending) << "value " << i << " of type " << int(column.type);
    EXPECT_GT(lastDescending, descending) << "value " << i << " of type " << int(column.type);
    last = ascending;
    lastDescending = descending;
  }
}

Decimal decimal(bool negative, std::uint8_t scale, std::uint32_t digits) {
  Decimal number{negative, scale, {}};
  for (int i = 0; i < 4; ++i) number.magnitude[15 - i] = static_cast<std::uint8_t>(digits >> 8 * i);
  return number;
}

TEST(IndexKey, NumbersAreInOrder) {
  const std::vector<Value> bytes{0, 1, 127, 128, 255};
  const std::vector<Value> integers{-32768, -1, 0, 1, 255, 256, 32767};
  const std::vector<Value> longs{
      std::int32_t{-2147483647 - 1}, -65536, -1, 0, 1, 65536, 2147483647};
  expectOrder(column(ColumnType::byte), bytes);
  expectOrder(column(ColumnType::integer), integers);
  expectOrder(column(ColumnType::longInteger), longs);
  expectOrder(column(ColumnType::currency), {Currency{-1'000'000'000'000}, Currency{-1},
                                             Currency{0}, Currency{1}, Currency{1LL << 40}});
  expectOrder(column(ColumnType::single), {-INFINITY, -3.5F, -1e-30F, 0.0F, 1e-30F, 2.0F, 1e30F});
  expectOrder(column(ColumnType::double_), {-1e300, -3.5, -1e-300, 0.0, 1e-300, 2.0, 1e300});
  expectOrder(column(ColumnType::dateTime), {Date{-40000.25}, Date{0}, Date{0.5}, Date{36526}});
  expectOrder(column(ColumnType::bigInteger),
              {std::int64_t{-1} << 62, std::int64_t{-1}, std::int64_t{0}, std::int64_t{1} << 62});
}

TEST(IndexKey, NumericCountsInTheColumnsScale) {
  Column column = jet::column(ColumnType::numeric);
  column.scale = 4;
  EXPECT_EQ(key(column, decimal(false, 1, 125)), key(column, decimal(false, 4, 125'000)));
  std::vector<Bytes> keys;
  for (const Decimal& number : {decimal(true, 0, 3), decimal(true, 2, 1), decimal(false, 0, 0),
                                decimal(false, 3, 1), decimal(false, 0, 3)}) {
    keys.push_back(key(column, number));
  }
  EXPECT_TRUE(std::ranges::is_sorted(keys));
  // Descending, the negative numbers stay before the others, as Jet 4 has it.
  EXPECT_EQ(hex(key(column, decimal(true, 4, 1), false)), "800000000000000000000000000000000001");
  EXPECT_EQ(hex(key(column, decimal(false, 4, 1), false)), "80fffffffffffffffffffffffffffffffffe");
  EXPECT_THROW(key(column, decimal(false, 5, 1)), Error);
}

TEST(IndexKey, BooleansBinaryAndGuids) {
  const Bytes nine{1, 2, 3, 4, 5, 6, 7, 8, 9};
  const Guid guid{{0x33, 0x22, 0x11, 0x00, 0x55, 0x44, 0x77, 0x66, 0x88, 0x99, 0xaa, 0xbb, 0xcc,
                   0xdd, 0xee, 0xff}};
  const std::tuple<ColumnType, Value, bool, const char*> cases[] = {
      {ColumnType::boolean, true, true, "7f00"},
      {ColumnType::boolean, false, false, "8000"},
      {ColumnType::boolean, {}, true, "7fff"},
      {ColumnType::binary, Bytes{1, 2, 3}, true, "7f010203000000000003"},
      {ColumnType::binary, nine, true, "7f010203040506070809090000000000000001"},
      {ColumnType::binary, nine, false, "80fefdfcfbfaf9f8f709f6fffffffffffffffe"},
      {ColumnType::guid, guid, true, "7f0011223344556677098899aabbccddeeff08"}};
  for (const auto& [type, value, ascending, expected] : cases) {
    EXPECT_EQ(hex(key(column(type), value, ascending)), expected);
  }
}

TEST(IndexKey, TextIgnoresCaseAndBlanksAtTheEnd) {
  for (const SortOrder& order : {kJet3Order, kLegacyOrder, kOrderOf2010}) {
    EXPECT_EQ(textKey("Float Glass", order), textKey("fLOAT glass  ", order));
    EXPECT_NE(textKey("Float Glass", order), textKey("FloatGlass", order));
    expectOrder(textColumn(order),
                {"", "1", "10", "2", "a", "A b", "ab", "\u00e4b", "abc", "b", "z"});
  }
  EXPECT_EQ(textKey(""), "7f0100");
  EXPECT_EQ(textKey("", kLegacyOrder, false), "80feff00");
}

/// Where they stand counts the letters before them; one that expands counts as several.
TEST(IndexKey, AccentsAndPunctuationComeAfterTheLetters) {
  const std::tuple<const char*, SortOrder, const char*> cases[] = {
      {"co-op", kLegacyOrder, "7f4d64646601010101800f068200"},
      {"'-\u00e9", kLegacyOrder, "7f51010e010101800706808007068200"},
      {"\u00df-\u00e9", kLegacyOrder, "7f6b6b510102020e010101800f068200"},
      {"\ufb03-a", kLegacyOrder, "7f5353594a010101018013068200"},
      {"\u00df\u00e9", kOrderOf2010, "7f0e910e910e210102020e00"},
      {"\u00df\u00e9", kJet3Order, "7f767666022400"},
      {"t\u00e9a\u00e9", kJet3Order, "7f77666066042400"}};  // only of those that take accents
  for (const auto& [text, order, expected] : cases) EXPECT_EQ(textKey(text, order), expected);
  // The form of another program.
  Bytes oneLetter;
  appendTextKey(oneLetter, "\u00df-\u00e9", kLegacyOrder, true, Expansion::oneLetter);
  EXPECT_EQ(hex(oneLetter), "6b6b5101020e010101800b068200");
}

TEST(IndexKey, TextBeyondTheLimitDoesNotCount) {
  const std::string limit(255, 'a');
  EXPECT_EQ(textKey(limit), textKey(limit + "bc"));
  EXPECT_NE(textKey(limit), textKey(limit.substr(1) + "b"));
  // The limit counts UTF-16 units, and may part a pair.
  const std::string pair = limit.substr(1) + "\U0001F600";
  EXPECT_EQ(textKey(pair).size(), 2 * (1 + 254 + 2 + 1 + 254 + 1 + 1));
  EXPECT_THROW(textKey(limit, kOrderOf2010), Error);
}

/// Of each order the keys of all characters between others, and their bytes as texts and in files.
TEST(IndexKey, EveryCharacterHasItsKey) {
  const std::pair<SortOrder, std::uint64_t> sums[] = {{kJet3Order, 0xc66c8d04243115ef},
                                                      {kLegacyOrder, 0x1a220fb8020ddcf6},
                                                      {kOrderOf2010, 0x499508eeea3221b1}};
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

/// Of these sort orders only ASCII text has codes that are known, and of some not all of it.
TEST(IndexKey, SortOrdersThatAreKnownInPart) {
  const auto order = [](std::uint16_t language) { return SortOrder{language, 0, false}; };
  const auto isRefused = [&](const std::string& text, std::uint16_t language) {
    const Column name = textColumn(order(language));
    return !makeSearchKey(name, text, true).has_value();
  };
  for (const std::uint16_t language : {1041, 2052, 3082, 1045, 1051, 1055, 1034, 1050}) {
    EXPECT_EQ(textKey("co-op 7, Ab!", order(language)), textKey("co-op 7, Ab!"));
    EXPECT_TRUE(isRefused("caf\u00e9", language)) << language;
    EXPECT_TRUE(isRefused("\u6771\u4eac", language)) << language;
    EXPECT_FALSE(makeSearchKey(textColumn({language, 1, false}), "a", true)) << language;
  }
  EXPECT_TRUE(isRefused("Istanbul", 1055));
  EXPECT_FALSE(isRefused("istanbul", 1055));
  for (const char* own : {"chico", "un Chico", "ocho", "CALLE", "caLle", "ll"}) {
    EXPECT_TRUE(isRefused(own, 1034)) << own;
    EXPECT_FALSE(isRefused(own, 3082)) << own;
  }
  EXPECT_FALSE(isRefused("c h l", 1034));
  EXPECT_TRUE(isRefused("Choice", 1051));
  EXPECT_TRUE(isRefused("a\\b", 1041));
  for (const char* own : {"konj", "NJ", "ulje", "Ljubav"}) {
    EXPECT_TRUE(isRefused(own, 1050)) << own;
  }
  EXPECT_FALSE(isRefused("jnl", 1050));
  const test::Raised raised = test::raisedBy([&] { textKey("ocho", order(1034)); });
  EXPECT_EQ(raised.number, kNotSupported);
  for (const char* named : {"\"c\"", "Spanish (traditional)", "\"ch\" and \"ll\""}) {
    EXPECT_NE(raised.description.find(named), std::string::npos) << raised.description;
  }
}

TEST(IndexKey, UnknownSortOrdersAreNamed) {
  const test::Raised raised = test::raisedBy([] { textKey("a", {1053, 0, false}); });
  EXPECT_EQ(raised.number, kNotSupported);
  EXPECT_NE(raised.description.find("Swedish/Finnish"), std::string::npos);
  EXPECT_NO_THROW(key(textColumn({1053, 0, false}), Value()));
  EXPECT_THROW(key(column(ColumnType::ole), Bytes{1}), Error);
  EXPECT_THROW(key(column(ColumnType::longInteger), "1"), Error);
}

TEST(IndexKey, IndexesThatLeaveOutNulls) {
  RealIndex index;
  index.columns = {{0, true}, {1, false}};
  const std::vector<Value> none{Value(), Value(), 1};
  const std::vector<Value> one{Value(), 5, Value()};
  EXPECT_TRUE(hasEntry(index, none));
  index.ignoreNulls = true;
  EXPECT_FALSE(hasEntry(index, none));
  EXPECT_TRUE(hasEntry(index, one));
  TableDefinition table;
  table.columns = {column(ColumnType::longInteger), column(ColumnType::byte)};
  EXPECT_EQ(hex(makeKey(table, index, one)), "0080fa");
}

}  // namespace
}  // namespace orv::store::jet
