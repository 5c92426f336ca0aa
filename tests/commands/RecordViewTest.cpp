// Tables of records, filtered and sorted.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "commands/CellText.h"
#include "commands/CommandsTest.h"
#include "commands/NodeContent.h"
#include "commands/RecordView.h"
#include "commands/ValueColumns.h"
#include "database/SourceDatabases.h"

namespace orv::commands {
namespace {

using store::Value;
using ::testing::ElementsAre;

/// A table in memory that notes how far it was read.
class MemoryTable : public RecordTable {
 public:
  using Rows = std::vector<std::vector<Value>>;

  MemoryTable(std::vector<RecordColumn> columns, Rows rows) : rows_(std::move(rows)) {
    columns_ = std::move(columns);
  }
  void readTo(std::size_t rows) override { read_ = std::max(read_, std::min(rows, rows_.size())); }
  std::size_t rowsRead() const override { return read_; }
  bool isComplete() const override { return read_ == rows_.size(); }
  Value value(std::size_t row, std::size_t column) const override {
    EXPECT_LT(row, read_);
    return rows_[row][column];
  }

 private:
  Rows rows_;
  std::size_t read_ = 0;
};

RecordView glazings() {
  return {std::make_unique<MemoryTable>(
              std::vector<RecordColumn>{{"name", "Name", "", false}, {"mm", "mm", "", true}},
              MemoryTable::Rows{{"clear 10", 10.0F},
                                {"Clear 3", 3.1F},
                                {"low-e", Value()},
                                {"bronze", 10.0F},
                                {"CLEAR 9", 9.0F}}),
          4};
}

std::vector<std::string> names(RecordView& view) {
  while (!view.isComplete()) view.advance(2);
  std::vector<std::string> names;
  for (std::size_t row = 0; row < view.count(); ++row) names.push_back(view.text(row, 0));
  return names;
}

TEST(RecordView, ReadsNoFurtherThanAsked) {
  RecordView view = glazings();
  view.advance(2);
  EXPECT_EQ(view.count(), 2U);
  EXPECT_FALSE(view.isComplete());
  view.advance(100);
  EXPECT_EQ(view.count(), 5U);
  EXPECT_TRUE(view.isComplete());
}

TEST(RecordView, FiltersByTextWithoutRegardToCase) {
  RecordView view = glazings();
  view.filter({"clear"});
  EXPECT_THAT(names(view), ElementsAre("clear 10", "Clear 3", "CLEAR 9"));
  view.filter({"=clear 3"});
  EXPECT_THAT(names(view), ElementsAre("Clear 3"));
  view.filter({"clear", "9"});
  EXPECT_THAT(names(view), ElementsAre("CLEAR 9"));
  view.filter({"", "="});
  EXPECT_THAT(names(view), ElementsAre("low-e"));
  view.filter({"", ""});
  EXPECT_EQ(names(view).size(), 5U);
}

TEST(RecordView, ComparesNumbersAsNumbers) {
  const auto filtered = [](const char* filter) {
    RecordView view = glazings();
    view.filter({"", filter});
    return names(view);
  };
  EXPECT_THAT(filtered(">9"), ElementsAre("clear 10", "bronze"));
  EXPECT_THAT(filtered(">= 9"), ElementsAre("clear 10", "bronze", "CLEAR 9"));
  EXPECT_THAT(filtered("<3,2"), ElementsAre("Clear 3"));
  EXPECT_THAT(filtered("=3.1"), ElementsAre("Clear 3"));
  EXPECT_THAT(filtered("3..9"), ElementsAre("Clear 3", "CLEAR 9"));
  EXPECT_THAT(filtered(">"), ::testing::SizeIs(5)) << "not finished, and so no filter yet";
}

TEST(RecordView, YesAndNoAreAlsoTrueAndFalse) {
  for (const auto& [text, isYes] :
       {std::pair("yes", true), std::pair("=Yes", true), std::pair("true", true),
        std::pair("=True", true), std::pair("no", false), std::pair("=No", false),
        std::pair("false", false), std::pair("=FALSE", false)}) {
    EXPECT_EQ(CellFilter(text, false).accepts(Value(true), 6), isYes) << text;
    EXPECT_EQ(CellFilter(text, false).accepts(Value(false), 6), !isYes) << text;
  }
}

TEST(RecordView, SortsTheFilteredRowsAndKeepsEqualOnesInOrder) {
  RecordView view = glazings();
  view.sort({{1, true}});
  EXPECT_THAT(names(view), ElementsAre("low-e", "Clear 3", "CLEAR 9", "clear 10", "bronze"));
  view.filter({"", "1"});
  EXPECT_THAT(names(view), ElementsAre("Clear 3", "clear 10", "bronze"));
  view.sort({{0, false}});
  EXPECT_THAT(names(view), ElementsAre("Clear 3", "clear 10", "bronze"));
  view.filter({});
  view.sort({{1, false}, {0, true}});
  EXPECT_THAT(names(view), ElementsAre("bronze", "clear 10", "CLEAR 9", "Clear 3", "low-e"));
  view.sort({{.column = 0, .readsNumbers = true}});
  EXPECT_THAT(names(view), ElementsAre("bronze", "Clear 3", "CLEAR 9", "clear 10", "low-e"));
  view.sort({});
  EXPECT_EQ(names(view).front(), "clear 10");
}

TEST(RecordView, TextsHaveTheDigitsAndCodesTheirNames) {
  RecordView view(
      std::make_unique<MemoryTable>(
          std::vector<RecordColumn>{recordColumn("name", false), recordColumn("typeID", true),
                                    recordColumn("thickness", true)},
          MemoryTable::Rows{{"b", 3, 1.23456}, {"a", Value(), 12.3456}, {"c", 1, 0.5}}),
      3);
  const auto shown = [&] {
    while (!view.isComplete()) view.advance(1);
    std::string text;
    for (std::size_t i = 0; i < view.count() * 3; ++i) text += view.text(i / 3, i % 3) + "|";
    return text;
  };
  EXPECT_EQ(shown(), "b|Screen (3)|1.23|a||12.3|c|Venetian blind (1)|0.5|");
  view.digits(5);
  EXPECT_EQ(view.count(), 0U) << "it begins anew";
  EXPECT_EQ(shown(), "b|Screen (3)|1.2346|a||12.346|c|Venetian blind (1)|0.5|");
  EXPECT_EQ(view.find("346", 0, true), 2U);
  EXPECT_EQ(view.find("346", 3, true), 5U);
  EXPECT_EQ(view.find("", 0, true), std::nullopt);
  view.filter({"", "BLIND"});
  EXPECT_EQ(shown(), "c|Venetian blind (1)|0.5|");
  EXPECT_EQ(view.value(0, 1).toLong(), 1);
  view.filter({"", "", "1.2346", "more than there are columns"});
  EXPECT_EQ(shown(), "b|Screen (3)|1.2346|");
  EXPECT_THAT(view.identifiersRead(), ElementsAre("b", "a", "c"));
  EXPECT_TRUE(view.isFilled());
  EXPECT_FALSE(view.fillNext());
  view.filter({"nothing"});
  EXPECT_EQ(shown(), "");
  EXPECT_EQ(view.find("b", 0, true), std::nullopt);
}

TEST(RecordView, SortsEachKindOfValueByItsOwnOrder) {
  const auto sorted = [](const std::vector<Value>& values, bool readsNumbers) {
    MemoryTable::Rows rows;
    for (const Value& value : values) rows.push_back({value});
    RecordView view(std::make_unique<MemoryTable>(
                        std::vector<RecordColumn>{recordColumn("name", false)}, std::move(rows)),
                    9);
    view.sort({{.column = 0, .readsNumbers = readsNumbers}});
    std::string text;
    for (const std::string& name : names(view)) text += name + "|";
    return text;
  };
  EXPECT_EQ(sorted({"b", store::Date{1.0}, 2.5, Value(), "A", -3, true}, false),
            "|-3|1899-12-31|2.5|A|b|Yes|");
  const std::vector<Value> numbered{"p10", "p9", "p09",  "P1",    "p",
                                    "10",  "9a", "p1.5", "p1.10", "p0"};
  EXPECT_EQ(sorted(numbered, false), "10|9a|p|p0|p09|P1|p1.10|p1.5|p10|p9|");
  EXPECT_EQ(sorted(numbered, true), "9a|10|p|p0|P1|p1.5|p1.10|p9|p09|p10|");
}

TEST(RecordView, FindsAroundTheEnds) {
  RecordView view = glazings();
  EXPECT_EQ(view.find("10", 0, true), 0U);
  EXPECT_EQ(view.find("10", 1, true), 1U) << "the number in the second column";
  EXPECT_EQ(view.find("10", 2, true), 7U);
  EXPECT_EQ(view.find("10", 8, true), 0U);
  EXPECT_EQ(view.find("bronze", 2, false), 6U);
  EXPECT_EQ(view.find("nowhere", 0, true), std::nullopt);
  EXPECT_EQ(view.find("10", 7, false), 7U);
  EXPECT_EQ(view.find("10", 6, false), 1U);
  EXPECT_EQ(view.find("bronze", 0, false), 6U);
}

TEST(CellText, RoundsFractionsAndLeavesWholeNumbersAlone) {
  EXPECT_EQ(cellText(0.0123456F, 4), "0.01235");
  EXPECT_EQ(cellText(5.7F, 4), "5.7");
  EXPECT_EQ(cellText(5.7F, kAllDigits), "5.7");
  EXPECT_EQ(cellText(123456.7, 4), "123457");
  EXPECT_EQ(cellText(0.9999999, 4), "1");
  EXPECT_EQ(cellText(-0.00001, 4), "-1e-05");
  EXPECT_EQ(cellText(0.0, 4), "0");
  EXPECT_EQ(cellText(123456789, 4), "123456789");
  EXPECT_EQ(cellText(true, 4), "Yes");
  EXPECT_EQ(cellText(Value(), 4), "");
  EXPECT_EQ(cellText(store::Bytes(12), 4), "12 bytes");
  EXPECT_EQ(cellText(store::Date{45657.0}, 4), "2024-12-31");
  EXPECT_EQ(cellText(store::Date{45657.5}, 4), "2024-12-31 12:00:00");
  EXPECT_EQ(cellText(store::Date{2.5e151}, 4), "2.5e+151");  // of a damaged file
}

class RecordTableTest : public test::CommandsTest {};

TEST_F(RecordTableTest, AFileThatIsGoneHasNoText) {
  const auto files = texts(TextFileKind::panes, {{"a.txt", "text of a"}});
  const auto first = files->DataSources().Item(1);
  EXPECT_EQ(nodeText(first.get()), "text of a");
  std::filesystem::remove(folder.path() / "a.txt");
  EXPECT_EQ(nodeText(first.get()), "This file could not be read.");
  first->DataType(20);
  EXPECT_EQ(nodeView(first.get()), NodeView::nothing);
}

TEST_F(RecordTableTest, FillsTheValuesOfPanesThatCanBeRead) {
  const auto node = recordSet(newDatabase(), RecordKind::panes);
  auto& dc = *node->ADOConnection();
  session.database.InsertPane(*test::makePane("1", 30), dc);
  test::addRow(dc, "Pane", {{"name", "2"}});
  session.database.InsertPane(*test::makePane("3"), dc);
  setAll(dc, "Pane_integrated_data", "angle", {}, "PaneID = 3");
  ValueColumns table(openRecordTable(node), session, node,
                     {.stored = true, .computedBy = optics::Standard::en410});
  const auto named = [&](const char* name) {
    const auto& columns = table.columns();
    const auto found = std::ranges::find(columns, name, &RecordColumn::name);
    return static_cast<std::size_t>(found - columns.begin());
  };
  ASSERT_EQ(named("Rb_vis computed") + 1, table.columns().size());
  EXPECT_TRUE(table.value(0, named("Tf_sol stored")).isNull()) << "it is not filled yet";
  EXPECT_TRUE(table.columns()[named("Tf_vis stored")].isNumber);
  for (int row = 0; row < 3; ++row) EXPECT_TRUE(table.fillNext());
  EXPECT_FALSE(table.fillNext());
  EXPECT_EQ(cellText(table.value(0, named("Tf_sol stored")), 4), "0.13");
  EXPECT_EQ(cellText(table.value(0, named("Rb_vis stored")), 4), "0.16");
  EXPECT_EQ(cellText(table.value(0, named("Rb_vis computed")), 4), "0.2257");
  ValueColumns computed(openRecordTable(node), session, node,
                        {.computedBy = optics::Standard::en410});
  EXPECT_TRUE(computed.fillNext());
  EXPECT_EQ(cellText(computed.value(0, computed.columns().size() - 1), 4), "0.2257");
  for (const std::size_t row : {1U, 2U}) {
    for (const char* name : {"Tf_sol stored", "Rb_vis computed"}) {
      EXPECT_TRUE(table.value(row, named(name)).isNull()) << row << name;
    }
  }
}

TEST_F(RecordTableTest, ReadsTheRowsInSteps) {
  std::vector<test::FieldValues> panes;
  for (int id = 23; id > 0; --id) {
    panes.push_back({{"GlazingID", id}, {"FileName", fmt::format("PANE{}.DAT", 100 + id)}});
  }
  test::makeGlazingDatabase(folder / "glazing.mdb", panes);
  const auto node = recordSet(opener.openAny(folder / "glazing.mdb"), RecordKind::panes);
  const auto table = openRecordTable(node);
  for (const auto& [asked, read] : {std::pair{7, 7}, {5, 7}, {8, 8}, {23, 23}, {24, 23}}) {
    EXPECT_FALSE(table->isComplete());
    table->readTo(static_cast<std::size_t>(asked));
    EXPECT_EQ(table->rowsRead(), static_cast<std::size_t>(read)) << asked;
  }
  EXPECT_TRUE(table->isComplete());
  for (const int row : {22, 3, 0}) {
    EXPECT_EQ(cellText(table->value(static_cast<std::size_t>(row), 1), 4),
              std::to_string(23 - row));
  }
}

}  // namespace
}  // namespace orv::commands
