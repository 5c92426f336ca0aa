// The log beside a database: what it is applied to, and what it is not.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>

#include "model/Raised.h"
#include "store/CrashScenario.h"
#include "store/FileContent.h"
#include "store/SystemCalls.h"
#include "store/jet/catalog/Creation.h"
#include "store/jet/file/LogFormat.h"
#include "support/MemoryFiles.h"
#include "support/ReadFile.h"
#include "support/TemporaryFolder.h"

namespace orv::store::jet {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr const char* kLog = "orvdata.mdb-log";

/// The description of the error that `work` raises; empty when it raises none.
template <class Work>
std::string refusalOf(const Work& work) {
  return test::raisedBy(work).description;
}

/// A database in memory whose last commit a loss of power has cut short.
class CutShort : public testing::Test {
 protected:
  void SetUp() override {
    scenario_.prepare(test::kFile);
    files_.copy(test::kFile, "backup.mdb");  // of yesterday
    before_ = test::describe(*Database::open(test::kFile, ""));
    scenario_.commits[0](*Database::open(test::kFile, ""));
    const auto database = Database::open(test::kFile, "");
    scenario_.commits[1](*database);
    // The record is in the log; the pages are not all in the database.
    files_.losePowerAt(5);
    EXPECT_NE(refusalOf([&] { scenario_.commits[2](*database); }), "");
    files_.restart(3);
    files_.copy(test::kFile, "cut.mdb");
    files_.copy(kLog, "cut.log");
  }

  void restore(const std::string& database) {
    files_.copy(database, test::kFile);
    files_.copy("cut.log", kLog);
  }

  /// What is said against a row with a note of so many letters; empty where it is put in.
  static std::string insert(Database& database, int id, std::size_t length = 0) {
    const std::vector<Value> row{id, "title", std::string(length, 'x'), Value()};
    return refusalOf([&] { database.table("Notes")->insert(row); });
  }

  test::MemoryFiles files_;
  test::CrashScenario scenario_ = test::changesOfRows();
  std::string before_;
};

TEST_F(CutShort, ABackupPutBackIsNotTouchedAndTheLogIsKept) {
  restore("backup.mdb");
  EXPECT_THAT(refusalOf([] { Database::open(test::kFile, ""); }),
              testing::AllOf(HasSubstr("'orvdata.mdb'"), HasSubstr("orvdata.mdb-log-1")));
  EXPECT_EQ(files_.content(test::kFile), files_.content("backup.mdb"));
  EXPECT_EQ(files_.content("orvdata.mdb-log-1"), files_.content("cut.log"));
  EXPECT_EQ(test::describe(*Database::open(test::kFile, "")), before_);
}

/// What another program changes is not of the log, which begins anew: else a loss of power would
/// make it that of another content.
TEST_F(CutShort, ALogBeginsAnewBehindAChangeOfAnotherProgram) {
  for (const bool grows : {false, true}) {
    const auto database = Database::open(test::kFile, "");
    const auto begun = [&] { return LogHeader::decode(files_.content(kLog))->number; };
    EXPECT_EQ(insert(*database, 1000), "");
    const auto before = begun();
    EXPECT_EQ(insert(*database, 1001), "");
    EXPECT_EQ(begun(), before);
    Bytes content = files_.content(test::kFile);
    if (grows) content.resize(content.size() + 4096);
    files_.open(test::kFile, FileSystem::Open::existing)->write(0, content.data(), content.size());
    EXPECT_EQ(insert(*database, 1002), "");
    EXPECT_GT(begun(), before);
    files_.losePowerAt(5);
    EXPECT_NE(insert(*database, 1003), "");
    files_.restart(3);
    EXPECT_EQ(refusalOf([] { Database::open(test::kFile, ""); }), "");
    restore("cut.mdb");
  }
}

/// A commit that fails leaves each byte as it was, however far it has come; where it cannot be
/// taken back at once, it is made or not before anything else is, also while somebody reads.
TEST_F(CutShort, ALaterCommitThatFailsIsTakenBack) {
  const auto database = Database::open(test::kFile, "");
  const auto notes = database->table("Notes");
  for (std::size_t call = 0, size = 0; size == 0; ++call) {
    const Bytes before = files_.content(test::kFile);
    files_.failAt(call);
    const std::string told = insert(*database, 1000, 30'000);
    if (told.empty()) size = before.size();
    EXPECT_EQ(files_.content(test::kFile) == before, !told.empty()) << call << told;
    EXPECT_LT(call, 99u);
  }
  const Pager::ReadLock lock(database->pager());
  std::uint32_t made = 0;
  for (int call = 0; call < 12; ++call) {
    const std::uint32_t before = notes->rowCount();
    files_.failAt(static_cast<std::size_t>(call), 9);
    EXPECT_NE(insert(*database, 2000 + call, 9000), "");
    files_.failAt(0, 0);
    EXPECT_EQ(refusalOf([&] { made += notes->rowCount() - before; }), "") << call;
    EXPECT_EQ(insert(*database, 3000 + call), "");
    EXPECT_EQ(test::describe(*Database::open(test::kFile, "")), test::describe(*database));
  }
  EXPECT_TRUE(made > 0 && made < 12) << made;
  test::expectSound(test::kFile);
}

/// On the real disk, where the files cannot be written, or the database has a second name; and one
/// of another content, where the log cannot get another name.
TEST_F(CutShort, IsCompletedWhereItCanBeWritten) {
  const test::TemporaryFolder folder;
  const std::string path = folder / "a.mdb", log = path + "-log", second = folder / "b.mdb";
  files_.save("cut.mdb", path);
  files_.save("cut.log", log);
  FileSystem::setCurrent(nullptr);
  const auto refusal = [&](const std::map<std::string, std::vector<int>>& ends) {
    test::SystemCalls calls;
    calls.ends = ends;
    const std::string before = test::readFile(path) + test::readFile(log);
    const std::string text = refusalOf([&] { Database::open(path, ""); });
    EXPECT_EQ(test::readFile(path) + test::readFile(log), before);
    return std::regex_replace(text, std::regex(folder.path().string()), "~");
  };
  const auto cut = [](const std::string& why) {
    return "The last change of '~/a.mdb' was cut short when a program or the system stopped. What "
           "is missing stands in '~/a.mdb-log', but " +
           why + ". Copy both into one folder elsewhere and open the copy, which completes it.";
  };
  EXPECT_EQ(refusal({{"open", {EACCES, 0, EACCES}}}), cut("here these files cannot be written"));
  EXPECT_EQ(refusal({{"open", {0, EACCES}}}), cut("here these files cannot be written"));
  fs::create_hard_link(path, second);
  EXPECT_EQ(refusal({}), cut("the database has a second name (a hard link)"));
  fs::remove(second);
  EXPECT_EQ(refusalOf([&] { Database::open(path, ""); }), "");
  files_.save("backup.mdb", path);
  files_.save("cut.log", log);
  const std::string foreign =
      "'~/a.mdb-log' is not the log of '~/a.mdb' as it is now: the database has been restored, "
      "replaced or changed by another program since the log was written, and has not been touched. "
      "Move that file away. Run 'orv check' on the database, then open it again.";
  EXPECT_EQ(refusal({{"renameat2", {EACCES}}}), foreign);
  EXPECT_EQ(refusal({{"open", {EACCES}}}), foreign);
}

/// A log that is there must be understood by every later program.
TEST(LogFormat, IsReadAsItWasWritten) {
  const auto sum = [](const auto& bytes) { return test::sumOf({bytes.begin(), bytes.end()}); };
  const auto header = LogHeader{4096, 11, 12, 13}.encode();
  EXPECT_EQ(sum(header), 0xfe552abaf19f99d5u);
  EXPECT_EQ(LogHeader::decode(header)->encode(), header);
  for (std::size_t at = 0; at < header.size(); ++at) {
    auto wrong = header;
    wrong[at] ^= 1;
    EXPECT_FALSE(LogHeader::decode(wrong)) << at;
    EXPECT_FALSE(LogHeader::decode(std::span(header).first(at)));
  }
  const auto state = LogState{21, 22, 23, true, 24, -25}.encode();
  EXPECT_EQ(sum(state), 0x6952a13cf033988u);
  EXPECT_EQ(LogState::decode(state).encode(), state);
  Bytes pages(3 * 4096);
  for (std::size_t i = 0; i < pages.size(); ++i) pages[i] = static_cast<std::uint8_t>(i * i >> 5);
  const LoggedPage logged[] = {{7, pages.data(), pages.data() + 4096},
                               {33, nullptr, pages.data() + 8192}};
  const LogRecord::Head begun{0, 31, 32, 33, 34, 0, 35, 0};
  const Bytes record = LogRecord::encode(begun, logged, 4096);
  EXPECT_EQ(sum(record), 0x8860f3d49f8094c9u);
  const auto head = LogRecord::decodeHead(record, 4096).value();
  EXPECT_EQ(std::tuple(head.pages, head.generation, head.number, head.pageCountBefore,
                       head.pageCountAfter, head.size, head.companion),
            std::tuple(2u, 31u, 32u, 33u, 34u, record.size(), 35u));
  ASSERT_EQ(LogRecord::decode(record, head, 4096)->at(1).number, 33u);
  EXPECT_FALSE(LogRecord::decodeHead(record, 2048));
  EXPECT_FALSE(LogRecord::decodeHead(std::span(record).first(LogRecord::kHeadSize - 1), 4096));
  EXPECT_FALSE(LogRecord::decode(std::span(record).first(record.size() - 1), head, 4096));
  for (std::size_t at = 0; at < record.size(); at += at < 100 ? 1 : 501) {
    Bytes wrong = record;
    wrong[at] ^= 1;
    const auto found = LogRecord::decodeHead(wrong, 4096);
    EXPECT_FALSE(found && LogRecord::decode(wrong, *found, 4096)) << at;
  }
}

/// On the real disk.
class LogBeside : public testing::Test {
 protected:
  LogBeside() { make(path_); }

  static void make(const std::string& path) {
    createTable(*createDatabase(path),
                {.name = "Pane",
                 .columns = {{"id", ColumnType::longInteger}, {"name", ColumnType::text, 50}}});
  }
  static void insert(Database& database, int id) {
    database.table("Pane")->insert(std::vector<Value>{id, "pane"});
  }
  static std::uint32_t rowsOf(const std::string& path) {
    return Database::open(path, "")->table("Pane")->rowCount();
  }

  test::TemporaryFolder folder_;
  std::string path_ = folder_ / "panes.mdb";
  std::string log_ = path_ + "-log";
};

TEST_F(LogBeside, WhatIsNoLogOfOursIsRefusedAndKept) {
  const std::string victim = folder_ / "letter.txt";
  std::ofstream(victim) << "dear colleague";
  fs::copy_file(victim, log_);
  EXPECT_THAT(refusalOf([&] { Database::open(path_, ""); }), HasSubstr(log_ + "-1"));
  EXPECT_EQ(test::readFile(log_ + "-1"), "dear colleague");
  insert(*Database::open(path_, ""), 1);
  EXPECT_EQ(rowsOf(path_), 1U);
}

TEST_F(LogBeside, ADatabaseWithTwoNamesIsReadAndNotWritten) {
  fs::create_hard_link(path_, folder_ / "other.mdb");
  const std::string before = test::readFile(path_);
  EXPECT_EQ(rowsOf(folder_ / "other.mdb"), 0U);
  {
    const auto database = Database::open(path_, "");
    const std::string reason = database->pager().whyReadOnly();
    EXPECT_THAT(reason, HasSubstr("'" + path_ + "' has 2 names (hard links)"));
    EXPECT_EQ(refusalOf([&] { insert(*database, 1); }), reason);
    EXPECT_FALSE(fs::exists(log_));
  }
  EXPECT_EQ(test::readFile(path_), before);
  fs::remove(folder_ / "other.mdb");
  insert(*Database::open(path_, ""), 1);
  EXPECT_EQ(rowsOf(path_), 1U);
}

TEST_F(LogBeside, ThroughASymbolicLinkStandsBesideTheRealFile) {
  fs::create_directory(folder_ / "elsewhere");
  const std::string link = folder_ / "elsewhere/link.mdb";
  fs::create_symlink(path_, link);
  const auto database = Database::open(link, "");
  insert(*database, 1);
  EXPECT_TRUE(fs::exists(log_));
  EXPECT_FALSE(fs::exists(link + "-log"));
}

TEST_F(LogBeside, AFileThatIsDeletedOrReplacedIsNoticedAtTheNextStep) {
  const std::string other = folder_ / "other.mdb";
  make(other);
  insert(*Database::open(other, ""), 7);
  const std::string content = test::readFile(other);
  {
    const auto database = Database::open(path_, "");
    insert(*database, 1);
    fs::rename(other, path_);
    for (int i = 0; i < 2; ++i) {
      EXPECT_THAT(refusalOf([&] { insert(*database, 2); }), HasSubstr("replaced"));
      EXPECT_THAT(refusalOf([&] { database->table("Pane")->rowCount(); }), HasSubstr("replaced"));
    }
    fs::remove(path_);
    EXPECT_THAT(refusalOf([&] { insert(*database, 2); }), HasSubstr("deleted"));
    std::ofstream(path_, std::ios::binary) << content;
    EXPECT_THAT(refusalOf([&] { Database::open(path_, ""); }), HasSubstr(log_ + "-1"));
    insert(*Database::open(path_, ""), 3);
  }
  EXPECT_EQ(rowsOf(path_), 2U);
  EXPECT_FALSE(fs::exists(log_));
}

/// Another program that knows no locks changes a row.
TEST_F(LogBeside, WhatAnotherProgramChangedIsRead) {
  const auto database = Database::open(path_, "");
  insert(*database, 1);
  const auto table = database->table("Pane");
  TableScan scan = table->scan();
  ASSERT_TRUE(scan.next());
  const auto name = [&] { return table->row(scan.rowId())->value(table->definition().columns[1]); };
  EXPECT_EQ(name(), Value("pane"));
  const std::size_t at = test::readFile(path_).find("\xff\xfepane");
  ASSERT_NE(at, std::string::npos);
  const std::uint8_t letter = 'l';
  FileSystem::system().open(path_, FileSystem::Open::existing)->write(at + 2, &letter, 1);
  EXPECT_EQ(name(), Value("lane"));
}

/// Another program that knows no locks changes pages and leaves the file's time as it was, or only
/// the time, or makes the file longer.
TEST_F(LogBeside, AFileThatAnotherProgramChangedUnseenIsNotWrittenOver) {
  const auto database = Database::open(path_, "");
  insert(*database, 1);
  const auto table = database->table("Pane");
  for (const std::string what : {"pages", "time", "size"}) {
    Transaction transaction(database->pager());
    table->insert(std::vector<Value>{2, "pane"});
    const fs::file_time_type time = fs::last_write_time(path_);
    std::string content = test::readFile(path_);
    for (std::size_t at = 4000; what == "pages" && at < content.size(); at += 4096) {
      content[at] = static_cast<char>(content[at] ^ 0x20);
    }
    if (what == "size") content.resize(content.size() + 4096);
    std::fstream(path_, std::ios::binary | std::ios::in | std::ios::out) << content;
    fs::last_write_time(path_, what == "time" ? time + std::chrono::seconds(1) : time);
    EXPECT_THAT(refusalOf([&] { transaction.commit(); }), HasSubstr("another program")) << what;
    EXPECT_EQ(test::readFile(path_), content);
  }
}

TEST_F(LogBeside, ANewDatabaseNeverReplacesAFileNorTakesAnOldLog) {
  const std::string fresh = folder_ / "fresh.mdb";
  std::ofstream(fresh + "-log") << "of a database that was here";
  EXPECT_NE(refusalOf([&] { createDatabase(path_); }), "");
  make(fresh);
  EXPECT_EQ(rowsOf(fresh), 0U);
  // Another makes one of the same name meanwhile.
  const std::string raced = folder_ / "raced.mdb";
  EXPECT_NE(refusalOf([&] {
              createDatabase(raced, [&](const auto&) { std::ofstream(raced) << "of the other"; });
            }),
            "");
  EXPECT_EQ(test::readFile(raced), "of the other");
  EXPECT_EQ(test::readFile(fresh + "-log-1"), "of a database that was here");
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_.path()), {}), 4);
}

}  // namespace
}  // namespace orv::store::jet
