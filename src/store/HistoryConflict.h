// What keeps a change from being taken back.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "store/Value.h"

namespace orv::store {

/// A row that is not as a change has left it, or that would be without another one.
struct HistoryConflict {
  enum class Kind : std::uint8_t {
    changed,  ///< it is another, or gone
    isThere,  ///< it is there, and should not be
    lacks,    ///< it would come (back), and what it refers to is not there
    used,     ///< it would go, and others refer to it
  };
  std::string table;
  std::vector<std::string> columns{};  ///< none where the table is gone or has other columns now
  std::vector<Value> wanted{};         ///< the row as the change has left it
  std::vector<Value> present{};        ///< as it is; empty where it is gone
  Kind kind = Kind::changed;
  std::string other{};  ///< the table of what it lacks, or of what uses it
};

/// A column of a table that holds the keys of another one's rows; 0 or nothing for none. They are
/// whole numbers.
struct RowReference {
  std::string table;
  std::string column;
  std::string target;
  std::string key;
};

}  // namespace orv::store
