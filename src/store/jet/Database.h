// An open Access database: its pager and its catalogue.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "store/Schema.h"
#include "store/jet/Pager.h"
#include "store/jet/Table.h"

namespace orv::store::jet {

/// One row of MSysObjects.
struct CatalogEntry {
  enum class Kind : std::int16_t {
    table = 1,
    database = 2,
    container = 3,
    linkedOdbcTable = 4,
    query = 5,
    linkedTable = 6,
    relationship = 8,
    other = 0,
  };
  std::int32_t id = 0;  ///< for a table, the page of its definition
  std::string name;
  Kind kind = Kind::other;
  std::uint32_t flags = 0;
  RowId row{};

  bool isSystem() const { return (flags & 0x80000002u) != 0; }
};

/// A row of MSysQueries: one part of a saved query.
struct QueryPart {
  std::uint8_t attribute = 0;
  std::int16_t flag = 0;
  std::string expression;
  std::string name1;
  std::string name2;
};

class Database {
 public:
  /// Opens `path`, rolling back what a crash left. Raises kStoreFailure, kNotAuthenticated.
  static std::shared_ptr<Database> open(const std::string& path, const std::string& password);

  Pager& pager() const { return *pager_; }
  const Format& format() const { return pager_->format(); }

  /// The catalogue's entries, read again when the file has changed.
  const std::vector<CatalogEntry>& entries();
  /// A table by name (system tables too), without regard to case. One object a table for all
  /// connections. Raises kObjectNotFound; kNotSupported for a linked table.
  std::shared_ptr<Table> table(std::string_view name);
  /// The entry of a saved query; null when there is none of that name.
  const CatalogEntry* findQuery(std::string_view name);
  /// The parts of a saved query, in the order of the file's index.
  std::vector<QueryPart> queryParts(const CatalogEntry& query);

 private:
  explicit Database(std::shared_ptr<Pager> pager);
  void refreshCatalog();

  std::shared_ptr<Pager> pager_;
  std::uint64_t catalogVersion_ = 0;
  std::vector<CatalogEntry> entries_;
  std::unordered_map<std::string, std::shared_ptr<Table>> tables_;  ///< by case-folded name
};

/// Compares names as the store does, and the form of a name by which it is looked up.
std::string foldName(std::string_view name);

}  // namespace orv::store::jet
