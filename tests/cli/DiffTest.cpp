// The verb `diff`, and `copy --changed`, which acts on what it tells.
#include "cli/CliTest.h"

namespace orv::test {
namespace {

class DiffTest : public CliTest {
 protected:
  const std::string kHeadings = "state\tset\tid_a\tid_b\tname\tangle\tfield\ta\tb\n";

  /// The database, and one in which b.txt is another and c.txt has come, but a.txt is gone.
  void makeTwo() {
    makeDatabase();
    ASSERT_EQ(shell("cp db.mdb other.mdb").exit, 0);
    folder.write("b.txt", paneText("Better"));
    folder.write("c.txt", paneText("Gamma"));
    ASSERT_EQ(orv("copy b.txt c.txt other.mdb --group Demo --replace").exit, 0);
    ASSERT_EQ(orv("delete other.mdb 1 --yes").exit, 0);
  }
};

TEST_F(DiffTest, ExitsByWhatDiffersAndIsSilentWhereNothingDoes) {
  makeTwo();
  const Ended same = orv("diff db.mdb db.mdb --format json");
  EXPECT_EQ(same.exit, 0);
  EXPECT_EQ(same.out, "");
  EXPECT_EQ(same.err, "orv: 2 records are the same, 0 added, 0 removed, 0 changed.\n");
  const Ended different = orv("diff db.mdb other.mdb --format tsv --quiet");
  EXPECT_EQ(different.exit, 1);
  EXPECT_EQ(different.out, kHeadings +
                               "removed\tpanes\t1\t\ta.txt\t\t\t\t\n"
                               "changed\tpanes\t2\t2\tb.txt\t\tproduct name\tBeta\tBetter\n"
                               "added\tpanes\t\t3\tc.txt\t\t\t\t\n");
  EXPECT_EQ(different.err, "");
  EXPECT_EQ(orv("diff b.txt other.mdb --match filename --fields thickness").exit, 1);
  EXPECT_EQ(orv("diff - c.txt --name c.txt --fields thickness,spectrum < b.txt").exit, 0);

  const std::string begins = "{ Description: " + std::string(70, 'x');
  folder.write("b.txt", begins + "y }\n" + paneText());
  folder.write("new.txt", begins + "z }\n" + paneText());
  const Ended texts = orv("diff b.txt - --name b.txt < new.txt");
  EXPECT_NE(texts.out.find("description  …xxxxxxxxxxxxxxxy  …xxxxxxxxxxxxxxxz\n"),
            std::string::npos)
      << texts.out;
  folder.write("bad.txt", "no pane");
  const Ended unreadable = orv("diff b.txt bad.txt");
  EXPECT_EQ(unreadable.exit, 3);
  EXPECT_NE(unreadable.err.find("bad.txt cannot be read"), std::string::npos) << unreadable.err;
  EXPECT_EQ(orv("diff db.mdb nowhere.mdb").exit, 3);
  EXPECT_EQ(orv("diff db.mdb").exit, 2);
  EXPECT_EQ(orv("diff db.mdb b.txt --set frames").exit, 2);
  EXPECT_EQ(orv("diff db.mdb b.txt --fields speed").exit, 2);
  EXPECT_EQ(orv("diff db.mdb b.txt --fields thickness --ignore thickness").exit, 2);
  EXPECT_EQ(orv("diff db.mdb b.txt --tolerance -1").exit, 2);
}

TEST_F(DiffTest, EditsAreToldAndNothingIsWhenTheyAreUndone) {
  makeDatabase();
  ASSERT_EQ(shell("cp db.mdb other.mdb").exit, 0);
  ASSERT_EQ(orv("edit other.mdb 1 thickness=4.5 supplier=Acme description=mended --yes").exit, 0);
  ASSERT_EQ(orv("delete other.mdb 2 --yes").exit, 0);
  EXPECT_EQ(orv("diff db.mdb other.mdb --format tsv --quiet").out,
            kHeadings +
                "changed\tpanes\t1\t1\ta.txt\t\tsupplier\tUnknown\tAcme\n"
                "changed\tpanes\t1\t1\ta.txt\t\tthickness\t3\t4.5\n"
                "changed\tpanes\t1\t1\ta.txt\t\tdescription\t\tmended\n"
                "removed\tpanes\t2\t\tb.txt\t\t\t\t\n");
  EXPECT_EQ(orv("check other.mdb").exit, 0);
  ASSERT_EQ(orv("undo other.mdb 2").exit, 0);
  const Ended undone = orv("diff db.mdb other.mdb");
  EXPECT_EQ(undone.exit, 0) << undone.out;
  EXPECT_EQ(undone.out, "");
  EXPECT_EQ(orv("check other.mdb").exit, 0);
}

TEST_F(DiffTest, WhatChangedIsCopiedWithItsKeysAndGroups) {
  makeTwo();
  ASSERT_EQ(orv("copy c.txt other.mdb --group Second").exit, 0);
  const Ended shown = orv("copy other.mdb db.mdb --changed --dry-run");
  EXPECT_EQ(shown.exit, 1) << shown.err;
  EXPECT_EQ(shown.out,
            "state    set    id_a  id_b  name   angle  field         a       b\n"
            "-------  -----  ----  ----  -----  -----  ------------  ------  ----\n"
            "changed  panes     2     2  b.txt         product name  Better  Beta\n"
            "added    panes     3        c.txt\n"
            "added    panes     4        c.txt\n");
  EXPECT_EQ(orv("copy other.mdb db.mdb --changed --dry-run --quiet --format tsv").out,
            kHeadings +
                "changed\tpanes\t2\t2\tb.txt\t\tproduct name\tBetter\tBeta\n"
                "added\tpanes\t3\t\tc.txt\t\t\t\t\n"
                "added\tpanes\t4\t\tc.txt\t\t\t\t\n");
  const Ended clash = orv("copy other.mdb db.mdb --changed --dry-run --group New");
  EXPECT_NE(clash.err.find("a group has one: c.txt.\n"), std::string::npos) << clash.err;
  const Ended unasked = orv("copy other.mdb db.mdb --changed");
  EXPECT_EQ(unasked.exit, 2);
  EXPECT_NE(unasked.err.find("--yes"), std::string::npos) << unasked.err;

  EXPECT_NE(orv("copy other.mdb db.mdb --changed --only changed --yes")
                .out.find("0 records copied, 1 replaced.\n"),
            std::string::npos);
  EXPECT_EQ(orv("diff db.mdb other.mdb --quiet --format tsv").out,
            kHeadings +
                "removed\tpanes\t1\t\ta.txt\t\t\t\t\n"
                "added\tpanes\t\t3\tc.txt\t\t\t\t\n"
                "added\tpanes\t\t4\tc.txt\t\t\t\t\n");
  EXPECT_EQ(orv("copy other.mdb db.mdb --changed --yes --quiet").exit, 0);
  EXPECT_EQ(orv("list db.mdb --format tsv").out,
            "id\tname\tproduct\tgroup\tsupplier\n1\ta.txt\tAlpha\tDemo\tUnknown\n"
            "2\tb.txt\tBetter\tDemo\tUnknown\n3\tc.txt\tGamma\tDemo\tUnknown\n"
            "4\tc.txt\tGamma\tSecond\tUnknown\n");
  EXPECT_EQ(orv("copy other.mdb db.mdb --changed --yes").out, "There is nothing to copy.\n");
  EXPECT_EQ(orv("undo db.mdb").exit, 0);
  EXPECT_EQ(orv("list db.mdb").out.find("c.txt"), std::string::npos) << "both at once";
  EXPECT_EQ(orv("check db.mdb").exit, 0);

  // Of files, which have no groups, those that are there stay in theirs.
  folder.write("b.txt", paneText("Best"));
  EXPECT_EQ(orv("copy b.txt db.mdb --changed --yes --quiet").exit, 0);
  EXPECT_EQ(orv("diff b.txt db.mdb --fields 'product name' --format tsv --quiet").out.find("chang"),
            std::string::npos);
  EXPECT_EQ(orv("copy b.txt db.mdb --changed --yes --group New --quiet").exit, 0);
  EXPECT_NE(orv("list db.mdb").out.find("New"), std::string::npos);
  folder.write("d.txt", paneText("Delta"));
  EXPECT_EQ(orv("copy d.txt db.mdb --changed --yes").exit, 2);
  // Names that the database takes for the same are one record: none is added over another.
  folder.write("Straße.txt", paneText("Old"));
  ASSERT_EQ(orv("copy Straße.txt db.mdb --group Demo").exit, 0);
  folder.write("STRASSE.TXT", paneText("New"));
  const Ended street = orv("copy STRASSE.TXT db.mdb --changed --dry-run");
  EXPECT_NE(street.out.find("changed  panes"), std::string::npos) << street.out;
  EXPECT_NE(orv("copy STRASSE.TXT db.mdb --changed --only added --yes").out.find("nothing to copy"),
            std::string::npos);
  EXPECT_EQ(orv("copy b.txt db.mdb --dry-run --group Demo").exit, 2);
  EXPECT_EQ(orv("copy b.txt other.mdb --changed --replace --group Demo").exit, 2);
}

}  // namespace
}  // namespace orv::test
