#include "cli/CliTest.h"

namespace orv::test {
namespace {

using EditVerbTest = CliTest;

TEST_F(EditVerbTest, ShowsChangesMakesThemAllOrNoneAndTakesThemBack) {
  makeDatabase();
  const std::string before = orv("list db.mdb --columns name,thickness,SupplierName").out;
  const Ended dry = orv("edit db.mdb 1 2 'thickness = 4,5' supplier=Acme --dry-run --format tsv");
  EXPECT_EQ(dry.exit, 0) << dry.err;
  EXPECT_EQ(dry.out,
            "id\tname\tfield\told\tnew\n"
            "1\ta.txt\tthickness\t3\t4.5\n1\ta.txt\tsupplier\tUnknown\tAcme\n"
            "2\tb.txt\tthickness\t3\t4.5\n2\tb.txt\tsupplier\tUnknown\tAcme\n");
  EXPECT_NE(dry.err.find("former thickness: a.txt, b.txt."), std::string::npos) << dry.err;
  EXPECT_EQ(orv("edit db.mdb 1 thickness=4").exit, 2) << "nobody can be asked";
  const Ended wrong = orv("edit db.mdb 1 2 9 thickness=4 'group=IGDB' --yes");
  EXPECT_EQ(wrong.exit, 2);
  EXPECT_NE(wrong.err.find("There is no pane 9."), std::string::npos) << wrong.err;
  EXPECT_EQ(orv("list db.mdb --columns name,thickness,SupplierName").out, before);

  folder.write("new.csv", "\xEF\xBB\xBFid;thickness;product name\r\n2;\"5,5\";\"a;\"\"b\"\"\"\r\n");
  EXPECT_EQ(orv("edit db.mdb --from new.csv --yes").out, "2 changes made.\n");
  folder.write("latin.csv", "id;product name\r\n2;caf\xE9\r\n");
  const Ended latin = orv("edit db.mdb --from latin.csv --yes");
  EXPECT_EQ(latin.exit, 2);
  EXPECT_NE(latin.err.find("Line 2 is not in UTF-8."), std::string::npos) << latin.err;
  EXPECT_EQ(orv("edit db.mdb --where thickness=3 supplier=Acme --yes").out, "1 change made.\n");
  EXPECT_EQ(orv("list db.mdb --columns name,thickness,product_name,SupplierName --format tsv").out,
            "name\tthickness\tproduct_name\tSupplierName\n"
            "a.txt\t3\tAlpha\tAcme\nb.txt\t5.5\ta;\"b\"\tUnknown\n");
  EXPECT_EQ(orv("list db.mdb --set suppliers --format tsv").out,
            "id\tname\tpanes\tframes\tshadings\n1\tUnknown\t1\t0\t0\n2\tAcme\t1\t0\t0\n");
  EXPECT_EQ(orv("merge db.mdb 2 --into 1 --set suppliers --yes").out,
            "Merged \"Acme\" (1 record) into \"Unknown\".\n");
  EXPECT_EQ(orv("delete db.mdb 1 --set suppliers --yes").exit, 2) << "it is used";
  EXPECT_EQ(orv("delete db.mdb 2 --yes").exit, 0);

  const Ended history = orv("history db.mdb --format tsv");
  for (const char* line :
       {"number\ttime\tchange\tstate\n", "\tDelete 1 pane\t\n", "\tMerge suppliers 2 into 1\t\n",
        "\tEdit 2 values of 1 pane\t\n", "\tCopy 2 panes\t\n"}) {
    EXPECT_NE(history.out.find(line), std::string::npos) << history.out;
  }
  const Ended tried = orv("undo db.mdb 2 --dry-run --format tsv");
  EXPECT_EQ(tried.exit, 0) << tried.err;
  EXPECT_NE(tried.out.find("panes\t2\tb.txt\t\t\tdeleted\n"), std::string::npos) << tried.out;
  EXPECT_NE(tried.out.find("suppliers\t2\tAcme\t\t\tdeleted\n"), std::string::npos) << tried.out;
  EXPECT_EQ(orv("history db.mdb --format tsv").out, history.out);
  EXPECT_EQ(orv("undo db.mdb 9").exit, 2);
  EXPECT_EQ(orv("undo db.mdb 4").exit, 0);
  EXPECT_EQ(orv("list db.mdb --columns name,thickness,SupplierName").out, before);
  EXPECT_EQ(orv("check db.mdb").exit, 0);
}

TEST_F(EditVerbTest, AHistoryCanBeAbsentUnwritableOrOvertaken) {
  makeDatabase();
  shell("cp db.mdb old.mdb && orv edit db.mdb 1 thickness=4 --yes && cp old.mdb db.mdb");
  const Ended tried = orv("undo db.mdb --dry-run --format tsv");
  const Ended undone = orv("undo db.mdb");
  EXPECT_EQ(tried.exit + undone.exit, 0);
  EXPECT_EQ(tried.err, undone.err);
  EXPECT_TRUE(undone.err.starts_with(
      "orv: The database is already as it was before: Edit 1 value of 1 pane ("))
      << undone.err;
  EXPECT_EQ(shell("ORV_HISTORY=off orv edit db.mdb 1 thickness=4 --yes").exit, 0);
  const Ended overtaken = orv("undo db.mdb");
  EXPECT_EQ(overtaken.exit, 1);
  EXPECT_NE(overtaken.err.find("The pane 1 \"a.txt\" has been changed since: thickness is \"4\" "
                               "now and was \"3\"."),
            std::string::npos)
      << overtaken.err;
  const std::string name = "db.mdb.orv-history";
  std::filesystem::remove(folder.path() / name);
  std::filesystem::create_directory(folder.path() / name);
  const Ended unkept = orv("edit db.mdb 1 thickness=5 --yes");
  EXPECT_EQ(unkept.exit, 0);
  EXPECT_NE(unkept.err.find("cannot be taken back"), std::string::npos) << unkept.err;
  EXPECT_NE(orv("show db.mdb 1 --format tsv").out.find("thickness\t5\tmm"), std::string::npos);
  for (const char* verb : {"history", "undo"}) {
    const Ended folder = orv(std::string(verb) + " db.mdb");
    EXPECT_EQ(folder.exit, 3);
    EXPECT_NE(folder.err.find("is a folder"), std::string::npos) << folder.err;
  }
  const Ended wrong = shell("ORV_HISTORY=1k orv list db.mdb");
  EXPECT_EQ(wrong.exit, 0);
  EXPECT_NE(wrong.err.find("ORV_HISTORY is \"1k\""), std::string::npos) << wrong.err;
  const Ended from = orv("edit db.mdb --from . --yes");
  EXPECT_EQ(from.exit, 3);
  EXPECT_NE(from.err.find("\".\" cannot be read"), std::string::npos) << from.err;
}

}  // namespace
}  // namespace orv::test
