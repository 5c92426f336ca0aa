#include "textfile/Tokenizer.h"

#include <algorithm>

#include "errors/Error.h"
#include "model/ErrorCatalogue.h"

namespace orv::textfile {

namespace {

constexpr std::int32_t kTokenizerError = kUserErrorBase + 999;

// A brace inside a comment is reported in the words for a stray closing brace, too.
constexpr std::string_view kUnmatchedBrace = "Closing brace w/o matching opening brace";
constexpr std::string_view kUnclosedComment = "Comment has no closing brace!";

constexpr std::string_view kWordEnds = " \t\r\n{}=";

constexpr std::string_view kBraces =
    "Each comment begins with { and ends with }, and holds no other braces.";

/// Whether a byte goes on with a character of UTF-8.
bool isContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

bool isLineBreak(char c) {
  return c == '\r' || c == '\n';
}

}  // namespace

Token Tokenizer::GetToken() {
  for (;;) {
    if (atEnd()) {
      return {TokenType::EndOfText, {}, line_, column()};
    }
    const char c = text_[position_];
    if (c == ' ' || c == '\t') {
      advance();
    } else if (isLineBreak(c)) {
      const Token end{TokenType::EndOfLine, {}, line_, column()};
      advance();
      return end;
    } else if (c == '{') {
      bool hadLineBreak = false;
      ReadComment(hadLineBreak);
      if (hadLineBreak) {
        return {TokenType::EndOfLine, {}, line_, column()};
      }
    } else if (c == '}') {
      raiseExplained(kTokenizerError, kUnmatchedBrace, place().told("}", kBraces));
    } else {
      return readWord();
    }
  }
}

void Tokenizer::SkipLine() {
  while (GetToken().isWord()) {
  }
}

void Tokenizer::advance() {
  const char c = text_[position_++];
  const bool halfOfPair = c == '\r' && !atEnd() && text_[position_] == '\n';
  if (isLineBreak(c) && !halfOfPair) {
    ++line_;
    lineStart_ = position_;
    continuations_ = 0;
  } else if (isContinuation(c)) {
    ++continuations_;
  }
}

void Tokenizer::ReadComment(bool& hadLineBreak) {
  Assert(!atEnd() && text_[position_] == '{');
  const std::int32_t line = line_;
  const std::int32_t firstColumn = column();
  advance();
  const std::size_t start = position_;
  hadLineBreak = false;
  while (!atEnd() && text_[position_] != '}') {
    if (text_[position_] == '{') {
      raiseExplained(kTokenizerError, kUnmatchedBrace, place().told("{", kBraces));
    }
    hadLineBreak = hadLineBreak || isLineBreak(text_[position_]);
    advance();
  }
  if (atEnd()) {
    raiseExplained(kTokenizerError, kUnclosedComment,
                   Place{file_, line, firstColumn}.told("{", kBraces));
  }
  comments_.push_back({text_.substr(start, position_ - start), line, firstColumn});
  advance();
}

Token Tokenizer::readWord() {
  const std::size_t start = position_;
  const std::size_t end = text_[start] == '='
                              ? start + 1
                              : std::min(text_.find_first_of(kWordEnds, start), text_.size());
  const Token word{TokenType::Word, text_.substr(start, end - start), line_, column()};
  continuations_ += static_cast<std::size_t>(std::ranges::count_if(word.text, isContinuation));
  position_ = end;
  return word;
}

}  // namespace orv::textfile
