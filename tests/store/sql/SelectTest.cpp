// Clauses of SELECT, from Access SQL to rows.
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gtest/gtest.h>

#include "store/sql/TranslatedDatabase.h"
#include "support/CaseFile.h"

namespace orv::store::sql {
namespace {

TEST(SelectTest, KeepsTheTypesOfColumnsAndGivesTypesToExpressions) {
  TranslatedDatabase db;
  using enum ColumnType;
  const std::map<std::string, ColumnType> types{{"longInteger", longInteger},
                                                {"dateTime", dateTime},
                                                {"currency", currency},
                                                {"boolean", boolean},
                                                {"double", double_},
                                                {"text", text},
                                                {"byte", byte},
                                                {"integer", integer},
                                                {"single", single},
                                                {"numeric", numeric},
                                                {"memo", memo}};
  for (const auto& [expression, type] : test::examplesOf("store/sql/types.txt")) {
    db.rows("SELECT " + expression + " FROM Panes, Kinds WHERE id < 0");
    EXPECT_EQ(db.columns[0].typed, type != "unknown") << expression;
    EXPECT_EQ(db.columns[0].info.type, type == "unknown" ? text : types.at(type)) << expression;
  }
}

/// The names of the columns, and the rows.
TEST(SelectTest, GivesWhatTheTableOfExamplesSays) {
  TranslatedDatabase db;
  db.queries["thick"] = "SELECT id, name, price FROM Panes WHERE thickness > 5 ORDER BY id DESC;";
  db.queries["thick and dear"] = "SELECT * FROM thick WHERE price > 9";
  for (const auto& [sql, expected] : test::examplesOf("store/sql/select.txt")) {
    const auto found = db.rows(sql);
    std::vector<std::string> names;
    for (const TypedColumn& column : db.columns) names.push_back(column.info.name);
    EXPECT_EQ(fmt::format("{}: {}", fmt::join(names, ", "), fmt::join(found, " ; ")), expected)
        << sql;
  }
}

}  // namespace
}  // namespace orv::store::sql
