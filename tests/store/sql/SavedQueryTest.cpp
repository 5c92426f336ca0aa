// Saved queries: their parts in a file, their text, and parts of new ones.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>

#include "errors/Error.h"
#include "store/jet/catalog/SavedQuery.h"
#include "support/Corpus.h"

namespace orv::store::jet {
namespace {

using test::corpusFolder;

/// The lines "name [KIND]: text" of a file that an independent reader made.
std::map<std::string, std::string> expectedQueries(const std::filesystem::path& file) {
  std::map<std::string, std::string> queries;
  std::ifstream in(file);
  for (std::string line; std::getline(in, line);) {
    const std::size_t colon = line.find("]: ");
    std::string text = line.substr(colon + 3);
    text.erase(text.find_last_not_of(std::string_view(" \r\0", 3)) + 1);
    queries[line.substr(0, line.find(" ["))] = text;
  }
  return queries;
}

TEST(SavedQuery, TextOfEveryQueryOfTheCorpus) {
  ORV_NEEDS_CORPUS();
  int compared = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(corpusFolder())) {
    if (entry.path().extension() != ".queries") {
      continue;
    }
    std::filesystem::path file = entry.path();
    const auto expected = expectedQueries(file);
    file.replace_extension(".mdb");
    const auto database = Database::open(file.string(), file.stem() == "glazing" ? "tekzil" : "");
    const Pager::ReadLock lock(database->pager());
    for (const CatalogEntry& query : database->entries()) {
      if (query.kind != CatalogEntry::Kind::query || query.isHiddenQuery()) {
        continue;
      }
      ASSERT_EQ(expected.count(query.name), 1u) << file << ": " << query.name;
      std::string text = SavedQuery(query.name, database->queryParts(query)).sql();
      text.erase(text.find_last_not_of(' ') + 1);
      EXPECT_EQ(text, expected.at(query.name)) << file;
      ++compared;
    }
  }
  EXPECT_GE(compared, 22);
}

TEST(SavedQuery, TextOfANewQuery) {
  QueryDesign design;
  design.name = "qryPaneImport";
  design.outputs = {{"Pane.PaneID"}, {"Pane.[0_30_60]", "angles"}};
  design.tables = {"Pane", "Group", "Supplier list"};
  design.joins = {
      {JoinKind::inner, "Pane", "Group", "Pane.GroupID = [Group].GroupID"},
      {JoinKind::left, "Pane", "Supplier list", "Pane.SupplierID = [Supplier list].SupplierID"}};
  design.where = "Pane.freeze = False";
  design.orderBy = {{"Pane.name"}, {"Pane.PaneID", true}};
  EXPECT_EQ(SavedQuery(design.name, SavedQuery::partsOf(design)).sql(),
            "SELECT Pane.PaneID, Pane.[0_30_60] AS angles FROM (Pane INNER JOIN [Group] ON "
            "Pane.GroupID = [Group].GroupID) LEFT JOIN [Supplier list] ON "
            "Pane.SupplierID = [Supplier list].SupplierID WHERE Pane.freeze = False "
            "ORDER BY Pane.name, Pane.PaneID DESC;");
  design.outputs = {{"*"}};
  design.joins.clear();
  design.tables = {"Pane"};
  design.where.clear();
  design.orderBy.clear();
  EXPECT_EQ(SavedQuery("all", SavedQuery::partsOf(design)).sql(), "SELECT * FROM Pane;");
}

TEST(SavedQuery, OptionsAndJoinsThatDoNotFit) {
  std::vector<QueryPart> parts = {{1, 1, "", "", ""},
                                  {3, 0x34, "", "10", ""},
                                  {5, 0, "", "A", ""},
                                  {5, 0, "SELECT x FROM B", "", "sub"},
                                  {6, 0, "A.x", "", ""}};
  EXPECT_EQ(SavedQuery("q", parts).sql(),
            "SELECT TOP 10 PERCENT A.x FROM A, (SELECT x FROM B) AS sub "
            "WITH OWNERACCESS OPTION;");
  parts.push_back({7, 1, "A.x = sub.x", "A", "sub"});
  parts.push_back({7, 2, "A.x = sub.x", "A", "sub"});
  EXPECT_THROW(SavedQuery("q", parts).sql(), Error);
  parts.resize(5);
  parts.push_back({7, 9, "A.x = sub.x", "A", "sub"});
  EXPECT_THROW(SavedQuery("q", parts).sql(), Error);
}

}  // namespace
}  // namespace orv::store::jet
