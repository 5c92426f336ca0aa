#include "cli/CliTest.h"

#include <string>

#include "store/jet/catalog/Database.h"
#include "support/EncodedFile.h"
#include "support/FullRecords.h"

namespace orv::test {
namespace {

/// Changes bytes of the database; `change` gets its table of panes.
template <class Change>
void tamper(const std::filesystem::path& file, Change change) {
  const auto connection = store::Connection::openFile(file.string());
  store::jet::Pager& pager = connection->database().pager();
  store::jet::Transaction transaction(pager);
  change(pager, connection->database().table("Pane")->definition());
  transaction.commit();
}

TEST_F(CliTest, ACheckFailsForFaultsAndListsRemarksWhenAskedTo) {
  makeDatabase();
  // A count of rows is a hint: nobody waits for billions of rows that are not there.
  tamper(folder.path() / "db.mdb", [](auto& pager, const auto& panes) {
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

  tamper(folder.path() / "db.mdb", [](auto& pager, const auto& panes) {
    const store::jet::PageNumber root = panes.realIndexes.front().root;
    std::fill_n(pager.modify(root) + pager.format().indexPage.mask, 8, std::uint8_t{0});
  });
  const Ended faulty = orv("check db.mdb --verbose --format tsv");
  EXPECT_EQ(faulty.exit, 1);
  EXPECT_NE(faulty.out.find("\nfault\tPane\t"), std::string::npos) << faulty.out;
  tamper(folder.path() / "db.mdb", [](auto& pager, const auto& panes) {
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

TEST_F(CliTest, ForeignSourcesCopyAsWhole) {
  ORV_NEEDS_CORPUS();
  copyFromCorpus("glazing.mdb");
  copyFromCorpus("orvdata-2.0.1.mdb");
  copyFromCorpus("orvdata-3.0.0.mdb");
  orv("new db.mdb");
  EXPECT_EQ(orv("check glazing.mdb --password foo").exit, 0);
  EXPECT_EQ(orv("tables glazing.mdb --password foo").exit, 0);
  const Ended none = orv("integrate glazing.mdb --where 'thickness>9000'");
  EXPECT_EQ(none.exit, 0);
  EXPECT_NE(none.err.find("No record meets the conditions."), std::string::npos) << none.err;
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
  const Ended refused = orv("copy glazing.mdb orvdata-2.0.1.mdb");
  EXPECT_EQ(refused.exit, 2);
  EXPECT_NE(refused.err.find("version 3 or higher"), std::string::npos);
}

}  // namespace
}  // namespace orv::test
