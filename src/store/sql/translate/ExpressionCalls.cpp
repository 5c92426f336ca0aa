// The part of ExpressionWriter that writes calls of functions.
#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "store/StoreError.h"
#include "store/sql/functions/FunctionTable.h"
#include "store/sql/syntax/Text.h"
#include "store/sql/translate/Catalog.h"
#include "store/sql/translate/ExpressionWriter.h"

namespace orv::store::sql {
namespace {

using Kind = Expression::Kind;

struct AggregateInfo {
  std::string_view name;
  std::string_view sqlName;
};
constexpr std::array kAggregates = {
    AggregateInfo{"COUNT", "count"},       AggregateInfo{"SUM", "sum"},
    AggregateInfo{"AVG", "avg"},           AggregateInfo{"MIN", "min"},
    AggregateInfo{"MAX", "max"},           AggregateInfo{"FIRST", "jet_first"},
    AggregateInfo{"LAST", "jet_last"},     AggregateInfo{"STDEV", "jet_stdev"},
    AggregateInfo{"STDEVP", "jet_stdevp"}, AggregateInfo{"VAR", "jet_var"},
    AggregateInfo{"VARP", "jet_varp"},
};

const AggregateInfo* findAggregate(const std::string& upperName) {
  const auto found = std::find_if(kAggregates.begin(), kAggregates.end(),
                                  [&](const AggregateInfo& a) { return a.name == upperName; });
  return found == kAggregates.end() ? nullptr : &*found;
}

std::string functionName(const Expression& call) {
  std::string name = upperWord(call.text);
  if (name.ends_with('$')) {
    name.pop_back();
  }
  return name;
}

/// The type of a value that is one of several; none when they do not agree.
class CommonType {
 public:
  void add(const Expression& source, const SqlPiece& piece) {
    if (source.kind == Kind::null) {
      return;
    }
    if (first_) {
      first_ = false;
      type_ = piece.type;
    } else if (type_ != piece.type) {
      const bool numbers = type_ && piece.type && isNumberType(*type_) && isNumberType(*piece.type);
      const bool wholes = numbers && isWholeType(*type_) && isWholeType(*piece.type);
      const bool texts = type_ && piece.type && isTextType(*type_) && isTextType(*piece.type);
      type_ = wholes    ? std::optional(ColumnType::longInteger)
              : numbers ? std::optional(ColumnType::double_)
              : texts   ? std::optional(ColumnType::memo)
                        : std::nullopt;
    }
  }
  std::optional<ColumnType> get() const { return type_; }

 private:
  bool first_ = true;
  std::optional<ColumnType> type_;
};

std::optional<ColumnType> typeOf(ResultType result, const std::optional<ColumnType>& argument) {
  switch (result) {
    case ResultType::text:
      return ColumnType::text;
    case ResultType::whole:
      return ColumnType::longInteger;
    case ResultType::number:
      return ColumnType::double_;
    case ResultType::date:
      return ColumnType::dateTime;
    case ResultType::boolean:
      return ColumnType::boolean;
    case ResultType::currency:
      return ColumnType::currency;
    case ResultType::ofArgument:
      return argument;
    case ResultType::unknown:
      break;
  }
  return std::nullopt;
}

}  // namespace

bool ExpressionWriter::isAggregate(const Expression& e) {
  return e.kind == Kind::call && findAggregate(functionName(e)) != nullptr;
}

bool ExpressionWriter::containsAggregate(const Expression& e) {
  return isAggregate(e) || std::any_of(e.operands.begin(), e.operands.end(), containsAggregate);
}

SqlPiece ExpressionWriter::call(const Expression& e) {
  const std::string name = functionName(e);
  if (findAggregate(name) != nullptr) {
    return aggregate(e, name);
  }
  if (name == "IIF" || name == "SWITCH" || name == "CHOOSE") {
    return cases(e, name);
  }
  if (name == "NZ") {
    return nullToValue(e);
  }
  if (name == "ISNULL") {
    needArguments(e, 1, 1);
    return {fmt::format("({} IS NULL)", condition(e.operands[0])), ColumnType::boolean, true};
  }
  const FunctionInfo* function = findFunction(name);
  if (function == nullptr) {
    text_.fail(kNotSupported,
               isDomainFunction(name)
                   ? fmt::format("The domain function {} cannot be run; use a sub-select", e.text)
                   : fmt::format("There is no function {}", e.text),
               e.at);
  }
  needArguments(e, static_cast<std::size_t>(function->least),
                static_cast<std::size_t>(function->most));
  std::string sql = fmt::format("{}(", function->sqlName);
  std::optional<ColumnType> firstType;
  // A date that is formatted without a pattern is printed as a date.
  const bool textWanted = function->wantsText || (name == "FORMAT" && e.operands.size() == 1);
  for (std::size_t i = 0; i < e.operands.size(); ++i) {
    const SqlPiece argument = value(e.operands[i]);
    if (i == 0) {
      firstType = argument.type;
    }
    sql += i > 0 ? ", " : "";
    sql += textWanted ? asText(argument) : argument.sql;
  }
  return {sql + ")", typeOf(function->result, firstType)};
}

/// Nz(a, b): b where a is Null; without b, 0 for a number and no text for anything else.
SqlPiece ExpressionWriter::nullToValue(const Expression& e) {
  needArguments(e, 1, 2);
  const SqlPiece subject = value(e.operands[0]);
  if (e.operands.size() == 1) {
    const bool number = subject.type && isNumberType(*subject.type);
    return {fmt::format("coalesce({}, {})", subject.sql, number ? "0" : "''"), subject.type};
  }
  const SqlPiece instead = value(e.operands[1]);
  CommonType type;
  type.add(e.operands[0], subject);
  type.add(e.operands[1], instead);
  return {fmt::format("coalesce({}, {})", subject.sql, instead.sql), type.get()};
}

/// IIf(condition, a, b), Switch(condition, a, ...), Choose(index, a, b, ...)
SqlPiece ExpressionWriter::cases(const Expression& e, const std::string& name) {
  std::string sql = "CASE";
  CommonType type;
  const auto result = [&](std::size_t i) {
    const SqlPiece piece = value(e.operands[i]);
    type.add(e.operands[i], piece);
    return piece.sql;
  };
  if (name == "IIF") {
    needArguments(e, 3, 3);
    sql += fmt::format(" WHEN {} THEN {}", condition(e.operands[0]), result(1));
    sql += fmt::format(" ELSE {}", result(2));
  } else if (name == "SWITCH") {
    needArguments(e, 2, 100);
    if (e.operands.size() % 2 != 0) {
      text_.fail(kSyntaxError, "Switch takes pairs of a condition and a value", e.at);
    }
    for (std::size_t i = 0; i < e.operands.size(); i += 2) {
      sql += fmt::format(" WHEN {} THEN {}", condition(e.operands[i]), result(i + 1));
    }
  } else {
    needArguments(e, 2, 100);
    sql += fmt::format(" jet_fix({})", asNumber(value(e.operands[0])));
    for (std::size_t i = 1; i < e.operands.size(); ++i) {
      sql += fmt::format(" WHEN {} THEN {}", i, result(i));
    }
  }
  return {sql + " END", type.get()};
}

SqlPiece ExpressionWriter::aggregate(const Expression& e, const std::string& name) {
  needArguments(e, 1, 1);
  const Expression& argument = e.operands[0];
  if (name == "COUNT" && argument.kind == Kind::allRows) {
    return {"count(*)", ColumnType::longInteger};
  }
  if (containsAggregate(argument)) {
    text_.fail(kSyntaxError, fmt::format("{} holds another aggregate function", e.text), e.at);
  }
  const bool takesAny =
      name == "COUNT" || name == "MIN" || name == "MAX" || name == "FIRST" || name == "LAST";
  SqlPiece piece = value(argument);
  std::string sql = takesAny ? piece.sql : asNumber(piece);
  if ((name == "MIN" || name == "MAX") && !piece.column &&
      (!piece.type || isTextType(*piece.type))) {
    sql = fmt::format("({}) COLLATE {}", sql, kTextCollation);
  }
  SqlPiece result{fmt::format("{}({})", findAggregate(name)->sqlName, sql)};
  if (name == "COUNT") {
    result.type = ColumnType::longInteger;
  } else if (takesAny || (piece.type == ColumnType::currency && (name == "SUM" || name == "AVG"))) {
    result.type = piece.type;
  } else if (name == "SUM" && isWholeType(piece.type.value_or(ColumnType::double_))) {
    result.type = ColumnType::longInteger;
  } else {
    result.type = ColumnType::double_;
  }
  return result;
}

}  // namespace orv::store::sql
