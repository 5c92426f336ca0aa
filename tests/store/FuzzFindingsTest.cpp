// Inputs that fuzzing has found, and that the store did not bear.

#include <gtest/gtest.h>

#include "errors/Error.h"
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
  try {
    Database::open(test::kFile, "");
  } catch (const Error& error) {
    EXPECT_EQ(error.number(), kNotAuthenticated) << error.what();
  }
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
  const auto refuses = [&](const Value& value) {
    try {
      encodeRow(database->pager(), table, std::vector<Value>{value});
      return false;
    } catch (const Error& error) {
      return error.number() == kCorruptFile;
    }
  };
  EXPECT_FALSE(refuses("text"));
  column.variableIndex = 1;
  EXPECT_TRUE(refuses("text"));
  column.variableIndex = 0;
  column.number = 40;
  EXPECT_TRUE(refuses("text"));
  column = {.name = "Place", .type = ColumnType::double_, .length = 2, .fixed = true};
  EXPECT_TRUE(refuses(1.5));
}

}  // namespace
}  // namespace orv::store::jet
