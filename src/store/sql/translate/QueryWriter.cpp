#include "store/sql/translate/QueryWriter.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <charconv>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/sql/translate/ExpressionWriter.h"

namespace orv::store::sql {
namespace {

using Kind = Expression::Kind;

bool selectsAggregates(const Select& select) {
  return std::ranges::any_of(select.items, [](const SelectItem& item) {
    return ExpressionWriter::containsAggregate(item.expression);
  });
}

bool hasAggregates(const Select& select) {
  return selectsAggregates(select) ||
         (select.having && ExpressionWriter::containsAggregate(*select.having));
}

/// All rows are one group to a HAVING without GROUP BY. SQLite takes it only where what is selected
/// has an aggregate function.
bool needsAggregate(const Select& select) {
  return select.having && select.groupBy.empty() && !selectsAggregates(select);
}

/// The position that a whole number in ORDER BY stands for; 0 for other expressions.
std::size_t orderedPosition(const Expression& e) {
  std::size_t position = 0;
  if (e.kind == Kind::number) {
    std::from_chars(e.text.data(), e.text.data() + e.text.size(), position);
  }
  return position;
}

/// Whether it is a SELECT * over one table or query, with or without WHERE and ORDER BY.
bool picksRows(const Query& query) {
  const Select& select = query.selects.front();
  return query.selects.size() == 1 && !select.distinct && !select.distinctRow && !select.top &&
         select.groupBy.empty() && !select.having && select.items.size() == 1 &&
         select.items.front().all && select.from.size() == 1 &&
         select.from.front().kind == Source::Kind::table &&
         !(select.where && ExpressionWriter::containsAggregate(*select.where));
}

std::string columnList(std::size_t count) {
  std::string list;
  for (std::size_t i = 0; i < count; ++i) {
    list += fmt::format("{}c{}", i > 0 ? ", " : "", i);
  }
  return list;
}

}  // namespace

Translation QueryWriter::translate(Catalog& catalog, const SqlText& text, const Query& query) {
  QueryWriter writer(catalog, text);
  Translation result = writer.write(query, nullptr);
  result.holdsForOthers = writer.holdsForOthers_;
  return result;
}

Translation QueryWriter::translateQuery(Catalog& catalog, const std::string& name) {
  const auto text = catalog.queryText(name);
  if (!text) {
    throw Error(kObjectNotFound, fmt::format("There is no saved query \"{}\".", name));
  }
  return QueryWriter(catalog, SqlText{name}).expandQuery(name, *text, 0);
}

std::optional<RowTranslation> QueryWriter::translateRows(Catalog& catalog, const SqlText& text,
                                                         const Query& query) {
  QueryWriter writer(catalog, text);
  if (!picksRows(query)) return std::nullopt;
  const Select& select = query.selects.front();
  if (catalog.isQuery(select.from.front().name)) return std::nullopt;
  Scope scope(writer.text_, nullptr);
  const std::string from = writer.writeSources(select, scope);
  ExpressionWriter expressions(writer.text_, scope, writer, select.items);
  const std::vector<Output> outputs = writer.writeItems(select, scope, expressions);
  RowTranslation result{.sql = "SELECT " + scope.members().front().sqlName + ".rowid" + from,
                        .table = select.from.front().name};
  if (select.where) {
    result.sql += " WHERE " + expressions.condition(*select.where);
  }
  std::vector<OrderKey> keys = writer.writeOrder(query.orderBy, outputs, expressions);
  for (OrderKey& key : keys) {  // positions are those of columns that the statement does not give
    if (key.output > 0) key.sql = outputs[key.output - 1].sql;
  }
  result.sql += orderClause(keys);
  result.holdsForOthers = writer.holdsForOthers_;
  return result;
}

Translation QueryWriter::write(const Query& query, const Scope* outer) {
  return query.selects.size() == 1 ? writeSelect(query.selects.front(), query.orderBy, outer)
                                   : writeUnion(query, outer);
}

Translation QueryWriter::writeSelect(const Select& select, const std::vector<Ordering>& orderBy,
                                     const Scope* outer) {
  Scope scope(text_, outer);
  const std::string from = writeSources(select, scope);
  ExpressionWriter expressions(text_, scope, *this, select.items);

  std::vector<Output> outputs = writeItems(select, scope, expressions);
  if (needsAggregate(select)) {
    outputs.front().sql = fmt::format("CASE WHEN count(*) >= 0 THEN {} END", outputs.front().sql);
  }
  std::string head = select.distinct ? "SELECT DISTINCT " : "SELECT ";
  Translation result;
  for (std::size_t i = 0; i < outputs.size(); ++i) {
    head += fmt::format("{}{} AS c{}", i > 0 ? ", " : "", outputs[i].sql, i);
    result.columns.push_back(outputs[i].column);
  }

  std::string tail = from;
  if (select.where) {
    if (ExpressionWriter::containsAggregate(*select.where)) {
      text_.fail(kSyntaxError, "WHERE has an aggregate function: put the condition into HAVING",
                 select.where->at);
    }
    tail += " WHERE " + expressions.condition(*select.where);
  }
  tail += writeGroups(select, outputs, scope, expressions);
  const std::vector<OrderKey> keys = writeOrder(orderBy, outputs, expressions);

  if (select.top) {
    result.sql = writeTop(select, head, tail, keys, outputs.size(),
                          orderBy.empty() ? 0 : orderBy.front().expression.at);
    return result;
  }
  result.sql = head + tail + orderClause(keys);
  return result;
}

std::string QueryWriter::orderClause(const std::vector<OrderKey>& keys) {
  std::string sql;
  for (const OrderKey& key : keys) {
    sql += fmt::format("{} {}{}", sql.empty() ? " ORDER BY" : ",", key.sql,
                       key.descending ? " DESC" : "");
  }
  return sql;
}

/// TOP n gives also the rows that are equal to the n-th in what orders them.
std::string QueryWriter::writeTop(const Select& select, const std::string& head,
                                  const std::string& tail, const std::vector<OrderKey>& keys,
                                  std::size_t columns, std::size_t at) const {
  const Top& top = *select.top;
  if (keys.empty() && !top.percent) {
    return fmt::format("{}{} LIMIT {:.0f}", head, tail, top.count);
  }
  std::string extra;
  std::string order;
  for (std::size_t i = 0; i < keys.size(); ++i) {
    std::string name = fmt::format("c{}", keys[i].output - 1);
    if (keys[i].output == 0) {
      if (select.distinct) {
        text_.fail(kSyntaxError, "With DISTINCT, ORDER BY takes only columns that are selected",
                   at);
      }
      name = fmt::format("k{}", i);
      extra += fmt::format(", {} AS {}", keys[i].sql, name);
    }
    order +=
        fmt::format("{}{}{}", i > 0 ? ", " : "ORDER BY ", name, keys[i].descending ? " DESC" : "");
  }
  const std::string place =
      keys.empty() ? "row_number() OVER ()" : fmt::format("rank() OVER ({})", order);
  const std::string limit = top.percent ? fmt::format("(place - 1) * 100.0 < total * {}", top.count)
                                        : fmt::format("place <= {}", top.count);
  return fmt::format(
      "SELECT {} FROM (SELECT *, {} AS place, count(*) OVER () AS total FROM ({}{}{})) "
      "WHERE {} ORDER BY place",
      columnList(columns), place, head, extra, tail, limit);
}

Translation QueryWriter::writeUnion(const Query& query, const Scope* outer) {
  Translation result;
  for (std::size_t i = 0; i < query.selects.size(); ++i) {
    const Select& select = query.selects[i];
    const Translation part = writeSelect(select, {}, outer);
    if (i == 0) {
      result.columns = part.columns;
    } else {
      if (part.columns.size() != result.columns.size()) {
        text_.fail(kSyntaxError,
                   fmt::format("The SELECTs of a UNION have {} and {} columns",
                               result.columns.size(), part.columns.size()),
                   select.items.front().at);
      }
      result.sql += query.unionAll[i - 1] ? " UNION ALL " : " UNION ";
      for (std::size_t c = 0; c < result.columns.size(); ++c) {
        TypedColumn& column = result.columns[c];
        column.typed =
            column.typed && part.columns[c].typed && column.info.type == part.columns[c].info.type;
      }
    }
    result.sql += select.top ? fmt::format("SELECT * FROM ({})", part.sql) : part.sql;
  }
  result.sql += unionOrder(query.orderBy, result.columns);
  return result;
}

/// A UNION is ordered by its columns: by their names in the first SELECT, or their positions.
std::string QueryWriter::unionOrder(const std::vector<Ordering>& orderBy,
                                    const std::vector<TypedColumn>& columns) const {
  std::string sql;
  for (const Ordering& ordering : orderBy) {
    const Expression& e = ordering.expression;
    std::size_t position = orderedPosition(e);
    if (e.kind == Kind::name) {
      const auto found = std::find_if(
          columns.begin(), columns.end(),
          [&](const TypedColumn& column) { return sameName(column.info.name, e.path.back()); });
      position = static_cast<std::size_t>(found - columns.begin()) + 1;  // one behind if none
    }
    if (position == 0 || position > columns.size()) {
      text_.fail(kSyntaxError, "ORDER BY of a UNION takes the columns of its first SELECT", e.at);
    }
    sql += fmt::format("{} {}{}", sql.empty() ? " ORDER BY" : ",", position,
                       ordering.descending ? " DESC" : "");
  }
  return sql;
}

std::vector<QueryWriter::Output> QueryWriter::writeItems(const Select& select, const Scope& scope,
                                                         ExpressionWriter& expressions) const {
  std::vector<Output> outputs;
  int unnamed = 1000;
  for (const SelectItem& item : select.items) {
    if (item.all) {
      addAll(item, scope, outputs);
      continue;
    }
    const SqlPiece piece = expressions.collated(item.expression);
    Output output{piece.sql, {}};
    if (const auto found = expressions.column(item.expression)) {
      output.column = found->typed();
      output.member = found->member;
    } else {
      output.column.info.name = fmt::format("Expr{}", unnamed++);
      output.column.info.type = piece.type.value_or(ColumnType::text);
      output.column.typed = piece.type.has_value();
    }
    if (!item.alias.empty()) {
      output.column.info.name = item.alias;
      output.member = nullptr;
    }
    outputs.push_back(std::move(output));
  }
  // Columns of one name from several tables are told apart by the table.
  std::vector<bool> shared(outputs.size(), false);
  for (std::size_t i = 0; i < outputs.size(); ++i) {
    for (std::size_t j = 0; j < outputs.size(); ++j) {
      shared[i] = shared[i] || (i != j && outputs[i].member != outputs[j].member &&
                                sameName(outputs[i].column.info.name, outputs[j].column.info.name));
    }
  }
  for (std::size_t i = 0; i < outputs.size(); ++i) {
    if (shared[i] && outputs[i].member != nullptr) {
      std::string& name = outputs[i].column.info.name;
      name = fmt::format("{}.{}", outputs[i].member->name, name);
    }
  }
  return outputs;
}

void QueryWriter::addAll(const SelectItem& item, const Scope& scope,
                         std::vector<Output>& outputs) const {
  if (scope.members().empty()) {
    text_.fail(kSyntaxError, "SELECT * needs a FROM", item.at);
  }
  const Scope::Member* only = item.allOf.empty() ? nullptr : &scope.member(item.allOf, item.at);
  for (const Scope::Member& member : scope.members()) {
    if (only != nullptr && only != &member) {
      continue;
    }
    for (std::size_t i = 0; i < member.columns.size(); ++i) {
      outputs.push_back({Scope::Found{&member, i}.sql(), member.columns[i], &member});
    }
  }
}

std::string QueryWriter::writeGroups(const Select& select, const std::vector<Output>& outputs,
                                     const Scope& scope, ExpressionWriter& expressions) const {
  if (select.groupBy.empty() && !hasAggregates(select)) {
    if (select.having) {
      text_.fail(kSyntaxError, "HAVING needs GROUP BY or an aggregate function", select.having->at);
    }
    return select.distinctRow ? groupingOfRows(scope, outputs) : "";
  }
  std::vector<std::string> groups;
  for (const Expression& e : select.groupBy) {
    groups.push_back(expressions.collated(e).sql);
  }
  for (const SelectItem& item : select.items) {
    if (item.all) {
      text_.fail(kSyntaxError, "SELECT * cannot be grouped: name its columns", item.at);
    }
    checkGrouped(select, item.expression, groups, expressions, 0);
  }
  std::string sql = groups.empty() ? "" : fmt::format(" GROUP BY {}", fmt::join(groups, ", "));
  if (select.having) {
    checkGrouped(select, *select.having, groups, expressions, 0);
    sql += " HAVING " + expressions.condition(*select.having);
  }
  return sql;
}

/// DISTINCTROW gives each combination of rows of the tables that are selected from once.
std::string QueryWriter::groupingOfRows(const Scope& scope,
                                        const std::vector<Output>& outputs) const {
  std::vector<std::string> rows;
  for (const Scope::Member& member : scope.members()) {
    const std::string prefix = member.sqlName + ".";
    const bool used = std::any_of(outputs.begin(), outputs.end(), [&](const Output& output) {
      return output.sql.find(prefix) != std::string::npos;
    });
    if (used && !member.baseTable) {
      return "";
    }
    if (used) {
      rows.push_back(prefix + "rowid");
    }
  }
  const bool someUnused = rows.size() < scope.members().size();
  return rows.empty() || !someUnused ? "" : fmt::format(" GROUP BY {}", fmt::join(rows, ", "));
}

/// Raises kSyntaxError for a column outside of the groups and of aggregate functions.
void QueryWriter::checkGrouped(const Select& select, const Expression& e,
                               const std::vector<std::string>& groups,
                               ExpressionWriter& expressions, int depth) const {
  if (ExpressionWriter::isAggregate(e) || e.query || depth > 50 ||
      std::find(groups.begin(), groups.end(), expressions.collated(e).sql) != groups.end()) {
    return;
  }
  if (const auto found = expressions.column(e)) {
    if (!expressions.isOwn(*found)) {
      return;
    }
    text_.fail(kSyntaxError,
               fmt::format("The column \"{}\" is neither in GROUP BY nor in an aggregate function",
                           fmt::join(e.path, ".")),
               e.at);
  }
  if (e.kind == Kind::name) {
    for (const SelectItem& item : select.items) {
      if (sameName(item.alias, e.path.back())) {
        checkGrouped(select, item.expression, groups, expressions, depth + 1);
        return;
      }
    }
  }
  for (const Expression& operand : e.operands) {
    checkGrouped(select, operand, groups, expressions, depth + 1);
  }
}

std::vector<QueryWriter::OrderKey> QueryWriter::writeOrder(const std::vector<Ordering>& orderBy,
                                                           const std::vector<Output>& outputs,
                                                           ExpressionWriter& expressions) const {
  std::vector<OrderKey> keys;
  for (const Ordering& ordering : orderBy) {
    OrderKey key{{}, ordering.descending, orderedPosition(ordering.expression)};
    if (key.output > outputs.size()) {
      text_.fail(kSyntaxError, fmt::format("There is no column {} to order by", key.output),
                 ordering.expression.at);
    }
    if (key.output > 0) {
      key.sql = fmt::format("{}", key.output);
    } else {
      key.sql = expressions.collated(ordering.expression).sql;
      const auto same = std::find_if(outputs.begin(), outputs.end(),
                                     [&](const Output& output) { return output.sql == key.sql; });
      key.output = same == outputs.end() ? 0 : static_cast<std::size_t>(same - outputs.begin()) + 1;
    }
    keys.push_back(std::move(key));
  }
  return keys;
}

}  // namespace orv::store::sql
