// Whether what was taken back leaves rows without the rows that they refer to.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "store/HistoryConflict.h"
#include "store/jet/catalog/Database.h"

namespace orv::store::jet {

/// Is told of the rows that come and go in a transaction, and looks at its end whether all
/// references of these hold. What does not refer to anything from before is left alone.
class ReferenceCheck {
 public:
  ReferenceCheck(Database& database, std::span<const RowReference> references);

  void rowCame(const Table& table, std::span<const Value> row) { note(table, row, true); }
  void rowWent(const Table& table, std::span<const Value> row) { note(table, row, false); }
  /// What does not hold. All changes of the tables have to be finished.
  std::vector<HistoryConflict> violations();

 private:
  using Row = std::vector<Value>;
  /// A reference, with the keys that may have lost one of its ends.
  struct Watched {
    const RowReference& reference;
    std::map<std::int32_t, Row> came;  ///< rows that refer to a key
    std::map<std::int32_t, Row> gone;  ///< rows whose key it was
  };

  void note(const Table& table, std::span<const Value> row, bool came);
  bool has(const std::string& table, const std::string& column, std::int32_t key);
  const std::set<std::int32_t>& keysOf(const Table& table, const Column& column);

  Database& database_;
  std::vector<Watched> watched_;
  /// The keys in columns without an index.
  std::map<std::pair<std::string, std::string>, std::set<std::int32_t>> keys_;
};

}  // namespace orv::store::jet
