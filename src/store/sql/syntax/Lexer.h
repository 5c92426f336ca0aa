// Access SQL, taken apart into tokens.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "store/sql/syntax/SqlText.h"

namespace orv::store::sql {

struct Token {
  enum class Kind {
    end,
    word,  ///< a keyword or an unquoted name
    name,  ///< a name between brackets or backquotes; `text` without them
    number,
    text,    ///< between double quotes or apostrophes; `text` without them
    date,    ///< between number signs
    guid,    ///< `text` as "{...}"
    symbol,  ///< an operator or a mark of punctuation
  };
  Kind kind;
  std::string text;
  std::size_t at;     ///< byte of the statement where it begins
  int parameter = 0;  ///< of a number or text that is given when the statement runs, counted from 1

  bool isSymbol(std::string_view symbol) const { return kind == Kind::symbol && text == symbol; }
  /// Whether it is this keyword, given in upper case.
  bool isWord(std::string_view upper) const;
};

/// The tokens of a statement; the last one is of kind `end`. A name may begin with a digit
/// (`0_30_60`, `3D`). Raises kSyntaxError for what is not closed or cannot be part of Access SQL.
std::vector<Token> tokenize(const SqlText& sql);

}  // namespace orv::store::sql
