// The file of a history on the disk, and the rows in it: one that is there now must be read by
// every later program.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <sstream>
#include <tuple>

#include "model/Raised.h"
#include "store/FileContent.h"
#include "store/SampleFile.h"
#include "store/StoreError.h"
#include "store/TableDesign.h"
#include "store/jet/catalog/Creation.h"
#include "store/jet/file/LogFormat.h"
#include "store/jet/history/HistoryFile.h"
#include "store/jet/history/ReferenceCheck.h"
#include "store/jet/history/RowCode.h"
#include "support/CaseFile.h"
#include "support/MemoryFiles.h"

namespace orv::store::jet {
namespace {

using Kind = HistoryRecord::Kind;
using Found = HistoryFile::Found;

class HistoryFileTest : public testing::Test {
 protected:
  void SetUp() override { FileSystem::current().open("a.mdb", FileSystem::Open::newOnly); }
  static HistoryFile open(std::uint64_t identity = 77) { return {"a.mdb", identity}; }

  const std::vector<HistoryRecord> records_{{Kind::changes, 9, 1'700'000'001, "first", {1, 2, 3}},
                                            {Kind::changes, 9, 1'700'000'002, "", Bytes(8, 4)},
                                            {Kind::ended, 9, 1'700'000'003, "12345678", {}},
                                            {Kind::undone, 10, 1'700'000'004, "undone", {5}},
                                            {Kind::redone, 11, 1'700'000'005, "redone", {}},
                                            {Kind::lost, 12, 1'700'000'006, "lost", {}}};
  test::MemoryFiles files_;
};

/// One of all of these records.
class WrittenHistory : public HistoryFileTest {
 protected:
  void SetUp() override {
    HistoryFileTest::SetUp();
    EXPECT_EQ(history_.look(), Found::absent);
    for (const HistoryRecord& record : records_) EXPECT_TRUE(history_.append(record, true));
    whole_ = files_.content("a.mdb.orv-history");
    file_ = files_.openCompanion("a.mdb.orv-history");
  }

  HistoryFile history_ = open();
  Bytes whole_;
  std::unique_ptr<File> file_;
};

TEST_F(WrittenHistory, IsReadAsItWasWritten) {
  HistoryFile again = open();
  ASSERT_EQ(again.look(), Found::sound);
  for (HistoryFile* file : {&history_, &again}) {
    ASSERT_EQ(file->entries().size(), records_.size());
    for (std::size_t i = 0; i < records_.size(); ++i) {
      const HistoryEntry& entry = file->entries()[i];
      EXPECT_EQ(std::tie(entry.head.kind, entry.head.work, entry.head.time, entry.head.title),
                std::tie(records_[i].kind, records_[i].work, records_[i].time, records_[i].title));
      EXPECT_EQ(file->changes(entry), records_[i].changes);
    }
    EXPECT_EQ(file->length(), whole_.size());
  }
  EXPECT_EQ(test::sumOf({whole_.begin(), whole_.end()}), 0x972b61aabd7aeff5u);
  EXPECT_EQ(open(78).look(), Found::foreign);
  again.withdraw();
  for (HistoryFile* file : {&history_, &again}) {
    EXPECT_EQ(file->look(), Found::sound);
    EXPECT_EQ(file->entries().size(), records_.size() - 1);
  }
}

/// A byte that is changed in the head of a record hides that and those behind it; one in its
/// content is found when that is read.
TEST_F(WrittenHistory, ADamageAnywhereIsNoticed) {
  for (std::size_t at = 0; at < whole_.size(); ++at) {
    const auto& all = history_.entries();
    const auto next = std::ranges::upper_bound(all, at, {}, &HistoryEntry::place);
    const auto before = static_cast<std::size_t>(next - all.begin());
    const bool isHead = before > 0 && at - all[before - 1].place < 64;
    const std::uint8_t wrong = whole_[at] ^ 0x10;
    file_->write(at, &wrong, 1);
    HistoryFile changed = open();
    EXPECT_EQ(changed.look(), before == 0 ? Found::foreign
                              : isHead    ? Found::damaged
                                          : Found::sound);
    EXPECT_EQ(changed.entries().size(), before == 0 ? 0 : isHead ? before - 1 : all.size()) << at;
    EXPECT_TRUE(before == 0 || isHead || test::raisedBy([&] {
                                           changed.changes(changed.entries()[before - 1]);
                                         }).number == kCorruptFile);
    file_->write(at, &whole_[at], 1);
  }
}

/// Fields of the last record but one, which has no changes, with the checksum that goes with them.
TEST_F(WrittenHistory, AFieldThatCannotBeIsNoticed) {
  const HistoryEntry& entry = history_.entries()[4];
  const std::uint64_t room = whole_.size() - entry.place;
  const std::tuple<std::size_t, std::uint64_t, Found, std::size_t, int> cases[] = {
      {0, 0x43455249, Found::damaged, 4, 0},
      {4, 0, Found::damaged, 4, 0},
      {4, 1, Found::sound, 6, 0},
      {4, 5, Found::sound, 6, 0},
      {4, 6, Found::damaged, 4, 0},
      {24, 63, Found::damaged, 4, 0},
      {24, 71, Found::damaged, 5, kCorruptFile},
      {24, room, Found::sound, 5, kCorruptFile},
      {24, room + 1, Found::sound, 4, 0},
      {32, 0, Found::sound, 6, 0},
      {32, entry.size - 64, Found::sound, 6, 0},
      {32, entry.size - 63, Found::damaged, 4, 0},
      {40, 1, Found::sound, 6, kCorruptFile},
      {40, UINT64_MAX, Found::sound, 6, kCorruptFile}};
  for (const auto& [at, value, found, count, error] : cases) {
    Bytes head(whole_.begin() + static_cast<std::ptrdiff_t>(entry.place),
               whole_.begin() + static_cast<std::ptrdiff_t>(entry.place) + 64);
    at < 8 ? store32(&head[at], static_cast<std::uint32_t>(value)) : store64(&head[at], value);
    store64(&head[56], checksumOf(std::span(head).first(56)));
    file_->write(entry.place, head.data(), head.size());
    HistoryFile changed = open();
    EXPECT_EQ(changed.look(), found) << at << ": " << value;
    EXPECT_EQ(changed.entries().size(), count) << at << ": " << value;
    EXPECT_TRUE(count < 5 ||
                test::raisedBy([&] { changed.changes(changed.entries()[4]); }).number == error)
        << at << ": " << value;
  }
}

/// Behind the last record stands nothing, less than a head, the beginning of a record or room for
/// one; anything else is damage.
TEST_F(WrittenHistory, WhatWasCutShortIsNoDamage) {
  const std::uint64_t end = history_.length();
  const auto found = [&](const Bytes& behind) {
    file_->truncate(end);
    file_->write(end, behind.data(), behind.size());
    HistoryFile looked = open();
    const Found what = looked.look();
    EXPECT_EQ(looked.entries().size(), records_.size());
    return what;
  };
  const auto record = whole_.begin() + 64;
  EXPECT_EQ(found(Bytes(63, 'x')), Found::sound);
  EXPECT_EQ(found(Bytes(64, 'x')), Found::damaged);
  EXPECT_EQ(found(Bytes(record, record + 64)), Found::sound);
  EXPECT_EQ(found(Bytes(record, record + 79)), Found::sound);
  for (const std::size_t room : {64, 1000, 65'536, 65'537, 140'000}) {
    Bytes zeros(room);
    EXPECT_EQ(found(zeros), Found::sound) << room;
    zeros.back() = 1;
    EXPECT_EQ(found(zeros), Found::damaged) << room;
  }
  // The next record takes the place of what was cut short; another file in its place is seen.
  EXPECT_EQ(found(Bytes(200)), Found::sound);
  EXPECT_TRUE(history_.append(records_[1], true));
  EXPECT_EQ(files_.content("a.mdb.orv-history").size(), history_.length());
  history_.append(records_[2], false);
  files_.rename(history_.path(), "old");
  EXPECT_EQ(history_.look(), Found::absent);
  history_.withdraw();
  history_.sync();  // there is nothing to be waited for any more
  files_.copy("old", history_.path());
  files_.open(history_.path(), FileSystem::Open::existing)->truncate(end);
  EXPECT_EQ(history_.look(), Found::sound);
  EXPECT_EQ(history_.entries().size(), records_.size());
  const auto again = files_.open(history_.path(), FileSystem::Open::existing);
  again->truncate(0);
  EXPECT_EQ(open().look(), Found::absent);
  again->write(0, whole_.data(), 63);
  EXPECT_EQ(open().look(), Found::foreign);
  again->write(0, whole_.data(), 64);
  HistoryFile empty = open();
  empty.withdraw();
  EXPECT_EQ(empty.look(), Found::sound);
  EXPECT_EQ(files_.content(history_.path()).size(), 64u);
}

/// What is no history of the database gets the first name that nothing has, if there is one.
TEST_F(HistoryFileTest, WhatIsOfAnotherDatabaseIsSetAside) {
  const std::string path = open().path();
  for (int number = 1; number < 1000; ++number) {
    files_.remove(path);
    open(78).append(records_[0], true);
    HistoryFile history = open();
    EXPECT_TRUE(history.append(records_[1], true));
    EXPECT_EQ(history.takeNameOfUnusable(), path + "-" + std::to_string(number));
    EXPECT_EQ(history.takeNameOfUnusable(), "");
  }
  files_.remove(path);
  open(78).append(records_[0], true);
  EXPECT_EQ(test::raisedBy([&] { open().append(records_[1], true); }).description,
            "'" + path + "' cannot be used, and cannot be renamed either.");
}

TEST_F(HistoryFileTest, TheOldestWorksGoForNewOnes) {
  const std::string letters = " curle";  // in the order of the kinds
  for (const auto& [given, told] : test::examplesOf("store/histories.txt", 15)) {
    files_.remove(open().path());
    HistoryFile history = open();
    std::istringstream words(given);
    std::uint64_t largest = 0;
    words >> largest;
    bool isKept = true;
    for (std::string word; words >> word;) {
      const std::size_t plus = std::min(word.find('+'), word.size() - 1);
      const HistoryRecord record{static_cast<Kind>(letters.find(word[0])), word[1] - 0UL, 7, "",
                                 Bytes(std::strtoul(&word[plus + 1], nullptr, 10), 1)};
      if (words.eof()) history.setLargest(largest);
      isKept = history.append(record, false);
    }
    HistoryFile again = open();
    EXPECT_EQ(again.look(), Found::sound);
    EXPECT_EQ(again.length(), history.length());
    std::string found = fmt::format("{}, {} of {}:", isKept ? "kept" : "lost",
                                    files_.size(again.path()), again.length());
    for (const HistoryEntry& entry : again.entries()) {
      found += fmt::format(" {}{:c}", letters[static_cast<std::size_t>(entry.head.kind)],
                           static_cast<char>(entry.head.work));
      if (entry.size > 64) found += fmt::format("+{}", entry.size - 64);
    }
    EXPECT_EQ(found, told) << given;
  }
}

/// A reference, a row of a table that came (+) or went (-), and what does not hold then: its kind,
/// the table and the key of the row, and the other table.
TEST(ReferenceCheck, TellsTheRowsThatAReferenceDoesNotHoldFor) {
  using enum ColumnType;
  test::MemoryFiles files;
  const auto database = createDatabase("references.mdb");
  createTable(*database,
              test::design("Panes", "Id longInteger, Group longInteger", "ByGroup: Group-"));
  createTable(*database, test::design("Groups", "Key longInteger", "K: Key"));
  createTable(*database, test::design("Marks", "Pane longInteger"));
  createTable(*database, test::design("Names", "Label text 9, Small integer, Tiny byte",
                                      "L: Label; S: Small; T: Tiny"));
  createQuery(*database, "Chosen", {});
  const auto insert = [&](const char* table, const std::vector<Value>& row) {
    database->table(table)->insert(row);
  };
  for (const int group : {7, 8, 0}) insert("Panes", {group - 6, group});
  for (const int key : {7, 10}) insert("Groups", {key});
  for (const int pane : {1, 9}) insert("Marks", {pane});
  insert("Names", {"7", 7, 8});
  const auto expectTold = [&](const std::string& left, const std::string& told) {
    std::istringstream words(left);
    RowReference reference;
    std::string what, table, value;
    words >> reference.table >> reference.column >> reference.target >> reference.key;
    ReferenceCheck check(*database, {&reference, 1});
    while (words >> what >> table) {
      std::vector<Value> row;
      while (words >> value && value != "and") row.push_back(std::stoi(value));
      what == "+" ? check.rowCame(*database->table(table), row)
                  : check.rowWent(*database->table(table), row);
    }
    std::string found;
    for (const HistoryConflict& each : check.violations()) {
      found += fmt::format("{}{} {} {} {} of {} columns", found.empty() ? "" : "; ",
                           static_cast<int>(each.kind), each.table, each.wanted[0].toText(),
                           each.other, each.columns.size());
    }
    EXPECT_EQ(found, told) << left;
  };
  const auto examples = test::examplesOf("store/references.txt", 20);
  for (const auto& [left, told] : examples) expectTold(left, told);
  // Once more where the indexes are out of order.
  for (const char* table : {"Panes", "Groups"}) database->table(table)->distrust(0);
  for (const auto& [left, told] : examples) expectTold(left, told);
}

TEST(RowCode, ValuesOfEveryTypeAreKeptToTheBit) {
  std::vector<Value> one = test::rowOfAllTypes(2);
  one[8] = Bytes{7, 8, 9};
  one[12] = Guid{{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}};
  one[13] = Decimal::fromText("-123.45", 10, 2);
  one.insert(one.end(), {Value(), std::int64_t{1} << 40, std::numeric_limits<double>::quiet_NaN()});
  std::vector<Value> other = one;
  other[3] = Value(4);
  other[5] = Value(-0.0F);
  other[8] = Value();
  RowChangeWriter writer;
  writer.add("Pane", {}, one);
  writer.add("Pane", one, other);
  writer.add("Pane", other, {});
  const std::size_t size = writer.bytes().size();
  writer.add("Frame", {}, std::vector<Value>{1});
  writer.cut(size);
  writer.add("Frame", {}, std::vector<Value>{2});
  const Bytes& bytes = writer.bytes();
  EXPECT_EQ(test::sumOf({bytes.begin(), bytes.end()}), 0x178977bf9485128u);
  writer.add("Frame", std::vector<Value>{2, 2}, {});  // which has got a column more
  RowChangeWriter again;
  std::string tables;
  for (const RowChange& change : readRowChanges(bytes)) {
    again.add(change.table, change.before, change.after);
    tables += change.table + (change.before.empty() ? "+" : change.after.empty() ? "-" : "=");
  }
  EXPECT_EQ(again.bytes(), bytes);
  EXPECT_EQ(tables, "Pane+Pane=Pane-Frame+Frame-");
  EXPECT_EQ(encodeRowValues(readRowChanges(bytes)[1].after), encodeRowValues(other));
  std::size_t whole = 0;
  for (std::size_t end = 0; end < bytes.size(); ++end) {
    const auto error = test::raisedBy([&] { readRowChanges(std::span(bytes).first(end)); });
    EXPECT_TRUE(error.number == 0 || error.number == kCorruptFile) << end;
    whole += error.number == 0 ? 1 : 0;
  }
  EXPECT_EQ(whole, 8u) << "of the cuts those between changes";
  for (const Bytes& wrong : {Bytes{0, 1, 0, 0, 0, 'T', 1, 0, 0, 0, 2, 0, 12},
                             Bytes{0, 1, 0, 0, 0, 'T', 0xff, 0xff, 0, 0}}) {
    EXPECT_EQ(test::raisedBy([&] { readRowChanges(wrong); }).number, kCorruptFile);
  }
}

}  // namespace
}  // namespace orv::store::jet
