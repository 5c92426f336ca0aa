// Inputs that fuzzing has found, and that the store did not bear.

#include <gtest/gtest.h>

#include "model/Raised.h"
#include "store/StoreError.h"
#include "store/jet/catalog/Creation.h"
#include "store/jet/row/RowEncoder.h"
#include "support/MemoryFiles.h"

namespace orv::store::jet {
namespace {

class FuzzFindings : public testing::Test {
 protected:
  FuzzFindings() { createDatabase(test::kFile); }

  void overwrite(std::uint64_t place, const Bytes& bytes) {
    files_.open(test::kFile, FileSystem::Open::existing)->write(place, bytes.data(), bytes.size());
  }

 private:
  test::MemoryFiles files_;
};

// The header's date masks the password; this one is far beyond all dates.
TEST_F(FuzzFindings, PasswordMaskedByAnImpossibleDate) {
  overwrite(0x79, {0x2a, 0xff, 0x19, 0x2a});
  const auto number = test::raisedBy([] { Database::open(test::kFile, ""); }).number;
  EXPECT_TRUE(number == 0 || number == kNotAuthenticated) << number;
}

TEST_F(FuzzFindings, DateBeyondAllDates) {
  EXPECT_EQ(Value(Date{2.5e151}).toText(), "2.5e+151");
  EXPECT_EQ(Value(Date{-1e9}).toText(), "-1000000000");
}

TEST_F(FuzzFindings, DefinitionWhoseColumnsHaveNoPlaceInRows) {
  const auto database = Database::open(test::kFile, "");
  TableDefinition table;
  table.name = "Found";
  table.maxColumns = 3;
  table.variableColumns = 1;
  Column& column = table.columns.emplace_back();
  column.name = "Place";
  const auto refusal = [&](const Value& value) {
    const std::vector<Value> row{value};
    return test::raisedBy([&] { encodeRow(database->pager(), table, row); }).number;
  };
  EXPECT_EQ(refusal("text"), 0);
  column.variableIndex = 1;
  EXPECT_EQ(refusal("text"), kCorruptFile);
  column.variableIndex = 0;
  column.number = 40;
  EXPECT_EQ(refusal("text"), kCorruptFile);
  column = {.name = "Place", .type = ColumnType::double_, .length = 7, .fixed = true};
  EXPECT_EQ(refusal(1.5), kCorruptFile);
  column.length = 8;
  EXPECT_EQ(refusal(1.5), 0);
  column.fixed = false;  // as no column of numbers is
  EXPECT_EQ(encodeRow(database->pager(), table, std::vector<Value>{1.5}),
            (Bytes{3, 0, 0, 0, 0, 0, 0, 0, 0xf8, 0x3f, 10, 0, 2, 0, 1, 0, 1}));
  column.type = ColumnType::boolean;
  column.variableIndex = 1;
  EXPECT_EQ(encodeRow(database->pager(), table, std::vector<Value>{true}),
            (Bytes{3, 0, 2, 0, 2, 0, 1, 0, 1}));
  column.fixed = column.compressible = true;
  // Text of a fixed length, which no column has that is made here, is filled up with blanks, and
  // never compressed.
  column.type = ColumnType::text;
  table.variableColumns = 0;
  EXPECT_EQ(encodeRow(database->pager(), table, std::vector<Value>{"abc"}),
            (Bytes{3, 0, 'a', 0, 'b', 0, 'c', 0, ' ', 0, 1}));
  EXPECT_EQ(refusal("abcde"), kCorruptFile);
}

}  // namespace
}  // namespace orv::store::jet
