// Saved queries: their parts in a file, their text, and parts of new ones.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>

#include "model/Raised.h"
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

/// Parts that queries keep, by the numbers of their clauses, parted by " / ", and of each its
/// fields by ";"; and the text.
TEST(SavedQuery, TextOfEveryKind) {
  const auto split = [](const std::string& text, const std::string& mark) {
    std::vector<std::string> parts;
    for (std::size_t at = 0, end = 0; end != std::string::npos; at = end + mark.size()) {
      end = text.find(mark, at);
      parts.push_back(text.substr(at, end - at));
    }
    return parts;
  };
  std::ifstream table(ORV_SOURCE_DIR "/tests/store/sql/saved_queries.txt");
  int queries = 0;
  for (std::string line; std::getline(table, line);) {
    const std::size_t arrow = line.find(" -> ");
    if (arrow == std::string::npos) continue;
    std::vector<QueryPart> parts;
    for (const std::string& each : split(line.substr(0, arrow), " / ")) {
      auto fields = split(each, ";");
      fields.resize(5);
      if (const auto at = fields[2].find("\\n"); at != std::string::npos) {
        fields[2].replace(at, 2, "\r\n");
      }
      parts.push_back({static_cast<std::uint8_t>(std::stoi(fields[0])),
                       static_cast<std::int16_t>(std::stoi(fields[1])), fields[2], fields[3],
                       fields[4]});
    }
    std::string text;
    const test::Raised raised = test::raisedBy([&] { text = SavedQuery("q", parts).sql(); });
    if (raised.number != 0) {
      text = "error " + std::to_string(raised.number) + ": " + raised.description;
    }
    EXPECT_EQ(text, line.substr(arrow + 4)) << line;
    ++queries;
  }
  EXPECT_GT(queries, 20);
}

}  // namespace
}  // namespace orv::store::jet
