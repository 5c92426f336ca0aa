// A copy of a sound file, to be damaged where a test wants it.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "store/jet/catalog/Database.h"
#include "store/jet/index/IndexPageEditor.h"
#include "support/TemporaryFolder.h"

namespace orv::store::jet {

/// Places are found with the store's own readers, and changed page by page beneath them.
class DamagedFile {
 public:
  /// Copies `sound` into a folder of its own.
  explicit DamagedFile(const std::filesystem::path& sound);

  const std::filesystem::path& path() const { return path_; }
  Pager& pager() { return database_->pager(); }
  const Format& format() { return pager().format(); }
  Database& database() { return *database_; }
  const TableDefinition& table(const std::string& name) {
    return database_->table(name)->definition();
  }
  const RealIndex& index(const std::string& table, const std::string& index);

  /// The bytes of a page, to be changed.
  std::uint8_t* page(PageNumber number) { return pager().modify(number); }
  /// The places of a table's rows, as they are when they are asked for at first.
  const std::vector<RowId>& rows(const std::string& table);
  /// The entry of a row in its page's table of offsets.
  std::uint8_t* rowEntry(RowId row);
  /// The bytes of a row.
  std::uint8_t* rowBytes(RowId row);
  /// The bytes that a row has for a column.
  std::span<std::uint8_t> field(const std::string& table, RowId row, const std::string& column);
  /// The parts of the first value of a column that has more than one.
  std::vector<RowId> longValue(const std::string& table, const std::string& column);
  struct MovedRow {
    RowId row;
    RowId content;
  };
  /// A row of a table that has been moved: the first one, or one after it.
  MovedRow movedRow(const std::string& table, std::size_t number = 0);
  /// The first page of a table's definition, and the block of a column in it.
  std::uint8_t* definition(const std::string& table) { return page(this->table(table).page); }
  std::uint8_t* columnBlock(const std::string& table, std::size_t column = 0);

  /// The leaves of an index, in order.
  std::vector<PageNumber> leaves(const RealIndex& index);
  IndexPageEditor indexPage(PageNumber number) { return {pager(), number}; }

  /// Writes the damage and closes the file.
  void save();

 private:
  orv::test::TemporaryFolder folder_;
  const std::filesystem::path path_;
  std::shared_ptr<Database> database_;
  std::optional<Transaction> transaction_;
  std::map<std::string, std::vector<RowId>> rows_;
};

}  // namespace orv::store::jet
