#include <gtest/gtest.h>

#include <cstdlib>

#include "model/ErrorCatalogue.h"
#include "support/CaseFile.h"

namespace orv {

namespace {

/// "none", a whole number, another number or a text.
ErrorValue valueOf(const std::string& text) {
  if (text == "none") return {};
  char* end = nullptr;
  const double number = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0') return text;
  return text.find('.') == std::string::npos ? ErrorValue(std::int32_t(number)) : number;
}

TEST(ErrorCatalogue, ComposesTheTextsOfAllNumbers) {
  for (const auto& cells : test::casesOf("model/errors.tsv", 4)) {
    const auto context = cells[2].empty() ? ErrorContext() : ErrorContext(cells[2]);
    EXPECT_EQ(DescribeError(std::stoi(cells[0]), valueOf(cells[1]), context), cells[3]) << cells[0];
  }
}

}  // namespace

}  // namespace orv
