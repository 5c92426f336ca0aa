// What is refused, by name and with its place.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cstring>
#include <sstream>

#include "errors/Error.h"
#include "model/Raised.h"
#include "store/StoreError.h"
#include "store/sql/TranslatedDatabase.h"
#include "store/sql/syntax/Text.h"

namespace orv::store::sql {
namespace {

/// Statements with a mark where they are wrong, and what is told of it, by the numbers of errors.
const std::pair<std::int32_t, const char*> kRefused[] = {
    {kSyntaxError,
     R"(SELECT id ¦FORM Panes -> Syntax error: "FORM" stands where the end of the statement is wanted
SELECT id FROM Panes WHERE name = 'O'Brien¦' -> A text is not closed by '
SELECT id FROM Panes WHERE name = ¦'open -> A text is not closed by '
SELECT ¦[id FROM Panes -> A name in brackets is not closed by ]
SELECT ¦`id FROM Panes -> A name in backquotes is not closed by `
SELECT ¦#1/1/2020 -> A date is not closed by #
SELECT ¦{guid {1}} -> A brace begins no {guid {...}} value
SELECT ¦{uid {00112233-4455-6677-8899-AABBCCDDEEFF}} -> A brace begins no {guid {...}} value
SELECT id FROM Panes WHERE made > ¦#32/13/2020# -> #32/13/2020# is no date
SELECT id FROM Panes WHERE¦ -> Syntax error: the statement ends where an expression is wanted
SELECT id.¦.1 FROM Panes -> Syntax error: ".1" stands where a name is wanted
SELECT id ¦@ 2 FROM Panes -> The character @ has no meaning here
SELECT Größe FROM Panes WHERE ¦? -> The character ? has no meaning here
¦ -> Syntax error: the statement ends where SELECT is wanted
SELECT¦ -> Syntax error: the statement ends where an expression is wanted
SELECT ¦FROM Panes -> Syntax error: "FROM" stands where an expression is wanted
SELECT id, ¦FROM Panes -> Syntax error: "FROM" stands where an expression is wanted
SELECT 1 AS ¦5 -> Syntax error: "5" stands where a name after AS is wanted
SELECT (1¦ -> Syntax error: the statement ends where ) is wanted
SELECT Left('a', 1¦ -> Syntax error: the statement ends where ) is wanted
SELECT 1 FROM¦ -> Syntax error: the statement ends where the name of a table is wanted
SELECT 1 FROM ¦5 -> Syntax error: "5" stands where the name of a table is wanted
SELECT 1 FROM (Panes¦ -> Syntax error: the statement ends where ) is wanted
SELECT 1 FROM (SELECT 1¦ -> Syntax error: the statement ends where ) is wanted
SELECT 1 FROM Panes INNER ¦Suppliers -> Syntax error: "Suppliers" stands where JOIN is wanted
SELECT 1 FROM Panes JOIN Suppliers¦ -> Syntax error: the statement ends where ON is wanted
SELECT id FROM Panes ORDER ¦id -> Syntax error: "id" stands where BY is wanted
SELECT id FROM Panes GROUP ¦id -> Syntax error: "id" stands where BY is wanted
SELECT id FROM Panes WHERE id IS ¦5 -> Syntax error: "5" stands where NULL is wanted
SELECT id FROM Panes WHERE id NOT ¦5 -> Syntax error: "5" stands where LIKE, BETWEEN or IN is wanted
SELECT id FROM Panes WHERE id IN ¦5 -> Syntax error: "5" stands where ( is wanted
SELECT id FROM Panes WHERE id IN (5¦ -> Syntax error: the statement ends where ) is wanted
SELECT id FROM Panes WHERE id BETWEEN 1¦ -> Syntax error: the statement ends where AND is wanted
SELECT 1 WITH ¦OPTION -> Syntax error: "OPTION" stands where OWNERACCESS is wanted
SELECT 1 WITH OWNERACCESS¦ -> Syntax error: the statement ends where OPTION is wanted
SELECT id FROM Panes ¦-- all -> Syntax error: "-" stands where the end of the statement is wanted
SELECT 1; ¦SELECT 2 -> Syntax error: "SELECT" stands where the end of the statement is wanted
(SELECT 1 ¦UNION SELECT 2 -> Syntax error: "UNION" stands where ) is wanted
SELECT ¦* -> SELECT * needs a FROM
SELECT Sum(¦*) FROM Panes -> A star stands for all rows only in Count(*)
SELECT ¦Count(id, name) FROM Panes -> The function Count has 2 arguments, it takes 1
SELECT ¦Sum(Count(*)) FROM Panes -> Sum holds another aggregate function
SELECT id FROM Panes WHERE Count(*) ¦> 1 -> WHERE has an aggregate function: put the condition into HAVING
SELECT id FROM Panes HAVING id ¦> 1 -> HAVING needs GROUP BY or an aggregate function
SELECT ¦id, Count(*) FROM Panes -> The column "id" is neither in GROUP BY nor in an aggregate function
SELECT id FROM Panes GROUP BY id HAVING ¦Panes.name > 'a' -> The column "Panes.name" is neither in GROUP BY nor in an aggregate function
SELECT ¦name & 'x', Count(*) FROM Panes GROUP BY id -> The column "name" is neither in GROUP BY nor in an aggregate function
SELECT ¦* FROM Panes GROUP BY id -> SELECT * cannot be grouped: name its columns
SELECT ¦name FROM Panes, Suppliers -> "name" is a column of "Panes" and of "Suppliers": put the table before it
SELECT 1 FROM Panes, ¦panes -> FROM names "panes" twice: give one of them another name with AS
SELECT ¦a AS b, b AS a FROM Panes -> The alias "a" is defined by itself
SELECT id FROM Panes UNION SELECT ¦1, 2 FROM Panes -> The SELECTs of a UNION have 1 and 2 columns
SELECT id FROM Panes UNION SELECT 1 FROM Panes ORDER BY ¦name -> ORDER BY of a UNION takes the columns of its first SELECT
SELECT id FROM Panes UNION SELECT 1 FROM Panes ORDER BY ¦2 -> ORDER BY of a UNION takes the columns of its first SELECT
SELECT id FROM Panes ORDER BY ¦2 -> There is no column 2 to order by
SELECT DISTINCT TOP 2 id FROM Panes ORDER BY ¦name -> With DISTINCT, ORDER BY takes only columns that are selected
SELECT id FROM Panes WHERE id ¦IN (SELECT * FROM Suppliers) -> The sub-select of IN must have one column
SELECT ¦(SELECT * FROM Suppliers) FROM Panes -> A sub-select that stands for a value must have one column
SELECT ¦Switch(1=1, 2, 3) FROM Panes -> Switch takes pairs of a condition and a value
SELECT ¦Left('a') FROM Panes -> The function Left has 1 arguments, it takes 2
SELECT ¦Mid('a', 1, 2, 3) FROM Panes -> The function Mid has 4 arguments, it takes 2 to 3
SELECT ¦IIf(1, 2) FROM Panes -> The function IIf has 2 arguments, it takes 3
SELECT ¦Choose(1) FROM Panes -> The function Choose has 1 arguments, it takes 2 to 100
SELECT ¦Nz(1, 2, 3) FROM Panes -> The function Nz has 3 arguments, it takes 1 to 2
SELECT ¦IsNull() FROM Panes -> The function IsNull has 0 arguments, it takes 1)"},
    {kTypeMismatch,
     R"(SELECT id FROM Panes WHERE id = ¦'two' -> A number is compared with "two"
SELECT id FROM Panes WHERE ¦'two' < price -> A number is compared with "two"
SELECT id FROM Panes WHERE id IN (1, ¦'two') -> A number is compared with "two"
SELECT id FROM Panes WHERE id BETWEEN ¦'a' AND 2 -> A number is compared with "a"
SELECT id FROM Panes WHERE id BETWEEN 2 AND ¦'b' -> A number is compared with "b"
SELECT id FROM Panes WHERE made > ¦'soon' -> A date is compared with "soon")"},
    {kObjectNotFound,
     R"(SELECT * FROM ¦Nowhere -> There is no table or saved query "Nowhere"
SELECT ¦q.* FROM Panes -> FROM has no table "q"
SELECT ¦Panes.id FROM Panes p -> FROM has no table "Panes")"},
    {kItemNotFound,
     R"(SELECT ¦colour FROM Panes -> There is no column "colour" in "Panes"
SELECT ¦colour FROM Panes p, Suppliers -> There is no column "colour" in "p", "Suppliers"
SELECT ¦colour -> There is no column "colour" in a SELECT without FROM
SELECT ¦p.colour FROM Panes p -> "p" has no column "colour"
SELECT id FROM Panes WHERE EXISTS (SELECT 1 FROM Orders WHERE ¦Panes.colour = colour) -> "Panes" has no column "colour"
SELECT id FROM Panes WHERE EXISTS (SELECT 1 FROM Orders WHERE ¦a = 1) -> There is no column "a" in "Orders", "Panes"
SELECT id FROM Panes WHERE id = ¦Forms!Main!id -> There is no column "Forms.Main.id" in "Panes"
SELECT * FROM wrong -> There is no column "nothing" in "Panes" (at character 8 of the saved query "wrong"))"},
    {kNotSupported,
     R"(¦PARAMETERS x Long; SELECT 1 -> A query with parameters (PARAMETERS) cannot be run: only SELECT queries without parameters can
SELECT * FROM asks -> A query with parameters (PARAMETERS) cannot be run: only SELECT queries without parameters can (at character 1 of the saved query "asks")
¦TRANSFORM Sum(id) SELECT 1 -> A crosstab query (TRANSFORM) cannot be run: only SELECT queries without parameters can
¦INSERT INTO Panes VALUES (1) -> An append query (INSERT INTO) cannot be run: only SELECT queries without parameters can
 ¦update Panes SET id = 1 -> An update query (UPDATE) cannot be run: only SELECT queries without parameters can
¦DELETE FROM Panes -> A delete query (DELETE) cannot be run: only SELECT queries without parameters can
¦CREATE TABLE T (id LONG) -> A data-definition query (CREATE) cannot be run: only SELECT queries without parameters can
¦ALTER TABLE T ADD x LONG -> A data-definition query (ALTER) cannot be run: only SELECT queries without parameters can
¦DROP TABLE Panes -> A data-definition query (DROP) cannot be run: only SELECT queries without parameters can
¦EXECUTE p -> A stored procedure (EXECUTE) cannot be run: only SELECT queries without parameters can
¦EXEC p -> A stored procedure (EXEC) cannot be run: only SELECT queries without parameters can
SELECT * ¦INTO Copy FROM Panes -> A make-table query (SELECT INTO) cannot be run: only SELECT queries can
SELECT ¦DLookup('id', 'Panes') FROM Panes -> The domain function DLookup cannot be run; use a sub-select
SELECT ¦Eval('1') -> There is no function Eval
SELECT * FROM Panes ¦IN 'other.mdb' -> A table of another database (IN) cannot be read
SELECT * FROM ¦other.Panes -> A table of another database cannot be read
SELECT 1 FROM Panes WHERE id > ¦ALL (SELECT 1) -> ALL, ANY and SOME before a sub-select cannot be run; use Max or Min in it, or IN
SELECT 1 FROM Panes WHERE id > ¦ANY (SELECT 1) -> ALL, ANY and SOME before a sub-select cannot be run; use Max or Min in it, or IN
SELECT 1 FROM Panes WHERE id > ¦SOME (SELECT 1) -> ALL, ANY and SOME before a sub-select cannot be run; use Max or Min in it, or IN
SELECT * FROM a -> The saved query "A" refers to itself (at character 15 of the saved query "b"))"},
};

TEST(StatementError, IsRaised) {
  TranslatedDatabase db;
  db.queries["a"] = "SELECT * FROM b";
  db.queries["b"] = "SELECT * FROM A";
  db.queries["wrong"] = "SELECT nothing FROM Panes";
  db.queries["asks"] = "PARAMETERS x Long; SELECT id FROM Panes WHERE id = x";
  for (const auto& [number, texts] : kRefused) {
    std::istringstream lines(texts);
    for (std::string line; std::getline(lines, line);) {
      const std::size_t arrow = line.find(" -> ");
      std::string sql = line.substr(0, arrow), told = line.substr(arrow + 4);
      if (const std::size_t mark = sql.find("¦"); mark != std::string::npos) {
        sql.erase(mark, std::strlen("¦"));
        const std::size_t place = decodeUtf8(sql.substr(0, mark)).size() + 1;
        told += fmt::format(" (at character {} of the statement)", place);
      }
      const test::Raised raised = test::raisedBy([&] { db.rows(sql); });
      EXPECT_EQ(raised.number, number) << sql;
      EXPECT_EQ(raised.description, told) << sql;
    }
  }
}

TEST(StatementLimits, RefuseWhatWouldExhaustTheStack) {
  TranslatedDatabase db;
  const auto repeated = [](const char* text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) all += text;
    return all;
  };
  const auto told = [&](const std::string& sql) {
    return test::raisedBy([&] { db.rows("SELECT " + sql); }).description;
  };
  const std::string deep = "The statement is nested too deeply (at character {} of the statement)";
  EXPECT_EQ(told(repeated("(", 199) + "1" + repeated(")", 199)), "");
  EXPECT_EQ(told(repeated("(", 200) + "1"), fmt::format(fmt::runtime(deep), 208));
  EXPECT_EQ(told(repeated("NOT ", 200) + "1"), fmt::format(fmt::runtime(deep), 804));
  EXPECT_EQ(told(repeated("+", 200) + "1"), fmt::format(fmt::runtime(deep), 207));
  const std::string many = "1 FROM Panes WHERE id = 1";
  EXPECT_EQ(told(many + repeated(" OR id = 1", 890)), "");
  EXPECT_EQ(told(many + repeated(" AND id = 1", 890)), "");
  EXPECT_EQ(told(many + repeated(" OR id = 1", 900)),
            "The expression is too complex (at character 30 of the statement)");
}

TEST(StatementLimits, RefuseQueriesThatMultiplyWithoutMeasure) {
  TranslatedDatabase db;
  db.queries["q0"] = "SELECT id FROM Panes";
  for (int i = 1; i < 30; ++i) {
    const std::string inner = "q" + std::to_string(i - 1);
    db.queries["q" + std::to_string(i)] =
        "SELECT a.id FROM " + inner + " a, " + inner + " b WHERE a.id = b.id";
  }
  EXPECT_THROW(db.rows("SELECT * FROM q29"), Error);
}

}  // namespace
}  // namespace orv::store::sql
