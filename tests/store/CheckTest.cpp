// Sound files pass a check; no damage, whatever it is, makes it crash or run on.

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <random>

#include "errors/Error.h"
#include "model/Raised.h"
#include "store/Check.h"
#include "store/Connection.h"
#include "store/FileContent.h"
#include "store/SampleFile.h"
#include "store/StoreError.h"
#include "store/jet/catalog/Creation.h"
#include "support/Corpus.h"
#include "support/EncodedFile.h"
#include "support/TemporaryFolder.h"

namespace orv::store {
namespace {

namespace fs = std::filesystem;

TEST(Check, FindsNoFaultInFilesThatAccessMade) {
  ORV_NEEDS_CORPUS();
  std::vector<fs::path> files = test::corpusFiles("access");
  for (const fs::path& file : test::corpusFiles("sources")) files.push_back(file);
  files.push_back(test::corpusFolder() / "foreign" / "nwind.mdb");  // has names with a ß
  for (const fs::path& file : files) {
    for (const CheckFinding& remark : test::expectSound(file, test::passwordOf(file)).remarks) {
      EXPECT_EQ(remark.what.find("not compared"), std::string::npos) << remark.toText();
    }
  }
}

// Past 512 pages, maps of pages no longer fit their rows and get pages of their own.
TEST(Check, FindsNoFaultInOwnFileOfManyPages) {
  const test::TemporaryFolder folder;
  const std::string path = folder / "many-pages.mdb";
  constexpr int kRows = 1500;
  const std::shared_ptr<jet::Database> database = jet::createDatabase(path);
  jet::createTable(
      *database,
      {.name = "Notes",
       .columns = {{.name = "Number", .type = ColumnType::longInteger},
                   {.name = "Name", .type = ColumnType::text, .size = 250},
                   {.name = "Note", .type = ColumnType::memo}},
       .indexes = {
           {.name = "Key", .columns = {{.name = "Number"}}, .primary = true, .unique = true},
           {.name = "ByName", .columns = {{.name = "Name"}}}}});
  {
    jet::Transaction transaction(database->pager());
    const std::shared_ptr<jet::Table> table = database->table("Notes");
    for (int i = 0; i < kRows; ++i) {
      const std::string letter(1, static_cast<char>('a' + i % 26));
      table->insert(std::vector<Value>{i, letter + std::string(200, letter[0]) + std::to_string(i),
                                       std::string(1500, letter[0])});
    }
    transaction.commit();
  }
  const CheckReport report = test::expectSound(path);
  EXPECT_EQ(report.lostPages, 0u);
  EXPECT_EQ(report.longValues, kRows + 1u);  // and the properties of the table
  EXPECT_GT(report.pages, 600u);
}

TEST(Check, CountsWhatItHasSeen) {
  const test::TemporaryFolder folder;
  test::makeSampleFile(folder / "sample.mdb");
  std::size_t told = 0;
  std::size_t pages = 0;
  const CheckReport report =
      checkFile(folder / "sample.mdb", "", [&](std::size_t done, std::size_t all) {
        EXPECT_GE(done, told);
        told = done;
        pages = all;
      });
  EXPECT_EQ(report.pages, fs::file_size(folder / "sample.mdb") / 4096);
  EXPECT_EQ(pages, report.pages);
  EXPECT_EQ(told, report.pages);
  EXPECT_EQ(report.freePages, 1u);
  EXPECT_EQ(report.lostPages, 0u);
  EXPECT_EQ(report.queries, 1u);
  EXPECT_EQ(report.tables, 9u + 4u) << "of our own and of the system";
  EXPECT_GE(report.longValues, 9u + 20u);  // pictures, remarks, and the properties of the tables
  // 6000 points of spectra, 40 panes with five indexes, of which one leaves five of them out.
  EXPECT_GT(report.rows, 6202u);
  EXPECT_GT(report.indexEntries, 6000u + 40u * 5u - 5u + 30u * 3u);
}

TEST(Check, NamesPlaceFaultAndAdvice) {
  const CheckFinding fault{"Pane",           "GroupID", 12, 3, "the row has no entry in the index",
                           "No row is lost."};
  EXPECT_EQ(fault.toText(),
            "Table 'Pane', index 'GroupID', page 12, row 3: the row has no entry in the index. "
            "No row is lost.");
  EXPECT_EQ((CheckFinding{"", "", 0, -1, "it is cut short", ""}.toText()),
            "The file: it is cut short.");
}

TEST(Check, RefusesWhatIsNoDatabaseAndAWrongPassword) {
  const test::TemporaryFolder folder;
  std::ofstream(folder / "text.mdb") << "This is no database.";
  EXPECT_EQ(test::raisedBy([&] { checkFile(folder / "text.mdb", ""); }).number, kStoreFailure);
  Connection::create(folder / "secret.mdb")->close();
  test::setPassword(folder / "secret.mdb", "Sesame 7");
  EXPECT_EQ(test::raisedBy([&] { checkFile(folder / "secret.mdb", "sesame 7"); }).number,
            kNotAuthenticated);
  EXPECT_TRUE(checkFile(folder / "secret.mdb", "Sesame 7").sound());
}

std::string readFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// Changes some bytes, most of them near each other, as a broken program or disk does.
std::string withRandomDamage(std::string bytes, std::mt19937& random) {
  constexpr std::size_t kHeaderPage = 4096;
  std::uniform_int_distribution<std::size_t> anyPlace(kHeaderPage, bytes.size() - 64);
  std::uniform_int_distribution<int> anyByte(0, 255);
  for (int place = 0; place < 4; ++place) {
    const std::size_t at = place % 2 == 0 ? anyPlace(random) / 512 * 512 : anyPlace(random);
    for (int i = 0; i < 4; ++i) {
      bytes[at + static_cast<std::size_t>(anyByte(random) % 64)] =
          static_cast<char>(anyByte(random));
    }
  }
  return bytes;
}

TEST(Check, OutlivesRandomDamage) {
  constexpr int kRounds = 60;
  std::mt19937 random(20240229);
  const test::TemporaryFolder folder;
  const fs::path path = folder / "damaged.mdb";
  std::vector<fs::path> files = {folder / "sample.mdb"};
  test::makeSampleFile(files[0]);
  if (test::haveCorpus()) files.push_back(test::corpusFolder() / "access/indexTestV1997.mdb");
  std::size_t withFaults = 0;
  for (const fs::path& name : files) {
    const std::string sound = readFile(name);
    for (int round = 0; round < kRounds; ++round) {
      std::ofstream(path, std::ios::binary) << withRandomDamage(sound, random);
      try {
        withFaults += checkFile(path.string(), "").sound() ? 0 : 1;
      } catch (const std::exception& error) {
        ADD_FAILURE() << name << ", round " << round << ": " << error.what();
      }
    }
  }
  // Some of the damage falls on free space, or on values that no index is over.
  EXPECT_GT(withFaults, std::size_t{kRounds} / 2);
}

}  // namespace
}  // namespace orv::store
