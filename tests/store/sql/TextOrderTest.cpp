#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "store/Value.h"
#include "store/jet/index/TextKey.h"
#include "store/sql/functions/TextOrder.h"

namespace orv::store::sql {
namespace {

TEST(TextOrder, AgreesWithTheKeysOfIndexes) {
  // The short way for plain characters must give what the keys give.
  std::vector<std::string> texts = {
      "",      " ",    "a",    "A",     "a ",           "ab",     "aB",     "a-b",
      "co-op", "coop", "coOp", "co op", "Größe",        "Grösse", "grosse", "é",
      "e",     "E1",   "10",   "9",     "_x",           "'x",     "x'",     "~",
      "ß",     "ss",   "\t",   "a\tb",  "\xE3\x82\xAB", "zz",     "æ",      "ae"};
  for (const std::size_t length : {255U, 300U}) texts.emplace_back(length, 'a');
  texts.push_back(std::string(299, 'a') + "b");
  const TextOrder& order = TextOrder::standard();
  const auto sign = [](int n) { return n < 0 ? -1 : n > 0 ? 1 : 0; };
  for (const std::string& a : texts) {
    for (const std::string& b : texts) {
      Bytes left;
      Bytes right;
      jet::appendTextKey(left, a, order.sortOrder(), true);
      jet::appendTextKey(right, b, order.sortOrder(), true);
      const int keys = left == right ? 0 : left < right ? -1 : 1;
      if (keys != 0 || (a.size() < 200 && b.size() < 200)) {
        EXPECT_EQ(sign(order.compare(a, b)), keys) << '"' << a << "\" and \"" << b << '"';
      }
    }
  }
  EXPECT_LT(order.compare(std::string(300, 'a'), std::string(299, 'a') + "b"), 0);
  EXPECT_EQ(order.compare(std::string(300, 'a'), std::string(300, 'A')), 0);
  // What keys do not cover is in the order of its characters' numbers.
  EXPECT_LT(order.compare(std::string(255, 'a') + "1", std::string(255, 'a') + "_"), 0);
  EXPECT_GT(order.compare(std::string(254, 'a') + "1", std::string(254, 'a') + "_"), 0);
}

TEST(Decimals, CompareByValue) {
  EXPECT_EQ(compareDecimals("1.50", "01.5"), 0);
  EXPECT_EQ(compareDecimals("-0.00", "0"), 0);
  EXPECT_LT(compareDecimals("9.9", "10"), 0);
  EXPECT_LT(compareDecimals("-10", "-9.9"), 0);
  EXPECT_GT(compareDecimals("0.0001", "-5"), 0);
  EXPECT_LT(compareDecimals("99999999999999999999.1", "99999999999999999999.2"), 0);
  EXPECT_GT(compareDecimals("1e3", "999"), 0);
  EXPECT_LT(compareDecimals("999", "1e3"), 0);
  EXPECT_EQ(compareDecimals("1e3", "1000"), 0);
  EXPECT_LT(compareDecimals("a", "b"), 0);
  EXPECT_EQ(compareDecimals("+.5", "0.50"), 0);
  EXPECT_LT(compareDecimals("-1.2", "-1.1"), 0);
}

}  // namespace
}  // namespace orv::store::sql
