#include "store/sql/translate/ExpressionWriter.h"

#include <fmt/format.h>

#include <algorithm>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/sql/functions/Arguments.h"
#include "store/sql/functions/DateText.h"
#include "store/sql/functions/FunctionTable.h"
#include "store/sql/syntax/Text.h"
#include "store/sql/translate/Catalog.h"
#include "store/sql/translate/QueryWriter.h"

namespace orv::store::sql {
namespace {

using Kind = Expression::Kind;

/// Below the depth of expressions that SQLite takes.
constexpr int kMaximumDepth = 900;

std::string quoteText(std::string_view text) {
  std::string quoted = "'";
  for (const char c : text) {
    quoted += c;
    if (c == '\'') {
      quoted += c;
    }
  }
  return quoted + "'";
}

bool isWholeLiteral(const std::string& digits) {
  return digits.find_first_of(".eE") == std::string::npos && digits.size() < 19;
}

SqlPiece dateLiteral(double days) {
  std::string sql = fmt::format("{:.17g}", days);
  if (sql.find_first_of(".e") == std::string::npos) {
    sql += ".0";
  }
  return {sql, ColumnType::dateTime};
}

bool hasType(const SqlPiece& piece, bool (*test)(ColumnType)) {
  return piece.type && test(*piece.type);
}

bool needsCollation(const SqlPiece& piece) {
  return !piece.column && (!piece.type || isTextType(*piece.type));
}

bool isNumber(const SqlPiece& piece) {
  return piece.type && (isNumberType(*piece.type) || *piece.type == ColumnType::boolean);
}

bool isWhole(const SqlPiece& piece) {
  return piece.type && (isWholeType(*piece.type) || *piece.type == ColumnType::boolean);
}

}  // namespace

SqlPiece ExpressionWriter::write(const Expression& e) {
  if (++depth_ > kMaximumDepth) {
    text_.fail(kSyntaxError, "The expression is too complex", e.at);
  }
  SqlPiece result;
  switch (e.kind) {
    case Kind::null:
      result = {"NULL"};
      break;
    case Kind::number:
      result = isWholeLiteral(e.text) ? SqlPiece{e.text, ColumnType::longInteger}
                                      : SqlPiece{e.text, ColumnType::double_};
      if (result.type == ColumnType::double_ && e.text.find_first_of(".eE") == std::string::npos) {
        result.sql += ".0";
      }
      if (e.parameter > 0) result.sql = fmt::format("?{}", e.parameter);
      break;
    case Kind::text:
      result = {e.parameter > 0 ? fmt::format("?{}", e.parameter) : quoteText(e.text),
                ColumnType::text};
      break;
    case Kind::guid:
      result = {quoteText(e.text), ColumnType::guid};
      break;
    case Kind::boolean:
      result = {e.text == "True" ? "-1" : "0", ColumnType::boolean};
      break;
    case Kind::date: {
      const std::optional<double> days = parseDate(e.text);
      if (!days) {
        text_.fail(kSyntaxError, fmt::format("#{}# is no date", e.text), e.at);
      }
      result = dateLiteral(*days);
      break;
    }
    case Kind::allRows:
      text_.fail(kSyntaxError, "A star stands for all rows only in Count(*)", e.at);
    case Kind::name:
      result = name(e);
      break;
    case Kind::unary:
      result = unary(e);
      break;
    case Kind::binary:
      result = binary(e);
      break;
    case Kind::between:
      result = between(e);
      break;
    case Kind::inList:
    case Kind::inQuery:
      result = in(e);
      break;
    case Kind::like:
      result = like(e);
      break;
    case Kind::isNull:
      result = {fmt::format("({} IS {}NULL)", write(e.operands[0]).sql, e.negated ? "NOT " : ""),
                ColumnType::boolean, true};
      break;
    case Kind::exists:
    case Kind::subquery:
      result = subquery(e);
      break;
    case Kind::call:
      result = call(e);
      break;
  }
  --depth_;
  return result;
}

SqlPiece ExpressionWriter::collated(const Expression& e) {
  return asCollated(asComparand(write(e)));
}

SqlPiece ExpressionWriter::asValue(SqlPiece piece) {
  if (piece.truth) {
    return {fmt::format("(-{})", piece.sql), piece.type};
  }
  if (piece.column && hasType(piece, isDecimalType)) {
    return {fmt::format("CAST({} AS NUMERIC)", piece.sql), piece.type};
  }
  return piece;
}

/// As a side of a comparison: a column stands as it is, so that an index can serve it.
SqlPiece ExpressionWriter::asComparand(SqlPiece piece) {
  return piece.column ? piece : asValue(std::move(piece));
}

SqlPiece ExpressionWriter::asCollated(SqlPiece piece) {
  if (needsCollation(piece)) {
    piece.sql = fmt::format("({}) COLLATE {}", piece.sql, kTextCollation);
  }
  return piece;
}

/// A number, whatever the expression gives; text that is none raises an error when it is met.
std::string ExpressionWriter::asNumber(const SqlPiece& piece) {
  const bool known = isNumber(piece) || piece.type == ColumnType::dateTime;
  return known ? piece.sql : fmt::format("jet_number({})", piece.sql);
}

/// As text where text is wanted: dates and single-precision numbers as Access prints them.
std::string ExpressionWriter::asText(const SqlPiece& piece) {
  if (piece.type == ColumnType::dateTime) {
    return fmt::format("jet_datetext({})", piece.sql);
  }
  if (piece.type == ColumnType::single) {
    return fmt::format("jet_singletext({})", piece.sql);
  }
  return piece.sql;
}

/// A text literal that is compared with a date or a number stands for one.
void ExpressionWriter::adaptLiteral(const Expression& e, SqlPiece& piece,
                                    const SqlPiece& other) const {
  const bool isNumberText = isNumber(other) && other.type != ColumnType::boolean;
  if (e.kind != Kind::text || !(other.type == ColumnType::dateTime || isNumberText)) {
    return;
  }
  queries_.holdForTextOnly();
  if (other.type == ColumnType::dateTime) {
    const std::optional<double> days = parseDate(e.text);
    if (!days) {
      text_.fail(kTypeMismatch, fmt::format("A date is compared with \"{}\"", e.text), e.at);
    }
    piece = dateLiteral(*days);
  } else if (!numberOfText(e.text)) {
    text_.fail(kTypeMismatch, fmt::format("A number is compared with \"{}\"", e.text), e.at);
  } else if (!other.column) {  // columns have an affinity that makes a number of the text
    piece.sql = fmt::format("CAST({} AS NUMERIC)", piece.sql);
  }
}

std::optional<Scope::Found> ExpressionWriter::column(const Expression& e) const {
  return e.kind == Kind::name ? scope_.find(e.path, e.at) : std::nullopt;
}

bool ExpressionWriter::isOwn(const Scope::Found& found) const {
  const auto& members = scope_.members();
  return std::any_of(members.begin(), members.end(),
                     [&](const Scope::Member& member) { return &member == found.member; });
}

SqlPiece ExpressionWriter::name(const Expression& e) {
  if (const auto found = column(e)) {
    SqlPiece piece{found->sql()};
    if (found->typed().typed) {
      piece.type = found->typed().info.type;
    }
    piece.column = true;
    return piece;
  }
  if (e.path.size() == 1) {
    for (const SelectItem& item : items_) {
      if (!item.alias.empty() && sameName(item.alias, e.path[0])) {
        if (!open_.insert(&item).second) {
          text_.fail(kSyntaxError, fmt::format("The alias \"{}\" is defined by itself", item.alias),
                     e.at);
        }
        SqlPiece piece = write(item.expression);
        open_.erase(&item);
        return piece;
      }
    }
    const FunctionInfo* function = findFunction(upperWord(e.path[0]));
    if (function != nullptr && function->most == 0) {
      return {fmt::format("{}()", function->sqlName), ColumnType::dateTime};
    }
  }
  scope_.failUnknown(e.path, e.at);
}

SqlPiece ExpressionWriter::unary(const Expression& e) {
  if (e.text == "NOT") {
    return {fmt::format("(NOT {})", condition(e.operands[0])), ColumnType::boolean, true};
  }
  SqlPiece operand = value(e.operands[0]);
  const std::string sql = asNumber(operand);
  if (isWhole(operand)) {
    operand.type = ColumnType::longInteger;
  } else if (!isNumber(operand) && operand.type != ColumnType::dateTime) {
    operand.type = ColumnType::double_;
  }
  return {fmt::format("({} {})", e.text, sql), operand.type};
}

SqlPiece ExpressionWriter::binary(const Expression& e) {
  if (e.text == "AND" || e.text == "OR" || e.text == "XOR" || e.text == "EQV" || e.text == "IMP") {
    return logical(e);
  }
  if (e.text.find_first_of("=<>") != std::string::npos) {
    return comparison(e);
  }
  const SqlPiece left = value(e.operands[0]);
  const SqlPiece right = value(e.operands[1]);
  if (e.text == "&") {
    return {fmt::format("jet_concat({}, {})", asText(left), asText(right)), ColumnType::text};
  }
  return e.text == "+" ? plus(left, right) : arithmetic(e.text, left, right);
}

SqlPiece ExpressionWriter::logical(const Expression& e) {
  std::string left = condition(e.operands[0]);
  const std::string right = condition(e.operands[1]);
  // SQLite takes long chains of one operator, but not as many parentheses in each other.
  const bool isChain = e.text == "AND" || e.text == "OR";
  if (isChain && e.operands[0].kind == Kind::binary && e.operands[0].text == e.text) {
    left = left.substr(1, left.size() - 2);
  }
  const char* form = "({} AND {})";
  if (e.text == "OR") {
    form = "({} OR {})";
  } else if (e.text == "XOR") {
    form = "((NOT {}) <> (NOT {}))";
  } else if (e.text == "EQV") {
    form = "((NOT {}) = (NOT {}))";
  } else if (e.text == "IMP") {
    form = "((NOT {}) OR {})";
  }
  return {fmt::format(fmt::runtime(form), left, right), ColumnType::boolean, true};
}

SqlPiece ExpressionWriter::comparison(const Expression& e) {
  SqlPiece left = asComparand(write(e.operands[0]));
  SqlPiece right = asComparand(write(e.operands[1]));
  adaptLiteral(e.operands[0], left, right);
  adaptLiteral(e.operands[1], right, left);
  // Where a column of text takes part, its collation is used without asking.
  const auto textColumn = [](const SqlPiece& piece) {
    return piece.column && (!piece.type || isTextType(*piece.type));
  };
  if (!textColumn(left) && !textColumn(right) && !isNumber(left) && !isNumber(right)) {
    left = asCollated(left);
  }
  return {fmt::format("({} {} {})", left.sql, e.text, right.sql), ColumnType::boolean, true};
}

SqlPiece ExpressionWriter::between(const Expression& e) {
  const SqlPiece subject = collated(e.operands[0]);
  SqlPiece lower = asComparand(write(e.operands[1]));
  SqlPiece upper = asComparand(write(e.operands[2]));
  adaptLiteral(e.operands[1], lower, subject);
  adaptLiteral(e.operands[2], upper, subject);
  return {fmt::format("({} {}BETWEEN {} AND {})", subject.sql, e.negated ? "NOT " : "", lower.sql,
                      upper.sql),
          ColumnType::boolean, true};
}

SqlPiece ExpressionWriter::in(const Expression& e) {
  const SqlPiece subject = collated(e.operands[0]);
  std::string list;
  if (e.kind == Kind::inQuery) {
    const Translation inner = queries_.write(*e.query, &scope_);
    if (inner.columns.size() != 1) {
      text_.fail(kSyntaxError, "The sub-select of IN must have one column", e.at);
    }
    list = inner.sql;
  } else {
    for (std::size_t i = 1; i < e.operands.size(); ++i) {
      SqlPiece element = asComparand(write(e.operands[i]));
      adaptLiteral(e.operands[i], element, subject);
      list += (i > 1 ? ", " : "") + element.sql;
    }
  }
  return {fmt::format("({} {}IN ({}))", subject.sql, e.negated ? "NOT " : "", list),
          ColumnType::boolean, true};
}

SqlPiece ExpressionWriter::like(const Expression& e) {
  const char* function = e.text == "ALIKE" ? "jet_alike" : "jet_like";
  return {fmt::format("({}{}({}, {}))", e.negated ? "NOT " : "", function,
                      asText(value(e.operands[0])), asText(value(e.operands[1]))),
          ColumnType::boolean, true};
}

SqlPiece ExpressionWriter::plus(const SqlPiece& left, const SqlPiece& right) {
  if (hasType(left, isTextType) && hasType(right, isTextType)) {
    return {fmt::format("({} || {})", left.sql, right.sql), ColumnType::text};
  }
  const bool leftKnown = isNumber(left) || left.type == ColumnType::dateTime;
  const bool rightKnown = isNumber(right) || right.type == ColumnType::dateTime;
  if (leftKnown && rightKnown) {
    return arithmetic("+", left, right);
  }
  SqlPiece result{fmt::format("jet_plus({}, {})", left.sql, right.sql)};
  if (leftKnown || rightKnown) {
    result.type = ColumnType::double_;
  }
  return result;
}

SqlPiece ExpressionWriter::arithmetic(const std::string& op, const SqlPiece& left,
                                      const SqlPiece& right) {
  const std::string a = asNumber(left);
  const std::string b = asNumber(right);
  if (op == "/") {
    return {fmt::format("(1.0 * {} / {})", a, b), ColumnType::double_};
  }
  if (op == "\\" || op == "MOD") {
    return {fmt::format("{}({}, {})", op == "MOD" ? "jet_mod" : "jet_idiv", a, b),
            ColumnType::longInteger};
  }
  if (op == "^") {
    return {fmt::format("jet_power({}, {})", a, b), ColumnType::double_};
  }
  ColumnType type = ColumnType::double_;
  const bool leftDate = left.type == ColumnType::dateTime;
  const bool rightDate = right.type == ColumnType::dateTime;
  const bool difference = leftDate && rightDate && op == "-";
  if (op != "*" && (leftDate || rightDate) && !difference) {
    type = ColumnType::dateTime;
  } else if (isWhole(left) && isWhole(right)) {
    type = ColumnType::longInteger;
  } else if (left.type == ColumnType::currency || right.type == ColumnType::currency) {
    type = ColumnType::currency;
  }
  return {fmt::format("({} {} {})", a, op, b), type};
}

SqlPiece ExpressionWriter::subquery(const Expression& e) {
  const Translation inner = queries_.write(*e.query, &scope_);
  if (e.kind == Kind::exists) {
    return {fmt::format("(EXISTS ({}))", inner.sql), ColumnType::boolean, true};
  }
  if (inner.columns.size() != 1) {
    text_.fail(kSyntaxError, "A sub-select that stands for a value must have one column", e.at);
  }
  SqlPiece piece{fmt::format("({})", inner.sql)};
  if (inner.columns[0].typed) {
    piece.type = inner.columns[0].info.type;
  }
  return piece;
}

void ExpressionWriter::needArguments(const Expression& e, std::size_t least,
                                     std::size_t most) const {
  if (e.operands.size() < least || e.operands.size() > most) {
    text_.fail(kSyntaxError,
               fmt::format(
                   "The function {} has {} arguments, it takes {}", e.text, e.operands.size(),
                   least == most ? fmt::format("{}", least) : fmt::format("{} to {}", least, most)),
               e.at);
  }
}

}  // namespace orv::store::sql
