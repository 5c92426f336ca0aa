// Changes of rows, taken back or made again.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "store/HistoryConflict.h"
#include "store/jet/catalog/Database.h"
#include "store/jet/history/ReferenceCheck.h"
#include "store/jet/history/RowCode.h"
#include "store/jet/table/RowChanges.h"

namespace orv::store::jet {

/// What keeps a row from being added in a table in which no index does.
enum class Likeness {
  row,  ///< one with the same values
  key   ///< one with the same key in an index
};

/// Finds rows of a table by all of their values, and changes them.
class ReversedTable {
 public:
  explicit ReversedTable(std::shared_ptr<Table> table) : table_(std::move(table)) {}

  const Table& table() const { return *table_; }
  /// The row with these values. None where there is none; `present` are the values of the row with
  /// the same unique key then, if there is one.
  std::optional<RowId> find(std::span<const Value> row, std::vector<Value>& present);
  /// Whether such a row is there that was not added here. Rows of which a unique index refuses a
  /// second one are not looked for.
  bool hasOther(std::span<const Value> row, Likeness likeness);
  void insert(std::span<const Value> row);
  void update(RowId id, std::span<const Value> from, std::span<const Value> to);
  void erase(RowId id, std::span<const Value> row);
  /// After an error nothing more is done with the table but finding.
  void abandon();
  /// To be called before the transaction is committed.
  void finish();

 private:
  RowChanges& changes();
  const RealIndex* indexFor(std::span<const Value> row) const;
  bool isUnique(std::span<const Value> row) const;
  const RealIndex* lookFor(std::span<const Value> row);
  void readCandidates(const RealIndex& index, const Bytes& key);
  void readAll();
  std::vector<Value> valuesAt(RowId id) const;
  void addCandidate(RowId id) { candidates_.emplace(contentOf(valuesAt(id)), id); }
  void removeCandidate(RowId id, std::span<const Value> row);
  static std::string contentOf(std::span<const Value> row);

  std::shared_ptr<Table> table_;
  std::optional<RowChanges> changes_;
  // Rows of one key of an index, at hand for the next row that is looked for:
  const RealIndex* index_ = nullptr;
  Bytes key_;
  std::unordered_multimap<std::string, RowId> candidates_;  ///< by their values
  bool hasAll_ = false;  ///< the candidates are all rows: no index serves
  std::set<RowId> own_;  ///< rows that were added here
};

/// Applies changes to a database within a transaction of the caller's, which has to be undone when
/// there is any conflict.
class RowReversal {
 public:
  /// The references have to hold at the end.
  RowReversal(Database& database, Likeness likeness, std::span<const RowReference> references = {})
      : database_(database), likeness_(likeness), references_(database, references) {}

  /// Takes the changes back, the last one first.
  void takeBack(const std::vector<RowChange>& changes);
  /// Makes them again.
  void makeAgain(const std::vector<RowChange>& changes);
  void finish();

  const std::vector<HistoryConflict>& conflicts() const { return conflicts_; }

 private:
  ReversedTable* table(const RowChange& change);
  void apply(const std::string& name, ReversedTable& table, std::span<const Value> from,
             std::span<const Value> to);
  void apply(const RowChange& change, bool back);

  Database& database_;
  Likeness likeness_;
  ReferenceCheck references_;
  std::map<std::string, ReversedTable> tables_;
  std::vector<HistoryConflict> conflicts_;
  bool isBroken_ = false;  ///< after an error nothing more can be done in the transaction
};

}  // namespace orv::store::jet
