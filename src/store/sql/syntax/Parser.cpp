#include "store/sql/syntax/Parser.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdlib>

#include "store/StoreError.h"
#include "store/sql/syntax/Text.h"

namespace orv::store::sql {
namespace {

/// Words that end an expression or a table, and so cannot be an alias without AS.
constexpr std::array kReserved = {
    "ALL",         "AND",  "AS",     "ASC",   "BETWEEN", "BY",     "DESC",  "DISTINCT",
    "DISTINCTROW", "EQV",  "EXISTS", "FROM",  "GROUP",   "HAVING", "IMP",   "IN",
    "INNER",       "INTO", "IS",     "JOIN",  "LEFT",    "LIKE",   "ALIKE", "MOD",
    "NOT",         "ON",   "OR",     "ORDER", "OUTER",   "PIVOT",  "RIGHT", "SELECT",
    "SET",         "TOP",  "UNION",  "WHERE", "WITH",    "XOR"};

struct Statement {
  const char* word;
  const char* what;
};
constexpr std::array kOtherStatements = {
    Statement{"PARAMETERS", "A query with parameters (PARAMETERS)"},
    Statement{"TRANSFORM", "A crosstab query (TRANSFORM)"},
    Statement{"INSERT", "An append query (INSERT INTO)"},
    Statement{"UPDATE", "An update query (UPDATE)"},
    Statement{"DELETE", "A delete query (DELETE)"},
    Statement{"CREATE", "A data-definition query (CREATE)"},
    Statement{"ALTER", "A data-definition query (ALTER)"},
    Statement{"DROP", "A data-definition query (DROP)"},
    Statement{"EXECUTE", "A stored procedure (EXECUTE)"},
    Statement{"EXEC", "A stored procedure (EXEC)"},
};

constexpr int kMaximumDepth = 200;

}  // namespace

Parser::Nesting::Nesting(Parser& parser) : parser_(parser) {
  if (++parser_.depth_ > kMaximumDepth) {
    parser_.sql_.fail(kSyntaxError, "The statement is nested too deeply", parser_.peek().at);
  }
}

std::vector<Token> Parser::tokens(const SqlText& sql) {
  // Before the text is taken apart: other statements may hold what a SELECT may not.
  refuseOtherStatements(sql);
  return tokenize(sql);
}

Query Parser::parse(const SqlText& sql, std::vector<Token> tokens) {
  return Parser(sql, std::move(tokens)).statement();
}

Query Parser::statement() {
  Query whole = query();
  if (acceptWord("WITH")) {
    expectWord("OWNERACCESS");
    expectWord("OPTION");
    acceptSymbol(";");
  }
  if (peek().kind != Token::Kind::end) {
    unexpected("the end of the statement");
  }
  return whole;
}

void Parser::refuseOtherStatements(const SqlText& sql) {
  const std::size_t start = std::min(sql.text.find_first_not_of(" \t\r\n"), sql.text.size());
  const std::size_t end = std::min(sql.text.find_first_of(" \t\r\n", start), sql.text.size());
  const std::string word = upperWord(std::string_view(sql.text).substr(start, end - start));
  for (const Statement& other : kOtherStatements) {
    if (word == other.word) {
      sql.fail(
          kNotSupported,
          fmt::format("{} cannot be run: only SELECT queries without parameters can", other.what),
          start);
    }
  }
}

Query Parser::query() {
  Query whole;
  do {
    const bool parenthesised = peek().isSymbol("(");
    if (parenthesised) {
      take();
    }
    whole.selects.push_back(select());
    if (parenthesised) {
      expectSymbol(")");
    }
    if (peek().isSymbol(";") && peek(1).isWord("UNION")) {
      take();
    }
    if (!acceptWord("UNION")) {
      break;
    }
    whole.unionAll.push_back(acceptWord("ALL"));
  } while (true);
  whole.orderBy = orderBy();
  acceptSymbol(";");
  return whole;
}

Select Parser::select() {
  expectWord("SELECT");
  Select result;
  selectPredicates(result);
  do {
    result.items.push_back(item());
  } while (acceptSymbol(","));
  if (peek().isWord("INTO")) {
    sql_.fail(kNotSupported,
              "A make-table query (SELECT INTO) cannot be run: only SELECT queries can", peek().at);
  }
  if (acceptWord("FROM")) {
    result.from = sources();
  }
  if (acceptWord("WHERE")) {
    result.where = expression();
  }
  if (acceptWord("GROUP")) {
    expectWord("BY");
    do {
      result.groupBy.push_back(expression());
    } while (acceptSymbol(","));
  }
  if (acceptWord("HAVING")) {
    result.having = expression();
  }
  return result;
}

void Parser::selectPredicates(Select& select) {
  while (true) {
    // A column may have the name of a predicate: then an operator or the end of the item follows.
    const Token& next = peek(1);
    const bool isItem = next.isSymbol(",") || next.isSymbol(".") || next.isWord("FROM");
    if (isItem) {
      return;
    }
    if (acceptWord("DISTINCT")) {
      select.distinct = true;
    } else if (acceptWord("DISTINCTROW")) {
      select.distinctRow = true;
    } else if (peek().isWord("TOP") && next.kind == Token::Kind::number) {
      take();
      const Token count = take();
      select.top = Top{std::strtod(count.text.c_str(), nullptr), acceptWord("PERCENT")};
    } else if (!acceptWord("ALL")) {
      return;
    }
  }
}

SelectItem Parser::item() {
  SelectItem item;
  item.at = peek().at;
  if (acceptSymbol("*")) {
    item.all = true;
    return item;
  }
  const bool isName = peek().kind == Token::Kind::word || peek().kind == Token::Kind::name;
  if (isName && (peek(1).isSymbol(".") || peek(1).isSymbol("!")) && peek(2).isSymbol("*")) {
    item.all = true;
    item.allOf = take().text;
    take();
    take();
    return item;
  }
  item.expression = expression();
  item.alias = alias(true);
  return item;
}

/// A name after AS; without AS too where it is not `asNeeded`. Empty when there is none.
std::string Parser::alias(bool asNeeded) {
  const bool as = acceptWord("AS");
  const Token& token = peek();
  const bool reserved =
      token.kind == Token::Kind::word &&
      std::find(kReserved.begin(), kReserved.end(), upperWord(token.text)) != kReserved.end();
  const bool name =
      token.kind == Token::Kind::name || (token.kind == Token::Kind::word && !reserved);
  if (as && token.kind != Token::Kind::name && token.kind != Token::Kind::word) {
    unexpected("a name after AS");
  }
  return as || (name && !asNeeded) ? take().text : std::string();
}

std::vector<Source> Parser::sources() {
  std::vector<Source> list;
  do {
    list.push_back(joinedSources());
  } while (acceptSymbol(","));
  if (peek().isWord("IN")) {
    sql_.fail(kNotSupported, "A table of another database (IN) cannot be read", peek().at);
  }
  return list;
}

Source Parser::joinedSources() {
  Source left = source();
  while (true) {
    Source join;
    join.kind = Source::Kind::join;
    join.at = peek().at;
    if (acceptWord("INNER")) {
      join.join = JoinKind::inner;
    } else if (acceptWord("LEFT")) {
      join.join = JoinKind::left;
      acceptWord("OUTER");
    } else if (acceptWord("RIGHT")) {
      join.join = JoinKind::right;
      acceptWord("OUTER");
    } else if (!peek().isWord("JOIN")) {
      return left;
    }
    expectWord("JOIN");
    join.sides.push_back(std::move(left));
    join.sides.push_back(source());
    expectWord("ON");
    join.on = expression();
    left = std::move(join);
  }
}

Source Parser::source() {
  Source result;
  result.at = peek().at;
  if (atQuery()) {
    result.kind = Source::Kind::query;
    result.query = parenthesisedQuery();
    result.alias = alias(false);
    return result;
  }
  if (acceptSymbol("(")) {
    result = joinedSources();
    expectSymbol(")");
    return result;
  }
  if (peek().kind != Token::Kind::word && peek().kind != Token::Kind::name) {
    unexpected("the name of a table");
  }
  result.name = take().text;
  if (peek().isSymbol(".")) {
    sql_.fail(kNotSupported, "A table of another database cannot be read", result.at);
  }
  result.alias = alias(false);
  return result;
}

std::vector<Ordering> Parser::orderBy() {
  std::vector<Ordering> list;
  if (!acceptWord("ORDER")) {
    return list;
  }
  expectWord("BY");
  do {
    Ordering ordering{expression()};
    if (acceptWord("DESC")) {
      ordering.descending = true;
    } else {
      acceptWord("ASC");
    }
    list.push_back(std::move(ordering));
  } while (acceptSymbol(","));
  return list;
}

std::shared_ptr<const Query> Parser::parenthesisedQuery() {
  expectSymbol("(");
  const Nesting nesting(*this);
  auto inner = std::make_shared<const Query>(query());
  expectSymbol(")");
  return inner;
}

/// Whether a parenthesis with a SELECT in it comes next.
bool Parser::atQuery() const {
  return peek().isSymbol("(") && peek(1).isWord("SELECT");
}

const Token& Parser::peek(std::size_t ahead) const {
  return tokens_[std::min(at_ + ahead, tokens_.size() - 1)];
}

Token Parser::take() {
  const Token& token = peek();
  at_ = std::min(at_ + 1, tokens_.size() - 1);
  return token;
}

bool Parser::acceptWord(std::string_view upper) {
  const bool found = peek().isWord(upper);
  if (found) {
    take();
  }
  return found;
}

bool Parser::acceptSymbol(std::string_view symbol) {
  const bool found = peek().isSymbol(symbol);
  if (found) {
    take();
  }
  return found;
}

void Parser::expectWord(std::string_view upper) {
  if (!acceptWord(upper)) {
    unexpected(upper);
  }
}

void Parser::expectSymbol(std::string_view symbol) {
  if (!acceptSymbol(symbol)) {
    unexpected(symbol);
  }
}

void Parser::unexpected(std::string_view wanted) const {
  const Token& token = peek();
  const std::string found = token.kind == Token::Kind::end
                                ? "the statement ends"
                                : fmt::format("\"{}\" stands", token.text);
  sql_.fail(kSyntaxError, fmt::format("Syntax error: {} where {} is wanted", found, wanted),
            token.at);
}

}  // namespace orv::store::sql
