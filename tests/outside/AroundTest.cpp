// What people and other programs do to a database, and to the files that stand beside it while it
// is being changed.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "outside/FileCall.h"
#include "outside/Work.h"
#include "support/ReadFile.h"

namespace orv::test {
namespace {

namespace fs = std::filesystem;

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

  TemporaryFolder folder_;
};

/// A log of another database, whole and sound, comes to stand beside this one.
TEST_F(Around, TheLogOfAnotherDatabaseIsNotApplied) {
  ASSERT_EQ(run(copyTo(kDatabase)).exit, 0);
  const std::string content = readFile(database());
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
    EXPECT_TRUE(readFile(database()) == content);
    EXPECT_EQ(run(orv({"check", kDatabase})).exit, 0);
    for (const fs::path& file : besides(folder_.path())) fs::remove(file);
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
        EXPECT_EQ(readFile(victim), "work of years");
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
      const std::string content = fate != Fate::deleted ? readFile(folder / kDatabase) : "";
      program.signal(SIGCONT);
      const Ended ended = program.end();
      EXPECT_GT(ended.exit, 0) << ended.out;
      EXPECT_NE(ended.err.find(kDatabase), std::string::npos) << ended.err;
      EXPECT_LT(reportedBy(ended.out), 5U) << "All is reported as done.";
      if (fate == Fate::deleted) continue;
      EXPECT_TRUE(readFile(folder / kDatabase) == content) << "The new file was changed.";
      test::run(orv({"list", kDatabase}), {.folder = folder.path()});
      EXPECT_EQ(test::run(orv({"check", kDatabase}), {.folder = folder.path()}).exit, 0);
      EXPECT_TRUE(readFile(folder / kDatabase) == content) << "The new file was changed.";
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

}  // namespace
}  // namespace orv::test
