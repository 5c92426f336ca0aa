// Clauses of SELECT, from Access SQL to rows.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "store/sql/TranslatedDatabase.h"

namespace orv::store::sql {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

class SelectTest : public testing::Test {
 protected:
  std::vector<std::string> rows(const std::string& sql) { return db_.rows(sql); }
  std::vector<std::string> names() const {
    std::vector<std::string> list;
    for (const TypedColumn& column : db_.columns) list.push_back(column.info.name);
    return list;
  }
  TranslatedDatabase db_;
};

TEST_F(SelectTest, FindsNamesHoweverTheyAreWritten) {
  EXPECT_THAT(rows("SELECT [Panes]![ID], panes.3D, [3d], `id` FROM [PANES] WHERE 3D = Yes"),
              ElementsAre("1|True|True|1", "4|True|True|4"));
  EXPECT_THAT(rows("select p.[name] as [the name] from Panes p where p.id=1;"),
              ElementsAre("Clear"));
  EXPECT_THAT(names(), ElementsAre("the name"));
}

TEST_F(SelectTest, NamesTheColumnsOfTheResult) {
  rows("SELECT p.id, s.id, p.name AS pane, thickness*2, s.* FROM Panes AS p, Suppliers AS s");
  EXPECT_THAT(names(), ElementsAre("p.id", "s.id", "pane", "Expr1000", "s.id", "name"));
  rows("SELECT * FROM Suppliers");
  EXPECT_THAT(names(), ElementsAre("id", "name"));
}

TEST_F(SelectTest, KeepsTheTypesOfColumnsAndGivesTypesToExpressions) {
  using enum ColumnType;
  const std::map<std::string, ColumnType> types{
      {"longInteger", longInteger}, {"dateTime", dateTime}, {"currency", currency},
      {"boolean", boolean},         {"double", double_},    {"text", text}};
  for (const auto& [expression, type] : casesOf("types.txt")) {
    rows("SELECT " + expression + " FROM Panes WHERE id < 0");
    EXPECT_EQ(db_.columns[0].typed, type != "unknown") << expression;
    EXPECT_EQ(db_.columns[0].info.type, type == "unknown" ? text : types.at(type)) << expression;
  }
}

TEST_F(SelectTest, JoinsInEveryNesting) {
  EXPECT_THAT(rows("SELECT p.id, s.name FROM Panes p INNER JOIN Suppliers s ON p.supplier = s.id "
                   "ORDER BY p.id"),
              ElementsAre("1|Glas & Co", "2|Verre", "3|Glas & Co"));
  EXPECT_THAT(rows("SELECT p.id, s.id FROM Panes p LEFT JOIN Suppliers s ON p.supplier = s.id "
                   "WHERE s.id Is Null ORDER BY p.id"),
              ElementsAre("4|-", "5|-"));
  EXPECT_THAT(rows("SELECT p.id, s.id FROM Panes p RIGHT OUTER JOIN Suppliers s "
                   "ON p.supplier = s.id ORDER BY s.id, p.id"),
              ElementsAre("1|1", "3|1", "2|2", "-|4"));
  EXPECT_THAT(rows("SELECT p.id, o.count, s.name FROM Suppliers s RIGHT JOIN (Orders o INNER JOIN "
                   "Panes p ON (o.pane = p.id)) ON (o.supplier = s.id) ORDER BY p.id, o.count"),
              ElementsAre("1|10|Glas & Co", "1|20|Verre", "2|5|Verre", "3|7|-"));
  EXPECT_THAT(rows("SELECT * FROM Orders, Panes p RIGHT JOIN Suppliers s ON p.supplier = s.id "
                   "WHERE count = 7 AND s.id = 4"),
              ElementsAre("3|9|7|-|-|-|-|-|-|-|4|Nobody"));
}

TEST_F(SelectTest, GroupsAndAggregates) {
  EXPECT_THAT(rows("SELECT pane, Count(*) AS n, Sum(count), Avg(count), First(count), Last(count) "
                   "FROM Orders GROUP BY pane HAVING Sum(count) > 5 ORDER BY Sum(count) DESC"),
              ElementsAre("1|2|30|15|10|20", "3|1|7|7|7|7"));
  EXPECT_THAT(rows("SELECT StDev(count), StDevP(count), Var(count), VarP(count) FROM Orders "
                   "WHERE pane = 1"),
              ElementsAre("7.0710678118654755|5|50|25"));
  EXPECT_THAT(rows("SELECT Count(name), Min(name), Max(price), Sum(price) FROM Panes"),
              ElementsAre("4|Clear|100.0000|120.4901"));
  EXPECT_THAT(
      rows("SELECT Count(*), Max(id), First(id), Last(name), StDevP(id), Sum(id) FROM Panes "
           "WHERE id > 99"),
      ElementsAre("0|-|-|-|-|-"));
  EXPECT_THAT(
      rows("SELECT First(name), Last(name), StDev(id), Var(id), VarP(id), StDevP(price) FROM "
           "Panes WHERE id = 5"),
      ElementsAre("-|-|-|-|0|0"));
  EXPECT_THAT(rows("SELECT Last(name), VarP(price) FROM Panes WHERE id > 2"),
              ElementsAre("-|2499.9950000024996"));
  EXPECT_THAT(rows("SELECT Max(name & ''), Min(LCase(name)) FROM Panes WHERE id < 4"),
              ElementsAre("Größe|clear"));
}

TEST_F(SelectTest, TakesTextAsEqualWithoutRegardToCase) {
  EXPECT_THAT(rows("SELECT id FROM Panes WHERE name = 'cLEAR' ORDER BY id"), ElementsAre("1", "2"));
  EXPECT_THAT(rows("SELECT DISTINCT UCase(name) FROM Panes WHERE id < 3").size(), 1u);
  EXPECT_THAT(rows("SELECT name, Count(*) FROM Panes WHERE id < 3 GROUP BY name").size(), 1u);
  EXPECT_THAT(rows("SELECT name FROM Panes WHERE id=1 UNION SELECT 'CLEAR' FROM Panes").size(), 1u);
  EXPECT_THAT(rows("SELECT id FROM Panes WHERE LCase(name) IN ('GRÖSSE', 'grosse')"),
              ElementsAre("3", "4"));
  EXPECT_THAT(rows("SELECT id FROM Panes WHERE LCase(name) = 'GROSSE'"), ElementsAre("4"));
  EXPECT_THAT(rows("SELECT id FROM Panes WHERE name IN (SELECT 'CLEAR' FROM Suppliers)"),
              ElementsAre("1", "2"));
  EXPECT_THAT(rows("SELECT id FROM Panes WHERE name BETWEEN 'CLEAR' AND 'd' ORDER BY id"),
              ElementsAre("1", "2"));
}

TEST_F(SelectTest, GivesTheFirstRowsWithThoseEqualToTheLast) {
  EXPECT_THAT(rows("SELECT TOP 2 id FROM Panes ORDER BY id DESC"), ElementsAre("5", "4"));
  EXPECT_THAT(rows("SELECT TOP 2 id FROM Panes ORDER BY thickness"),
              UnorderedElementsAre("1", "2", "3"));
  EXPECT_THAT(rows("SELECT DISTINCT TOP 2 thickness FROM Panes ORDER BY thickness"),
              ElementsAre("3.9", "5.7"));
  EXPECT_THAT(rows("SELECT TOP 50 PERCENT id FROM Panes ORDER BY id"), ElementsAre("1", "2", "3"));
  EXPECT_THAT(rows("SELECT TOP 1 name FROM Suppliers"), ElementsAre("Glas & Co"));
  EXPECT_THAT(rows("SELECT TOP 3 id FROM Panes ORDER BY thickness"),
              UnorderedElementsAre("1", "2", "3"));
  EXPECT_THAT(rows("SELECT TOP 2 id FROM Panes ORDER BY 3D, thickness DESC"),
              ElementsAre("4", "1"));
  EXPECT_THAT(rows("SELECT TOP 40 PERCENT id FROM Panes"), ElementsAre("1", "2"));
  EXPECT_THAT(rows("SELECT TOP 41 PERCENT id FROM Panes"), ElementsAre("1", "2", "3"));
  EXPECT_THAT(rows("SELECT TOP 60 PERCENT id, name FROM Panes ORDER BY name DESC, id"),
              ElementsAre("3|Größe", "4|Grosse", "1|Clear"));
  EXPECT_THAT(rows("SELECT TOP 1 supplier, Sum(count) AS n FROM Orders GROUP BY supplier "
                   "ORDER BY Sum(count) DESC"),
              ElementsAre("2|25"));
}

TEST_F(SelectTest, GivesEachRowOfTheSelectedTablesOnceWithDistinctRow) {
  EXPECT_THAT(rows("SELECT DISTINCTROW p.thickness FROM Panes p INNER JOIN Orders o "
                   "ON p.id = o.pane ORDER BY p.thickness"),
              ElementsAre("3.9", "5.7", "5.7"));
}

TEST_F(SelectTest, UnitesSelects) {
  EXPECT_THAT(rows("SELECT id FROM Suppliers UNION SELECT supplier FROM Orders "
                   "UNION ALL SELECT 1 FROM Suppliers WHERE id = 1 ORDER BY id DESC;"),
              ElementsAre("9", "4", "2", "1", "1"));
  // Values of several types are what each of them is.
  EXPECT_THAT(rows("SELECT 3D, price, made FROM Panes WHERE id = 1 UNION ALL "
                   "SELECT supplier, name, thickness FROM Panes WHERE id = 2"),
              ElementsAre("-1|10.5000|43861.5", "2|CLEAR |5.7"));
  EXPECT_THAT(rows("(SELECT TOP 1 id FROM Panes) UNION (SELECT 7 FROM Suppliers) ORDER BY 1"),
              ElementsAre("1", "7"));
}

TEST_F(SelectTest, RunsSubSelects) {
  EXPECT_THAT(rows("SELECT id FROM Panes p WHERE EXISTS (SELECT * FROM Orders WHERE pane = p.id) "
                   "AND id NOT IN (SELECT pane FROM Orders WHERE count > 9)"),
              ElementsAre("2", "3"));
  EXPECT_THAT(rows("SELECT id, (SELECT Sum(count) FROM Orders o WHERE o.pane = Panes.id) AS n "
                   "FROM Panes WHERE id < 4 ORDER BY 2"),
              ElementsAre("2|5", "3|7", "1|30"));
  EXPECT_THAT(rows("SELECT q.n, q.twice FROM (SELECT Count(*) AS n, Count(*)*2 AS twice "
                   "FROM Panes) AS q WHERE n > 1"),
              ElementsAre("5|10"));
}

TEST_F(SelectTest, LetsAnAliasStandForItsExpression) {
  EXPECT_THAT(rows("SELECT thickness*2 AS twice, twice+1 AS more FROM Panes WHERE twice > 20 "
                   "ORDER BY more"),
              ElementsAre("24|25"));
}

TEST_F(SelectTest, RunsSavedQueriesOverSavedQueries) {
  db_.queries["thick"] = "SELECT id, name, price FROM Panes WHERE thickness > 5 ORDER BY id DESC;";
  db_.queries["thick and dear"] = "SELECT * FROM thick WHERE price > 9";
  EXPECT_THAT(rows("SELECT t.id, Suppliers.name FROM [thick and dear] t, Suppliers "
                   "WHERE t.id = Suppliers.id"),
              ElementsAre("2|Verre"));
  EXPECT_THAT(rows("SELECT * FROM thick"),
              ElementsAre("5|-|0.0001", "4|Grosse|-", "3|Größe|100.0000", "2|CLEAR |9.9900"));
}

TEST_F(SelectTest, ComparesFixedPointNumbersByValue) {
  EXPECT_THAT(rows("SELECT id FROM Panes WHERE price > 10 ORDER BY price"), ElementsAre("1", "3"));
  EXPECT_THAT(rows("SELECT id FROM Panes WHERE price = 9.99 OR price IN (100, 5)"),
              ElementsAre("2", "3"));
  EXPECT_THAT(rows("SELECT Max(price) FROM Panes HAVING Max(price) > 99"), ElementsAre("100.0000"));
  EXPECT_THAT(rows("SELECT price & '' FROM Panes WHERE id = 1"), ElementsAre("10.5"));
}

TEST_F(SelectTest, ComparesDatesWithDatesAndWithTextThatIsOne) {
  EXPECT_THAT(rows("SELECT id, made FROM Panes WHERE made <= #2/1/2020#"),
              ElementsAre("1|2020-01-31 12:00:00", "2|2020-02-01"));
  EXPECT_THAT(rows("SELECT id FROM Panes WHERE made BETWEEN '2020-02-01' AND #2020-03-10 23:00#"),
              ElementsAre("2", "4"));
}

}  // namespace
}  // namespace orv::store::sql
