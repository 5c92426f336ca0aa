// What the program does to files when it is ended, has no room, or is not alone with a file.
#include <fcntl.h>
#include <signal.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "cli/CliTest.h"

namespace orv::test {
namespace {

namespace fs = std::filesystem;

class SafetyTest : public CliTest {
 protected:
  void writePanes(int count) {
    fs::create_directory(folder.path() / "panes");
    for (int i = 0; i < count; ++i) {
      folder.write("panes/p" + std::to_string(i) + ".txt", paneText("Pane " + std::to_string(i)));
    }
  }

  pid_t start(const std::string& arguments) {
    const pid_t child = fork();
    if (child == 0) {
      // Tests that run in the background, or without a terminal, may ignore these.
      for (const int number : {SIGINT, SIGHUP}) ::signal(number, SIG_DFL);
      // Slower than the test, also on a busy machine: it is not to end before its signal.
      const std::string line = "cd '" + folder.path().string() +
                               "' && exec nice -n 19 '" ORV_PROGRAM "' " + arguments +
                               " >.stdout 2>.stderr </dev/null";
      execl("/bin/sh", "sh", "-c", line.c_str(), nullptr);
      _exit(127);
    }
    return child;
  }

  /// Starts a copy of the folder `panes`, and sends it a signal once it is at work.
  Ended interruptedCopy(int signal) {
    const pid_t child = start("copy panes db.mdb --group Demo --no-integrate");
    const auto size = fs::file_size(folder.path() / "db.mdb");
    while (fs::file_size(folder.path() / "db.mdb") < size + 20000 && kill(child, 0) == 0) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    kill(child, signal);
    int status = 0;
    waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, folder.read(".stdout"),
            folder.read(".stderr")};
  }

  /// Number of panes in the database, each of which must be whole.
  int wholePanes() {
    const auto dc = store::Connection::openFile(folder / "db.mdb");
    const auto panes = dc->table("Pane").rowCount;
    EXPECT_EQ(dc->table("Pane_integrated_data").rowCount, panes);
    EXPECT_EQ(dc->table("Pane_spectral_data").rowCount, 3 * panes);
    return static_cast<int>(panes);
  }

  static std::string copied(int count) {
    return std::to_string(count) + (count == 1 ? " record" : " records") + " copied";
  }
};

TEST_F(SafetyTest, ACopyThatIsAskedToEndFinishesTheRecordUnderWayAndSaysHowManyAreThere) {
  writePanes(200);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGKILL}) {
    SCOPED_TRACE(signal);
    fs::remove(folder.path() / "db.mdb");
    orv("new db.mdb");
    const Ended run = interruptedCopy(signal);
    const int panes = wholePanes();
    EXPECT_TRUE(panes > 0 || signal == SIGKILL);
    EXPECT_LT(panes, 200);
    EXPECT_EQ(run.exit, signal == SIGKILL ? -1 : 1);
    EXPECT_EQ(run.out, signal == SIGKILL ? "" : copied(panes) + ", then cancelled.\n") << run.err;
    EXPECT_EQ(orv("check db.mdb").exit, 0);
  }
  orv("copy panes db.mdb --group Demo --no-integrate");
  EXPECT_EQ(wholePanes(), 200) << "the same copy does the rest";
}

TEST_F(SafetyTest, ACompactionThatIsAskedTwiceToEndLeavesNoFileBehind) {
  writePanes(200);
  orv("new db.mdb");
  orv("copy panes db.mdb --group Demo --no-integrate --quiet");
  const auto isBegun = [&] {
    return std::ranges::any_of(fs::directory_iterator(folder.path()), [](const auto& entry) {
      return entry.path().filename().string().starts_with("small.mdb-new-");
    });
  };
  const pid_t child = start("compact db.mdb small.mdb");
  int status = 0;
  while (!isBegun()) ASSERT_EQ(waitpid(child, &status, WNOHANG), 0) << "it has ended";
  kill(child, SIGINT);
  std::this_thread::sleep_for(std::chrono::microseconds(200));
  kill(child, SIGTERM);
  waitpid(child, &status, 0);
  EXPECT_FALSE(isBegun());
  const bool isDone = WIFEXITED(status) && WEXITSTATUS(status) == 0;  // on a machine that is busy
  EXPECT_EQ(fs::exists(folder.path() / "small.mdb"), isDone);
}

/// A limit for the size of files has the same effect as a full disk.
TEST_F(SafetyTest, ACopyWithoutRoomLeavesNoPartOfAPane) {
  writePanes(90);
  orv("new db.mdb");
  const Ended full =
      shell("trap '' XFSZ; ulimit -f 2500; orv copy panes db.mdb --group Demo --no-integrate");
  EXPECT_EQ(full.exit, 1);
  const int panes = wholePanes();
  EXPECT_GT(panes, 0);
  EXPECT_LT(panes, 90);
  EXPECT_EQ(full.out, copied(panes) + ", " + std::to_string(90 - panes) + " failed.\n");
  EXPECT_NE(full.err.find("db.mdb"), std::string::npos) << full.err;
  EXPECT_EQ(orv("check db.mdb").exit, 0);
  orv("copy panes db.mdb --group Demo --no-integrate");
  EXPECT_EQ(wholePanes(), 90);
}

TEST_F(SafetyTest, ADatabaseThatAccessHoldsIsNotChanged) {
  makeDatabase();
  folder.write("DB.LDB", std::string(64, ' '));
  fs::last_write_time(folder.path() / "DB.LDB",
                      fs::file_time_type::clock::now() - std::chrono::hours(30));
  const int held = open((folder / "DB.LDB").c_str(), O_RDWR);
  struct flock lock {};
  lock.l_type = F_RDLCK;
  lock.l_start = 0x10000001;
  lock.l_len = 1;
  ASSERT_EQ(fcntl(held, F_SETLK, &lock), 0);
  const Ended inUse = orv("delete db.mdb 1 --yes");
  EXPECT_EQ(inUse.exit, 2);
  EXPECT_NE(inUse.err.find("which another program holds"), std::string::npos) << inUse.err;
  close(held);
  EXPECT_EQ(orv("delete db.mdb 1 --yes").exit, 0);
}

}  // namespace
}  // namespace orv::test
