#include <gmock/gmock.h>

#include "model/Raised.h"
#include "textfile/Tokenizer.h"

namespace orv::textfile {

namespace {

/// The tokens of a text: words as they are, "|" for the end of a line.
std::vector<std::string> tokensOf(std::string_view text) {
  Tokenizer tokenizer(text, "a.txt");
  std::vector<std::string> tokens;
  for (Token token = tokenizer.GetToken(); token.type != TokenType::EndOfText;
       token = tokenizer.GetToken()) {
    tokens.emplace_back(token.isWord() ? token.text : "|");
  }
  return tokens;
}

TEST(Tokenizer, SplitsWordsAtBlanksBreaksBracesAndEqualSigns) {
  using ::testing::ElementsAre;
  EXPECT_THAT(tokensOf(""), ElementsAre());
  EXPECT_THAT(tokensOf(" SI\tMicrons \n"), ElementsAre("SI", "Microns", "|"));
  EXPECT_THAT(tokensOf("TIR=0.1"), ElementsAre("TIR", "=", "0.1"));
  EXPECT_THAT(tokensOf("a{ x }b"), ElementsAre("a", "b"));
  EXPECT_THAT(tokensOf("a\rb\nc"), ElementsAre("a", "|", "b", "|", "c"));
  EXPECT_THAT(tokensOf("a { one\ntwo } b"), ElementsAre("a", "|", "b"));
}

TEST(Tokenizer, GathersCommentsWithTheirLines) {
  Tokenizer tokenizer("a {one}\r\n{two\r\nlines}\rb {three}", "a.txt");
  while (tokenizer.GetToken().type != TokenType::EndOfText) {
  }
  ASSERT_EQ(tokenizer.comments().size(), 3U);
  EXPECT_EQ(tokenizer.comments()[0].text, "one");
  EXPECT_EQ(tokenizer.comments()[1].text, "two\r\nlines");
  EXPECT_EQ(tokenizer.comments()[1].line, 2);
  EXPECT_EQ(tokenizer.comments()[2].line, 4);
}

TEST(Tokenizer, ExplainsUnmatchedBracesInTheSource) {
  struct Case {
    const char* text;
    const char* source;
    const char* place;
  };
  const Case cases[] = {
      {"a\n}", "Closing brace w/o matching opening brace", "2, column 1: '}'"},
      {"{ a { b } }", "Closing brace w/o matching opening brace", "1, column 5: '{'"},
      {"a\n{ b\n\n", "Comment has no closing brace!", "2, column 1: '{'"},
  };
  for (const Case& c : cases) {
    const auto raised = test::raisedBy([&] { tokensOf(c.text); });
    EXPECT_EQ(raised.number, -2147220505) << c.text;
    EXPECT_EQ(raised.source, c.source);
    EXPECT_EQ(raised.description, "");
    EXPECT_TRUE(raised.place.starts_with(std::string("a.txt, line ") + c.place)) << raised.place;
  }
}

}  // namespace

}  // namespace orv::textfile
