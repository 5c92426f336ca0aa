// Record sets as programs use them: found, visited, changed and mended through the public
// interface.

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "model/Raised.h"
#include "store/Connection.h"
#include "store/StoreError.h"
#include "store/TableDesign.h"
#include "support/CaseFile.h"
#include "support/TemporaryFolder.h"

namespace orv::store {
namespace {

using enum CursorType;
using enum LockType;
using testing::ElementsAre;

TEST(StoreConnection, OpensFilesAndTellsStatementsFromNames) {
  const test::TemporaryFolder folder;
  const std::string path = folder / "names.mdb";
  Connection::create(path, [](Connection& made) {
    for (const char* name : {"b", "select", "A", "Update x"}) {
      made.createTable({name, {{"Id", ColumnType::longInteger}}});
    }
    made.createTable(
        test::design("Keyed", "a byte, b byte",
                     "A primary: a; B unique: b-, a; C ignoreNulls: b; D required: a"));
    made.createQuery({.name = "zwei", .outputs = {{"*"}}, .tables = {"A"}});
    made.createQuery({.name = "Eins", .outputs = {{"b.Id", "n"}}, .tables = {"b"}});
  });
  EXPECT_EQ(test::raisedBy([&] { Connection::open("Provider=x;Data Sources=" + path); }).number,
            kStoreFailure);
  const auto database = Connection::open("Provider=x;data source=" + path + ";a;Data Source=y");
  EXPECT_THAT(database->tableNames(), ElementsAre("A", "b", "Keyed", "select", "Update x"));
  std::string indexes;
  for (const IndexInfo& each : database->table("keyed").indexes) {
    indexes += fmt::format("{}{:d}{:d}{:d}{:d}{:d}", each.name, each.primary, each.unique,
                           each.ignoreNulls, each.required, each.ofRelation);
    for (const auto& [name, ascending] : each.columns) indexes += (ascending ? " " : " -") + name;
    indexes += "; ";
  }
  EXPECT_EQ(indexes, "A11010 a; B01000 -b a; C00100 b; D00010 a; ");
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

/// What a record set shows: the values of its row, parted by "|", Null as "-".
std::string shown(const Recordset& rows) {
  if (rows.eof() || rows.bof()) {
    return rows.eof() && rows.bof() ? "empty" : rows.eof() ? "end" : "beginning";
  }
  if (test::raisedBy([&] { rows.value(0); }).number == kNoCurrentRecord) return "deleted";
  std::string text;
  for (std::size_t i = 0; i < rows.fields().size(); ++i) {
    const Value value = rows.value(i);
    text += (i > 0 ? "|" : "") + (value.isNull() ? "-" : value.toText());
  }
  return text;
}

/// A value as the scripts have it: a whole number, one with a point or exponent, a 'text', a #date#
/// or $amount in their smallest parts, x and bytes, a {guid}, a word.
Value valueOf(const std::string& text) {
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
  if (text == "Null") return {};
  if (text == "True" || text == "False") return text == "True";
  return text.find_first_of(".e") == text.npos && text.size() < 11 ? Value(std::stoi(text))
                                                                   : Value(std::stod(text));
}

std::vector<std::string> partsOf(const std::string& text) {
  std::vector<std::string> parts;
  for (std::size_t at = 0, end = 0; at < text.size(); at = end + 2) {
    end = std::min(text.find(", ", at), text.size());
    parts.push_back(text.substr(at, end - at));
  }
  return parts;
}

void set(Recordset& rows, std::initializer_list<const char*> fields, const std::string& values) {
  const auto parts = partsOf(values);
  for (std::size_t i = 0; i < parts.size(); ++i)
    rows.setValue(fields.begin()[i], valueOf(parts[i]));
}

/// Where rows are found from the first on: Id@position.
std::string search(Recordset& rows, const std::string& criterion) {
  std::string found;
  rows.moveFirst();
  for (rows.find(criterion); !rows.eof(); rows.find(criterion)) {
    found += (found.empty() ? "" : " ") + rows.value("Id").toText() + "@" +
             std::to_string(rows.position());
    rows.moveNext();
  }
  return found;
}

/// As values.txt has it.
std::string stored(const Value& value) {
  const Bytes* bytes = value.getIf<Bytes>();
  if (bytes != nullptr) return 'x' + std::string(bytes->begin(), bytes->end());
  return value.isNull() ? "Null" : value.toText();
}

std::string names(Recordset& rows) {
  std::string all;
  for (rows.moveFirst(); !rows.eof(); rows.moveNext()) {
    all += (all.empty() ? "" : " ") + rows.value("NAME").toText();
  }
  return all;
}

/// The calls of recordsets.txt. One that says nothing else is answered by what the set shows then.
std::string call(Recordset& rows, const std::string& verb, const std::string& argument) {
  if (verb == "count") return std::to_string(rows.recordCount());
  if (verb == "position") return std::to_string(rows.position());
  if (verb == "field") return std::to_string(rows.fieldIndex(argument));
  if (verb == "value") return rows.value(std::stoul(argument)).toText();
  if (verb == "bof") return Value(rows.bof()).toText();
  if (verb == "names") return names(rows);
  if (verb == "search") return search(rows, argument);
  if (verb == "first") rows.moveFirst();
  if (verb == "last") rows.moveLast();
  if (verb == "next") rows.moveNext();
  if (verb == "previous") rows.movePrevious();
  if (verb == "to") rows.moveTo(std::stol(argument));
  if (verb == "find") rows.find(argument);
  if (verb == "new") rows.addNew();
  if (verb == "update") rows.update();
  if (verb == "batch") rows.updateBatch();
  if (verb == "cancel") rows.cancelUpdate();
  if (verb == "delete") rows.deleteRow();
  if (verb == "close") return rows.close(), "closed";
  if (verb == "add" || verb == "store") rows.addNew();
  if (verb == "add") set(rows, {"Name", "Size", "Note"}, argument);
  if (const std::size_t at = argument.find(" = "); verb == "set" || verb == "store") {
    set(rows, {argument.substr(0, at).c_str()}, argument.substr(at + 3));
  }
  if (verb == "add" || verb == "store") rows.update();
  if (verb == "store") return stored(rows.value(argument.substr(0, argument.find(' '))));
  std::string shows;
  const test::Raised raised = test::raisedBy([&] { shows = shown(rows); });
  return raised.number == 0 ? shows : "done; then " + raised.description;
}

class RecordsetTest : public testing::Test {
 protected:
  /// Tables of panes, with an index over each but the last of the columns that are searched, and of
  /// numbers.
  static void fill(Connection& made) {
    using enum ColumnType;
    made.createTable(test::design(
        "Panes",
        "Id longInteger auto, Name text 20 required =\"say \"\"so\"\"\", Size integer ==7, "
        "Price currency, Day dateTime, On boolean =Yes, Note memo",
        "Key primary unique: Id; Names unique: Name; Sizes: Size-"));
    made.createTable(test::design(
        "Numbers",
        "Byte byte, Long longInteger, Money currency, Fixed numeric 5.2, Single single"));
    made.createTable(
        test::design("Bytes", "Id longInteger auto, Raw binary 10, Pic ole, Key guid"));
  }

  void begin() {
    sets_.clear();
    std::filesystem::remove(path_);
    database_ = Connection::create(path_, fill);
  }
  /// The value of a column of a type ("text") by its default, in a table of its own.
  std::string byDefault(const std::string& argument) {
    const std::string table = "Default " + std::to_string(++defaults_);
    database_->createTable(test::design(table, fmt::format("It {}", argument)));
    const auto rows = database_->openRecordset(table, keyset, optimistic);
    rows->addNew();
    return shown(*rows);
  }
  /// What follows on a line of the script: "a.open KIND LOCK SOURCE", or a call of a record set.
  std::string run(const std::string& line) {
    std::string outcome;
    const std::string name = line.substr(0, 1);
    const std::size_t end = std::min(line.find(' '), line.size());
    const std::string verb = line.substr(2, end - 2);
    const std::string argument = line.substr(std::min(end + 1, line.size()));
    const test::Raised raised = test::raisedBy([&] {
      if (verb == "default") return void(outcome = byDefault(argument));
      if (verb != "open") return void(outcome = call(*sets_.at(name), verb, argument));
      sets_[name] = database_->openRecordset(argument.substr(4), kCursors.at(argument[0]),
                                             kLocks.at(argument[2]));
      outcome = shown(*sets_[name]);
    });
    if (raised.number != 0 && verb == "store") sets_.at(name)->cancelUpdate();
    return raised.number == 0
               ? outcome
               : "error " + std::to_string(raised.number) + ": " + raised.description;
  }

  inline static const std::map<char, CursorType> kCursors{
      {'f', forwardOnly}, {'k', keyset}, {'s', static_}};
  inline static const std::map<char, LockType> kLocks{
      {'r', readOnly}, {'o', optimistic}, {'b', batchOptimistic}};
  test::TemporaryFolder folder_;
  std::string path_ = folder_ / "rows.mdb";
  std::shared_ptr<Connection> database_ = Connection::create(path_, fill);
  std::map<std::string, std::unique_ptr<Recordset>> sets_;
  int defaults_ = 0;
};

TEST_F(RecordsetTest, AnswersCallsAsTheScriptSays) {
  std::ifstream script(ORV_SOURCE_DIR "/tests/store/recordsets.txt");
  int calls = 0;
  for (std::string line; std::getline(script, line);) {
    const std::size_t arrow = line.find(" -> ");
    if (line.starts_with("# ")) begin();
    if (arrow == std::string::npos || line.starts_with("# ")) continue;
    EXPECT_EQ(run(line.substr(0, arrow)), line.substr(arrow + 4)) << line;
    ++calls;
  }
  EXPECT_GT(calls, 100);
}

TEST_F(RecordsetTest, DefaultsCanBeOfTheMoment) {
  using enum ColumnType;
  database_->createTable(test::design(
      "Moments", "Now dateTime ==Now(), Date dateTime =date(), Time dateTime =Time()"));
  const auto rows = database_->openRecordset("Moments", keyset, optimistic);
  ::setenv("TZ", "XXX-05:30", 1);
  ::tzset();
  rows->addNew();
  ::unsetenv("TZ");
  ::tzset();
  const double now = rows->value(0).toDouble(), date = rows->value(1).toDouble();
  EXPECT_GT(date, 45'000);
  EXPECT_NEAR(now, 25'569 + (static_cast<double>(std::time(nullptr)) + 19'800) / 86'400, 1e-3);
  EXPECT_EQ(date, std::floor(now));
  EXPECT_NEAR(now - date, rows->value(2).toDouble(), 1e-3);
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
  auto rows = database_->openRecordset("Panes", keyset, optimistic);
  for (std::size_t i = 0; i < notes.size(); ++i) {
    rows->addNew();
    rows->setValue("Name", std::to_string(i));
    rows->setValue("Note", notes[i]);
    rows->update();
  }
  // Values that change their form: a long one is made short and the other way round.
  rows->moveFirst();
  rows->setValue("Note", notes.back());
  rows->moveLast();
  rows->setValue("Note", "short");
  rows->update();
  std::swap(notes.front(), notes.back());
  notes.back() = "short";
  rows->close();
  const std::string path = database_->path();
  database_->close();

  const auto again = Connection::openFile(path);
  rows = again->openRecordset("Panes");
  for (std::size_t i = 0; i < notes.size(); ++i, rows->moveNext()) {
    EXPECT_EQ(rows->value("Note"), Value(notes[i])) << "note " << i << " of " << notes[i].size();
  }
  EXPECT_TRUE(rows->eof());
  // Rows that have moved to another page are counted once, those that are gone not at all.
  again->deleteRows("Panes", "Id IN (3, 8, 20)");
  again->inOneCommit([&] {
    const auto small = again->openRecordset("Panes", keyset, optimistic);
    for (; !small->eof(); small->moveNext()) small->setValue("Note", std::string(1000, 'g'));
  });
  EXPECT_EQ(again->openRecordset("Panes", static_)->recordCount(),
            static_cast<std::int64_t>(notes.size() - 3));
}

TEST_F(RecordsetTest, ValuesAreChangedOrRefusedAsTheirColumnsHoldThem) {
  database_->createTable(test::design(
      "Values",
      "Flag boolean, Byte byte, Small integer, Long longInteger, Money currency, Single single, "
      "Double double, Day dateTime, Key binary 4, Name text 4, Picture ole, Note memo filled, "
      "Guid guid, Fixed numeric 5.2"));
  run("a.open k o Values");
  for (const auto& [left, found] : test::examplesOf("store/values.txt")) {
    EXPECT_EQ(run("a.store " + left), found) << left;
  }
}

}  // namespace
}  // namespace orv::store
