// What a copy of a database takes of the old one.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "store/Value.h"
#include "store/jet/catalog/Database.h"
#include "store/jet/definition/TableDefinition.h"
#include "store/jet/page/Pager.h"
#include "store/jet/page/RowId.h"
#include "store/jet/row/Row.h"

namespace orv::store::jet {

/// Opens a database to be written anew. Raises kNotSupported for one of a format that is not
/// written, saying that it cannot be `done` ("compacted"), and of Jet 3 what can be done instead;
/// and what Database::open() raises.
std::shared_ptr<Database> openToCopy(const std::string& path, const std::string& password,
                                     std::string_view done, std::string_view remedyOfJet3);

/// A sound database: everything is as its maps and pointers say, and damage is raised.
class CopySource {
 public:
  explicit CopySource(Pager& pager) : pager_(pager) {}
  virtual ~CopySource() = default;

  Pager& pager() { return pager_; }

  /// The bytes of a table's definition.
  virtual Bytes definition(const TableDefinition& table);
  /// Gives each row of a table, in the order of their places, to `visit`; the same rows each time.
  virtual void forEachRow(const std::shared_ptr<const TableDefinition>& table,
                          const std::function<void(RowId, const RowView&)>& visit);
  /// The bytes of a memo or picture of which a row on `page` has `stored`.
  virtual Bytes longValue(std::span<const std::uint8_t> stored, PageNumber page);
  /// How long a value within a row is that says it is so long, where the row has so much room.
  virtual std::uint32_t inRowLength(std::uint32_t said, std::size_t room, PageNumber page);
  /// Told that rows are there which an index does not allow, since `why`. When this returns, the
  /// index is to allow them.
  virtual void refuse(const TableDefinition& table, const RealIndex& index, const std::string& why);

 private:
  Pager& pager_;
};

}  // namespace orv::store::jet
