#include "cli/CliTest.h"

#include <string>

#include "store/jet/catalog/CatalogWriter.h"
#include "support/EncodedFile.h"
#include "support/FullRecords.h"

namespace orv::test {
namespace {

TEST_F(CliTest, FramesAreShownWholeAndHaveNothingToChooseFrom) {
  orv("new db.mdb");
  {
    ScriptedQuestions questions;
    database::ORV_DatabaseInterface database(questions);
    auto frame = fullFrame();
    database.InsertFrame(frame, *database.OpenDatabase((folder.path() / "db.mdb").string(), ""));
  }
  const Ended show = orv("show db.mdb --set frames --format tsv");
  EXPECT_EQ(
      show.out,
      "field\tvalue\tunit\nid\t1\t\nname\tframe\t\nproduct name\t\t\nsupplier\tFrame maker\t\n"
      "group\tTarven frames\t\nframe type\tWood\t\nU-value\t1.3\tW/(m²·K)\nwidth\t70\tm\n"
      "picture\t3\tbytes\ninfo\tof oak\t\n")
      << show.err;
  EXPECT_EQ(orv("list db.mdb --set frames --format tsv").out,
            "id\tname\tproduct\tgroup\tsupplier\n1\tframe\t\tTarven frames\tFrame maker\n");
  for (const char* option : {"--spectrum", "--angle 0", "--direction 1"}) {
    const Ended refused = orv(std::string("show db.mdb 1 --set frames ") + option);
    EXPECT_EQ(refused.exit, 2) << option;
    EXPECT_EQ(refused.out, "") << option;
  }
}

TEST_F(CliTest, ThePolicyAnswersTheQuestionForTheSubstrate) {
  orv("new source.mdb");
  {
    ScriptedQuestions questions;
    database::ORV_DatabaseInterface database(questions);
    const auto dc = database.OpenDatabase((folder.path() / "source.mdb").string(), "");
    database.InsertPane(*withSubstrate(makePane("pane")), *dc);
    auto row = dc->openRecordset("Pane_spectral_data", store::CursorType::keyset,
                                 store::LockType::optimistic);
    row->setValue("transmission_sub", 1.5);
    row->update();
  }
  orv("new db.mdb");
  const Ended refused = orv("copy source.mdb db.mdb --group G");
  EXPECT_EQ(refused.exit, 1);
  EXPECT_NE(refused.err.find("subtrate"), std::string::npos) << refused.err;
  EXPECT_EQ(orv("copy source.mdb db.mdb --group G --substrate ask").exit, 2);
  const Ended dropped = orv("copy source.mdb db.mdb --group H --substrate drop");
  EXPECT_EQ(dropped.exit, 0) << dropped.err;
  EXPECT_NE(dropped.err.find("without saving the substrate data? Yes."), std::string::npos);
}

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

TEST_F(CliTest, APasswordCanBeGiven) {
  makeDatabase();
  setPassword(folder.path() / "db.mdb", "Sesame 7");
  orv("new to.mdb");
  folder.write("secret", "Sesame 7\r\nsomething else\n");
  folder.write("empty", "");
  for (const char* arguments : {"sql db.mdb --queries", "check db.mdb", "list db.mdb",
                                "copy db.mdb to.mdb --group G --skip-existing",
                                "copy a.txt db.mdb --group Demo --skip-existing"}) {
    const std::pair<const char*, int> passwords[] = {{"", 3},
                                                     {" --password 'sesame 7'", 3},
                                                     {" --password 'Sesame 7'", 0},
                                                     {" --password-file secret", 0},
                                                     {" --password-file empty", 3},
                                                     {" --password-file absent", 3},
                                                     {" --password-file secret --password x", 2}};
    for (const auto& [password, exit] : passwords) {
      EXPECT_EQ(orv(std::string(arguments) + password).exit, exit) << arguments << password;
    }
    EXPECT_EQ(orv(std::string(arguments) + " --password-file empty").err,
              "orv: No password can be read from \"empty\".\n");
  }
}

/// Adds a table to the catalogue whose rows are in another database.
void link(const std::string& database, const char* name) {
  const auto connection = store::Connection::openFile(database);
  const auto objects = connection->database().table("MSysObjects");
  objects->insert(store::jet::systemRow(*objects, {{"Id", -2147483000},
                                                   {"ParentId", store::jet::kTablesContainer},
                                                   {"Name", name},
                                                   {"Type", 6},
                                                   {"Flags", 2097152},
                                                   {"Database", "C:\\data\\shared.mdb"},
                                                   {"ForeignName", "Origin"}}));
}

TEST_F(CliTest, LinkedTablesAreNamedAsSuch) {
  orv("new db.mdb");
  link((folder.path() / "db.mdb").string(), "Remarks");
  const Ended info = orv("info db.mdb");
  EXPECT_NE(info.out.find("Remarks (in C:\\data\\shared.mdb)"), std::string::npos) << info.out;
  const Ended read = orv("sql db.mdb \"SELECT * FROM Remarks\"");
  EXPECT_NE(read.exit, 0);
  EXPECT_NE(read.err.find("linked table: its rows are in table 'Origin' of 'C:\\data\\shared.mdb'"),
            std::string::npos)
      << read.err;
  { store::Connection::create((folder.path() / "front.mdb").string()); }
  link((folder.path() / "front.mdb").string(), "ORVdata_version");
  const Ended list = orv("list front.mdb");
  EXPECT_NE(list.err.find("Open that database instead"), std::string::npos) << list.err;
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

TEST_F(CliTest, OptionsThatNothingUsesAreRefused) {
  makeDatabase();
  for (const char* arguments :
       {"list db.mdb --text panes", "copy db.mdb db.mdb --text panes --group G",
        "show db.mdb 1 --set frames --angle 0", "show db.mdb 1 --set shadings --direction 1",
        "compact db.mdb new.mdb --force"}) {
    EXPECT_EQ(orv(arguments).exit, 2) << arguments;
  }
  ORV_NEEDS_CORPUS();
  copyFromCorpus("glazing.mdb");
  const Ended refused = orv("copy glazing.mdb db.mdb --group G");
  EXPECT_EQ(refused.exit, 2);
  EXPECT_EQ(refused.err, "orv: The panes of the IGDB go into the group IGDB: leave --group out.\n");
  const Ended told = orv("copy glazing.mdb a.txt db.mdb --group G");
  EXPECT_EQ(told.exit, 0) << told.err;
  EXPECT_NE(told.err.find("orv: The panes of the IGDB go into the group IGDB; G is for the "
                          "others.\n"),
            std::string::npos)
      << told.err;
}

TEST_F(CliTest, IdentifiersOfFilesAreTextsAndJsonIsJson) {
  folder.write("0012", paneText());
  folder.write("caf\xE9", paneText());
  const Ended list = orv("list . --format json");
  EXPECT_EQ(list.out.substr(0, 17), "[\n  {\"id\": \"0012\"");
  EXPECT_NE(list.out.find("{\"id\": \"caf\xEF\xBF\xBD\""), std::string::npos) << list.out;
  const Ended show = orv("show . 0012 --format json");
  for (const char* line :
       {"{\"field\": \"thickness\", \"value\": 3, \"unit\": \"mm\"}",
        "{\"field\": \"hidden\", \"value\": false, \"unit\": \"\"}",
        "{\"field\": \"emissivity front\", \"value\": 0.84, \"unit\": \"\"}",
        "{\"field\": \"name\", \"value\": \"0012\", \"unit\": \"\"}",
        "{\"field\": \"IGDB checksum date\", \"value\": null, \"unit\": \"\"}"}) {
    EXPECT_NE(show.out.find(line), std::string::npos) << line << show.out;
  }
}

}  // namespace
}  // namespace orv::test
