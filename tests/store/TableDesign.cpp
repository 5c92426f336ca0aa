#include "store/TableDesign.h"

#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace orv::test {

using namespace store;

namespace {

/// Takes what stands before the mark from the beginning of a text, with the mark.
std::string take(std::string_view& text, std::string_view mark) {
  const std::string taken(text.substr(0, text.find(mark)));
  text.remove_prefix(std::min(text.size(), taken.size() + mark.size()));
  return taken;
}

/// The parts of a text, of which `3*a#` stands for a0, a1 and a2.
std::vector<std::string> partsOf(std::string_view text, std::string_view mark) {
  std::vector<std::string> parts;
  while (!text.empty()) {
    const std::string part = take(text, mark);
    const bool isMany = part[0] >= '0' && part[0] <= '9';
    if (!isMany) parts.push_back(part);
    for (int i = 0; isMany && i < std::stoi(part); ++i) {
      std::string& each = parts.emplace_back(part.substr(part.find('*') + 1));
      for (std::size_t at = 0; (at = each.find('#')) != each.npos;) {
        each.replace(at, 1, std::to_string(i));
      }
    }
  }
  return parts;
}

ColumnInfo columnOf(std::string_view text) {
  static const std::map<std::string, int> types{
      {"boolean", 1},     {"byte", 2},         {"integer", 3},  {"longInteger", 4}, {"currency", 5},
      {"single", 6},      {"double", 7},       {"dateTime", 8}, {"binary", 9},      {"text", 10},
      {"ole", 11},        {"memo", 12},        {"guid", 15},    {"numeric", 16},    {"complex", 18},
      {"bigInteger", 19}, {"extendedDate", 20}};
  ColumnInfo column;
  const bool hasDefault = text.find(" =") != text.npos;
  std::istringstream rest(take(text, " ="));
  if (hasDefault) column.defaultValue = text;
  std::getline(rest, column.name, ' ');
  for (std::string word; rest >> word;) {
    const auto type = types.find(word);
    const std::size_t point = word.find('.');
    if (type != types.end()) column.type = static_cast<ColumnType>(type->second);
    if (word == "auto") column.autoNumber = true;
    if (word == "required") column.required = true;
    if (word == "filled") column.allowZeroLength = false;
    if (word.find_first_not_of("0123456789.") != word.npos) continue;
    if (point == word.npos) {
      column.size = std::stoul(word);
    } else {
      column.precision = static_cast<std::uint8_t>(std::stoi(word));
      column.scale = static_cast<std::uint8_t>(std::stoi(word.substr(point + 1)));
    }
  }
  return column;
}

IndexInfo indexOf(std::string_view columns) {
  const std::string head = take(columns, ": ");
  const auto has = [&](const char* word) { return head.find(word) != head.npos; };
  IndexInfo index{head.substr(0, head.find(' ')),
                  {},
                  has(" primary"),
                  has(" unique"),
                  has(" ignoreNulls"),
                  has(" required")};
  for (std::string column : partsOf(columns, ", ")) {
    const bool isDown = column.ends_with('-');
    if (isDown) column.pop_back();
    index.columns.push_back({column, !isDown});
  }
  return index;
}

}  // namespace

TableInfo design(std::string_view name, std::string_view columns, std::string_view indexes) {
  TableInfo table{.name = std::string(name), .columns = {}};
  for (const std::string& each : partsOf(columns, ", ")) table.columns.push_back(columnOf(each));
  for (const std::string& each : partsOf(indexes, "; ")) table.indexes.push_back(indexOf(each));
  return table;
}

}  // namespace orv::test
