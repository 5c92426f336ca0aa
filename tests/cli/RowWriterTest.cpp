#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "cli/RowWriter.h"
#include "cli/ValueText.h"
#include "support/ReadFile.h"

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

/// Carriage returns are told as ␍, so that the file has lines of text.
TEST(RowWriterTest, EachFormatHasItsOwnOrder) {
  std::string all;
  for (const Format format : {Format::table, Format::tsv, Format::csv, Format::json}) {
    all += written(format) + "\n";
  }
  for (std::size_t at = 0; (at = all.find('\r')) != std::string::npos;) all.replace(at, 1, "␍");
  EXPECT_EQ(all, test::readFile(ORV_SOURCE_DIR "/tests/cli/rows.txt"));
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
