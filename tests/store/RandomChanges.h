// Tables that are changed at random, and a model in memory of what they hold.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "store/jet/catalog/Database.h"

namespace orv::test {

/// A table and what it should hold.
struct ModelledTable {
  std::shared_ptr<store::jet::Table> table;
  std::map<store::jet::RowId, std::vector<store::Value>> rows;
  /// For each index the number of rows with a key, where no value of the key is Null.
  std::vector<std::map<store::Bytes, int>> keys;
  std::size_t changes = 0;
  /// How often the store gave which reason why it cannot make a change.
  std::map<std::string, std::size_t> unsupported;
};

/// Changes the tables of users in a database, and keeps in memory what they should hold then. The
/// same seed makes the same changes.
class RandomChanges {
 public:
  /// Reads all that the tables hold. They grow during two thirds of each `period`, counted in
  /// changes, and shrink during the rest.
  RandomChanges(std::string path, std::string password,
                std::shared_ptr<store::jet::Database> database, unsigned seed, std::size_t period);

  /// Inserts, updates and deletes, single and in transactions, some of which are undone; now and
  /// then a row that must be refused. Throws
  /// std::logic_error where the store takes a row that it must refuse, and what the store throws
  /// where it refuses another; but what it cannot do (kNotSupported, kOverflow) is only counted.
  void change(std::size_t operations);
  /// Closes the file and opens it anew.
  void reopen();

  const std::vector<ModelledTable>& tables() const { return tables_; }
  std::size_t refusedRows() const { return refused_; }

 private:
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
  void makeChange(ModelledTable& model, Action action, store::jet::RowId row,
                  std::vector<store::Value> values);
  void expectRefusal(ModelledTable& model, Action action, store::jet::RowId row,
                     const std::vector<store::Value>& values);
  void put(ModelledTable& model, store::jet::RowId row,
           std::optional<std::vector<store::Value>> values);

  std::string path_;
  std::string password_;
  std::shared_ptr<store::jet::Database> database_;
  std::mt19937 random_;
  std::size_t period_;
  std::vector<ModelledTable> tables_;
  std::size_t operations_ = 0;
  std::size_t refused_ = 0;
};

}  // namespace orv::test
