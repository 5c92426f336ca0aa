#include "store/sql/syntax/StatementShape.h"

#include <algorithm>
#include <cstdint>

namespace orv::store::sql {
namespace {

constexpr std::size_t kMostDigits = 9;  // of numbers that a Long takes in any case

bool isComparison(const Token& token) {
  return token.kind == Token::Kind::symbol && token.text.find_first_of("=<>") != std::string::npos;
}

/// Whether a comparison's right side ends before this token.
bool endsComparison(const Token& token) {
  return token.kind == Token::Kind::end || token.isSymbol(")") || token.isSymbol(";") ||
         token.isWord("AND") || token.isWord("OR") || token.isWord("ORDER");
}

bool isValue(const Token& token) {
  const bool isWhole = token.text.size() <= kMostDigits &&
                       token.text.find_first_not_of("0123456789") == std::string::npos;
  return token.kind == Token::Kind::text || (token.kind == Token::Kind::number && isWhole);
}

/// The number of the value's parameter, counted from 1.
int parameterFor(const Token& value, std::vector<Token>& parameters) {
  const auto found = std::ranges::find_if(parameters, [&](const Token& known) {
    return known.kind == value.kind && known.text == value.text;
  });
  const auto place = found - parameters.begin();
  if (found == parameters.end()) parameters.push_back(value);
  return static_cast<int>(place) + 1;
}

void appendTo(std::string& key, const Token& token) {
  const std::string text = token.parameter > 0 ? std::to_string(token.parameter) : token.text;
  const auto size = static_cast<std::uint32_t>(text.size());
  key += static_cast<char>(token.kind);
  key += token.parameter > 0 ? '?' : ' ';
  key.append(reinterpret_cast<const char*>(&size), sizeof size);
  key += text;
}

}  // namespace

StatementShape takeParameters(std::vector<Token>& tokens) {
  StatementShape shape;
  const bool repeatsExpressions = std::ranges::any_of(tokens, [](const Token& token) {
    return token.isWord("GROUP") || token.isWord("HAVING") || token.isWord("DISTINCT") ||
           token.isWord("UNION") || token.isWord("TOP");
  });
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const bool isCompared = i > 0 && i + 1 < tokens.size() && isComparison(tokens[i - 1]) &&
                            endsComparison(tokens[i + 1]);
    if (isCompared && !repeatsExpressions && isValue(tokens[i])) {
      tokens[i].parameter = parameterFor(tokens[i], shape.parameters);
    }
    appendTo(shape.key, tokens[i]);
  }
  return shape;
}

}  // namespace orv::store::sql
