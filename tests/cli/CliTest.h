// The program as users run it, without a terminal.
#pragma once

#include <sys/wait.h>

#include <cstdlib>
#include <string>

#include "commands/CommandsTest.h"

namespace orv::test {

struct Ended {
  int exit = -1;
  std::string out;
  std::string err;
};

class CliTest : public ::testing::Test {
 protected:
  /// Runs `orv` with these arguments, as a shell takes them, in the test's folder.
  Ended orv(const std::string& arguments) { return shell("orv " + arguments); }

  /// Runs a line of the shell in the test's folder, where `orv` is the program.
  Ended shell(const std::string& line) {
    const std::string command = "cd '" + folder.path().string() +
                                "' && { PATH='" ORV_PROGRAM_FOLDER "':$PATH; " + line +
                                "; } >.stdout 2>.stderr </dev/null";
    const int status = std::system(command.c_str());
    return {WEXITSTATUS(status), folder.read(".stdout"), folder.read(".stderr")};
  }

  /// A database with the panes a.txt and b.txt in the group Demo.
  void makeDatabase() {
    folder.write("a.txt", paneText("Alpha"));
    folder.write("b.txt", paneText("Beta"));
    ASSERT_EQ(orv("new db.mdb").exit, 0);
    ASSERT_EQ(orv("copy a.txt b.txt db.mdb --group Demo").exit, 0);
  }

  Folder folder;
};

}  // namespace orv::test
