// Tables with every kind of index, changed at random, and a model in memory of what they hold.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "store/jet/Database.h"

namespace orv::test {

/// A table and what it should hold.
struct ModelledTable {
  std::shared_ptr<store::jet::Table> table;
  std::map<store::jet::RowId, std::vector<store::Value>> rows;
  /// For each index the number of rows with a key, where no value of the key is Null.
  std::vector<std::map<store::Bytes, int>> keys;
};

/// A new database whose tables have, between them, indexes over every type that can be indexed,
/// ascending and descending, single and composite, unique, primary, required, without Nulls, with
/// text in both General orders; and memos and pictures. The same seed makes the same changes.
class RandomTables {
 public:
  RandomTables(std::string path, unsigned seed);

  /// Inserts, updates and deletes, single and in transactions, some of which are undone; now and
  /// then a row that must be refused. The table grows and shrinks by turns. Throws
  /// std::logic_error where the store takes a row that it must refuse, or refuses another.
  void change(std::size_t operations);
  /// Closes the file and opens it anew.
  void reopen();

  const std::vector<ModelledTable>& tables() const { return tables_; }
  std::size_t refusedRows() const { return refused_; }
  std::size_t undoneTransactions() const { return undone_; }

 private:
  struct Undo {
    ModelledTable* table;
    store::jet::RowId row;
    std::optional<std::vector<store::Value>> before;  ///< none: the row was not there
  };
  enum class Action { insert, update, erase };
  using Rows = decltype(ModelledTable::rows);

  std::size_t below(std::size_t end);
  bool oneIn(std::size_t times) { return below(times) == 0; }
  std::string text(std::size_t most);
  store::Bytes bytes(std::size_t most);
  std::size_t longLength();
  store::Value value(const store::jet::Column& column);
  Rows::iterator anyRow(ModelledTable& model);
  std::vector<store::Value> newRow(ModelledTable& model);

  void changeInOneTransaction(std::size_t most);
  void changeOnce(ModelledTable& model, bool alone);
  void write(ModelledTable& model, Action action, store::jet::RowId row,
             std::vector<store::Value> values);
  void expectRefusal(ModelledTable& model, Action action, store::jet::RowId row,
                     const std::vector<store::Value>& values);
  void remember(ModelledTable& model, store::jet::RowId row,
                std::optional<std::vector<store::Value>> values);
  void put(ModelledTable& model, store::jet::RowId row,
           std::optional<std::vector<store::Value>> values);
  void undoModel();

  std::string path_;
  std::mt19937 random_;
  std::shared_ptr<store::jet::Database> database_;
  std::vector<ModelledTable> tables_;
  std::vector<Undo> undo_;  ///< of the transaction under way
  std::size_t operations_ = 0;
  std::size_t refused_ = 0;
  std::size_t undone_ = 0;
};

}  // namespace orv::test
