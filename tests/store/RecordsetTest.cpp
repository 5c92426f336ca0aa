// Record sets as programs use them: found, visited, changed and mended through the public
// interface.

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <string>
#include <vector>

#include "errors/Error.h"
#include "model/Raised.h"
#include "store/Connection.h"
#include "store/StoreError.h"
#include "support/TemporaryFolder.h"

namespace orv::store {
namespace {

using enum CursorType;
using enum LockType;
using testing::ElementsAre;

constexpr std::size_t kId = 0, kName = 1, kSize = 2, kPrice = 3, kDay = 4, kOn = 5, kNote = 6;

TEST(StoreConnection, OpensFilesAndTellsStatementsFromNames) {
  const test::TemporaryFolder folder;
  const std::string path = folder / "names.mdb";
  Connection::create(path, [](Connection& made) {
    for (const char* name : {"b", "select", "A", "Update x"}) {
      made.createTable({name, {{"Id", ColumnType::longInteger}}});
    }
    made.createQuery({.name = "zwei", .outputs = {{"*"}}, .tables = {"A"}});
    made.createQuery({.name = "Eins", .outputs = {{"b.Id", "n"}}, .tables = {"b"}});
  });
  EXPECT_EQ(test::raisedBy([&] { Connection::open("Provider=x;Data Sources=" + path); }).number,
            kStoreFailure);
  const auto database = Connection::open("Provider=x;data source=" + path + ";a;Data Source=y");
  EXPECT_THAT(database->tableNames(), ElementsAre("A", "b", "select", "Update x"));
  EXPECT_THAT(database->queryNames(), ElementsAre("Eins", "zwei"));
  EXPECT_EQ(database->querySql("EINS"), "SELECT b.Id AS n FROM b;");
  for (const char* none : {"A", "none"}) {
    EXPECT_EQ(test::raisedBy([&] { database->querySql(none); }).description,
              std::string("There is no saved query '") + none + "' in '" + path + "'.");
  }
  const std::pair<const char*, const char*> sources[] = {{"select", "Id"},
                                                         {"Eins", "n"},
                                                         {" \n(SELECT Id AS m FROM A)", "m"},
                                                         {"select\nId\nFROM b", "Id"},
                                                         {"zwei", "Id"},
                                                         {"[Update x]", ""}};
  for (const auto& [source, field] : sources) {
    std::string found;
    test::raisedBy([&, s = source] { found = database->openRecordset(s)->fields()[0].name; });
    EXPECT_EQ(found, field) << source;
  }
  EXPECT_EQ(test::raisedBy([&] { database->openRecordset("Update x"); }).number, kNotSupported);
  EXPECT_EQ(
      database->openRecordset("Update x", static_, readOnly, SourceKind::table)->recordCount(), 0);
  database->close();
  EXPECT_EQ(test::raisedBy([&] { database->tableNames(); }).description,
            "The connection to '" + path + "' is closed.");
}

/// A table of panes with an index over each but the last of the columns that are searched.
class RecordsetTest : public testing::Test {
 protected:
  void SetUp() override {
    database_->createTable(
        {"Panes",
         {{"Id", ColumnType::longInteger, 0, true},
          {.name = "Name", .size = 20, .required = true, .defaultValue = R"("say ""so""")"},
          {.name = "Size", .type = ColumnType::integer, .defaultValue = "=7"},
          {.name = "Price", .type = ColumnType::currency},
          {.name = "Day", .type = ColumnType::dateTime},
          {.name = "On", .type = ColumnType::boolean, .defaultValue = "Yes"},
          {.name = "Note", .type = ColumnType::memo}},
         {{"Key", {{"Id"}}, true, true},
          {"Names", {{"Name"}}, false, true},
          {"Sizes", {{"Size", false}}}}});
  }

  std::unique_ptr<Recordset> open(CursorType cursor = keyset, LockType lock = optimistic,
                                  const std::string& source = "Panes") {
    return database_->openRecordset(source, cursor, lock);
  }

  static void add(Recordset& rows, const std::string& name, Value size, Value note = {}) {
    rows.addNew();
    rows.setValue(kName, name);
    rows.setValue(kSize, std::move(size));
    rows.setValue(kNote, std::move(note));
    rows.update();
  }

  /// The names of the rows from the first on.
  static std::vector<std::string> names(Recordset& rows) {
    std::vector<std::string> found;
    for (rows.moveFirst(); !rows.eof(); rows.moveNext()) {
      found.push_back(rows.value(kName).toText());
    }
    return found;
  }

  template <typename Work>
  static std::int32_t errorOf(Work work) {
    return test::raisedBy(work).number;
  }
  template <typename Work>
  static std::string told(Work work) {
    return test::raisedBy(work).description;
  }

  /// The values of the current row, parted by "|".
  static std::string row(const Recordset& rows) {
    std::string text;
    for (std::size_t i = 0; i < rows.fields().size(); ++i) {
      const Value value = rows.value(i);
      text += (i > 0 ? "|" : "") + (value.isNull() ? "-" : value.toText());
    }
    return text;
  }

  test::TemporaryFolder folder_;
  std::shared_ptr<Connection> database_ = Connection::create(folder_ / "rows.mdb");
};

TEST_F(RecordsetTest, FindsForwardTheRowsThatMeetACriterion) {
  auto rows = open();
  add(*rows, "Clear", 10, "*");
  add(*rows, "clear low", -3, "it's");
  add(*rows, "Grey", Value(), Value());
  add(*rows, "GREEN", 4, "ALL 50% off");
  add(*rows, "Weiß", 10, "5");
  rows->moveFirst();
  rows->setValue(kDay, Date{45'000.5});
  rows->setValue(kPrice, Currency{10'050});
  rows->setValue(kOn, false);
  rows->update();

  const std::pair<const char*, std::vector<int>> cases[] = {
      {"Size = 10", {1, 5}},
      {"size='10'", {1, 5}},
      {"Size <> 10", {2, 4}},
      {"Size < 4", {2}},
      {"Size <= 4", {2, 4}},
      {"Size > 4", {1, 5}},
      {"Size >= 4 \t", {1, 4, 5}},
      {"Size = Null", {3}},
      {"Size <> NULL", {1, 2, 4, 5}},
      {"Size < null", {}},
      {"Name = 'CLEAR'", {1}},
      {"[Name] = \"grey\"", {3}},
      {"Name > 'green'", {3, 5}},
      {"Name <= 'clear low'", {1, 2}},
      {"Name LIKE 'clear*'", {1, 2}},
      {"Name like '%e%e%'", {4}},
      {"Name like '*low'", {2}},
      {"Name like 'g*y'", {3}},
      {"Name like 'gre'", {}},
      {"Note = 'IT''S'", {2}},
      {"Note <> '5'", {1, 2, 4}},
      {"Note like '*50% *'", {4}},
      {"Price = 1.005", {1}},
      {"Day > 44999", {1}},
      {"Day < 45000.5", {}},
      {"On = False", {}},  // a word without apostrophes is no value
      {"On = 0", {1}},
      {"On = '-1'", {2, 3, 4, 5}},
      {"Id >= 4", {4, 5}},
  };
  for (const char* source : {"Panes", "SELECT * FROM Panes ORDER BY Id"}) {
    for (const auto& [criterion, expected] : cases) {
      auto searched = open(static_, readOnly, source);
      std::vector<int> found;
      const std::int32_t error = errorOf([&, wanted = criterion] {
        for (searched->find(wanted); !searched->eof(); searched->find(wanted)) {
          found.push_back(searched->value(kId).toLong());
          EXPECT_EQ(searched->position(), found.back() - 1);
          searched->moveNext();
        }
      });
      EXPECT_EQ(found, expected) << criterion << " of " << source;
      EXPECT_EQ(error, std::string(criterion) == "On = False" ? kSyntaxError : 0) << criterion;
    }
  }
  EXPECT_EQ(errorOf([&] { rows->find("Size = 'ten'"); }), kTypeMismatch);
  EXPECT_EQ(told([&] { rows->find("Size = 'ten'"); }),
            "Column 'Size' cannot be compared with 'ten'.");
  EXPECT_EQ(told([&] { rows->find("Sizes = 10"); }), "The record set has no field 'Sizes'.");
  const std::pair<const char*, const char*> wrong[] = {
      {"", "it does not begin with the name of a column"},
      {"= 3", "it does not begin with the name of a column"},
      {"[Size = 3", "a bracket is not closed"},
      {"Size 3", "the column is not followed by =, <>, <, <=, >, >= or LIKE"},
      {"Size like", "the column is not followed by =, <>, <, <=, >, >= or LIKE"},
      {"Size = ", "the value is missing"},
      {"Size = ten", "the value is no number and stands without apostrophes"},
      {"Name = 'it's'", "something follows the value; an apostrophe within it must be doubled"},
      {"Name = 'open", "the value's closing mark is missing"},
      {"Name = '", "the value's closing mark is missing"}};
  for (const auto& [criterion, what] : wrong) {
    const test::Raised raised = test::raisedBy([&, text = criterion] { rows->find(text); });
    EXPECT_EQ(raised.number, kSyntaxError) << criterion;
    EXPECT_EQ(raised.description, std::string("The search criterion \"") + criterion +
                                      "\" cannot be understood: " + what + ".");
  }
}

TEST_F(RecordsetTest, VisitsItsRowsInEveryDirection) {
  auto filling = open();
  for (const char* name : {"a", "b", "c", "d"}) add(*filling, name, Value());
  for (const char* source : {"Panes", "SELECT * FROM Panes ORDER BY Id"}) {
    auto rows = open(static_, readOnly, source);
    EXPECT_FALSE(rows->bof() || rows->eof());
    EXPECT_EQ(rows->recordCount(), 4);
    EXPECT_EQ(rows->value(kName), Value("a"));
    rows->moveLast();
    EXPECT_EQ(rows->value("NAME"), Value("d"));
    rows->moveNext();
    EXPECT_TRUE(rows->eof() && !rows->bof());
    EXPECT_EQ(rows->position(), 4);
    EXPECT_EQ(errorOf([&] { rows->moveNext(); }), kNoCurrentRecord);
    EXPECT_EQ(told([&] { rows->value(kName); }),
              "There is no current record: the record set is at its end, or the record has been "
              "deleted.");
    rows->movePrevious();
    EXPECT_EQ(rows->value(kName), Value("d"));
    rows->moveTo(1);
    EXPECT_EQ(rows->value(kName), Value("b"));
    EXPECT_EQ(rows->position(), 1);
    rows->movePrevious();
    EXPECT_FALSE(rows->bof());
    rows->movePrevious();
    EXPECT_TRUE(rows->bof() && !rows->eof());
    EXPECT_EQ(errorOf([&] { rows->movePrevious(); }), kNoCurrentRecord);
    EXPECT_EQ(errorOf([&] { rows->value(kName); }), kNoCurrentRecord);
    rows->moveTo(4);
    EXPECT_TRUE(rows->eof() && rows->position() == 4);
    rows->moveTo(-1);
    EXPECT_EQ(rows->position(), 0);
    rows->moveTo(9);
    EXPECT_TRUE(rows->eof());
    EXPECT_THAT(names(*rows), ElementsAre("a", "b", "c", "d"));
    rows->moveFirst();
    EXPECT_EQ(told([&] { rows->value(7); }), "The record set has no field of number 7.");
    EXPECT_EQ(told([&] { rows->fieldIndex("Nam"); }), "The record set has no field 'Nam'.");
    for (const auto& change :
         std::vector<std::function<void()>>{[&] { rows->setValue(kName, "x"); },
                                            [&] { rows->addNew(); }, [&] { rows->deleteRow(); }}) {
      EXPECT_EQ(errorOf(change), kReadOnlyStore) << source;
    }
    rows->close();
    EXPECT_EQ(errorOf([&] { rows->moveFirst(); }), kObjectClosed);
    EXPECT_EQ(errorOf([&] { rows->close(); }), kObjectClosed);
  }
}

TEST_F(RecordsetTest, AnEmptyOneHasNoRowToStandOn) {
  for (const char* source : {"Panes", "SELECT * FROM Panes"}) {
    auto rows = open(static_, readOnly, source);
    EXPECT_TRUE(rows->bof() && rows->eof());
    EXPECT_EQ(rows->recordCount() + rows->position(), 0);
    rows->moveFirst();
    rows->moveLast();
    rows->find("Id = 1");
    EXPECT_TRUE(rows->bof() && rows->eof());
    EXPECT_EQ(errorOf([&] { rows->moveNext(); }), kNoCurrentRecord);
    EXPECT_EQ(errorOf([&] { rows->value(kId); }), kNoCurrentRecord);
    rows->movePrevious();
    EXPECT_TRUE(rows->bof());
  }
}

TEST_F(RecordsetTest, AForwardOnlyStatementDoesNotGoBack) {
  auto filling = open();
  for (const char* name : {"a", "b", "c"}) add(*filling, name, Value());
  auto rows = open(forwardOnly, readOnly, "SELECT * FROM Panes ORDER BY Id");
  rows->moveFirst();
  EXPECT_EQ(rows->recordCount(), 1) << "those that were read";
  rows->moveTo(1);
  EXPECT_EQ(rows->value(kName), Value("b"));
  EXPECT_EQ(rows->position(), 1);
  EXPECT_EQ(told([&] { rows->movePrevious(); }), "A forward-only record set cannot go back.");
  EXPECT_EQ(rows->value(kName), Value("b"));
  rows->moveTo(3);
  EXPECT_TRUE(rows->eof() && !rows->bof());
  EXPECT_EQ(rows->recordCount(), 3);
  EXPECT_EQ(errorOf([&] { rows->moveFirst(); }), kNotSupported);
}

TEST_F(RecordsetTest, TheRowsOfAStatementAreChangedInItsOrder) {
  auto filling = open();
  for (const char* name : {"d", "b", "a", "c", "e"}) add(*filling, name, filling->recordCount());
  auto rows = open(keyset, optimistic, "SELECT * FROM Panes WHERE Size < 4 ORDER BY Name");
  EXPECT_THAT(names(*rows), ElementsAre("a", "b", "c", "d"));
  EXPECT_EQ(rows->recordCount(), 4);
  rows->moveFirst();
  rows->find("Name = 'c'");
  EXPECT_EQ(rows->position(), 2);
  rows->setValue(kName, "z");
  rows->update();
  EXPECT_EQ(rows->position(), 2);
  rows->moveNext();
  EXPECT_EQ(rows->value(kName), Value("d"));
  rows->moveTo(1);
  rows->deleteRow();
  EXPECT_EQ(rows->recordCount(), 3);
  rows->moveNext();
  EXPECT_EQ(row(*rows), "4|z|3|-|-|True|-");
  add(*rows, "new", 9);
  EXPECT_EQ(rows->position(), 3);
  EXPECT_THAT(names(*rows), ElementsAre("a", "z", "d", "new"));
  EXPECT_THAT(names(*open()), ElementsAre("d", "a", "z", "e", "new"));
  EXPECT_EQ(told([&] { open(keyset, optimistic, "SELECT Name FROM Panes"); }).substr(0, 35),
            "Only rows of a SELECT * over one ta");
}

TEST_F(RecordsetTest, DefaultsAreTextsNumbersWordsAndTheMoment) {
  using enum ColumnType;
  const std::tuple<ColumnType, const char*, const char*> cases[] = {
      {text, R"("a ""b""")", "a \"b\""},
      {text, "'it''s'", "it's"},
      {text, " = \"x \" ", "x "},
      {text, "\"", "-"},
      {text, "'a\"", "-"},
      {text, "\"\"", ""},
      {text, "abc", "-"},
      {text, "\"a\"\"\"", "a\""},
      {longInteger, "=12", "12"},
      {longInteger, "2.5", "2"},
      {double_, "-1.5e2", "-150"},
      {double_, "", "-"},
      {boolean, "True", "True"},
      {boolean, "yes", "True"},
      {boolean, "=ON", "True"},
      {boolean, "False", "False"},
      {boolean, "no", "False"},
      {boolean, "Off", "False"},
      {boolean, "1", "True"},
      {boolean, "0", "False"},
      {longInteger, "True", "-1"},
      {longInteger, "5000000000", "5000000000"}};
  TableInfo design{"Defaults", {{"Now", dateTime}, {"Date", dateTime}, {"Time", dateTime}}};
  design.columns[0].defaultValue = "=Now()";
  design.columns[1].defaultValue = "date()";
  design.columns[2].defaultValue = "Time()";
  for (const auto& [type, expression, value] : cases) {
    design.columns.push_back({.name = "C" + std::to_string(design.columns.size()),
                              .type = type,
                              .size = type == text ? 20U : 0U,
                              .defaultValue = expression});
  }
  database_->createTable(design);
  auto rows = open(keyset, optimistic, "Defaults");
  rows->addNew();
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    const Value value = rows->value(i + 3);
    EXPECT_EQ(value.isNull() ? "-" : value.toText(), std::get<2>(cases[i]))
        << std::get<1>(cases[i]);
  }
  const double now = rows->value(0).toDouble(), date = rows->value(1).toDouble();
  EXPECT_GT(date, 45'000);
  EXPECT_EQ(date, std::floor(now));
  EXPECT_NEAR(now - date, rows->value(2).toDouble(), 1e-3);
}

TEST_F(RecordsetTest, ANewRowHasDefaultsAndAKeyAndCanBeMended) {
  auto rows = open();
  rows->addNew();
  EXPECT_EQ(rows->value(kId), Value(1));
  EXPECT_EQ(rows->value(kName), Value("say \"so\""));
  EXPECT_EQ(rows->value(kSize).toLong(), 7);
  EXPECT_TRUE(rows->value(kOn).toBoolean());
  EXPECT_TRUE(rows->value(kPrice).isNull());
  rows->update();
  EXPECT_EQ(rows->value(kSize), Value(7));

  rows->addNew();
  EXPECT_EQ(errorOf([&] { rows->update(); }), kDuplicateKey) << "the name is there";
  rows->setValue(kName, Value());
  EXPECT_EQ(errorOf([&] { rows->update(); }), kDuplicateKey) << "the name is required";
  rows->setValue(kName, std::string(21, 'x'));
  EXPECT_NE(errorOf([&] { rows->update(); }), 0) << "the name is too long";
  rows->setValue(kName, std::string(20, 'x'));
  rows->setValue(kSize, 32'768);
  EXPECT_EQ(errorOf([&] { rows->update(); }), kOverflow);
  rows->setValue(kSize, 32'767);
  rows->update();
  EXPECT_EQ(rows->value(kId), Value(2));
  EXPECT_EQ(rows->value(kSize), Value(32'767));

  rows->setValue(kName, "say \"so\"");
  EXPECT_EQ(errorOf([&] { rows->update(); }), kDuplicateKey);
  rows->cancelUpdate();
  EXPECT_EQ(rows->value(kName), Value(std::string(20, 'x')));
  rows->addNew();
  rows->deleteRow();  // gives the new row up
  EXPECT_EQ(rows->recordCount(), 2);
  rows->moveFirst();
  rows->setValue(kName, "moved on");
  rows->moveNext();  // saves
  EXPECT_THAT(names(*open()), ElementsAre("moved on", std::string(20, 'x')));
}

TEST_F(RecordsetTest, ABatchIsKeptAsideAndCommittedAsAWhole) {
  auto rows = open(keyset, batchOptimistic);
  add(*rows, "one", 1);
  add(*rows, "two", 2);
  EXPECT_EQ(rows->recordCount(), 2);
  EXPECT_EQ(open()->recordCount(), 0);
  rows->addNew();
  rows->cancelUpdate();
  EXPECT_EQ(rows->recordCount(), 2);
  rows->updateBatch();
  EXPECT_EQ(row(*rows), "2|two|2|-|-|True|-");
  EXPECT_EQ(rows->value(kName), Value("two"));
  EXPECT_EQ(rows->value(kId), Value(2)) << "each row of a batch has a number of its own";
  add(*rows, "three", 3);
  add(*rows, "ONE", 4);
  EXPECT_EQ(errorOf([&] { rows->updateBatch(); }), kDuplicateKey);
  EXPECT_EQ(open()->recordCount(), 2) << "a batch that is refused has changed nothing";
  rows->close();

  rows = open(keyset, batchOptimistic);
  rows->setValue(kSize, 11);
  rows->moveNext();
  rows->deleteRow();
  rows->updateBatch();
  const auto other = open();
  EXPECT_EQ(other->recordCount(), 1);
  EXPECT_EQ(other->value(kSize), Value(11));
}

TEST_F(RecordsetTest, TwoOverOneTableSeeWhatTheOtherChanges) {
  auto rows = open();
  for (const char* name : {"a", "b", "c", "d", "e"}) add(*rows, name, Value());
  auto other = open();
  other->moveLast();
  other->deleteRow();
  EXPECT_EQ(errorOf([&] { other->value(kName); }), kNoCurrentRecord);
  other->moveFirst();
  other->moveNext();
  other->deleteRow();
  EXPECT_THAT(names(*rows), ElementsAre("a", "c", "d"));
  rows->moveLast();
  EXPECT_EQ(rows->value(kName), Value("d"));
  EXPECT_EQ(rows->position(), 2);
  EXPECT_EQ(rows->recordCount(), 3);
  add(*rows, "b", Value());
  EXPECT_EQ(other->recordCount(), 4);
  other->moveFirst();
  other->find("Name = 'B'");
  EXPECT_EQ(other->value(kId), Value(6));

  // A forward-only record set goes on behind a row that is deleted under it.
  auto forward = open(forwardOnly, readOnly);
  rows->moveFirst();
  rows->deleteRow();
  rows->moveNext();
  EXPECT_EQ(rows->value(kName), Value("c"));
  forward->moveNext();
  EXPECT_EQ(forward->value(kName), Value("c"));
}

// What is stored reads back from the file, at the bounds of each form that a value has there.
TEST_F(RecordsetTest, ValuesAtTheBoundsReadBackFromTheFile) {
  std::vector<std::string> notes = {"", "\xC4\x80 beyond compressed text", std::string(255, 'x')};
  for (std::size_t size :
       {64, 2039, 2040, 2041, 4075, 4076, 4079, 4080, 4081, 4082, 8151, 8152, 8153, 20'000}) {
    std::string text(size, 'a');
    for (std::size_t i = 0; i < size; ++i) text[i] = static_cast<char>('a' + i * i % 26);
    notes.push_back(text);
    notes.push_back(text.substr(0, size / 2 - 1) + "\xD0\xAF");  // two bytes a character
  }
  auto rows = open();
  for (std::size_t i = 0; i < notes.size(); ++i) {
    add(*rows, std::to_string(i), static_cast<int>(i), notes[i]);
  }
  // Values that change their form: a long one is made short and the other way round.
  rows->moveFirst();
  rows->setValue(kNote, notes.back());
  rows->moveLast();
  rows->setValue(kNote, "short");
  rows->update();
  std::swap(notes.front(), notes.back());
  notes.back() = "short";
  rows->close();
  const std::string path = database_->path();
  database_->close();

  rows = Connection::openFile(path)->openRecordset("Panes");
  for (std::size_t i = 0; i < notes.size(); ++i, rows->moveNext()) {
    EXPECT_EQ(rows->value(kNote), Value(notes[i])) << "note " << i << " of " << notes[i].size();
  }
  EXPECT_TRUE(rows->eof());
}

/// A value as values.txt has it: a whole number, one with a point or exponent, a 'text', a #date#
/// or $amount in their smallest parts, x and bytes, a {guid}, a word.
Value valueIn(const std::string& text) {
  switch (text[0]) {
    case '\'':
      return text.substr(1, text.size() - 2);
    case '#':
      return Date{std::stod(text.substr(1))};
    case '$':
      return Currency{std::stoll(text.substr(1))};
    case 'x':
      return Bytes(text.begin() + 1, text.end());
    case '{':
      return Guid{{static_cast<std::uint8_t>(text[1])}};
    case 'f':
      return std::stof(text.substr(1));
    default:
      break;
  }
  if (text == "Null" || text == "True") return text == "Null" ? Value() : Value(true);
  return text.find_first_of(".e") == text.npos ? Value(std::stoi(text)) : Value(std::stod(text));
}

TEST_F(RecordsetTest, ValuesAreChangedOrRefusedAsTheirColumnsHoldThem) {
  database_->createTable(
      {"Values",
       {{.name = "Flag", .type = ColumnType::boolean},
        {.name = "Byte", .type = ColumnType::byte},
        {.name = "Small", .type = ColumnType::integer},
        {.name = "Long", .type = ColumnType::longInteger},
        {.name = "Money", .type = ColumnType::currency},
        {.name = "Single", .type = ColumnType::single},
        {.name = "Double", .type = ColumnType::double_},
        {.name = "Day", .type = ColumnType::dateTime},
        {.name = "Key", .type = ColumnType::binary, .size = 4},
        {.name = "Name", .type = ColumnType::text, .size = 4},
        {.name = "Picture", .type = ColumnType::ole},
        {.name = "Note", .type = ColumnType::memo, .allowZeroLength = false},
        {.name = "Guid", .type = ColumnType::guid},
        {.name = "Fixed", .type = ColumnType::numeric, .precision = 5, .scale = 2}}});
  auto rows = open(keyset, optimistic, "Values");
  const auto stored = [&](const std::string& column, const std::string& value) -> std::string {
    rows->addNew();
    rows->setValue(column, valueIn(value));
    const test::Raised raised = test::raisedBy([&] { rows->update(); });
    if (raised.number == 0) {
      const Value found = rows->value(column);
      const Bytes* bytes = found.getIf<Bytes>();
      if (bytes != nullptr) return 'x' + std::string(bytes->begin(), bytes->end());
      return found.isNull() ? "Null" : found.toText();
    }
    rows->cancelUpdate();
    return fmt::format("error {}: {}", raised.number, raised.description);
  };
  std::ifstream in(ORV_SOURCE_DIR "/tests/store/values.txt");
  for (std::string line; std::getline(in, line);) {
    const std::size_t blank = line.find(' ');
    const std::size_t arrow = line.find(" -> ");
    if (line.empty() || line[0] == '-') continue;
    const std::string value = line.substr(blank + 1, arrow - blank - 1);
    EXPECT_EQ(stored(line.substr(0, blank), value), line.substr(arrow + 4)) << line;
  }
}

}  // namespace
}  // namespace orv::store
