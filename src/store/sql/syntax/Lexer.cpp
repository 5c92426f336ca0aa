#include "store/sql/syntax/Lexer.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>

#include "store/StoreError.h"
#include "store/sql/syntax/Text.h"

namespace orv::store::sql {
namespace {

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

bool isNameCharacter(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '$' ||
         static_cast<unsigned char>(c) >= 0x80;
}

class Lexer {
 public:
  explicit Lexer(const SqlText& sql) : sql_(sql), text_(sql.text) {}

  std::vector<Token> run() {
    std::vector<Token> tokens;
    do {
      tokens.push_back(next());
    } while (tokens.back().kind != Token::Kind::end);
    return tokens;
  }

 private:
  char peek(std::size_t ahead = 0) const {
    return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0';
  }

  Token next() {
    while (at_ < text_.size() && std::isspace(static_cast<unsigned char>(text_[at_])) != 0) {
      ++at_;
    }
    start_ = at_;
    if (at_ >= text_.size()) {
      return {Token::Kind::end, "", at_};
    }
    const char c = peek();
    switch (c) {
      case '[':
        return {Token::Kind::name, until(']', "A name in brackets"), start_};
      case '`':
        return {Token::Kind::name, until('`', "A name in backquotes"), start_};
      case '"':
      case '\'':
        return quoted(c);
      case '#':
        return {Token::Kind::date, until('#', "A date"), start_};
      case '{':
        return guid();
      default:
        break;
    }
    // The point of `Pane.0_30_60` parts names; that of `.5` begins a number.
    const bool afterName = start_ > 0 && (isNameCharacter(text_[start_ - 1]) ||
                                          text_[start_ - 1] == ']' || text_[start_ - 1] == '`');
    if (isDigit(c) || (c == '.' && isDigit(peek(1)) && !afterName)) {
      return numberOrName();
    }
    if (isNameCharacter(c)) {
      return word();
    }
    return symbol();
  }

  /// What stands between the current character and the next `close`.
  std::string until(char close, const char* what) {
    const std::size_t end = text_.find(close, at_ + 1);
    if (end == std::string_view::npos) {
      sql_.fail(kSyntaxError, fmt::format("{} is not closed by {}", what, close), start_);
    }
    std::string inner(text_.substr(at_ + 1, end - at_ - 1));
    at_ = end + 1;
    return inner;
  }

  Token quoted(char quote) {
    std::string text;
    for (++at_;; ++at_) {
      if (at_ >= text_.size()) {
        sql_.fail(kSyntaxError, fmt::format("A text is not closed by {}", quote), start_);
      }
      if (text_[at_] == quote) {
        if (peek(1) != quote) {
          break;
        }
        ++at_;
      }
      text += text_[at_];
    }
    ++at_;
    return {Token::Kind::text, text, start_};
  }

  /// `{guid {00112233-...}}`
  Token guid() {
    const std::size_t inner = text_.find('{', at_ + 1);
    const std::size_t close = text_.find("}}", at_ + 1);
    const bool closed = inner != std::string_view::npos && close != std::string_view::npos &&
                        inner < close && close - inner == 37;
    std::string keyword = closed ? upperWord(text_.substr(at_ + 1, inner - at_ - 1)) : "";
    std::erase(keyword, ' ');
    if (keyword != "GUID") {
      sql_.fail(kSyntaxError, "A brace begins no {guid {...}} value", start_);
    }
    at_ = close + 2;
    return {Token::Kind::guid, std::string(text_.substr(inner, close - inner + 1)), start_};
  }

  Token numberOrName() {
    std::size_t end = at_;
    const auto digits = [&] {
      while (end < text_.size() && isDigit(text_[end])) {
        ++end;
      }
    };
    digits();
    const bool partOfPath = isDigit(peek()) && at_ > 0 && text_[at_ - 1] == '.';
    if (end < text_.size() && text_[end] == '.' && !partOfPath) {
      ++end;
      digits();
    }
    if (end < text_.size() && (text_[end] == 'e' || text_[end] == 'E')) {
      std::size_t exponent = end + 1;
      if (exponent < text_.size() && (text_[exponent] == '+' || text_[exponent] == '-')) {
        ++exponent;
      }
      if (exponent < text_.size() && isDigit(text_[exponent])) {
        end = exponent;
        digits();
      }
    }
    if (end < text_.size() && isNameCharacter(text_[end]) && isDigit(peek())) {
      return word();
    }
    Token token{Token::Kind::number, std::string(text_.substr(at_, end - at_)), start_};
    at_ = end;
    return token;
  }

  Token word() {
    while (isNameCharacter(peek())) {
      ++at_;
    }
    return {Token::Kind::word, std::string(text_.substr(start_, at_ - start_)), start_};
  }

  Token symbol() {
    for (const std::string_view two : {"<=", ">=", "<>"}) {
      if (text_.substr(at_, 2) == two) {
        at_ += 2;
        return {Token::Kind::symbol, std::string(two), start_};
      }
    }
    const char c = peek();
    if (std::string_view("(),.!;+-*/\\^&=<>").find(c) == std::string_view::npos) {
      sql_.fail(kSyntaxError, fmt::format("The character {} has no meaning here", c), start_);
    }
    ++at_;
    return {Token::Kind::symbol, std::string(1, c), start_};
  }

  const SqlText& sql_;
  std::string_view text_;
  std::size_t at_ = 0;
  std::size_t start_ = 0;
};

}  // namespace

bool Token::isWord(std::string_view upper) const {
  return kind == Kind::word && upperWord(text) == upper;
}

std::vector<Token> tokenize(const SqlText& sql) {
  return Lexer(sql).run();
}

}  // namespace orv::store::sql
