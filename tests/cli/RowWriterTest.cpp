#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "cli/RowWriter.h"
#include "cli/ValueText.h"

namespace orv::cli {
namespace {

std::string written(Format format) {
  std::ostringstream out;
  const auto writer = makeRowWriter(format, {"id", "näme", "data"}, out);
  store::Bytes bytes(16, 0xff);
  bytes.front() = 0x0a;
  writer->row({5, "a\tb\\\r\n\"ä\"", bytes});
  writer->row({120, store::Value(), store::Bytes(17)});
  writer->row({HUGE_VAL, true, store::Date{45000.75}});
  writer->end();
  return out.str();
}

TEST(RowWriterTest, TablesLineUpAndPutNumbersToTheRight) {
  EXPECT_EQ(written(Format::table),
            " id  näme       data\n"
            "---  ---------  ----------------------------------\n"
            "  5  a b\\  \"ä\"  0x0affffffffffffffffffffffffffffff\n"
            "120             (17 bytes)\n"
            "inf  True       2023-03-15 18:00:00\n");
}

TEST(RowWriterTest, TsvHasALineARowWhateverTheValuesHold) {
  EXPECT_EQ(
      written(Format::tsv),
      "id\tnäme\tdata\n5\ta\\tb\\\\\\r\\n\"ä\"\t0x0affffffffffffffffffffffffffffff\n120\t\t0x" +
          std::string(34, '0') + "\ninf\tTrue\t2023-03-15 18:00:00\n");
}

TEST(RowWriterTest, CsvQuotesWhatWouldPartFields) {
  EXPECT_EQ(written(Format::csv),
            "id,näme,data\n5,\"a\tb\\\r\n\"\"ä\"\"\",0x0affffffffffffffffffffffffffffff\n120,,0x" +
                std::string(34, '0') + "\ninf,True,2023-03-15 18:00:00\n");
}

TEST(RowWriterTest, JsonKeepsNumbersTruthAndNull) {
  EXPECT_EQ(written(Format::json),
            "[\n"
            "  {\"id\": 5, \"näme\": \"a\\tb\\\\\\r\\n\\\"ä\\\"\", \"data\": "
            "\"0x0affffffffffffffffffffffffffffff\"},\n"
            "  {\"id\": 120, \"näme\": null, \"data\": \"0x" +
                std::string(34, '0') +
                "\"},\n"
                "  {\"id\": null, \"näme\": true, \"data\": \"2023-03-15 18:00:00\"}\n"
                "]\n");
}

TEST(RowWriterTest, LongTablesAreWrittenWhileTheirRowsCome) {
  std::ostringstream out;
  const auto writer = makeRowWriter(Format::table, {"id", "name"}, out);
  for (int i = 1; i < 1000; ++i) writer->row({i, "x"});
  EXPECT_EQ(out.str(), "");
  writer->row({1000, "x"});
  EXPECT_EQ(out.str().substr(0, 30), "  id  name\n----  ----\n   1  x\n");
  out.str("");
  writer->row({12345, "wide"});
  writer->row({"text", "y"});
  writer->end();
  EXPECT_EQ(out.str(), "12345  wide\ntext  y\n");
}

TEST(RowWriterTest, DatesHaveTheirTimeUnlessTheyAreNone) {
  EXPECT_EQ(cellText(store::Date{45000.0}), "2023-03-15 00:00:00");
  EXPECT_EQ(cellText(store::Date{-1e151}), "-1e+151");
  EXPECT_EQ(cellText(store::Date{1e151}), "1e+151");
  EXPECT_EQ(cellText(store::Date{45000.25}), "2023-03-15 06:00:00");
}

}  // namespace
}  // namespace orv::cli
