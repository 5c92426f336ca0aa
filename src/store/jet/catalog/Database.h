// An open Access database: its pager and its catalogue.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/Schema.h"
#include "store/jet/page/Pager.h"
#include "store/jet/table/Table.h"

namespace orv::store::jet {

/// The page on which the definition of MSysObjects begins, in every file.
inline constexpr PageNumber kCatalogPage = 2;

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
  };
  std::int32_t id;  ///< for a table, the page of its definition
  std::int32_t parentId;
  std::string name;
  Kind kind;
  std::uint32_t flags;
  RowId row{};

  bool isSystem() const { return (flags & 0x80000002u) != 0; }
  /// Whether a query is part of a form or report.
  bool isHiddenQuery() const { return name.starts_with('~'); }
};

/// A row of MSysQueries: one part of a saved query.
struct QueryPart {
  std::uint8_t attribute;
  std::int16_t flag = 0;
  std::string expression{};
  std::string name1{};
  std::string name2{};
};

/// The catalogue of one file, shared by all connections of the process to it.
class Database {
 public:
  /// Opens `path`, completing commits that a crash has cut short, and checks the password.
  /// Raises kStoreFailure, kCorruptFile, kNotAuthenticated.
  static std::shared_ptr<Database> open(const std::string& path, const std::string& password);
  /// The database of a pager that nobody shares.
  static std::shared_ptr<Database> over(std::shared_ptr<Pager> pager);
  /// The database in `content`, which is changed in memory only and outlives it.
  static std::shared_ptr<Database> overMemory(Bytes& content, const std::string& path);

  Pager& pager() const { return *pager_; }
  const std::shared_ptr<Pager>& sharedPager() const { return pager_; }
  const Format& format() const { return pager_->format(); }
  /// The password that the file asks for; empty for none.
  std::string storedPassword() const;
  /// Raises kNotAuthenticated for another than that.
  void checkPassword(const std::string& password) const;
  /// "Jet 4", "ACE (Access 2007)", ...
  std::string formatName() const;

  /// Grows whenever tables or queries may have changed.
  std::uint64_t catalogVersion();
  const std::vector<CatalogEntry>& entries();
  /// The entry of a table (system, linked or plain) or query of this name, without regard to
  /// case; null when there is none.
  const CatalogEntry* find(std::string_view name);
  /// The same, of this kind only.
  const CatalogEntry* find(std::string_view name, CatalogEntry::Kind kind);
  /// A table by name (system tables too). One object a table for all connections.
  /// Raises kObjectNotFound; kNotSupported for a linked table, naming it as such.
  std::shared_ptr<Table> table(std::string_view name);
  /// The parts of a saved query, in the order in which they were saved.
  std::vector<QueryPart> queryParts(const CatalogEntry& query);
  std::vector<RelationInfo> relations();
  std::vector<LinkedTableInfo> linkedTables();
  /// The tables of which an index could not be read so far.
  std::vector<std::string> tablesWithoutIndex() const;

  /// To be called after tables, indexes or queries have been made. Tables that are in use stay
  /// the same objects.
  void forgetCatalog();

 private:
  explicit Database(std::shared_ptr<Pager> pager);
  void refreshCatalog();
  [[noreturn]] void refuseLinkedTable(const std::string& name);
  /// Takes tables of before a refresh on that others still use, as their definitions are now: all
  /// who use a table must agree on its indexes and on the automatic numbers handed out.
  void keepTablesInUse(const std::map<PageNumber, std::shared_ptr<Table>>& tables);
  std::shared_ptr<Table> loadTable(const std::string& name, PageNumber page,
                                   const CatalogEntry* entry);
  std::shared_ptr<const TableDefinition> loadDefinition(const std::string& name, PageNumber page,
                                                        const CatalogEntry* entry);

  std::shared_ptr<Pager> pager_;
  std::uint64_t epoch_ = 0;  ///< of the pager when the catalogue was read; 0: not read
  bool entriesKnown_ = false;
  std::uint64_t catalogVersion_ = 0;
  std::vector<CatalogEntry> entries_;
  std::map<std::string, std::size_t> byName_;            ///< case-folded, tables and queries
  std::map<PageNumber, std::shared_ptr<Table>> tables_;  ///< by page of definition
};

}  // namespace orv::store::jet
