// Everything that the tables of a database hold.
#pragma once

#include <fmt/format.h>

#include <map>
#include <set>
#include <string>

#include "store/Connection.h"

namespace orv::test {

/// The rows of each table, whatever their order; every value with its type and all its digits.
using DatabaseDump = std::map<std::string, std::multiset<std::string>>;

inline DatabaseDump dumpOf(store::Connection& dc) {
  DatabaseDump dump;
  for (const std::string& table : dc.tableNames()) {
    auto& found = dump[table];
    for (auto rows = dc.openRecordset(table); !rows->eof(); rows->moveNext()) {
      std::string row;
      for (std::size_t i = 0; i < rows->fields().size(); ++i) {
        const store::Value value = rows->value(i);
        const auto* bytes = value.getIf<store::Bytes>();
        row += fmt::format("{}:{}|", value.variant().index(),
                           bytes            ? std::string(bytes->begin(), bytes->end())
                           : value.isNull() ? std::string()
                                            : value.toText());
      }
      found.insert(std::move(row));
    }
  }
  return dump;
}

}  // namespace orv::test
