// What is refused, by name and with its place.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cstring>

#include "model/Raised.h"
#include "store/StoreError.h"
#include "store/sql/TranslatedDatabase.h"
#include "store/sql/syntax/Text.h"
#include "support/CaseFile.h"

namespace orv::store::sql {
namespace {

TEST(StatementError, IsRaised) {
  TranslatedDatabase db;
  db.queries["a"] = "SELECT * FROM b";
  db.queries["b"] = "SELECT * FROM A";
  db.queries["wrong"] = "SELECT nothing FROM Panes";
  db.queries["asks"] = "PARAMETERS x Long; SELECT id FROM Panes WHERE id = x";
  for (auto [sql, told] : test::examplesOf("store/sql/refused.txt")) {
    if (const std::size_t mark = sql.find("¦"); mark != std::string::npos) {
      sql.erase(mark, std::strlen("¦"));
      told += fmt::format(" (at character {} of the statement)",
                          decodeUtf8(sql.substr(0, mark)).size() + 1);
    }
    const test::Raised raised = test::raisedBy([&] { db.rows(sql); });
    EXPECT_EQ(fmt::format("error {}: {}", raised.number, raised.description), told) << sql;
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
    const test::Raised raised = test::raisedBy([&] { db.rows("SELECT " + sql); });
    EXPECT_EQ(raised.number, raised.description.empty() ? 0 : kSyntaxError);
    return raised.description;
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
  const auto told = [&](const std::string& from) {
    const SqlText sql{"SELECT 1 FROM " + from};
    return test::raisedBy([&] { QueryWriter::translate(db, sql, Parser::parse(sql)); }).description;
  };
  const std::string many = "The statement is built on too many saved queries (at character ";
  EXPECT_EQ(told("q29"), many + "24 of the saved query \"q1\")");
  const std::string most = "q7 a, q6 b, q5 c, q4 d, q3 e, q2 f, q0 g, q0 h";  // 500 of them
  EXPECT_EQ(told(most), "");
  EXPECT_EQ(told(most + ", q0 i"), many + "63 of the statement)");
}

}  // namespace
}  // namespace orv::store::sql
