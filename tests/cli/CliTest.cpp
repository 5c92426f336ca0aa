#include "cli/CliTest.h"

#include <regex>

#include "store/jet/catalog/Database.h"

namespace orv::test {
namespace {

/// Changes bytes of a database; `change` gets its table of this name.
template <class Change>
void tamper(const std::string& file, const char* table, Change change) {
  const auto connection = store::Connection::openFile(file);
  store::jet::Pager& pager = connection->database().pager();
  store::jet::Transaction transaction(pager);
  change(pager, connection->database().table(table)->definition());
  transaction.commit();
}

TEST_F(CliTest, ACheckFailsForFaultsAndListsRemarksWhenAskedTo) {
  makeDatabase();
  // A count of rows is a hint: nobody waits for billions of rows that are not there.
  tamper(folder / "db.mdb", "Pane", [](auto& pager, const auto& panes) {
    store::jet::store32(pager.modify(panes.page) + pager.format().definition.rowCount, 0xffffffff);
  });
  const Ended info = orv("info db.mdb --format tsv");
  EXPECT_NE(info.out.find("Panes\t2\n"), std::string::npos) << info.out << info.err;
  const Ended counted = orv("check db.mdb");
  EXPECT_EQ(counted.exit, 0);
  EXPECT_TRUE(counted.out.starts_with("db.mdb: no faults and 1 remark (listed with --verbose) in "))
      << counted.out;
  EXPECT_EQ(counted.err, "");
  const Ended listed = orv("check db.mdb --verbose");
  EXPECT_EQ(listed.exit, 0);
  EXPECT_EQ(listed.out.find("remark: Table 'Pane', page "), 0U) << listed.out;
  EXPECT_NE(listed.out.find("\ndb.mdb: no faults and 1 remark in "), std::string::npos)
      << listed.out;

  tamper(folder / "db.mdb", "Pane", [](auto& pager, const auto& panes) {
    const store::jet::PageNumber root = panes.realIndexes.front().root;
    std::fill_n(pager.modify(root) + pager.format().indexPage.mask, 8, std::uint8_t{0});
  });
  const Ended faulty = orv("check db.mdb --verbose --format tsv");
  EXPECT_EQ(faulty.exit, 1);
  EXPECT_NE(faulty.out.find("\nfault\tPane\t"), std::string::npos) << faulty.out;
  tamper(folder / "db.mdb", "Pane", [](auto& pager, const auto& panes) {
    store::jet::PageNumber page = 0;  // the first of the rows of panes, and row 0 on it
    while (pager.read(page).type() != store::jet::PageType::data ||
           store::jet::load32(pager.read(page).data() + pager.format().data.owner) != panes.page) {
      ++page;
    }
    store::jet::store16(pager.modify(page) + pager.format().data.rowTable, 0x0fff);
  });
  const Ended row = orv("check db.mdb --format tsv");
  EXPECT_NE(row.out.find("\t0\ta row is too short\t"), std::string::npos) << row.out;
  EXPECT_NE(row.out.find("\t\tthe page says that it has "), std::string::npos) << row.out;
  EXPECT_NE(faulty.out.find("\nremark\tPane\t"), std::string::npos) << faulty.out;
  EXPECT_NE(faulty.err.find(" and 1 remark in "), std::string::npos) << faulty.err;
}

TEST_F(CliTest, ADamagedIndexDoesNotHideRecords) {
  constexpr int kPoints = 300;
  orv("new db.mdb");
  for (const char* name : {"a.txt", "b.txt"}) {
    std::string text = paneText(name);
    for (int i = 0; i < kPoints; ++i) text += fmt::format("{} 0.5 0.25 0.125\n", 3 + i * 0.001);
    folder.write(name, text);
  }
  ASSERT_EQ(orv("copy a.txt b.txt db.mdb --group Demo").exit, 0);
  const std::string before = orv("show db.mdb 2 --spectrum --format tsv").out;
  const std::string ordered =
      "sql db.mdb \"SELECT PaneID, angle FROM Pane_spectral_data WHERE PaneID > 1 ORDER BY PaneID, "
      "angle\" --format tsv";
  const std::string rows = orv(ordered).out;
  tamper(folder / "db.mdb", "Pane_spectral_data", [](auto& pager, const auto& points) {
    for (const auto& index : points.realIndexes)
      std::fill_n(pager.modify(index.root), 2, std::uint8_t{7});
  });
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
  const std::string damage = "orv: The table Pane_spectral_data of db.mdb has a damaged index";
  EXPECT_EQ(show.err.find(damage), 0U) << show.err;
  EXPECT_EQ(show.err.rfind("damaged index"), damage.find("damaged index")) << show.err;
  EXPECT_EQ(orv(ordered).out, rows);
  orv("new to.mdb");
  const Ended copy = orv("copy db.mdb to.mdb --group Demo");
  EXPECT_EQ(copy.out, "2 records copied.\n") << copy.err;
  const std::size_t told = copy.err.find("damaged index");
  EXPECT_TRUE(told != std::string::npos && told == copy.err.rfind("damaged index")) << copy.err;
  EXPECT_EQ(orv("show to.mdb 2 --spectrum --format tsv").out, before);
  EXPECT_EQ(orv("sql to.mdb \"SELECT COUNT(*) AS n FROM Pane_spectral_data\" --format tsv").out,
            fmt::format("n\n{}\n", 2 * (kPoints + 3)));
}

TEST_F(CliTest, TheGuideHasAllRulesOfAnAudit) {
  const std::string rules = orv("audit --rules --format tsv").out;
  std::string rows = std::regex_replace(rules.substr(rules.find('\n') + 1),
                                        std::regex("([^\t\n]*)\t(.*)\n"), "| `$1` | $2 |\n");
  rows = std::regex_replace(rows, std::regex("\t"), " | ");
  EXPECT_NE(readFile(ORV_SOURCE_DIR "/docs/user-guide.md").find(rows), std::string::npos) << rows;
}

TEST_F(CliTest, ForeignSourcesCopyAsWhole) {
  ORV_NEEDS_CORPUS();
  for (const char* name : {"glazing.mdb", "orvdata-2.0.1.mdb", "orvdata-3.0.0.mdb"}) {
    folder.copyOf(corpusFolder() / "sources" / name);
  }
  orv("new db.mdb");
  EXPECT_EQ(orv("check glazing.mdb --password foo").exit, 0);
  EXPECT_EQ(orv("tables glazing.mdb --password foo").exit, 0);
  const Ended igdb = orv("copy glazing.mdb db.mdb");
  EXPECT_EQ(igdb.exit, 0) << igdb.err;
  EXPECT_EQ(igdb.out, "200 records copied.\n");
  const Ended version2 = orv("copy orvdata-2.0.1.mdb db.mdb --group Old");
  EXPECT_EQ(version2.out, "12 records copied.\n");
  EXPECT_NE(version2.err.find("each angle has all rows of the pane: old5\n"), std::string::npos)
      << version2.err;
  EXPECT_EQ(orv("copy orvdata-2.0.1.mdb db.mdb --group Old --set frames").exit, 0);
  const Ended version3 = orv("copy orvdata-3.0.0.mdb db.mdb --group New");
  EXPECT_EQ(version3.out, "40 records copied.\n") << version3.err;
  EXPECT_EQ(orv("copy orvdata-3.0.0.mdb db.mdb --group New --set frames").exit, 0);
  EXPECT_EQ(orv("check db.mdb").exit, 0);
  const Ended grid =
      orv("sql glazing.mdb \"SELECT * FROM qryOptics5Grid WHERE FileName = 'PANE00004.DAT'\" "
          "--format tsv");
  EXPECT_NE(grid.out.find("\tPANE00004.DAT\t"), std::string::npos) << grid.err;
}

}  // namespace
}  // namespace orv::test
