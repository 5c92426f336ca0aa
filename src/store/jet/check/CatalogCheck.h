// Checking the catalogue of a file.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <vector>

#include "store/jet/catalog/Database.h"
#include "store/jet/check/CheckContext.h"
#include "store/jet/definition/TableDefinition.h"

namespace orv::store::jet {

/// Checks the catalogue, and the tables that it names; then that queries and relations are whole.
class CatalogCheck {
 public:
  explicit CatalogCheck(CheckContext& context) : context_(context) {}
  void run();

 private:
  void readCatalog();
  void checkTable(const CatalogEntry& entry);
  void checkEntries();
  void readQueryPart(const TableDefinition& table, const RowView& row);
  void checkQueries();
  void checkRelations();

  struct QueryParts {
    bool begin = false;
    bool end = false;
  };

  CheckContext& context_;
  std::vector<CatalogEntry> entries_{};
  std::map<PageNumber, std::shared_ptr<const TableDefinition>> tables_{};
  std::map<std::int32_t, QueryParts> queryParts_{};  ///< by the query's id
  bool queriesRead_ = false;
};

}  // namespace orv::store::jet
