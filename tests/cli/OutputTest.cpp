#include <unistd.h>

#include "cli/CliTest.h"

namespace orv::test {
namespace {

/// A result that nobody can read is no success.
TEST_F(CliTest, OutputThatCannotBeWrittenIsAFailure) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "this system has no /dev/full";
  makeDatabase();
  for (const char* arguments :
       {"--help", "--version", "list --help", "info db.mdb", "list db.mdb", "show db.mdb 1",
        "sql db.mdb Pane --format json", "check db.mdb --format tsv", "export db.mdb 1 --to out"}) {
    for (const char* output : {" >/dev/full", " >&-"}) {
      const Ended run = orv(std::string(arguments) + output);
      EXPECT_EQ(run.exit, 3) << arguments << output;
      EXPECT_NE(run.err.find("orv: The standard output could not be written"), std::string::npos)
          << arguments << output << run.err;
    }
  }
  EXPECT_EQ(orv("copy a.txt db.mdb --group Other <&- >&-").exit, 3) << "the file is no output";
  EXPECT_EQ(orv("check db.mdb").exit, 0);
  EXPECT_EQ(orv("sql db.mdb \"SELECT PaneID FROM Pane\" --format tsv").out, "PaneID\n1\n2\n3\n");
}

TEST_F(CliTest, AReaderThatWantsNoMoreIsNoFailure) {
  makeDatabase();
  const Ended run = shell(
      "(orv sql db.mdb \"SELECT a.*, b.*, c.* FROM Pane_spectral_data a, Pane_spectral_data b, "
      "Pane_spectral_data c, Pane_spectral_data d\" --format json; echo $? >exit) | head -1");
  EXPECT_EQ(run.out, "[\n");
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(folder.read("exit"), "141\n");
}

}  // namespace
}  // namespace orv::test
