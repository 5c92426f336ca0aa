#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "textfile/Place.h"

namespace orv::textfile {

enum class TokenType { EndOfLine = 1, Word = 2, EndOfText = 3 };

/// A piece of the text that readers look at. Only words have a text.
struct Token {
  TokenType type;
  std::string_view text;
  std::int32_t line;
  std::int32_t column;

  bool isWord() const { return type == TokenType::Word; }
};

/// What stands between a pair of braces.
struct Comment {
  std::string_view text;
  std::int32_t line;    ///< of the opening brace
  std::int32_t column;  ///< of the opening brace
};

/// Splits the text of a spectral file into words and line ends, and gathers its comments.
///
/// Words end at a blank, a tab, a line break or a brace; "=" is always a word of its own. Text in
/// braces is a comment, which is passed over; one that runs over a line break counts as the end
/// of a line. LF, CR and CR LF are line breaks alike.
///
/// Braces that do not match raise error -2147220505, whose source says what is wrong. The text
/// must outlive the tokenizer, its tokens and its comments.
class Tokenizer {
 public:
  /// `file` is the name that messages give.
  Tokenizer(std::string_view text, std::string file) : text_(text), file_(std::move(file)) {}

  Token GetToken();

  /// Passes over the rest of the line.
  void SkipLine();

  /// The comments passed so far, in order.
  const std::vector<Comment>& comments() const { return comments_; }

  Place placeOf(const Token& token) const { return {file_, token.line, token.column}; }
  Place placeOf(const Comment& comment) const { return {file_, comment.line, comment.column}; }
  Place place() const { return {file_, line_, column()}; }

 private:
  bool atEnd() const { return position_ == text_.size(); }
  void advance();
  /// Reads the comment at the position, which must hold "{". Tells whether a line broke in it.
  void ReadComment(bool& hadLineBreak);
  Token readWord();
  /// Of the position: the characters of its line before it, and one.
  std::int32_t column() const {
    return static_cast<std::int32_t>(position_ - lineStart_ - continuations_) + 1;
  }

  std::string_view text_;
  std::string file_;
  std::size_t position_ = 0;
  std::int32_t line_ = 1;
  std::size_t lineStart_ = 0;      ///< position of the first byte of the line
  std::size_t continuations_ = 0;  ///< bytes of the line that go on with a character
  std::vector<Comment> comments_;
};

}  // namespace orv::textfile
