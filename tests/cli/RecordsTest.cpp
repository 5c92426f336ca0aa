// A database with a damaged index.
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

}  // namespace
}  // namespace orv::test
