// Tables of records, filtered and sorted.
#include "commands/CellText.h"
#include "commands/CommandsTest.h"
#include "commands/NodeContent.h"
#include "commands/RecordView.h"
#include "commands/ValueColumns.h"
#include "support/CaseFile.h"

namespace orv::commands {
namespace {

using store::Value;

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

/// What a table shows after these statements:
///
///   filter TEXT|TEXT    above its columns
///   sort up 2 down 1    by the columns; "numbers 1" goes by the numbers in the texts
///   find TEXT CELL      what is found from a cell on; "find back" the other way
std::vector<std::string> shown(const std::vector<std::string>& statements) {
  RecordView view = glazings();
  std::vector<std::string> lines;
  for (const std::string& statement : statements) {
    std::istringstream words(statement.substr(statement.find(' ') + 1));
    std::string word;
    if (statement.starts_with("filter")) {
      std::vector<std::string> texts;
      while (std::getline(words, word, '|')) texts.push_back(word);
      view.filter(texts);
    } else if (statement.starts_with("sort")) {
      std::vector<SortColumn> order;
      for (std::size_t column = 0; words >> word >> column;) {
        order.push_back({column - 1, word != "down", word == "numbers"});
      }
      view.sort(order);
    } else {
      const bool isForward = !statement.starts_with("find back");
      std::size_t cell = 0;
      if (!isForward) words >> word;
      words >> word >> cell;
      const auto found = view.find(word, cell, isForward);
      lines.push_back(found ? std::to_string(*found) : "none");
    }
  }
  if (!lines.empty()) return lines;
  while (!view.isComplete()) view.advance(2);
  for (std::size_t row = 0; row < view.count(); ++row) lines.push_back(view.text(row, 0));
  return {fmt::format("{}", fmt::join(lines, ", "))};
}

TEST(RecordView, ShowsTheRowsOfItsFiltersInOrder) {
  const std::string expected = test::readFile(ORV_SOURCE_DIR "/tests/commands/record-views.txt");
  EXPECT_EQ(test::retold(expected, shown), expected);
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

TEST(RecordView, YesAndNoAreAlsoTrueAndFalse) {
  for (const auto& [text, isYes] :
       {std::pair("yes", true), std::pair("=Yes", true), std::pair("true", true),
        std::pair("=True", true), std::pair("no", false), std::pair("=No", false),
        std::pair("false", false), std::pair("=FALSE", false)}) {
    EXPECT_EQ(CellFilter(text, false).accepts(Value(true), 6), isYes) << text;
    EXPECT_EQ(CellFilter(text, false).accepts(Value(false), 6), !isYes) << text;
  }
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
  EXPECT_EQ(view.identifiersRead(), (std::vector<std::string>{"b", "a", "c"}));
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
    view.advance(100);
    std::string text;
    for (std::size_t row = 0; row < view.count(); ++row) text += view.text(row, 0) + "|";
    return text;
  };
  EXPECT_EQ(sorted({"b", store::Date{1.0}, 2.5, Value(), "A", -3, true, store::Currency{22500},
                    store::Decimal::fromText("10.5", 3, 1)},
                   false),
            "|-3|1899-12-31|2.2500|2.5|10.5|A|b|Yes|");
  const std::vector<Value> numbered{"p10", "p9", "p09",  "P1",    "p",
                                    "10",  "9a", "p1.5", "p1.10", "p0"};
  EXPECT_EQ(sorted(numbered, false), "10|9a|p|p0|p09|P1|p1.10|p1.5|p10|p9|");
  EXPECT_EQ(sorted(numbered, true), "9a|10|p|p0|P1|p1.5|p1.10|p9|p09|p10|");
}

TEST(CellText, RoundsFractionsAndLeavesWholeNumbersAlone) {
  const std::pair<Value, const char*> cases[] = {
      {0.0123456F, "0.01235"},
      {5.7F, "5.7"},
      {123456.7, "123457"},
      {0.9999999, "1"},
      {-0.00001, "-1e-05"},
      {0.0, "0"},
      {123456789, "123456789"},
      {true, "Yes"},
      {Value(), ""},
      {store::Bytes(12), "12 bytes"},
      {store::Date{45657.0}, "2024-12-31"},
      {store::Date{45657.5}, "2024-12-31 12:00:00"},
      {store::Date{2.5e151}, "2.5e+151"},  // of a damaged file
  };
  for (const auto& [value, text] : cases) EXPECT_EQ(cellText(value, 4), text);
  EXPECT_EQ(cellText(5.7F, kAllDigits), "5.7");
}

class RecordTableTest : public test::CommandsTest {};

TEST_F(RecordTableTest, AFileThatIsGoneHasNoText) {
  const auto files = texts(TextFileKind::panes, {{"a.txt", "text of a"}, {"b.json", "{"}});
  const auto first = files->DataSources().Item(1);
  EXPECT_EQ(nodeText(first.get()), "text of a");
  EXPECT_EQ(nodeText(files->DataSources().Item(2).get()), "{");
  std::filesystem::remove(folder.path() / "a.txt");
  EXPECT_EQ(nodeText(first.get()), "This file could not be read.");
  for (const int unknown : {1, 20}) {
    first->DataType(unknown);
    EXPECT_EQ(nodeView(first.get()), NodeView::nothing);
  }
}

TEST_F(RecordTableTest, FillsTheValuesOfPanesThatCanBeRead) {
  const auto node = recordSet(newDatabase(), RecordKind::panes);
  auto& dc = *node->ADOConnection();
  session.database.InsertPane(*test::makePane("1", 30), dc);
  test::addRow(dc, "Pane", {{"name", "2"}});
  session.database.InsertPane(*test::makePane("3"), dc);
  test::changeTable(dc, "Pane_integrated_data angle=Null where PaneID = 3");
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
  EXPECT_EQ(cellText(table.value(1, named("name")), 4), "2");
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
  for (const auto& [asked, read] : {std::pair{7U, 7U}, {5, 7}, {8, 8}, {23, 23}, {24, 23}}) {
    EXPECT_FALSE(table->isComplete());
    table->readTo(asked);
    EXPECT_EQ(table->rowsRead(), read) << asked;
  }
  EXPECT_TRUE(table->isComplete());
  for (const std::size_t row : {22U, 3U, 0U}) {
    EXPECT_EQ(cellText(table->value(row, 1), 4), std::to_string(23 - row));
  }
}

}  // namespace
}  // namespace orv::commands
