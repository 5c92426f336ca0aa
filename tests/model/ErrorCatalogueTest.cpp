#include <gtest/gtest.h>

#include "model/ErrorCatalogue.h"
#include "model/Raised.h"

namespace orv {

namespace {

struct Case {
  std::int32_t number;
  ErrorValue value;
  ErrorContext context;
  const char* text;
};

const std::monostate kAbsent;
const ErrorContext kNoContext;

TEST(ErrorCatalogue, ComposesTheTextsOfAllNumbers) {
  const char* const index =
      "Invalid glazing index (index must be either a long id or filename found in the glazing "
      "database)";
  const Case cases[] = {
      {1001, kAbsent, kNoContext, "Invalid supplier"},
      {1001, "", kNoContext, "A supplier must be set"},
      {1001, "Acme", kNoContext, "'Acme' is not a valid supplier"},
      {1002, kAbsent, kNoContext, "Invalid coating name"},
      {1002, "", kNoContext, "Coating name must be set"},
      {1002, "x", kNoContext, "'x' is not a valid coating name"},
      {1003, "x", kNoContext, "Coated Side must be set"},
      {1004, kAbsent, kNoContext, "Invalid glazing type"},
      {1004, "", kNoContext, "Glazing type must be set"},
      {1004, 7, kNoContext, "'7' is not a valid glazing type in this context"},
      {1005, kAbsent, kNoContext, "The database's version info has no entries!"},
      {1006, kAbsent, kNoContext, index},
      {1006, "", kNoContext, index},
      {1006, "a.txt", kNoContext, "'a.txt' is not a valid glazing filename"},
      {1006, 17, kNoContext, "'17' is not a valid glazing id"},
      {1006, 2.5, kNoContext, "Glazing index is not a long or a string"},
      {1007, 1, kNoContext, "GlazingData reference is Nothing"},
      {1012, "", kNoContext, "Received non-token when expected a token"},
      {1012, "abc", "Units", "Units:  'abc' is not a token"},
      {1013, kAbsent, kNoContext, "Received a non-number when expected a number"},
      {1013, "a", kNoContext, "'a' is not a number.  Expected a number"},
      {1014, kAbsent, kNoContext,
       "Received a token which is not a number and not an * when expected either"},
      {1014, "a", kNoContext, "'a' is not a number and not an *"},
      {1015, kAbsent, kNoContext,
       "Received a token which is not an equal sign.  Expected an equal sign"},
      {1015, "a", kNoContext, "'a' is not an equal sign"},
      {1021, "", kNoContext, "Mismatched parantheses"},
      {1021, "a+(b", "Structure", "Structure:  Mismatched parantheses in a+(b"},
      {1022, kAbsent, kNoContext, "Emissivities not set"},
      {1023, kAbsent, kNoContext, "Glazings without emissivities set must have IR data"},
      {1016, "a", kNoContext, ""},
      {999, kAbsent, kNoContext, ""},
      {999, kAbsent, "X", "X:  "},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(DescribeError(c.number, c.value, c.context), c.text) << c.number;
  }
}

}  // namespace

}  // namespace orv
