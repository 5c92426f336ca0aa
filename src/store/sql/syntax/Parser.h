// Access SQL made into a tree.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "store/sql/syntax/Lexer.h"
#include "store/sql/syntax/Syntax.h"

namespace orv::store::sql {

/// Reads one SELECT statement (or several joined by UNION) by recursive descent.
class Parser {
 public:
  /// The tokens of a statement. Raises kSyntaxError, or kNotSupported for a statement of another
  /// kind, which it names.
  static std::vector<Token> tokens(const SqlText& sql);
  /// Raises kSyntaxError.
  static Query parse(const SqlText& sql, std::vector<Token> tokens);
  static Query parse(const SqlText& sql) { return parse(sql, tokens(sql)); }

 private:
  Parser(const SqlText& sql, std::vector<Token> tokens) : sql_(sql), tokens_(std::move(tokens)) {}

  // Statements.
  Query statement();
  Query query();
  Select select();
  void selectPredicates(Select& select);
  SelectItem item();
  std::vector<Source> sources();
  Source joinedSources();
  Source source();
  std::string alias(bool asNeeded);
  std::vector<Ordering> orderBy();
  static void refuseOtherStatements(const SqlText& sql);

  // Expressions, from the loosest operator to the tightest.
  Expression expression();
  Expression binaryLevel(std::size_t level);
  Expression negation();
  Expression comparison();
  Expression comparisonTail(Expression left);
  Expression arithmetic(std::size_t level);
  Expression sign();
  Expression power();
  Expression primary();
  Expression nameOrCall();
  std::vector<Expression> arguments();
  std::shared_ptr<const Query> parenthesisedQuery();

  // Tokens.
  const Token& peek(std::size_t ahead = 0) const;
  Token take();
  bool acceptWord(std::string_view upper);
  bool acceptSymbol(std::string_view symbol);
  void expectWord(std::string_view upper);
  void expectSymbol(std::string_view symbol);
  bool atQuery() const;
  [[noreturn]] void unexpected(std::string_view wanted) const;

  /// Counts the nesting while it lives; raises kSyntaxError where it is too deep for the stack.
  class Nesting {
   public:
    explicit Nesting(Parser& parser);
    ~Nesting() { --parser_.depth_; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

   private:
    Parser& parser_;
  };

  const SqlText& sql_;
  std::vector<Token> tokens_;
  std::size_t at_ = 0;
  int depth_ = 0;
};

}  // namespace orv::store::sql
