// Changes of tables, as the files of cases have them.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>
#include <string>

#include "database/TestDatabase.h"

namespace orv::test {

inline store::Value valueOf(const std::string& text) {
  if (text == "True" || text == "False") return text == "True";
  if (text == "Null") return {};
  if (text.starts_with("bytes ")) return store::Bytes(text.begin() + 6, text.end());
  char* end = nullptr;
  const double number = std::strtod(text.c_str(), &end);
  return text.empty() || *end != '\0' ? store::Value(text) : store::Value(number);
}

/// "column=value, column=value"
inline FieldValues valuesOf(const std::string& text) {
  FieldValues values;
  std::istringstream parts(text);
  for (std::string each; std::getline(parts >> std::ws, each, ',');) {
    const std::size_t sign = each.find('=');
    values.emplace_back(each.substr(0, sign), valueOf(each.substr(sign + 1)));
  }
  return values;
}

/// Makes a change:
///
///   +TABLE COLUMN=VALUE, ...                   a row more
///   -TABLE CONDITION                           rows less
///   TABLE COLUMN=VALUE, ... where CONDITION    other values; "reflection_" stands for all columns
///                                              whose names begin so
inline void changeTable(store::Connection& dc, const std::string& change) {
  const std::size_t blank = change.find(' ');
  const std::string table = change.substr(0, blank);
  const std::string rest = change.substr(blank + 1);
  if (table.starts_with('+')) return addRow(dc, table.substr(1), valuesOf(rest));
  if (table.starts_with('-')) return dc.deleteRows(table.substr(1), rest);
  const std::size_t where = rest.find(" where ");
  ASSERT_NE(where, std::string::npos) << change;
  const auto rows = dc.openRecordset("SELECT * FROM " + table + rest.substr(where),
                                     store::CursorType::keyset, store::LockType::optimistic);
  ASSERT_FALSE(rows->eof()) << change;
  for (; !rows->eof(); rows->moveNext()) {
    for (const auto& [name, value] : valuesOf(rest.substr(0, where))) {
      for (const auto& column : rows->fields()) {
        const bool isMeant = name.ends_with('_') && column.name.starts_with(name);
        if (isMeant || column.name == name) rows->setValue(column.name, value);
      }
    }
    rows->update();
  }
}

}  // namespace orv::test
