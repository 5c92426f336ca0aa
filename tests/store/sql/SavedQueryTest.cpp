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
    if (entry.path().extension() != ".queries") continue;
    std::filesystem::path file = entry.path();
    const auto expected = expectedQueries(file);
    file.replace_extension(".mdb");
    const auto database = Database::open(file.string(), file.stem() == "glazing" ? "tekzil" : "");
    const Pager::ReadLock lock(database->pager());
    for (const CatalogEntry& query : database->entries()) {
      if (query.kind != CatalogEntry::Kind::query || query.isHiddenQuery()) continue;
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

/// The parts that each kind of query keeps, by the numbers of their clauses.
TEST(SavedQuery, TextOfEveryKind) {
  constexpr std::int16_t kAppended = -0x8000;
  const std::pair<std::vector<QueryPart>, const char*> cases[] = {
      {{{1, 1},
        {2, 4, "", "[least]"},
        {2, 10, "", "[name]"},
        {2, 8, "", "[day]"},
        {3, 0x02},
        {5, 0, "", "A", "x"},
        {6, 0, "x.kind"},
        {6, 0, "Count(*)", "n"},
        {8, 0, "x.size > [least]"},
        {9, 0, "x.kind"},
        {10, 0, "Count(*) > 2"},
        {11, 0, "x.kind", "D"},
        {11, 0, "n"}},
       "PARAMETERS [least] Long, [name] Text, [day] DateTime; SELECT DISTINCT x.kind, Count(*) AS "
       "n "
       "FROM A AS x WHERE x.size > [least] GROUP BY x.kind HAVING Count(*) > 2 "
       "ORDER BY x.kind DESC, n;"},
      {{{1, 2, "", "New one"}, {3, 0x09}, {4, 0, "", "C:\\o.mdb"}, {5, 0, "", "A"}},
       "SELECT DISTINCTROW * INTO [New one] FROM A IN 'C:\\o.mdb';"},
      {{{1, 3, "", "T"}, {6, kAppended, "1", "", "a"}, {6, kAppended, "'x'", "", "order"}},
       "INSERT INTO T (a, [order]) VALUES (1, 'x');"},
      {{{1, 3, "", "T", "b.mdb"}, {5, 0, "", "A"}, {6, 0, "A.y", "", "a"}},
       "INSERT INTO T (a) IN 'b.mdb' SELECT A.y FROM A;"},
      {{{1, 4},
        {5, 0, "", "A"},
        {6, 0, "A.y + 1", "", "A.x"},
        {6, 0, "2", "", "A.2 z"},
        {8, 0, "A.x = 3"}},
       "UPDATE A SET A.x = A.y + 1, A.[2 z] = 2 WHERE A.x = 3;"},
      {{{1, 5}, {3, 0x01}, {5, 0, "", "A"}, {8, 0, "A.x = 3"}}, "DELETE * FROM A WHERE A.x = 3;"},
      {{{1, 6},
        {5, 0, "", "A"},
        {6, 0, "Sum(A.v)", "total"},
        {6, 2, "A.row"},
        {6, 1, "A.col"},
        {9, 2, "A.row"},
        {9, 1, "A.col"}},
       "TRANSFORM Sum(A.v) AS total SELECT A.row FROM A GROUP BY A.row PIVOT A.col;"},
      {{{1, 9},
        {3, 0x02},
        {5, 0, "SELECT a\r\nFROM A;", "", "X7YZ_____1"},
        {5, 0, "SELECT b FROM B", "", "X7YZ_____2"},
        {11, 0, "a", "D"}},
       "SELECT a FROM A UNION SELECT b FROM B ORDER BY a DESC;"},
      {{{1, 7, "CREATE TABLE T (a LONG)"}}, "CREATE TABLE T (a LONG)"},
  };
  for (const auto& [parts, text] : cases) EXPECT_EQ(SavedQuery("q", parts).sql(), text);
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
