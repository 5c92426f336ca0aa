#include "store/jet/compact/CopySource.h"

#include <fmt/format.h>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/check/IndexCheck.h"
#include "store/jet/definition/DefinitionPages.h"
#include "store/jet/row/LongValue.h"
#include "store/jet/table/Table.h"

namespace orv::store::jet {

std::shared_ptr<Database> openToCopy(const std::string& path, const std::string& password,
                                     std::string_view done, std::string_view remedyOfJet3) {
  auto database = Database::open(path, password);
  const Pager& pager = database->pager();
  if (!pager.format().unicodeText) {
    throw Error(kNotSupported,
                fmt::format("'{}' cannot be {}: files of format {} are only read. {}", pager.path(),
                            done, database->formatName(), remedyOfJet3));
  }
  if (!pager.format().writable || pager.engineVersion() > 1) {
    throw Error(kNotSupported, fmt::format("'{}' cannot be {}: files of format {} are only read.",
                                           pager.path(), done, database->formatName()));
  }
  return database;
}

Bytes CopySource::definition(const TableDefinition& table) {
  return readDefinitionPages(pager_, table.page, table.name).bytes;
}

void CopySource::forEachRow(const std::shared_ptr<const TableDefinition>& table,
                            const std::function<void(RowId, const RowView&)>& visit) {
  for (TableScan scan(pager_, table); scan.next();) {
    scan.row().checkLayout();
    visit(scan.rowId(), scan.row());
  }
}

Bytes CopySource::longValue(std::span<const std::uint8_t> stored, PageNumber page) {
  return readLongValue(pager_, stored, page);
}

std::uint32_t CopySource::inRowLength(std::uint32_t said, std::size_t room, PageNumber page) {
  if (said > room) {
    raiseDamaged(page, "a memo or picture is longer than what its row has of it");
  }
  return said;
}

void CopySource::refuse(const TableDefinition& table, const RealIndex& index,
                        const std::string& why) {
  raiseDamaged(index.root, fmt::format("index '{}' of table '{}' does not go with the table: {}",
                                       nameOfIndex(table, index), table.name, why));
}

}  // namespace orv::store::jet
