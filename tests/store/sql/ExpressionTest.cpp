// Operators and functions, from Access SQL to values.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include "errors/Error.h"
#include "store/sql/TranslatedDatabase.h"
#include "support/CaseFile.h"

namespace orv::store::sql {
namespace {

/// The value, or the number and the description of the error.
std::string valueOrError(TranslatedDatabase& db, const std::string& expression) {
  try {
    return db.value(expression);
  } catch (const Error& error) {
    return fmt::format("error {}: {}", error.number(), error.description());
  }
}

TEST(Expression, GivesWhatTheTableOfExamplesSays) {
  TranslatedDatabase db;
  for (const auto& [expression, value] : test::examplesOf("store/sql/expressions.txt")) {
    EXPECT_EQ(valueOrError(db, expression), value) << expression;
  }
  const std::string percents(200, '%');
  EXPECT_EQ(valueOrError(db, "Format(1, '0.##" + percents + "')"),
            "error 6: A number is too large for the pattern that it is to be shown by.");
}

}  // namespace
}  // namespace orv::store::sql
