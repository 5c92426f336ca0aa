#include "store/jet/catalog/SavedQuery.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <list>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/page/Text.h"

namespace orv::store::jet {
namespace {

// Flags of the options part.
constexpr int kAllColumns = 0x01;
constexpr int kDistinct = 0x02;
constexpr int kOwnerAccess = 0x04;
constexpr int kDistinctRow = 0x08;
constexpr int kTop = 0x10;
constexpr int kPercent = 0x20;
constexpr int kUnionWithoutAll = 0x02;  // of a union query

// Flags of a column part.
constexpr int kAppendedValue = 0x8000;
constexpr int kCrosstabPivot = 0x01;
constexpr int kCrosstabNormal = 0x02;

// Names under which a union query keeps its two halves.
constexpr const char* kUnionFirst = "X7YZ_____1";
constexpr const char* kUnionSecond = "X7YZ_____2";

/// A name as it stands in SQL: in brackets unless it is one word and cannot be taken for another.
std::string quoteName(const std::string& name) {
  if (name.size() >= 2 && name.front() == '[' && name.back() == ']') {
    return name;
  }
  constexpr std::array<std::string_view, 14> kReserved = {
      "all",   "by",   "from",  "group",  "having", "inner", "join",
      "order", "left", "right", "select", "top",    "union", "where"};
  const bool plain =
      !name.empty() && (name[0] < '0' || name[0] > '9') &&
      std::all_of(name.begin(), name.end(),
                  [](unsigned char c) {
                    return c == '_' || c >= 0x80 || (c >= '0' && c <= '9') ||
                           (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
                  }) &&
      std::find(kReserved.begin(), kReserved.end(), foldName(name)) == kReserved.end();
  return plain ? name : "[" + name + "]";
}

/// A name that may be a path of names, such as `Table1.col1`.
std::string quotePath(const std::string& path) {
  std::string quoted;
  std::size_t start = 0;
  bool bracket = false;
  for (std::size_t i = 0; i <= path.size(); ++i) {
    if (i == path.size() || (path[i] == '.' && !bracket)) {
      quoted += (quoted.empty() ? "" : ".") + quoteName(path.substr(start, i - start));
      start = i + 1;
    } else if (path[i] == '[' || path[i] == ']') {
      bracket = path[i] == '[';
    }
  }
  return quoted;
}

std::string withAlias(std::string text, const std::string& alias) {
  return alias.empty() ? text : text + " AS " + quoteName(alias);
}

/// Text of a half of a union, on one line.
std::string onOneLine(const std::string& text) {
  std::string line;
  for (const char c : text) {
    const bool blank = c == '\r' || c == '\n' || c == '\t';
    if (!blank || (!line.empty() && line.back() != ' ')) {
      line += blank ? ' ' : c;
    }
  }
  line.erase(line.find_last_not_of(" ;") + 1);
  return line;
}

/// A table of FROM, or tables that have been joined.
struct JoinedTables {
  std::string text;
  std::vector<std::string> names;  ///< case-folded
  int kind = 0;                    ///< of the outermost join; 0 for a single table
  std::string joined{};            ///< the sides of the outermost join, without its condition
  std::vector<std::string> conditions{};

  bool has(const std::string& name) const {
    return std::find(names.begin(), names.end(), foldName(name)) != names.end();
  }
  std::string nested() const { return kind == 0 ? text : "(" + text + ")"; }
  void write() {
    text = conditions.size() == 1
               ? fmt::format("{} ON {}", joined, conditions[0])
               : fmt::format("{} ON ({})", joined, fmt::join(conditions, ") AND ("));
  }
};

const char* joinWord(int kind) {
  switch (kind) {
    case 1:
      return " INNER JOIN ";
    case 2:
      return " LEFT JOIN ";
    case 3:
      return " RIGHT JOIN ";
    default:
      return nullptr;
  }
}

}  // namespace

SavedQuery::SavedQuery(std::string name, std::vector<QueryPart> parts)
    : name_(std::move(name)), parts_(std::move(parts)) {
  const QueryPart* type = first(kType);
  if (type != nullptr && type->flag >= 1 && type->flag <= 9) {
    kind_ = static_cast<QueryKind>(type->flag);
  }
}

std::vector<const QueryPart*> SavedQuery::all(Attribute attribute) const {
  std::vector<const QueryPart*> found;
  for (const QueryPart& part : parts_) {
    if (part.attribute == attribute) {
      found.push_back(&part);
    }
  }
  return found;
}

const QueryPart* SavedQuery::first(Attribute attribute) const {
  const auto found = all(attribute);
  return found.empty() ? nullptr : found.front();
}

bool SavedQuery::hasOption(int option) const {
  const QueryPart* options = first(kOptions);
  return options != nullptr && (options->flag & option) != 0;
}

std::string SavedQuery::sql() const {
  const QueryPart* type = first(kType);
  std::string text = parameters();
  switch (kind_) {
    case QueryKind::dataDefinition:
    case QueryKind::passThrough:
      return type->expression.substr(0, type->expression.find('\0'));
    case QueryKind::select:
      text += select("");
      break;
    case QueryKind::makeTable:
      text += select(" INTO " + quoteName(type->name1) + otherDatabase(type));
      break;
    case QueryKind::append:
      text += append();
      break;
    case QueryKind::update:
      text += update();
      break;
    case QueryKind::erase:
      text += "DELETE " + columns() + clauses();
      break;
    case QueryKind::crosstab:
      text += crosstab();
      break;
    case QueryKind::unionQuery:
      text += unions();
      break;
  }
  return text + (hasOption(kOwnerAccess) ? " WITH OWNERACCESS OPTION;" : ";");
}

std::string SavedQuery::parameters() const {
  const auto typeName = [](int type) -> const char* {
    switch (static_cast<ColumnType>(type)) {
      case ColumnType::boolean:
        return "Bit";
      case ColumnType::byte:
        return "Byte";
      case ColumnType::integer:
        return "Short";
      case ColumnType::longInteger:
        return "Long";
      case ColumnType::currency:
        return "Currency";
      case ColumnType::single:
        return "IEEESingle";
      case ColumnType::double_:
        return "IEEEDouble";
      case ColumnType::dateTime:
        return "DateTime";
      case ColumnType::binary:
        return "Binary";
      case ColumnType::text:
        return "Text";
      case ColumnType::ole:
        return "LongBinary";
      case ColumnType::guid:
        return "Guid";
      default:
        return "Value";
    }
  };
  std::vector<std::string> list;
  for (const QueryPart* part : all(kParameter)) {
    list.push_back(fmt::format("{} {}", part->name1, typeName(part->flag)));
  }
  return list.empty() ? "" : fmt::format("PARAMETERS {}; ", fmt::join(list, ", "));
}

std::string SavedQuery::select(const std::string& into) const {
  return "SELECT " + predicate() + columns() + into + clauses();
}

std::string SavedQuery::predicate() const {
  std::string text = hasOption(kDistinct) ? "DISTINCT " : "";
  if (hasOption(kDistinctRow)) {
    text += "DISTINCTROW ";
  }
  if (hasOption(kTop)) {
    text += "TOP " + first(kOptions)->name1 + (hasOption(kPercent) ? " PERCENT " : " ");
  }
  return text;
}

std::string SavedQuery::columns() const {
  std::vector<std::string> list;
  for (const QueryPart* part : all(kColumn)) {
    const int flag = static_cast<std::uint16_t>(part->flag);
    const bool wanted =
        kind_ == QueryKind::crosstab ? (flag & kCrosstabNormal) != 0 : (flag & kAppendedValue) == 0;
    if (wanted) {
      list.push_back(withAlias(part->expression, part->name1));
    }
  }
  if (hasOption(kAllColumns)) {
    list.emplace_back("*");
  }
  return fmt::format("{}", fmt::join(list, ", "));
}

/// FROM and all that follows it.
std::string SavedQuery::clauses() const {
  const std::string from = tables();
  std::string text = from.empty() ? "" : " FROM " + from + otherDatabase(first(kOtherDatabase));
  if (const QueryPart* where = first(kWhere)) {
    text += " WHERE " + where->expression;
  }
  text += grouping();
  if (const QueryPart* having = first(kHaving)) {
    text += " HAVING " + having->expression;
  }
  return text + ordering();
}

std::string SavedQuery::tables() const {
  std::list<JoinedTables> sources;
  for (const QueryPart* part : all(kTable)) {
    std::string text;
    if (!part->expression.empty() && part->name1.empty()) {
      text = "(" + onOneLine(part->expression) + ")";
    } else {
      text =
          (part->expression.empty() ? "" : "[" + part->expression + "].") + quoteName(part->name1);
    }
    const std::string& name = part->name2.empty() ? part->name1 : part->name2;
    sources.push_back({withAlias(text, part->name2), {foldName(name)}});
  }
  const auto take = [&](const std::string& name) {
    const auto found = std::find_if(sources.begin(), sources.end(),
                                    [&](const JoinedTables& s) { return s.has(name); });
    if (found == sources.end()) {
      return JoinedTables{quoteName(name), {foldName(name)}};
    }
    JoinedTables taken = std::move(*found);
    sources.erase(found);
    return taken;
  };
  for (const QueryPart* part : all(kJoin)) {
    const char* word = joinWord(part->flag);
    JoinedTables left = take(part->name1);
    if (left.has(part->name2)) {
      // One more condition of a join that is there.
      if (left.kind != part->flag) {
        throw Error(kCorruptFile, fmt::format("The saved query \"{}\" joins {} and {} in two ways.",
                                              name_, part->name1, part->name2));
      }
      left.conditions.insert(left.conditions.begin(), part->expression);
      left.write();
      sources.push_back(std::move(left));
      continue;
    }
    if (word == nullptr) {
      throw Error(kCorruptFile, fmt::format("The saved query \"{}\" has a join of unknown kind {}.",
                                            name_, part->flag));
    }
    const JoinedTables right = take(part->name2);
    JoinedTables join{
        "", left.names, part->flag, left.nested() + word + right.nested(), {part->expression}};
    join.names.insert(join.names.end(), right.names.begin(), right.names.end());
    join.write();
    sources.push_back(std::move(join));
  }
  std::vector<std::string> list;
  for (const JoinedTables& source : sources) {
    list.push_back(source.text);
  }
  return fmt::format("{}", fmt::join(list, ", "));
}

std::string SavedQuery::grouping() const {
  std::vector<std::string> list;
  for (const QueryPart* part : all(kGroupBy)) {
    if (kind_ != QueryKind::crosstab || (part->flag & kCrosstabNormal) != 0) {
      list.push_back(part->expression);
    }
  }
  return list.empty() ? "" : fmt::format(" GROUP BY {}", fmt::join(list, ", "));
}

std::string SavedQuery::ordering() const {
  std::vector<std::string> list;
  for (const QueryPart* part : all(kOrderBy)) {
    const bool descending = part->name1 == "D" || part->name1 == "d";
    list.push_back(part->expression + (descending ? " DESC" : ""));
  }
  return list.empty() ? "" : fmt::format(" ORDER BY {}", fmt::join(list, ", "));
}

std::string SavedQuery::append() const {
  const QueryPart* type = first(kType);
  std::vector<std::string> targets;
  std::vector<std::string> values;
  for (const QueryPart* part : all(kColumn)) {
    if (!part->name2.empty()) {
      targets.push_back(quotePath(part->name2));
    }
    if ((static_cast<std::uint16_t>(part->flag) & kAppendedValue) != 0) {
      values.push_back(part->expression);
    }
  }
  std::string text = "INSERT INTO " + quoteName(type->name1);
  if (!targets.empty()) {
    text += fmt::format(" ({})", fmt::join(targets, ", "));
  }
  text += otherDatabase(type) + " ";
  return values.empty() ? text + select("")
                        : fmt::format("{}VALUES ({})", text, fmt::join(values, ", "));
}

std::string SavedQuery::update() const {
  std::vector<std::string> changes;
  for (const QueryPart* part : all(kColumn)) {
    changes.push_back(quotePath(part->name2) + " = " + part->expression);
  }
  const QueryPart* where = first(kWhere);
  return fmt::format("UPDATE {}{} SET {}{}", tables(), otherDatabase(first(kOtherDatabase)),
                     fmt::join(changes, ", "),
                     where != nullptr ? " WHERE " + where->expression : "");
}

std::string SavedQuery::crosstab() const {
  std::string transform;
  std::string pivot;
  for (const QueryPart* part : all(kColumn)) {
    if ((part->flag & kCrosstabPivot) != 0) {
      pivot = part->expression;
    } else if ((part->flag & kCrosstabNormal) == 0) {
      transform = withAlias(part->expression, part->name1);
    }
  }
  return (transform.empty() ? "" : "TRANSFORM " + transform + " ") + select("") + " PIVOT " + pivot;
}

std::string SavedQuery::unions() const {
  std::string halves[2];
  for (const QueryPart* part : all(kTable)) {
    if (part->name2 == kUnionFirst || part->name2 == kUnionSecond) {
      halves[part->name2 == kUnionFirst ? 0 : 1] = onOneLine(part->expression);
    }
  }
  return halves[0] + (hasOption(kUnionWithoutAll) ? " UNION " : " UNION ALL ") + halves[1] +
         ordering();
}

/// IN 'path' [type], for tables of another database.
std::string SavedQuery::otherDatabase(const QueryPart* part) {
  const bool type = part != nullptr && part->attribute == kType;
  const std::string path = part == nullptr ? "" : type ? part->name2 : part->name1;
  if (part == nullptr || (path.empty() && part->expression.empty())) {
    return "";
  }
  return " IN '" + path + "'" + (part->expression.empty() ? "" : " [" + part->expression + "]");
}

std::vector<QueryPart> SavedQuery::partsOf(const QueryDesign& design) {
  std::vector<QueryPart> parts;
  const auto add = [&](Attribute attribute, int flag, const std::string& expression,
                       const std::string& name1 = "", const std::string& name2 = "") {
    parts.push_back({attribute, static_cast<std::int16_t>(flag), expression, name1, name2});
  };
  add(kStart, 0, "");
  add(kType, static_cast<int>(QueryKind::select), "");
  const auto isAll = [](const QueryDesign::Output& output) { return output.expression == "*"; };
  const bool all = std::any_of(design.outputs.begin(), design.outputs.end(), isAll);
  add(kOptions, all ? kAllColumns : 0, "");
  for (const std::string& table : design.tables) {
    add(kTable, 0, "", table);
  }
  for (const QueryDesign::Output& output : design.outputs) {
    if (!isAll(output)) {
      add(kColumn, 0, output.expression, output.alias);
    }
  }
  for (const QueryDesign::Join& join : design.joins) {
    const int kind = join.kind == JoinKind::inner ? 1 : join.kind == JoinKind::left ? 2 : 3;
    add(kJoin, kind, join.condition, join.leftTable, join.rightTable);
  }
  if (!design.where.empty()) {
    add(kWhere, 0, design.where);
  }
  for (const QueryDesign::OrderTerm& term : design.orderBy) {
    add(kOrderBy, 0, term.expression, term.descending ? "D" : "");
  }
  add(kEnd, 0, "");
  return parts;
}

}  // namespace orv::store::jet
