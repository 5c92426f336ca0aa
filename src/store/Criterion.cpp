#include "store/Criterion.h"

#include <compare>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/page/Text.h"
#include "store/sql/functions/DateText.h"

namespace orv::store {
namespace {

[[noreturn]] void raiseSyntax(std::string_view text, const std::string& what) {
  throw Error(kSyntaxError, "The search criterion \"" + std::string(text) +
                                "\" cannot be understood: " + what + ".");
}

/// Takes the criterion apart from the left.
class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text), rest_(text) {}

  std::string column() {
    skipBlanks();
    if (!rest_.empty() && rest_.front() == '[') {
      const auto end = rest_.find(']');
      if (end == std::string_view::npos) {
        raiseSyntax(text_, "a bracket is not closed");
      }
      std::string name(rest_.substr(1, end - 1));
      rest_.remove_prefix(end + 1);
      return name;
    }
    const auto end = std::min(rest_.find_first_of(" \t=<>"), rest_.size());
    std::string name(rest_.substr(0, end));
    rest_.remove_prefix(end);
    if (name.empty()) {
      raiseSyntax(text_, "it does not begin with the name of a column");
    }
    return name;
  }

  Criterion::Operator op() {
    using enum Criterion::Operator;
    static constexpr std::pair<std::string_view, Criterion::Operator> kOperators[] = {
        {"<>", notEqual}, {"<=", lessOrEqual}, {">=", greaterOrEqual},
        {"=", equal},     {"<", less},         {">", greater}};
    skipBlanks();
    for (const auto& [symbol, op] : kOperators) {
      if (rest_.starts_with(symbol)) {
        rest_.remove_prefix(symbol.size());
        return op;
      }
    }
    if (rest_.size() > 4 && jet::foldName(rest_.substr(0, 4)) == "like") {
      rest_.remove_prefix(4);
      return like;
    }
    raiseSyntax(text_, "the column is not followed by =, <>, <, <=, >, >= or LIKE");
  }

  Value value() {
    skipBlanks();
    if (rest_.empty()) {
      raiseSyntax(text_, "the value is missing");
    }
    const char first = rest_.front();
    if (first == '\'' || first == '"' || first == '#') {
      std::string text = quoted(first);
      skipBlanks();
      if (!rest_.empty()) {
        raiseSyntax(text_, "something follows the value; an apostrophe within it must be doubled");
      }
      return first == '#' ? dateIn(text) : Value(text);
    }
    while (rest_.back() == ' ' || rest_.back() == '\t') {
      rest_.remove_suffix(1);
    }
    if (jet::foldName(rest_) == "null") {
      return {};
    }
    const Value text{std::string(rest_)};
    try {
      return text.toDouble();
    } catch (const Error&) {
      raiseSyntax(text_, "the value is no number and stands without apostrophes");
    }
  }

 private:
  Value dateIn(const std::string& text) const {
    const auto days = sql::parseDate(text);
    if (!days) raiseSyntax(text_, "#" + text + "# is no date");
    return Date{*days};
  }

  void skipBlanks() {
    while (!rest_.empty() && (rest_.front() == ' ' || rest_.front() == '\t')) {
      rest_.remove_prefix(1);
    }
  }

  std::string quoted(char quote) {
    std::string text;
    for (std::size_t i = 1; i < rest_.size(); ++i) {
      if (rest_[i] != quote) {
        text += rest_[i];
      } else if (i + 1 < rest_.size() && rest_[i + 1] == quote) {
        text += rest_[i++];
      } else {
        rest_.remove_prefix(i + 1);
        return text;
      }
    }
    raiseSyntax(text_, "the value's closing mark is missing");
  }

  std::string_view text_;
  std::string_view rest_;
};

bool isNumeric(ColumnType type) {
  return type != ColumnType::text && type != ColumnType::memo && type != ColumnType::guid &&
         type != ColumnType::ole && type != ColumnType::binary;
}

/// Whether folded `text` has the form of folded `pattern`, in which `*` and `%` stand for anything.
bool matchesPattern(std::string_view text, std::string_view pattern) {
  if (pattern.empty()) {
    return text.empty();
  }
  if (pattern.front() != '*' && pattern.front() != '%') {
    return !text.empty() && text.front() == pattern.front() &&
           matchesPattern(text.substr(1), pattern.substr(1));
  }
  for (std::size_t skip = 0; skip <= text.size(); ++skip) {
    if (matchesPattern(text.substr(skip), pattern.substr(1))) {
      return true;
    }
  }
  return false;
}

}  // namespace

Criterion Criterion::parse(std::string_view text) {
  Reader reader(text);
  Criterion criterion;
  criterion.column = reader.column();
  criterion.op = reader.op();
  criterion.value = reader.value();
  return criterion;
}

Criterion Criterion::forColumn(const ColumnInfo& info) const {
  Criterion criterion = *this;
  if (value.isNull() || op == Operator::like) {
    return criterion;
  }
  try {
    if (info.type == ColumnType::boolean) {
      criterion.value = value.toBoolean() ? -1.0 : 0.0;
    } else if (isNumeric(info.type)) {
      criterion.value = value.toDouble();
    } else {
      criterion.value = jet::foldName(value.toText());
    }
  } catch (const Error&) {
    throw Error(kTypeMismatch,
                "Column '" + column + "' cannot be compared with '" + value.toText() + "'.");
  }
  return criterion;
}

bool Criterion::isMetBy(const Value& field) const {
  if (value.isNull() || field.isNull()) {
    return field.isNull() == value.isNull() ? op == Operator::equal
                                            : value.isNull() && op == Operator::notEqual;
  }
  if (field.getIf<Bytes>() != nullptr) {
    return false;
  }
  if (op == Operator::like) {
    return matchesPattern(jet::foldName(field.toText()), jet::foldName(value.toText()));
  }
  std::partial_ordering order = std::partial_ordering::unordered;
  if (const std::string* text = value.getIf<std::string>()) {
    order = jet::foldName(field.toText()) <=> *text;
  } else {
    order = field.toDouble() <=> value.toDouble();
  }
  switch (op) {
    case Operator::equal:
      return order == 0;
    case Operator::notEqual:
      return order != 0;
    case Operator::less:
      return order < 0;
    case Operator::lessOrEqual:
      return order <= 0;
    case Operator::greater:
      return order > 0;
    default:
      return order >= 0;
  }
}

}  // namespace orv::store
