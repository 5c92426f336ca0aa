// Values of calculated columns, as Access 2010 stores them.

#include <gtest/gtest.h>

#include "store/jet/catalog/EmptyDatabase.h"
#include "store/jet/row/CalculatedValue.h"

namespace orv::store::jet {
namespace {

/// What a row holds of a calculated value: the header, the length, the value and its end.
Bytes stored(const Bytes& value) {
  Bytes bytes(20);
  bytes[16] = static_cast<std::uint8_t>(value.size());
  bytes.insert(bytes.end(), value.begin(), value.end());
  bytes.resize(bytes.size() + 3);
  return bytes;
}

TEST(CalculatedValue, IsReadFromBehindItsHeader) {
  Bytes file = emptyDatabase();
  const auto pager = Pager::overMemory(file, "calculated.accdb");
  const auto decode = [&](ColumnType type, const Bytes& value) {
    Column column;
    column.type = type;
    return decodeCalculated(*pager, column, stored(value), 1);
  };
  EXPECT_EQ(decode(ColumnType::boolean, {0xff}), Value(true));
  EXPECT_EQ(decode(ColumnType::boolean, {0}), Value(false));
  EXPECT_EQ(decode(ColumnType::boolean, {}), Value(false));
  EXPECT_EQ(decode(ColumnType::longInteger, {0x0c, 0, 0, 0}), Value(12));
  EXPECT_EQ(decode(ColumnType::double_, {0, 0, 0, 0, 0, 0, 0xf0, 0x3f}), Value(1.0));
  EXPECT_EQ(decode(ColumnType::text, {'d', 0, 0xf6, 0}), Value("dö"));
  EXPECT_EQ(decode(ColumnType::memo, {}), Value(""));
  // The calculation of a number has failed.
  EXPECT_TRUE(decode(ColumnType::double_, {}).isNull());
  EXPECT_TRUE(decode(ColumnType::numeric, {}).isNull());
  EXPECT_EQ(decode(ColumnType::numeric, {0x0e, 0, 2, 0, 0, 0, 0, 0, 0x39, 0x30, 0, 0, 0, 0, 0, 0}),
            Value(Decimal::fromText("123.45", 28, 2)));
  EXPECT_EQ(
      decode(ColumnType::numeric, {0x0e, 0, 0, 0x80, 1, 0, 0, 0, 2, 0, 0, 0, 0, 0, 0, 0}).toText(),
      "-18446744073709551618");
}

}  // namespace
}  // namespace orv::store::jet
