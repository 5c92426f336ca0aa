// The part of QueryWriter that writes FROM: tables, saved queries, sub-selects, joins.
#include <fmt/format.h>

#include <algorithm>

#include "store/StoreError.h"
#include "store/sql/syntax/Parser.h"
#include "store/sql/translate/ExpressionWriter.h"
#include "store/sql/translate/QueryWriter.h"

namespace orv::store::sql {
namespace {

/// Queries over queries, each of which is put in several times, grow without measure.
constexpr int kMaximumExpansions = 500;

}  // namespace

std::string QueryWriter::nextAlias() {
  return fmt::format("t{}", aliases_++);
}

std::string QueryWriter::writeSources(const Select& select, Scope& scope) {
  std::string sql;
  for (const Source& source : select.from) {
    const std::string written = writeSource(source, scope);
    // A join binds tighter than the comma, which SQLite reads from left to right.
    const bool join = source.kind == Source::Kind::join;
    sql += fmt::format("{}{}{}{}", sql.empty() ? " FROM " : ", ", join ? "(" : "", written,
                       join ? ")" : "");
  }
  return sql;
}

std::string QueryWriter::writeSource(const Source& source, Scope& scope) {
  switch (source.kind) {
    case Source::Kind::table:
      return writeTable(source, scope);
    case Source::Kind::join:
      return writeJoin(source, scope);
    case Source::Kind::query:
      break;
  }
  const std::string alias = nextAlias();
  Translation inner = write(*source.query, nullptr);
  const std::string name = source.alias.empty() ? alias : source.alias;
  scope.add({name, alias, false, std::move(inner.columns)}, source.at);
  return fmt::format("({}) AS {}", inner.sql, alias);
}

/// A table, or a saved query in its place.
std::string QueryWriter::writeTable(const Source& source, Scope& scope) {
  const std::string alias = nextAlias();
  Scope::Member member{source.alias.empty() ? source.name : source.alias, alias, false, {}};
  std::string sql;
  if (const auto table = catalog_.table(source.name)) {
    member.baseTable = true;
    for (const ColumnInfo& column : table->columns) {
      member.columns.push_back({column, true});
    }
    sql = table->sqlName;
  } else if (const auto text = catalog_.queryText(source.name)) {
    Translation query = expandQuery(source.name, *text, source.at);
    member.columns = std::move(query.columns);
    sql = fmt::format("({})", query.sql);
  } else {
    text_.fail(kObjectNotFound, fmt::format("There is no table or saved query \"{}\"", source.name),
               source.at);
  }
  scope.add(std::move(member), source.at);
  return fmt::format("{} AS {}", sql, alias);
}

/// A right join is written as a left join the other way round, which gives the same rows.
std::string QueryWriter::writeJoin(const Source& source, Scope& scope) {
  const auto side = [&](const Source& s, bool first) {
    const std::string sql = writeSource(s, scope);
    return s.kind == Source::Kind::join && !first ? fmt::format("({})", sql) : sql;
  };
  const bool swapped = source.join == JoinKind::right;
  const std::string left = side(source.sides[0], !swapped);
  const std::string right = side(source.sides[1], swapped);
  const std::vector<SelectItem> noItems;
  ExpressionWriter expressions(text_, scope, *this, noItems);
  return fmt::format("{} {} {} ON {}", swapped ? right : left,
                     source.join == JoinKind::inner ? "JOIN" : "LEFT JOIN", swapped ? left : right,
                     expressions.condition(*source.on));
}

Translation QueryWriter::expandQuery(const std::string& name, const std::string& queryText,
                                     std::size_t at) const {
  const bool open = std::any_of(openQueries_.begin(), openQueries_.end(),
                                [&](const std::string& other) { return sameName(other, name); });
  if (open) {
    text_.fail(kNotSupported, fmt::format("The saved query \"{}\" refers to itself", name), at);
  }
  if (++*expansions_ > kMaximumExpansions) {
    text_.fail(kNotSupported, "The statement is built on too many saved queries", at);
  }
  const SqlText text{queryText, fmt::format("the saved query \"{}\"", name)};
  QueryWriter inner(catalog_, text);
  inner.openQueries_ = openQueries_;
  inner.openQueries_.push_back(name);
  inner.expansions_ = expansions_;
  return inner.write(Parser::parse(text), nullptr);
}

}  // namespace orv::store::sql
