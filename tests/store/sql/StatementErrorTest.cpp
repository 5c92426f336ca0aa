// What is refused, by name and with its place.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "errors/Error.h"
#include "model/Raised.h"
#include "store/StoreError.h"
#include "store/sql/TranslatedDatabase.h"

namespace orv::store::sql {
namespace {

using testing::HasSubstr;

struct Refused {
  const char* sql;
  std::int32_t number;
  const char* words;
};

constexpr Refused kRefused[] = {
    {"SELECT id FORM Panes", kSyntaxError, "\"FORM\" stands where the end of the statement"},
    {"SELECT id FROM Panes WHERE name = 'O'Brien'", kSyntaxError, "character 43 of the statement"},
    {"SELECT id FROM Panes WHERE name = 'open", kSyntaxError, "not closed by '"},
    {"SELECT [id FROM Panes", kSyntaxError, "not closed by ]"},
    {"SELECT id FROM Panes WHERE made > #32/13/2020#", kSyntaxError, "#32/13/2020# is no date"},
    {"SELECT id FROM Panes WHERE", kSyntaxError, "the statement ends where an expression"},
    {"SELECT id..1 FROM Panes", kSyntaxError, "character 11"},
    {"SELECT id @ 2 FROM Panes", kSyntaxError, "character @"},
    {"SELECT Größe FROM Panes WHERE ?", kSyntaxError, "character 31"},
    {"", kSyntaxError, "where SELECT is wanted"},
    {"SELECT id FROM Panes -- all", kSyntaxError, "wanted"},
    {"SELECT Sum(Count(*)) FROM Panes", kSyntaxError, "another aggregate"},
    {"SELECT id FROM Panes WHERE Count(*) > 1", kSyntaxError, "HAVING"},
    {"SELECT id, Count(*) FROM Panes", kSyntaxError, "\"id\" is neither in GROUP BY"},
    {"SELECT * FROM Panes GROUP BY id", kSyntaxError, "cannot be grouped"},
    {"SELECT name FROM Panes, Suppliers", kSyntaxError, "column of \"Panes\" and of \"Suppliers\""},
    {"SELECT 1 FROM Panes, panes", kSyntaxError, "twice"},
    {"SELECT a AS b, b AS a FROM Panes", kSyntaxError, "defined by itself"},
    {"SELECT id FROM Panes UNION SELECT 1, 2 FROM Panes", kSyntaxError, "1 and 2 columns"},
    {"SELECT id FROM Panes UNION SELECT 1 FROM Panes ORDER BY name", kSyntaxError, "first SELECT"},
    {"SELECT id FROM Panes ORDER BY 2", kSyntaxError, "no column 2"},
    {"SELECT id FROM Panes WHERE id IN (SELECT * FROM Suppliers)", kSyntaxError, "one column"},
    {"SELECT Switch(1=1, 2, 3) FROM Panes", kSyntaxError, "pairs of a condition"},
    {"SELECT Left('a') FROM Panes", kSyntaxError, "has 1 arguments, it takes 2"},
    {"SELECT id FROM Panes WHERE id = 'two'", kTypeMismatch, "A number is compared with \"two\""},
    {"SELECT id FROM Panes WHERE made > 'soon'", kTypeMismatch, "A date is compared"},
    {"SELECT * FROM Nowhere", kObjectNotFound, "no table or saved query \"Nowhere\""},
    {"SELECT colour FROM Panes", kItemNotFound, "no column \"colour\" in \"Panes\""},
    {"SELECT p.colour FROM Panes p", kItemNotFound, "\"p\" has no column \"colour\""},
    {"SELECT Panes.id FROM Panes p", kObjectNotFound, "no table \"Panes\""},
    {"SELECT q.* FROM Panes", kObjectNotFound, "no table \"q\""},
    {"SELECT id FROM Panes WHERE id = Forms!Main!id", kItemNotFound, "Forms.Main.id"},
    {"SELECT * FROM wrong", kItemNotFound, "at character 8 of the saved query \"wrong\""},
    {"PARAMETERS x Long; SELECT 1", kNotSupported, "parameters (PARAMETERS)"},
    {"SELECT * FROM asks", kNotSupported, "of the saved query \"asks\""},
    {"TRANSFORM Sum(id) SELECT 1", kNotSupported, "crosstab"},
    {"INSERT INTO Panes VALUES (1)", kNotSupported, "append query"},
    {" update Panes SET id = 1", kNotSupported, "update query"},
    {"DELETE FROM Panes", kNotSupported, "delete query"},
    {"SELECT * INTO Copy FROM Panes", kNotSupported, "make-table"},
    {"DROP TABLE Panes", kNotSupported, "data-definition"},
    {"SELECT DLookup('id', 'Panes') FROM Panes", kNotSupported, "DLookup"},
    {"SELECT Eval('1')", kNotSupported, "no function Eval"},
    {"SELECT * FROM Panes IN 'other.mdb'", kNotSupported, "another database"},
    {"SELECT 1 FROM Panes WHERE id > ALL (SELECT 1)", kNotSupported, "ALL, ANY and SOME"},
    {"SELECT * FROM a", kNotSupported, "refers to itself"},
};

TEST(StatementError, IsRaised) {
  TranslatedDatabase db;
  db.queries["a"] = "SELECT * FROM b";
  db.queries["b"] = "SELECT * FROM A";
  db.queries["wrong"] = "SELECT nothing FROM Panes";
  db.queries["asks"] = "PARAMETERS x Long; SELECT id FROM Panes WHERE id = x";
  for (const auto& [sql, number, words] : kRefused) {
    const test::Raised raised = test::raisedBy([&, sql = sql] { db.rows(sql); });
    EXPECT_EQ(raised.number, number) << sql << ": " << raised.description;
    EXPECT_THAT(raised.description, HasSubstr(words)) << sql;
  }
}

TEST(StatementLimits, RefuseWhatWouldExhaustTheStack) {
  TranslatedDatabase db;
  const std::string open(5000, '(');
  EXPECT_THROW(db.rows("SELECT " + open + "1"), Error);
  std::string chain = "SELECT 1";
  for (int i = 0; i < 5000; ++i) chain += "+1";
  EXPECT_THROW(db.rows(chain), Error);
  std::string negations = "SELECT ";
  for (int i = 0; i < 5000; ++i) negations += "NOT ";
  EXPECT_THROW(db.rows(negations + "1"), Error);
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
