// New entries of the catalogue.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "store/Value.h"
#include "store/jet/catalog/Database.h"
#include "store/jet/catalog/SecurityIds.h"
#include "store/jet/table/Table.h"

namespace orv::store::jet {

// Containers of the catalogue: every object is in one of them.
inline constexpr std::int32_t kRootContainer = 0x0f000000;
inline constexpr std::int32_t kTablesContainer = 0x0f000001;  ///< of tables and queries
inline constexpr std::int32_t kDatabasesContainer = 0x0f000002;
inline constexpr std::int32_t kRelationshipsContainer = 0x0f000003;
inline constexpr std::int32_t kDatabaseObject = 0x10000000;

/// A row for MSysObjects.
struct CatalogObject {
  std::int32_t id;  ///< for a table, the page of its definition
  std::int32_t parentId = kTablesContainer;
  std::string name;
  CatalogEntry::Kind kind = CatalogEntry::Kind::table;
  std::uint32_t flags = 0;
  Bytes properties{};  ///< empty for none
};

/// Adds rows to MSysObjects and MSysACEs. Needs a transaction for each call.
class CatalogWriter {
 public:
  /// `objects` and `permissions` are the tables MSysObjects and MSysACEs.
  CatalogWriter(std::shared_ptr<Table> objects, std::shared_ptr<Table> permissions,
                SecurityIds ids);
  explicit CatalogWriter(Database& database);

  const SecurityIds& ids() const { return ids_; }

  /// Adds an object that is made now and belongs to `owner`.
  void addObject(const CatalogObject& object, const Bytes& owner);
  void addPermission(std::int32_t object, const Bytes& user, std::int32_t rights, bool inheritable);

  /// Adds an object of the user: it belongs to the admin user and has the permissions that its
  /// container hands on.
  void addUserObject(const CatalogObject& object);

 private:
  std::shared_ptr<Table> objects_;
  std::shared_ptr<Table> permissions_;
  SecurityIds ids_;
};

/// A row of a system table, as Table::insert() takes it: Null but in the columns named.
std::vector<Value> systemRow(const Table& table,
                             std::initializer_list<std::pair<std::string_view, Value>> values);

}  // namespace orv::store::jet
