// The part of the parser that reads expressions.
#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "store/StoreError.h"
#include "store/sql/syntax/Parser.h"
#include "store/sql/syntax/Text.h"

namespace orv::store::sql {
namespace {

using Kind = Expression::Kind;

/// Logical operators from the loosest to the tightest; NOT is tighter than all of them.
constexpr std::array kLogical = {"IMP", "EQV", "XOR", "OR", "AND"};

/// Arithmetic operators from the loosest to the tightest; a sign and ^ are tighter.
const std::array<std::vector<std::string_view>, 5> kArithmetic = {
    {{"&"}, {"+", "-"}, {"MOD"}, {"\\"}, {"*", "/"}}};

constexpr std::array kComparisons = {"=", "<>", "<", "<=", ">", ">="};

Expression binary(std::string op, std::size_t at, Expression left, Expression right) {
  Expression result{Kind::binary, at, std::move(op)};
  result.operands.push_back(std::move(left));
  result.operands.push_back(std::move(right));
  return result;
}

}  // namespace

Expression Parser::expression() {
  const Nesting nesting(*this);
  return binaryLevel(0);
}

Expression Parser::binaryLevel(std::size_t level) {
  if (level == kLogical.size()) {
    return negation();
  }
  Expression left = binaryLevel(level + 1);
  while (peek().isWord(kLogical[level])) {
    const std::size_t at = take().at;
    left = binary(kLogical[level], at, std::move(left), binaryLevel(level + 1));
  }
  return left;
}

Expression Parser::negation() {
  if (!peek().isWord("NOT")) {
    return comparison();
  }
  const Nesting nesting(*this);
  Expression result{Kind::unary, take().at, "NOT"};
  result.operands.push_back(negation());
  return result;
}

Expression Parser::comparison() {
  Expression left = arithmetic(0);
  while (true) {
    const Token& token = peek();
    const bool symbol =
        token.kind == Token::Kind::symbol &&
        std::find(kComparisons.begin(), kComparisons.end(), token.text) != kComparisons.end();
    if (symbol) {
      const Token op = take();
      if (peek().isWord("ALL") || peek().isWord("ANY") || peek().isWord("SOME")) {
        sql_.fail(
            kNotSupported,
            "ALL, ANY and SOME before a sub-select cannot be run; use Max or Min in it, or IN",
            peek().at);
      }
      left = binary(op.text, op.at, std::move(left), arithmetic(0));
    } else if (token.isWord("IS") || token.isWord("LIKE") || token.isWord("ALIKE") ||
               token.isWord("BETWEEN") || token.isWord("IN") ||
               (token.isWord("NOT") && !peek(1).isWord("NOT"))) {
      left = comparisonTail(std::move(left));
    } else {
      return left;
    }
  }
}

/// What follows a value: IS [NOT] NULL, [NOT] LIKE, [NOT] BETWEEN, [NOT] IN.
Expression Parser::comparisonTail(Expression left) {
  Expression result;
  result.at = peek().at;
  if (acceptWord("IS")) {
    result.kind = Kind::isNull;
    result.negated = acceptWord("NOT");
    expectWord("NULL");
    result.operands.push_back(std::move(left));
    return result;
  }
  result.negated = acceptWord("NOT");
  result.operands.push_back(std::move(left));
  if (peek().isWord("LIKE") || peek().isWord("ALIKE")) {
    result.kind = Kind::like;
    result.text = upperWord(take().text);
    result.operands.push_back(arithmetic(0));
  } else if (acceptWord("BETWEEN")) {
    result.kind = Kind::between;
    result.operands.push_back(arithmetic(0));
    expectWord("AND");
    result.operands.push_back(arithmetic(0));
  } else if (acceptWord("IN")) {
    if (atQuery()) {
      result.kind = Kind::inQuery;
      result.query = parenthesisedQuery();
    } else {
      result.kind = Kind::inList;
      expectSymbol("(");
      do {
        result.operands.push_back(expression());
      } while (acceptSymbol(","));
      expectSymbol(")");
    }
  } else {
    unexpected("LIKE, BETWEEN or IN");
  }
  return result;
}

Expression Parser::arithmetic(std::size_t level) {
  if (level == kArithmetic.size()) {
    return sign();
  }
  Expression left = arithmetic(level + 1);
  while (true) {
    const Token& token = peek();
    const auto& operators = kArithmetic[level];
    const auto found = std::find_if(operators.begin(), operators.end(), [&](std::string_view op) {
      return token.isSymbol(op) || token.isWord(op);
    });
    if (found == operators.end()) {
      return left;
    }
    const std::size_t at = take().at;
    left = binary(std::string(*found), at, std::move(left), arithmetic(level + 1));
  }
}

Expression Parser::sign() {
  if (!peek().isSymbol("-") && !peek().isSymbol("+")) {
    return power();
  }
  const Nesting nesting(*this);
  const Token op = take();
  Expression result{Kind::unary, op.at, op.text};
  result.operands.push_back(sign());
  return result;
}

Expression Parser::power() {
  Expression left = primary();
  while (peek().isSymbol("^")) {
    const std::size_t at = take().at;
    const bool sign = peek().isSymbol("-") || peek().isSymbol("+");
    left = binary("^", at, std::move(left), sign ? this->sign() : primary());
  }
  return left;
}

Expression Parser::primary() {
  const Token& token = peek();
  switch (token.kind) {
    case Token::Kind::number:
      return Expression{Kind::number, token.at, token.text, take().parameter};
    case Token::Kind::text:
      return Expression{Kind::text, token.at, token.text, take().parameter};
    case Token::Kind::date:
      return Expression{Kind::date, token.at, take().text};
    case Token::Kind::guid:
      return Expression{Kind::guid, token.at, take().text};
    case Token::Kind::word:
    case Token::Kind::name:
      return nameOrCall();
    default:
      break;
  }
  if (atQuery()) {
    Expression result{Kind::subquery, token.at};
    result.query = parenthesisedQuery();
    return result;
  }
  if (acceptSymbol("(")) {
    Expression result = expression();
    expectSymbol(")");
    return result;
  }
  unexpected("an expression");
}

Expression Parser::nameOrCall() {
  const Token first = take();
  Expression result{Kind::name, first.at};
  if (first.kind == Token::Kind::word) {
    const std::string upper = upperWord(first.text);
    if (upper == "EXISTS" && atQuery()) {
      result.kind = Kind::exists;
      result.query = parenthesisedQuery();
      return result;
    }
    const bool path = peek().isSymbol(".") || peek().isSymbol("!");
    if (upper == "NULL" && !path) {
      result.kind = Kind::null;
      return result;
    }
    const bool yes = upper == "TRUE" || upper == "YES";
    if ((yes || upper == "FALSE" || upper == "NO") && !path) {
      result.kind = Kind::boolean;
      result.text = yes ? "True" : "False";
      return result;
    }
    if (upper == "SELECT" || upper == "FROM" || upper == "WHERE" || upper == "UNION") {
      --at_;
      unexpected("an expression");
    }
  }
  if (peek().isSymbol("(")) {
    result.kind = Kind::call;
    result.text = first.text;
    result.operands = arguments();
    return result;
  }
  result.path.push_back(first.text);
  while (peek().isSymbol(".") || peek().isSymbol("!")) {
    take();
    if (peek().kind != Token::Kind::word && peek().kind != Token::Kind::name) {
      unexpected("a name");
    }
    result.path.push_back(take().text);
  }
  return result;
}

std::vector<Expression> Parser::arguments() {
  std::vector<Expression> list;
  expectSymbol("(");
  if (acceptSymbol(")")) {
    return list;
  }
  do {
    if (peek().isSymbol("*") && peek(1).isSymbol(")")) {
      list.push_back(Expression{Kind::allRows, take().at});
    } else {
      list.push_back(expression());
    }
  } while (acceptSymbol(","));
  expectSymbol(")");
  return list;
}

}  // namespace orv::store::sql
