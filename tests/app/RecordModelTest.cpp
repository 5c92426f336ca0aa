// The grid's model when records cannot be read.
#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

#include "app/RecordModel.h"
#include "errors/Error.h"

namespace orv::test {

/// A table of which only the first rows can be read, as of a damaged file.
class DamagedTable : public commands::RecordTable {
 public:
  DamagedTable() { columns_.push_back({"number", "Number", "", true}); }

  void readTo(std::size_t rows) override {
    if (rows > kWhole) throw Error(kDeviceIo, "Page 7 is damaged.");
    read_ = std::max(read_, rows);
  }
  std::size_t rowsRead() const override { return read_; }
  bool isComplete() const override { return false; }
  store::Value value(std::size_t row, std::size_t /*column*/) const override {
    return static_cast<std::int32_t>(row);
  }

 private:
  static constexpr std::size_t kWhole = 3000;
  std::size_t read_ = 0;
};

TEST(RecordModelTest, RowsThatCannotBeReadAreToldOfAndTheOthersStay) {
  app::RecordModel model;
  QSignalSpy failures(&model, &app::RecordModel::readingFailed);
  model.show(std::make_unique<commands::RecordView>(std::make_unique<DamagedTable>(), 4));
  const int shown = model.rowCount();
  ASSERT_GT(shown, 0);
  ASSERT_TRUE(QTest::qWaitFor([&] { return failures.count() > 0; }));
  EXPECT_EQ(failures.front().front().toString(), "Page 7 is damaged.");
  EXPECT_EQ(model.rowCount(), shown);
  EXPECT_FALSE(model.canFetchMore({}));

  model.sort(0, Qt::DescendingOrder);
  EXPECT_EQ(model.rowCount(), shown);
  EXPECT_FALSE(model.find("7", {}, true).isValid());
  model.filter({"99"});
  EXPECT_GT(model.rowCount(), 0);
  EXPECT_TRUE(QTest::qWaitFor([&] { return failures.count() > 3; }));
  EXPECT_ANY_THROW(model.complete());
}

}  // namespace orv::test
