// Dates of the type "Date/Time Extended".

#include <gtest/gtest.h>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/catalog/EmptyDatabase.h"
#include "store/jet/row/Row.h"

namespace orv::store::jet {
namespace {

TEST(ExtendedDate, IsADate) {
  Bytes file = emptyDatabase();
  const auto pager = Pager::overMemory(file, "dates.accdb");
  Column column;
  column.type = ColumnType::extendedDate;
  EXPECT_EQ(describe(column).type, ColumnType::dateTime);
  const auto textOf = [&](std::string text) {
    text.push_back('\0');
    const Bytes bytes(text.begin(), text.end());
    return decodeValue(*pager, column, bytes, 9).toText();
  };
  EXPECT_EQ(textOf("0000000000000737424:0000000450610000000:7"), "2020-01-01 12:31:01");
  EXPECT_EQ(textOf("0000000000000000000:0000000000000000000:7"), "0001-01-01");
  EXPECT_EQ(textOf("0000000000000693592:0000000216000000000:7"), "1899-12-29 06:00:00");
  EXPECT_EQ(textOf("0000000000003652058:0000000863990000000:7"), "9999-12-31 23:59:59");
  for (const char* wrong :
       {"0000000000000737425", "00000000000007374x5:0000000450610000000:7",
        "-000000000000737425:0000000450610000000:7", "0000000000003652059:0000000000000000000:7",
        "0000000000000737425:0000000864000000000:7"}) {
    try {
      textOf(wrong);
      ADD_FAILURE() << wrong;
    } catch (const Error& error) {
      EXPECT_EQ(error.number(), kCorruptFile) << wrong;
    }
  }
}

}  // namespace
}  // namespace orv::store::jet
