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

bool isLineBreak(char c) {
  return c == '\r' || c == '\n';
}

}  // namespace

Token Tokenizer::GetToken() {
  for (;;) {
    if (atEnd()) {
      return {TokenType::EndOfText, {}, line_};
    }
    const char c = text_[position_];
    if (c == ' ' || c == '\t') {
      advance();
    } else if (isLineBreak(c)) {
      const Token end{TokenType::EndOfLine, {}, line_};
      advance();
      return end;
    } else if (c == '{') {
      bool hadLineBreak = false;
      ReadComment(hadLineBreak);
      if (hadLineBreak) {
        return {TokenType::EndOfLine, {}, line_};
      }
    } else if (c == '}') {
      raise(kUnmatchedBrace, line_);
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
  }
}

void Tokenizer::ReadComment(bool& hadLineBreak) {
  Assert(!atEnd() && text_[position_] == '{');
  const std::int32_t firstLine = line_;
  advance();
  const std::size_t start = position_;
  hadLineBreak = false;
  while (!atEnd() && text_[position_] != '}') {
    if (text_[position_] == '{') {
      raise(kUnmatchedBrace, line_);
    }
    hadLineBreak = hadLineBreak || isLineBreak(text_[position_]);
    advance();
  }
  if (atEnd()) {
    raise(kUnclosedComment, firstLine);
  }
  comments_.push_back({text_.substr(start, position_ - start), firstLine});
  advance();
}

Token Tokenizer::readWord() {
  const std::size_t start = position_;
  const std::size_t end = text_[start] == '='
                              ? start + 1
                              : std::min(text_.find_first_of(kWordEnds, start), text_.size());
  position_ = end;
  return {TokenType::Word, text_.substr(start, end - start), line_};
}

void Tokenizer::raise(std::string_view explanation, std::int32_t line) const {
  raiseExplained(kTokenizerError, explanation, placeOf(line));
}

}  // namespace orv::textfile
