// What people and other programs do to a database, and to the files that stand beside it while it
// is being changed.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <fstream>
#include <iterator>

#include "outside/FileCall.h"
#include "outside/Work.h"

namespace orv::test {
namespace {

namespace fs = std::filesystem;

std::string bytesOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void write(const fs::path& file, const std::string& bytes) {
  std::ofstream(file, std::ios::binary) << bytes;
}

/// The files of a folder but the database.
std::vector<fs::path> besides(const fs::path& folder) {
  std::vector<fs::path> files;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    if (entry.path().filename() != kDatabase) files.push_back(entry.path());
  }
  return files;
}

Command copyTo(const std::string& database, const std::string& group = "Tried") {
  return orv({"copy", (sourceFolder() / "panes").string(), database, "--group", group});
}

class Around : public testing::Test {
 protected:
  Around() { prepareDatabase(folder_.path()); }

  Ended run(const Command& command, const Plan& plan = {}) {
    return test::run(command, {.folder = folder_.path(), .plan = plan});
  }
  fs::path database() const { return folder_.path() / kDatabase; }

  /// Some calls of a copy, from its first quarter to its end; of each the folder after a kill.
  static const Rehearsal& rehearsal() {
    static const Rehearsal instance(workNamed("copyOfTexts"));
    return instance;
  }
  static std::vector<std::uint64_t> someCalls(std::uint64_t count) {
    std::vector<std::uint64_t> calls;
    for (const std::uint64_t call : sampled(rehearsal().calls(), count)) {
      if (call > rehearsal().calls() / 4) calls.push_back(call);
    }
    return calls;
  }

  void expectContent(const Content& expected) {
    EXPECT_EQ(run(orv({"check", kDatabase})).exit, 0);
    EXPECT_EQ(difference(expected, contentOf(database())), "");
  }

  TemporaryFolder folder_;
};

/// A backup of before other changes is put over the file whose last change was cut short.
TEST_F(Around, ABackupThatIsRestoredIsNotMixedWithALaterChange) {
  const TemporaryFolder backup;  // with other records than the file had when its log began
  fs::copy_file(database(), backup / kDatabase);
  mustRun(backup.path(), orv({"delete", kDatabase, "2", "--yes"}));
  const Content expected = contentOf(backup / kDatabase);
  int live = 0;
  for (const std::uint64_t call : someCalls(30)) {
    SCOPED_TRACE("killed before call " + std::to_string(call));
    const TemporaryFolder folder;
    const fs::path file = folder.path() / kDatabase;
    rehearsal().begin(folder.path());
    ASSERT_TRUE(rehearsal().disturbed(folder.path(), {kKillBefore, call}).killed);
    fs::copy_file(backup / kDatabase, file, fs::copy_options::overwrite_existing);
    const Ended first = test::run(orv({"list", kDatabase}), {.folder = folder.path()});
    EXPECT_TRUE(bytesOf(file) == bytesOf(backup / kDatabase)) << "The backup was changed.";
    if (first.exit != 0) {
      ++live;
      EXPECT_NE(first.err.find(file.string()), std::string::npos) << first.err;
      EXPECT_NE(first.err.find("check"), std::string::npos) << first.err;
      EXPECT_FALSE(besides(folder.path()).empty()) << "The log is gone.";
    }
    EXPECT_EQ(test::run(orv({"check", kDatabase}), {.folder = folder.path()}).exit, 0);
    EXPECT_EQ(difference(expected, contentOf(file)), "");
    EXPECT_EQ(test::run(copyTo(kDatabase), {.folder = folder.path()}).exit, 0);
    EXPECT_EQ(recordCount(contentOf(file)), 6U);
  }
  EXPECT_GT(live, 0) << "No log was noticed that was not that of the backup.";
}

/// A log of another database, whole and sound, comes to stand beside this one.
TEST_F(Around, TheLogOfAnotherDatabaseIsNotApplied) {
  ASSERT_EQ(run(copyTo(kDatabase)).exit, 0);
  const std::string content = bytesOf(database());
  for (const std::uint64_t call : someCalls(10)) {
    SCOPED_TRACE("killed before call " + std::to_string(call));
    const TemporaryFolder other;
    ASSERT_EQ(test::run(orv({"new", kDatabase}), {.folder = other.path()}).exit, 0);
    if (!test::run(copyTo(kDatabase), {.folder = other.path(), .plan = {kKillBefore, call}})
             .killed) {
      continue;
    }
    for (const fs::path& file : besides(other.path())) {
      fs::copy_file(file, folder_.path() / file.filename(), fs::copy_options::overwrite_existing);
    }
    run(orv({"list", kDatabase}));
    EXPECT_TRUE(bytesOf(database()) == content);
    EXPECT_EQ(run(orv({"check", kDatabase})).exit, 0);
    for (const fs::path& file : besides(folder_.path())) fs::remove(file);
  }
}

/// What stands beside a database is garbage, or a log with a number that somebody made up.
TEST_F(Around, AForgedLogDoesNoHarm) {
  const std::uint64_t call = rehearsal().calls() / 2;
  const TemporaryFolder left;
  rehearsal().begin(left.path());
  ASSERT_TRUE(rehearsal().disturbed(left.path(), {kKillBefore, call}).killed);
  const std::vector<fs::path> files = besides(left.path());
  ASSERT_EQ(files.size(), 1U);
  const std::string log = bytesOf(files[0]);
  std::vector<std::string> forged = {"", "garbage", std::string(5000, '\0'),
                                     std::string(5000, '\xff'), log.substr(0, log.size() / 2)};
  for (std::size_t at = 0; at < 64; at += isLongRun() ? 4 : 16) {
    for (const char byte : {'\0', '\xff'}) {
      for (const std::size_t base : {0, 512, 1024}) {
        forged.push_back(log);
        forged.back().replace(base + at, 4, 4, byte);
      }
    }
  }
  for (std::size_t i = 0; i < forged.size(); ++i) {
    SCOPED_TRACE("forged log " + std::to_string(i));
    const TemporaryFolder folder;
    fs::copy(left.path(), folder.path());
    write(folder.path() / files[0].filename(), forged[i]);
    const std::uintmax_t size = fs::file_size(folder.path() / kDatabase);
    const Ended first = test::run(orv({"list", kDatabase}), {.folder = folder.path()});
    EXPECT_GE(first.exit, 0) << "It crashed.";
    const std::uintmax_t now = fs::file_size(folder.path() / kDatabase);
    EXPECT_GE(now, size);
    EXPECT_LE(now, size + log.size());
  }
}

/// The names of files that a command makes beside the database.
std::vector<std::string> namesMadeBy(const Work& work) {
  const Rehearsal rehearsal(work);
  std::vector<std::string> names;
  for (const Call& call : rehearsal.recording()) {
    if (call.kind == CallKind::create && call.name != kDatabase) names.push_back(call.name);
  }
  return names;
}

/// A link that somebody put where the program makes a file of its own.
TEST_F(Around, ALinkInThePlaceOfAFileOfOursIsNotFollowed) {
  for (const char* work : {"copyOfTexts", "newDatabase"}) {
    for (const std::string& name : namesMadeBy(workNamed(work))) {
      for (const bool isSymbolic : {true, false}) {
        SCOPED_TRACE(std::string(work) + ", a link " + name + (isSymbolic ? " (symbolic)" : ""));
        const TemporaryFolder folder;
        workNamed(work).prepare(folder.path());
        const std::string victim = folder / "victim";
        write(victim, "work of years");
        isSymbolic ? fs::create_symlink(victim, folder / name)
                   : fs::create_hard_link(victim, folder / name);
        const Ended ended = test::run(workNamed(work).command, {.folder = folder.path()});
        EXPECT_EQ(bytesOf(victim), "work of years");
        if (ended.exit != 0) {
          EXPECT_NE(ended.err.find(name), std::string::npos) << ended.err;
        }
        if (fs::exists(folder / kDatabase)) {
          fs::remove(folder / name);
          EXPECT_EQ(test::run(orv({"check", kDatabase}), {.folder = folder.path()}).exit, 0);
        }
      }
    }
  }
}

TEST_F(Around, ADatabaseWithTwoNamesIsReadAndNotChanged) {
  fs::create_hard_link(database(), folder_ / "second.mdb");
  const std::string content = bytesOf(database());
  for (const std::string name : {kDatabase, "second.mdb"}) {
    EXPECT_EQ(run(orv({"list", name})).exit, 0);
    const Ended ended = run(copyTo(name));
    EXPECT_NE(ended.exit, 0);
    EXPECT_NE(ended.err.find(name), std::string::npos) << ended.err;
    EXPECT_NE(ended.err.find("link"), std::string::npos) << ended.err;
  }
  EXPECT_TRUE(bytesOf(database()) == content);
  fs::remove(folder_ / "second.mdb");
  EXPECT_EQ(run(copyTo(kDatabase)).exit, 0);
}

/// It gets the second name when a change was cut short.
TEST_F(Around, NothingIsLostByASecondNameAfterACrash) {
  for (const std::uint64_t call : someCalls(8)) {
    SCOPED_TRACE("killed before call " + std::to_string(call));
    const TemporaryFolder folder;
    rehearsal().begin(folder.path());
    const Ended ended = rehearsal().disturbed(folder.path(), {kKillBefore, call});
    fs::create_hard_link(folder / kDatabase, folder / "second.mdb");
    EXPECT_NE(test::run(copyTo("second.mdb", "Other"), {.folder = folder.path()}).exit, 0);
    test::run(orv({"list", kDatabase}), {.folder = folder.path()});
    fs::remove(folder / "second.mdb");
    rehearsal().judge(folder.path(), reportedBy(ended.out + ended.err));
    rehearsal().complete(folder.path());
  }
}

TEST_F(Around, ALinkToADatabaseIsAsGoodAsTheDatabase) {
  fs::create_directory(folder_ / "links");
  fs::create_symlink(database(), folder_ / "links/link.mdb");
  const Ended ended = run(copyTo("links/link.mdb"), {kKillBefore, rehearsal().calls() / 2});
  ASSERT_TRUE(ended.killed);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_ / "links"), {}), 1)
      << "The log stands beside the link.";
  fs::remove_all(folder_ / "links");
  rehearsal().judge(folder_.path(), reportedBy(ended.out + ended.err));
  rehearsal().complete(folder_.path());
}

TEST_F(Around, APathWithASemicolonIsRefused) {
  const std::string path = std::string(kDatabase) + ";b.mdb";
  fs::copy_file(database(), folder_ / path);
  const std::string content = bytesOf(database());
  for (const Command& command :
       {orv({"list", path}), orv({"check", path}), orv({"info", path}), copyTo(path),
        orv({"delete", path, "1", "--yes"}), orv({"sql", path, "SELECT * FROM Pane"}),
        orv({"new", std::string(kDatabase) + ";c.mdb"}), orv({"export", path, "--to", "out"})}) {
    const Ended ended = run(command);
    EXPECT_NE(ended.exit, 0) << command.arguments[0];
    EXPECT_NE(ended.err.find(';'), std::string::npos) << command.arguments[0] << ": " << ended.err;
  }
  EXPECT_TRUE(bytesOf(database()) == content);
  EXPECT_TRUE(bytesOf(folder_ / path) == content);
}

enum class Fate { deleted, replaced, overwrittenByRename };

/// The database goes away under a copy that is under way.
TEST_F(Around, AFileThatIsGoneOrReplacedIsNoticed) {
  const std::uint64_t calls = rehearsal().calls();
  for (const Fate fate : {Fate::deleted, Fate::replaced, Fate::overwrittenByRename}) {
    for (std::uint64_t call = 1; call < calls * 3 / 4; call += isLongRun() ? 1 : calls / 8) {
      SCOPED_TRACE("fate " + std::to_string(static_cast<int>(fate)) + " at call " +
                   std::to_string(call) + " of " + std::to_string(calls));
      const TemporaryFolder folder;
      const TemporaryFolder elsewhere;
      prepareDatabase(folder.path());
      prepareDatabase(elsewhere.path());
      Program program(copyTo(kDatabase), {.folder = folder.path(), .plan = {kStopBefore, call}});
      ASSERT_TRUE(program.waitUntilStopped());
      if (fate != Fate::overwrittenByRename) fs::remove(folder / kDatabase);
      if (fate != Fate::deleted) fs::rename(elsewhere / kDatabase, folder / kDatabase);
      const std::string content = fate != Fate::deleted ? bytesOf(folder / kDatabase) : "";
      program.signal(SIGCONT);
      const Ended ended = program.end();
      EXPECT_GT(ended.exit, 0) << ended.out;
      EXPECT_NE(ended.err.find(kDatabase), std::string::npos) << ended.err;
      EXPECT_LT(reportedBy(ended.out), 5U) << "All is reported as done.";
      if (fate == Fate::deleted) continue;
      EXPECT_TRUE(bytesOf(folder / kDatabase) == content) << "The new file was changed.";
      test::run(orv({"list", kDatabase}), {.folder = folder.path()});
      EXPECT_EQ(test::run(orv({"check", kDatabase}), {.folder = folder.path()}).exit, 0);
      EXPECT_TRUE(bytesOf(folder / kDatabase) == content) << "The new file was changed.";
    }
  }
}

constexpr unsigned kGroup = 61234;
constexpr unsigned kOneUser = 61235;
constexpr unsigned kOtherUser = 61236;

/// A folder that a group shares: what one member leaves behind another can go on with.
TEST_F(Around, AMemberOfAGroupRecoversWhatAnotherLeft) {
  if (geteuid() != 0) GTEST_SKIP() << "only the administrator can run programs as others";
  const TemporaryFolder sources;  // that others may read
  fs::copy(sourceFolder() / "panes", sources / "panes");
  fs::permissions(sources.path(), fs::perms(0755));
  const Command copy = orv({"copy", sources / "panes", kDatabase, "--group", "Tried"});
  for (const std::uint64_t call : someCalls(8)) {
    SCOPED_TRACE("killed before call " + std::to_string(call));
    const TemporaryFolder folder;
    prepareDatabase(folder.path());
    ASSERT_EQ(chown(folder.path().c_str(), kOneUser, kGroup), 0);
    ASSERT_EQ(chown((folder / kDatabase).c_str(), kOneUser, kGroup), 0);
    ASSERT_EQ(chmod(folder.path().c_str(), 02770), 0);
    ASSERT_EQ(chmod((folder / kDatabase).c_str(), 0660), 0);
    const Ended ended = test::run(
        copy,
        {.folder = folder.path(), .plan = {kKillBefore, call}, .user = kOneUser, .group = kGroup});
    if (!ended.killed) GTEST_SKIP() << "the program cannot be run as another: " << ended.err;
    const Ended list = test::run(orv({"list", kDatabase}),
                                 {.folder = folder.path(), .user = kOtherUser, .group = kGroup});
    EXPECT_EQ(list.exit, 0) << list.err;
    const Ended again =
        test::run(copy, {.folder = folder.path(), .user = kOtherUser, .group = kGroup});
    EXPECT_GE(again.exit, 0);
    rehearsal().judge(folder.path(), reportedBy(ended.out + ended.err));
    EXPECT_EQ(difference(rehearsal().after(), contentOf(folder / kDatabase)), "") << again.err;
  }
}

/// One makes a database while another, slower, is at the same; a third, that was killed, may have
/// left a file half made.
TEST_F(Around, TwoThatMakeOneDatabaseDoNotReplaceEachOthers) {
  const Rehearsal making(workNamed("newDatabase"));
  for (const std::uint64_t call : sampled(making.calls(), 12)) {
    SCOPED_TRACE("the first stopped at call " + std::to_string(call));
    const TemporaryFolder folder;
    ASSERT_TRUE(making.disturbed(folder.path(), {kKillBefore, making.calls() / 2}).killed);
    Program first(orv({"new", kDatabase}), {.folder = folder.path(), .plan = {kStopBefore, call}});
    ASSERT_TRUE(first.waitUntilStopped());
    const Ended second = test::run(orv({"new", kDatabase}), {.folder = folder.path()});
    const bool filled =
        second.exit == 0 && test::run(copyTo(kDatabase), {.folder = folder.path()}).exit == 0;
    first.signal(SIGCONT);
    const Ended ended = first.end();
    EXPECT_EQ((ended.exit == 0) + (second.exit == 0), 1) << ended.err << second.err;
    if (ended.exit != 0) {
      EXPECT_NE(ended.err.find(kDatabase), std::string::npos) << ended.err;
    }
    EXPECT_EQ(test::run(orv({"check", kDatabase}), {.folder = folder.path()}).exit, 0);
    EXPECT_EQ(recordCount(contentOf(folder / kDatabase)), filled ? 5U : 0U);
  }
}

/// Ctrl-C ends a copy after the record under way.
TEST_F(Around, AnInterruptEndsAfterTheRecordUnderWay) {
  Program program(copyTo(kDatabase),
                  {.folder = folder_.path(), .plan = {kStopBefore, rehearsal().calls() / 2}});
  ASSERT_TRUE(program.waitUntilStopped());
  program.signal(SIGINT);
  program.signal(SIGCONT);
  const Ended ended = program.end();
  EXPECT_EQ(ended.exit, 1) << ended.err;
  const std::uint64_t done = rehearsal().judge(folder_.path(), 1);
  EXPECT_LT(done, 5U);
  EXPECT_EQ(reportedBy(ended.out), done) << ended.out;
  rehearsal().complete(folder_.path());
}

}  // namespace
}  // namespace orv::test
