// A sound file of many pages passes a check, and it tells what it has seen.

#include <gtest/gtest.h>

#include <filesystem>

#include "store/Check.h"
#include "store/Compact.h"
#include "store/FileContent.h"
#include "store/TableDesign.h"
#include "store/jet/catalog/Creation.h"
#include "support/TemporaryFolder.h"

namespace orv::store {
namespace {

// Past 512 pages, maps of pages no longer fit their rows and get pages of their own; past 2048 a
// copy is written in several commits.
TEST(Check, FindsNoFaultInOwnFileOfManyPages) {
  const test::TemporaryFolder folder;
  const std::string path = folder / "many-pages.mdb";
  constexpr int kRows = 1900;
  const std::shared_ptr<jet::Database> database = jet::createDatabase(path);
  jet::createTable(*database, test::design("Notes", "Number longInteger, Name text 250, Note memo",
                                           "Key primary unique: Number; ByName: Name"));
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
  {
    const jet::Pager::ReadLock lock(database->pager());
    EXPECT_TRUE(database->pager().letWritersIn()) << "nobody waits";
  }
  std::size_t told = 0;
  const CheckReport report = checkFile(path, "", [&](std::size_t done, std::size_t all) {
    EXPECT_TRUE(told <= done && all == std::filesystem::file_size(path) / 4096);
    told = done;
  });
  EXPECT_EQ(report.pages, told);
  EXPECT_EQ(test::textOf(report),
            "2157 pages, 0 free, 0 lost, 5 tables, 1927 rows, 1901 long values, 3836 entries, "
            "0 queries\n");
  test::expectBytes(path, 0x24d6aacae2bf1c4);
  std::string progress;
  const auto note = [&](std::size_t done, std::size_t all) {
    progress += std::to_string(done) + "/" + std::to_string(all) + " ";
  };
  EXPECT_EQ(test::textOf(compactFile(path, "", folder / "new.mdb", note)),
            "5 tables, 1927 rows, 1901 long values, 9 indexes, 8835072 -> 8466432: ; \n");
  EXPECT_EQ(test::difference(test::contentOf(path), test::contentOf(folder / "new.mdb")), "");
  test::expectSound(folder / "new.mdb");
  test::expectBytes(folder / "new.mdb", 0xecfa7a81a9279263);
  EXPECT_EQ(test::sumOf(progress), 0x58c383fc7b211d36u) << progress;
}

}  // namespace
}  // namespace orv::store
