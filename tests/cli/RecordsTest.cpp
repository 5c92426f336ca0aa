// Records that are there, files that are not as they should be, and the choice of records.
#include <fmt/format.h>

#include <fstream>

#include "cli/CliTest.h"
#include "store/jet/catalog/Database.h"
#include "support/EncodedFile.h"

namespace orv::test {
namespace {

class RecordsTest : public CliTest {
 protected:
  static constexpr int kPoints = 300;

  /// A database with the panes 1 and 2, whose spectra have many points.
  void makeLargeDatabase() {
    orv("new db.mdb");
    for (const char* name : {"a.txt", "b.txt"}) {
      std::string text = paneText(name);
      for (int i = 0; i < kPoints; ++i) text += fmt::format("{} 0.5 0.25 0.125\n", 3 + i * 0.001);
      folder.write(name, text);
    }
    ASSERT_EQ(orv("copy a.txt b.txt db.mdb --group Demo").exit, 0);
  }

  /// Spoils the root page of every index of a table.
  void damageIndexes(const std::string& table) {
    const std::string path = (folder.path() / "db.mdb").string();
    std::vector<store::jet::PageNumber> pages;
    {
      const auto database = store::jet::Database::open(path, "");
      for (const auto& index : database->table(table)->definition().realIndexes) {
        pages.push_back(index.root);
      }
    }
    constexpr std::streamoff kPageSize = 4096;
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    for (const auto page : pages) {
      file.seekp(static_cast<std::streamoff>(page) * kPageSize);
      file.write("\x07\x07", 2);
    }
    ASSERT_FALSE(pages.empty());
  }

  static int linesWith(const std::string& text, const std::string& part) {
    int count = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
    return count;
  }
};

TEST_F(RecordsTest, ADamagedIndexDoesNotHideRecords) {
  makeLargeDatabase();
  const std::string before = orv("show db.mdb 2 --spectrum --format tsv").out;
  const std::string ordered =
      "sql db.mdb \"SELECT PaneID, angle FROM Pane_spectral_data WHERE PaneID > 1 ORDER BY PaneID, "
      "angle\" --format tsv";
  const std::string rows = orv(ordered).out;
  damageIndexes("Pane_spectral_data");
  EXPECT_EQ(orv("check db.mdb").exit, 1);
  EXPECT_EQ(orv("compact db.mdb saved.mdb").exit, 3);
  const Ended repair = orv("compact db.mdb saved.mdb --repair");
  EXPECT_TRUE(repair.out.starts_with("Repaired db.mdb into saved.mdb, "))
      << repair.out << repair.err;
  EXPECT_TRUE(repair.out.ends_with(" kB: 15 tables, 749 rows, 23 indexes.\n")) << repair.out;
  EXPECT_EQ(orv("show saved.mdb 2 --spectrum --format tsv").out, before);
  const Ended show = orv("show db.mdb 2 --spectrum --format tsv");
  EXPECT_EQ(show.exit, 0) << show.err;
  EXPECT_EQ(show.out, before);
  EXPECT_EQ(linesWith(show.err, "orv: The table Pane_spectral_data of db.mdb has a damaged index"),
            1)
      << show.err;
  EXPECT_EQ(orv(ordered).out, rows);
  orv("new to.mdb");
  const Ended copy = orv("copy db.mdb to.mdb --group Demo");
  EXPECT_EQ(copy.out, "2 records copied.\n") << copy.err;
  EXPECT_EQ(linesWith(copy.err, "damaged index"), 1) << copy.err;
  EXPECT_EQ(orv("show to.mdb 2 --spectrum --format tsv").out, before);
  EXPECT_EQ(orv("sql to.mdb \"SELECT COUNT(*) AS n FROM Pane_spectral_data\" --format tsv").out,
            fmt::format("n\n{}\n", 2 * (kPoints + 3)));
}

TEST_F(RecordsTest, PipesAreNotWaitedForAndPasswordsAreAskedFor) {
  orv("new db.mdb");
  for (const char* arguments :
       {"list pipe", "sql pipe Pane", "check pipe", "copy pipe db.mdb --group G"}) {
    const Ended run =
        shell(std::string("[ -e pipe ] || mkfifo pipe; timeout 20 '" ORV_PROGRAM "' ") + arguments);
    EXPECT_EQ(run.exit, 3) << arguments;
    EXPECT_NE(run.err.find("is no file, but a pipe or a device."), std::string::npos) << run.err;
  }
  const Ended inside = orv("compact . new.mdb");
  EXPECT_EQ(inside.exit, 3);
  EXPECT_EQ(inside.err, "orv: \".\" is no file, but a folder.\n");
  { store::Connection::create((folder.path() / "secret.mdb").string()); }
  setPassword(folder.path() / "secret.mdb", "password");
  for (const char* verb : {"info", "list", "sql", "tables", "check"}) {
    const std::string call = std::string(verb) + " secret.mdb";
    const Ended none = orv(verb == std::string("sql") ? call + " --queries" : call);
    EXPECT_EQ(none.exit, 3) << verb;
    EXPECT_NE(none.err.find("needs a password: give it with --password-file"), std::string::npos)
        << none.err;
  }
  const Ended given = orv("list secret.mdb --password password");
  EXPECT_NE(given.err.find("is a database, but no ORV database"), std::string::npos) << given.err;
}

TEST_F(RecordsTest, TheStandardInputIsKeptForAsLongAsItIsRead) {
  makeDatabase();
  std::string filmed = paneText("Filmed");
  filmed += "{ Substrate Filename: nowhere.txt }\n";
  folder.write("filmed.txt", filmed);
  const Ended missing = shell("orv copy - db.mdb --name f.txt --group Demo <filmed.txt");
  EXPECT_NE(missing.err.find("'nowhere.txt' in the folder '.'"), std::string::npos) << missing.err;

  setPassword(folder.path() / "db.mdb", "Sesame 7");
  EXPECT_EQ(shell("echo 'Sesame 7' | orv info db.mdb --password-file -").exit, 0);
  EXPECT_EQ(shell("echo 'Sesame 8' | orv info db.mdb --password-file -").exit, 3);
  for (int i = 0; i < kPoints * 10; ++i)
    filmed += fmt::format("{} 0.5 0.25 0.125\n", 3 + i * 0.001);
  folder.write("long.txt", filmed);
  const Ended unread = shell(
      "TMPDIR=$PWD; export TMPDIR; orv list - <a.txt; "
      "(sleep 0.1; orv show - --spectrum <long.txt; echo $? >ended) | true; cat ended; ls -d "
      "orv-*");
  EXPECT_NE(unread.out.find("\n141\n"), std::string::npos) << unread.out << unread.err;
  EXPECT_EQ(unread.exit, 2) << "nothing is left behind: " << unread.out;
}

}  // namespace
}  // namespace orv::test
