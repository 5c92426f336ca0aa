// Saved queries: their parts in a file, their text, and parts of new ones.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "model/Raised.h"
#include "store/jet/catalog/SavedQuery.h"
#include "store/sql/TranslatedDatabase.h"
#include "support/CaseFile.h"
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
  QueryDesign design{.name = "qryPaneImport",
                     .outputs = {{"Pane.PaneID"}, {"Pane.[0_30_60]", "angles"}},
                     .tables = {"Pane", "Group", "Supplier list"},
                     .joins = {{JoinKind::inner, "Pane", "Group", "Pane.GroupID = [Group].GroupID"},
                               {JoinKind::left, "Pane", "Supplier list",
                                "Pane.SupplierID = [Supplier list].SupplierID"}},
                     .where = "Pane.freeze = False",
                     .orderBy = {{"Pane.name"}, {"Pane.PaneID", true}}};
  EXPECT_EQ(SavedQuery(design.name, SavedQuery::partsOf(design)).sql(),
            "SELECT Pane.PaneID, Pane.[0_30_60] AS angles FROM (Pane INNER JOIN [Group] ON "
            "Pane.GroupID = [Group].GroupID) LEFT JOIN [Supplier list] ON "
            "Pane.SupplierID = [Supplier list].SupplierID WHERE Pane.freeze = False "
            "ORDER BY Pane.name, Pane.PaneID DESC;");
  design.joins[1].kind = JoinKind::right;
  EXPECT_EQ(SavedQuery::partsOf(design)[9].flag, 3);
  const QueryDesign all{.name = "all", .outputs = {{"*"}}, .tables = {"Pane"}};
  EXPECT_EQ(SavedQuery("all", SavedQuery::partsOf(all)).sql(), "SELECT * FROM Pane;");
}

/// A query of parts as queries.txt has them, joined by " / ".
SavedQuery queryOf(std::string text) {
  constexpr std::pair<std::string_view, char> kCharacters[] = {
      {"\\r", '\r'}, {"\\n", '\n'}, {"\\t", '\t'}, {"\\0", '\0'}};
  for (const auto& [written, meant] : kCharacters) {
    for (std::size_t at = text.find(written); at != text.npos; at = text.find(written)) {
      text.replace(at, 2, 1, meant);
    }
  }
  std::vector<QueryPart> parts;
  for (std::size_t at = 0; at < text.size();) {
    std::istringstream part(text.substr(at, text.find(" / ", at) - at));
    at += part.str().size() + 3;
    std::string field[5];
    for (int i = 0; i < 5; ++i) std::getline(part, field[i], i < 2 ? ':' : '|');
    parts.push_back({static_cast<std::uint8_t>(std::stoi(field[0])),
                     static_cast<std::int16_t>(std::stoi(field[1])), field[2], field[3], field[4]});
  }
  return {"q", parts};
}

TEST(SavedQuery, TextOfParts) {
  for (const auto& [parts, text] : test::examplesOf("store/sql/queries.txt")) {
    std::string told;
    const test::Raised raised = test::raisedBy([&] { told = queryOf(parts).sql(); });
    if (raised.number != 0) told = fmt::format("error {}: {}", raised.number, raised.description);
    EXPECT_EQ(told, text) << parts;
  }
}

}  // namespace
}  // namespace orv::store::jet
