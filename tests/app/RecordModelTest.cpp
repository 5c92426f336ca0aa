// The grid's model when records cannot be read.
#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

#include "app/grid/RecordModel.h"
#include "errors/Error.h"

namespace orv::test {

/// A table of which only the first rows can be read, as of a damaged file. Its values are the
/// numbers of the rows, or a text in each.
class DamagedTable : public commands::RecordTable {
 public:
  explicit DamagedTable(std::string text = {}) : text_(std::move(text)) {
    columns_.push_back({"number", "Number", "", text_.empty()});
  }

  void readTo(std::size_t rows) override {
    if (rows > kWhole) throw Error(kDeviceIo, "Page 7 is damaged.");
    read_ = std::max(read_, rows);
  }
  std::size_t rowsRead() const override { return read_; }
  bool isComplete() const override { return false; }
  store::Value value(std::size_t row, std::size_t /*column*/) const override {
    if (!text_.empty()) return text_;
    return static_cast<std::int32_t>(row);
  }

 private:
  static constexpr std::size_t kWhole = 3000;
  const std::string text_;
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

  model.sortBy({{0, false}});
  EXPECT_EQ(model.rowCount(), shown);
  EXPECT_FALSE(model.find("7", {}, true).isValid());
  model.filter({"99"});
  EXPECT_GT(model.rowCount(), 0);
  EXPECT_TRUE(QTest::qWaitFor([&] { return failures.count() > 3; }));
  EXPECT_ANY_THROW(model.complete());
}

TEST(RecordModelTest, TextsThatSteerAreSpelledOutAndCopiedAsTheyAre) {
  app::RecordModel model;
  const std::string text = "<b>Red</b> \u202Eglass\x1b";
  model.show(std::make_unique<commands::RecordView>(std::make_unique<DamagedTable>(text), 4));
  const QModelIndex cell = model.index(0, 0);
  EXPECT_EQ(model.data(cell, Qt::DisplayRole).toString(), "<b>Red</b> \\u202eglass\\u001b");
  EXPECT_TRUE(model.data(cell, Qt::ToolTipRole)
                  .toString()
                  .contains("&lt;b&gt;Red&lt;/b&gt; \\u202eglass\\u001b"));
  EXPECT_EQ(model.cells(0, 0, {0}, false)[0][0], QString::fromStdString(text));
}

}  // namespace orv::test
