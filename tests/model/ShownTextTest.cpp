#include <gtest/gtest.h>

#include "model/ShownText.h"

namespace orv {
namespace {

TEST(ShownText, SpellsOutWhatSteersATerminalOrTheOrderOfLetters) {
  const std::pair<const char*, const char*> cases[] = {
      {"plain, Solvær® 45 漢字 שלום 😀\n\tnext", "plain, Solvær® 45 漢字 שלום 😀\n\tnext"},
      {"\x1b]0;title\x07\r\x7f", "\\u001b]0;title\\u0007\\u000d\\u007f"},
      {"two\r\nlines", "two\nlines"},
      {"\u0080\u009b31m\u009f\u00a0", "\\u0080\\u009b31m\\u009f\u00a0"},
      {"gpj.\u202Eexe\u202A\u2066\u2069", "gpj.\\u202eexe\\u202a\\u2066\\u2069"},
      {"a\u2028b\u2029", "a\\u2028b\\u2029"},
      {"\u2027\u202F\u2065\u206A", "\u2027\u202F\u2065\u206A"},
      {"\x9b"
       "31m \xc3",
       "\\x9b31m \\xc3"}};
  for (const auto& [text, expected] : cases) EXPECT_EQ(shown(text), expected);
  EXPECT_EQ(shown(std::string_view("a\0", 2)), "a\\u0000");
}

}  // namespace
}  // namespace orv
