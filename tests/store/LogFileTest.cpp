// The log by itself, and what it brings into a database: every field that is believed or not, every
// state that a page may be in.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "model/Raised.h"
#include "store/jet/file/Log.h"
#include "store/jet/file/LogRecovery.h"
#include "support/MemoryFiles.h"

namespace orv::store::jet {
namespace {

constexpr std::size_t kPage = 1024;  // two pieces
constexpr std::uint64_t kMegabyte = 1 << 20;

/// A page whose halves are filled with these letters.
Bytes page(const char* letters) {
  Bytes bytes(kPage, static_cast<std::uint8_t>(letters[0]));
  std::fill_n(bytes.begin() + kPieceSize, kPieceSize, static_cast<std::uint8_t>(letters[1]));
  return bytes;
}

/// A database of three pages, "aa", "bb" and "cc", and a log with two commits, of which the first
/// changes page 1 and adds page 3, the second changes both and adds page 4.
class LogFile : public testing::Test {
 protected:
  LogFile() {
    database_ = files_.open("a.mdb", FileSystem::Open::newOnly);
    setDatabase({"aa", "bb", "cc"});
    log_.begin(database_->status());
    const Bytes b = page("bb"), d = page("bd"), e = page("ee"), f = page("fd"), g = page("eg"),
                h = page("hh");
    log_.append(3, 4, {{1, b.data(), d.data()}, {3, nullptr, e.data()}}, 71);
    log_.finish({});
    log_.append(4, 5, {{1, d.data(), f.data()}, {3, e.data(), g.data()}, {4, nullptr, h.data()}});
    log_.finish({.size = 77, .modified = -78});
    file_ = files_.open("a.mdb-log", FileSystem::Open::existing);
  }

  void setDatabase(const std::vector<const char*>& pages) {
    database_->truncate(0);
    for (const char* each : pages) {
      database_->write(database_->size(), page(each).data(), kPage);
    }
  }
  std::string databaseContent() {
    std::string letters;
    for (std::uint64_t at = 0; at < database_->size(); at += kPieceSize) {
      std::uint8_t letter = 0;
      database_->read(at, &letter, 1);
      letters += letter == 0 ? '0' : static_cast<char>(letter);
    }
    return letters;
  }
  Bytes bytes(std::uint64_t at, std::size_t length) {
    Bytes read(length);
    file_->read(at, read.data(), length);
    return read;
  }
  LogHeader header() { return LogHeader::decode(bytes(0, kPieceSize)).value(); }
  LogState state() { return LogState::decode(bytes(kPieceSize, kPieceSize)); }
  /// The numbers of the records that are read of the log, counted from its beginning, with those of
  /// their pages.
  std::string records(Log& log) {
    std::string found;
    log.forEachRecord([&](const LogRecord::Head& head, const std::vector<LogRecord::Page>& pages) {
      found += std::to_string(head.number - header().number) + ":";
      for (const auto& each : pages) found += std::to_string(each.number);
      found += " ";
    });
    return found;
  }

  test::MemoryFiles files_;
  std::unique_ptr<File> database_;
  Log log_{"a.mdb", kPage};
  std::unique_ptr<File> file_;
};

TEST_F(LogFile, IsBelievedWhereItFitsTogether) {
  const LogHeader whole = header();
  const LogState last = state();
  const std::uint64_t size = file_->size();
  Log log("a.mdb", kPage);
  ASSERT_EQ(log.look(), Log::Found::sound);
  EXPECT_EQ(log.state().encode(), last.encode());
  EXPECT_EQ(log.counter(), (LogCounter{whole.origin, whole.number + 2}));
  EXPECT_EQ(std::tuple(last.busy, last.databaseSize, last.databaseModified),
            std::tuple(false, 77U, -78));
  EXPECT_EQ(records(log), "1:13 2:134 ");
  EXPECT_EQ(log.companion(), 71U);

  const std::pair<std::function<void(LogState&)>, bool> states[] = {
      {[](LogState& s) { ++s.generation; }, false},
      {[](LogState& s) { s.end = kLogRecords - 1; }, false},
      {[](LogState& s) { s.end = kLogRecords; }, true},
      {[&](LogState& s) { s.end = size; }, true},
      {[&](LogState& s) { s.end = size + 1; }, false}};
  for (const auto& [change, isBelieved] : states) {
    LogState changed = last;
    change(changed);
    file_->write(kPieceSize, changed.encode().data(), kPieceSize);
    const LogState unknown{whole.generation, whole.number, kLogRecords, true, 0, 0};
    EXPECT_EQ(log.look(), Log::Found::sound);
    EXPECT_EQ(log.state().encode(), (isBelieved ? changed : unknown).encode());
  }
  file_->write(kPieceSize, last.encode().data(), kPieceSize);

  const std::pair<std::function<void(LogHeader&)>, Log::Found> headers[] = {
      {[](LogHeader& h) { h.pageSize = 2 * kPage; }, Log::Found::foreign},
      {[](LogHeader& h) { h.origin = 0; }, Log::Found::foreign},
      {[](LogHeader& h) { ++h.number; }, Log::Found::sound}};
  for (const auto& [change, found] : headers) {
    LogHeader changed = whole;
    change(changed);
    file_->write(0, changed.encode().data(), kPieceSize);
    EXPECT_EQ(log.look(), found);
    EXPECT_EQ(records(log), "");
  }
  const Bytes zeros(kPieceSize);
  file_->write(0, zeros.data(), kPieceSize);
  EXPECT_EQ(log.look(), Log::Found::unused);
  file_->truncate(100);
  EXPECT_EQ(log.look(), Log::Found::unused);
  file_->write(kPieceSize - 1, page("ab").data(), 1);
  EXPECT_EQ(log.look(), Log::Found::foreign);
  EXPECT_EQ(test::raisedBy([&] { log.begin({}); }).description,
            "'a.mdb-log' is no log that this program has made.");
}

/// What follows a record that does not fit the log is not read, whole as it may be.
TEST_F(LogFile, RecordsEndWhereOneDoesNotFit) {
  const Bytes record = bytes(kLogRecords, LogRecord::sizeFor(2, kPage));
  const auto head = LogRecord::decodeHead(record, kPage).value();
  const auto pages = LogRecord::decode(record, head, kPage).value();
  const std::tuple<std::function<void(LogRecord::Head&, std::vector<LoggedPage>&)>, std::string>
      cases[] = {{[](auto&, auto&) {}, "1:13 2:134 "},
                 {[](auto& h, auto&) { ++h.number; }, ""},
                 {[](auto& h, auto&) { --h.generation; }, ""},
                 {[](auto& h, auto&) { h.pageCountAfter = 3; }, ""},
                 {[](auto& h, auto&) { h.pageCountAfter = 5; }, ""},
                 {[](auto& h, auto&) { h.pageCountBefore = 2; }, ""},
                 {[](auto& h, auto&) { h.pageCountBefore = 5; }, ""},
                 {[](auto&, auto& p) { p[1].number = 4; }, ""},
                 {[](auto&, auto& p) { p[0].number = 0; }, "1:03 2:134 "},
                 {[](auto&, auto& p) { p[0].number = 3; }, ""}};
  for (const auto& [change, found] : cases) {
    LogRecord::Head changed = head;
    const Bytes before(kPage);
    std::vector<LoggedPage> logged{{pages[0].number, before.data(), pages[0].after.data()},
                                   {pages[1].number, nullptr, pages[1].after.data()}};
    change(changed, logged);
    const Bytes written = LogRecord::encode(changed, logged, kPage);
    file_->write(kLogRecords, written.data(), written.size());
    log_.look();
    EXPECT_EQ(records(log_), found);
  }
  file_->write(kLogRecords, record.data(), record.size());
  const std::uint64_t end = kLogRecords + record.size() + LogRecord::sizeFor(3, kPage);
  for (const auto& [size, found] :
       {std::pair(end + 1, "1:13 2:134 "), std::pair(end, "1:13 2:134 "),
        std::pair(end - 1, "1:13 "), std::pair(kLogRecords + 1, "")}) {
    file_->truncate(size);
    log_.look();
    EXPECT_EQ(records(log_), found);
  }
}

TEST_F(LogFile, GrowsByStepsAndBeginsAnew) {
  const LogCounter before = log_.counter();
  const Bytes after = page("ab");
  const auto append = [&](std::uint64_t end) {  // so that the log ends just behind that
    const auto pages = (end - log_.state().end) / (kPage + 24) + 1;
    log_.append(0, 9, std::vector<LoggedPage>(pages, {1, nullptr, after.data()}));
  };
  append(kMegabyte - 2 * kPage);
  EXPECT_EQ(file_->size(), kMegabyte);
  log_.withdraw();
  EXPECT_FALSE(log_.state().busy);
  append(kMegabyte);
  EXPECT_TRUE(state().busy);
  EXPECT_EQ(file_->size(), 2 * kMegabyte);
  log_.finish({});
  EXPECT_EQ(state().encode(), log_.state().encode());
  EXPECT_EQ(log_.counter().number, before.number + 1);
  files_.limitSpace(11 * kMegabyte + 5000);
  for (const std::size_t megabytes : {4, 8, 9}) {
    EXPECT_EQ(log_.isLong(), megabytes == 9);
    append(megabytes * kMegabyte);
    log_.finish({});
  }
  EXPECT_NE(test::raisedBy([&] { append(11 * kMegabyte); }).number, 0);
  EXPECT_EQ(file_->size(), 10 * kMegabyte);
  const std::size_t calls = files_.calls();
  log_.withdraw();  // nothing has been added
  EXPECT_EQ(files_.calls(), calls);
  files_.limitSpace(UINT64_MAX);
  for (const std::size_t megabytes : {15, 16}) {
    append(megabytes * kMegabyte);
    EXPECT_EQ(file_->size(), (megabytes + 1) * kMegabyte);
    const std::uint64_t number = log_.counter().number;
    log_.beginAnew({.size = 5, .modified = 6});
    EXPECT_EQ(file_->size(), (megabytes == 15 ? 16 : 8) * kMegabyte);
    EXPECT_EQ(log_.counter(), (LogCounter{before.origin, number + 1}));
    EXPECT_EQ(log_.state().encode(),
              (LogState{header().generation, number + 1, kLogRecords, false, 5, 6}).encode());
    EXPECT_EQ(header().number, number + 1);
    EXPECT_EQ(log_.look(), Log::Found::sound);
    EXPECT_EQ(records(log_), "");
  }
}

TEST_F(LogFile, KeepsNothingOfWhatWasWithdrawn) {
  const Bytes before = page("fd"), after = page("xx");
  files_.copy("a.mdb-log", "whole");
  for (unsigned seed = 1; seed < 9; ++seed) {
    files_.copy("whole", "a.mdb-log");
    log_.look();
    log_.append(5, 5, {{1, before.data(), after.data()}});
    log_.withdraw();
    files_.restart(seed);
    Log again("a.mdb", kPage);
    again.look();
    EXPECT_EQ(records(again), "1:13 2:134 ") << seed;
  }
}

TEST_F(LogFile, GetsAnotherNameOrNone) {
  for (const char* name : {"a.mdb-log-1", "a.mdb-log-2"}) {
    EXPECT_EQ(log_.look(), Log::Found::sound);
    EXPECT_EQ(log_.setAside(), name);
    EXPECT_EQ(log_.look(), Log::Found::absent);
    log_.begin({});
  }
  // One of another program's that has its name now is left alone.
  files_.rename("a.mdb-log", "old");
  files_.copy("old", "a.mdb-log");
  log_.remove();
  EXPECT_NE(files_.size("a.mdb-log"), -1);
  log_.look();
  log_.remove();
  EXPECT_EQ(files_.size("a.mdb-log"), -1);
  log_.remove();
  for (const bool isThere : {false, true}) {
    if (isThere) files_.open("a.mdb-log", FileSystem::Open::newOnly);
    files_.failAt(2);
    EXPECT_NE(test::raisedBy([&] { log_.begin({}); }).number, 0);
    EXPECT_EQ(files_.size("a.mdb-log") != -1, isThere) << "one that was not begun is none";
  }
  log_.begin({});
  const LogCounter begun = log_.counter();
  log_.begin({});
  EXPECT_EQ(log_.counter(), begun);
  files_.remove("a.mdb-log");
  EXPECT_EQ(log_.look(), Log::Found::absent);
}

/// Every state that the pages may be in after a loss of power, others, and every size.
TEST_F(LogFile, IsAppliedToItsDatabaseOnly) {
  // The pieces that each page of the log may hold: as before, after a commit, not yet there.
  const std::map<int, std::pair<std::string, std::string>> known{
      {1, {"bf", "bd"}}, {3, {"e0", "eg0"}}, {4, {"h0", "h0"}}};
  const std::string last[] = {"aa", "fd", "cc", "eg", "hh"};
  log_.look();
  for (const int changed : {1, 3, 4}) {
    for (const char first : std::string("bdefghx0")) {
      for (const char second : std::string("bdefghx0")) {
        std::vector<const char*> pages{"aa", "fd", "cc", "eg", "hh"};
        const std::string letters{first, second};
        Bytes content = page(letters.c_str());
        std::replace(content.begin(), content.end(), std::uint8_t{'0'}, std::uint8_t{0});
        setDatabase(pages);
        database_->write(static_cast<std::uint64_t>(changed) * kPage, content.data(), kPage);
        LogRecovery recovery(log_, *database_, kPage);
        const auto& [one, other] = known.at(changed);
        const bool isKnown =
            one.find(first) != std::string::npos && other.find(second) != std::string::npos;
        const auto expected = !isKnown                   ? LogRecovery::Outcome::foreign
                              : letters == last[changed] ? LogRecovery::Outcome::complete
                                                         : LogRecovery::Outcome::missing;
        EXPECT_EQ(recovery.compare(), expected) << changed << letters;
        if (!isKnown) continue;
        recovery.redo();
        EXPECT_EQ(databaseContent(), "aafdcceghh");
      }
    }
  }
  for (std::uint64_t size = 2 * kPage; size <= 7 * kPage; size += kPage / 2 - 1) {
    setDatabase({"aa", "bb", "cc", "eg", "hh", "xx", "xx"});
    database_->truncate(size);
    // A part of a piece of a page that the log adds is no state of it.
    const bool isTorn = size % kPieceSize != 0 && size > 3 * kPage && size < 5 * kPage;
    const bool isForeign = size / kPage < 3 || size / kPage > 5 || isTorn;
    EXPECT_EQ(LogRecovery(log_, *database_, kPage).compare(),
              isForeign ? LogRecovery::Outcome::foreign : LogRecovery::Outcome::missing)
        << size;
  }
  for (const auto& [size, outcome] :
       {std::pair(5 * kPage - kPieceSize, LogRecovery::Outcome::missing),
        std::pair(5 * kPage, LogRecovery::Outcome::complete)}) {
    setDatabase({"aa", "fd", "cc", "eg", "hh"});
    database_->truncate(size);
    EXPECT_EQ(LogRecovery(log_, *database_, kPage).compare(), outcome);
  }
}

}  // namespace
}  // namespace orv::store::jet
