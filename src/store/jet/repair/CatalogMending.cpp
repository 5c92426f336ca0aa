#include "store/jet/repair/CatalogMending.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

#include "errors/Error.h"
#include "store/jet/catalog/FixedObjects.h"

namespace orv::store::jet {
namespace {

using Kind = CatalogEntry::Kind;

/// Those that the file hides its users by; where that is lost, those of a file that hides none.
SecurityIds idsOf(const Table& objects) {
  try {
    return SecurityIds::of(objects);
  } catch (const DamagedPage&) {
    return SecurityIds(0);
  }
}

/// Hides the ids in a column as new files do. Those of a workgroup, which are longer, stay.
void hideAnew(Table& table, std::string_view name, const SecurityIds& former) {
  const std::size_t column = table.definition().findColumn(name).value();
  std::vector<RowId> rows;
  for (TableScan scan = table.scan(); scan.next();) {
    rows.push_back(scan.rowId());
  }
  for (const RowId id : rows) {
    const auto row = table.row(id);
    std::vector<Value> values;
    for (const Column& each : table.definition().columns) {
      values.push_back(row->value(each));
    }
    const Bytes* user = values[column].getIf<Bytes>();
    if (user != nullptr && user->size() == SecurityIds::kSize) {
      values[column] = former.translate(*user, SecurityIds::ofNewFiles());
      table.update(id, values);
    }
  }
}

}  // namespace

void mendCatalog(const std::shared_ptr<Pager>& pager, const CatalogSalvage& catalog,
                 const TableNumbers& numbers, bool hasNewHeader) {
  const auto open = [&](PageNumber page) {
    return std::make_shared<Table>(pager,
                                   readTableDefinition(*pager, page, nameOfFixedTable(page)));
  };
  Transaction transaction(*pager);
  const auto objects = open(kCatalogPage);
  const auto permissions = open(kPermissionsPage);
  if (hasNewHeader) {
    const SecurityIds former = idsOf(*objects);
    hideAnew(*objects, "Owner", former);
    hideAnew(*permissions, "SID", former);
  }
  CatalogWriter writer(objects, permissions, idsOf(*objects));
  std::set<std::int32_t> ids;
  for (const CatalogEntry& entry : catalog.entries()) {
    ids.insert(entry.id);
  }
  for (const CatalogObject& object : fixedObjects()) {
    if (object.kind != Kind::table && ids.insert(object.id).second) {
      addFixedObject(writer, object);
    }
  }
  for (const CatalogEntry& entry : catalog.entries()) {
    if (entry.kind != Kind::container && ids.insert(entry.parentId).second) {
      writer.addObject({.id = entry.parentId,
                        .parentId = kRootContainer,
                        .name = fmt::format("Recovered container {}", entry.parentId),
                        .kind = Kind::container},
                       writer.ids().engine());
    }
  }
  for (const auto& [page, table] : catalog.tables()) {
    if (table.isNamed) {
      continue;
    }
    const auto id = static_cast<std::int32_t>(numbers[page]);
    if (nameOfFixedTable(page).empty()) {
      writer.addUserObject({.id = id, .name = table.definition.table->name});
    } else {
      addFixedObject(writer, *std::ranges::find(fixedObjects(), static_cast<std::int32_t>(page),
                                                &CatalogObject::id));
    }
  }
  transaction.commit();
}

}  // namespace orv::store::jet
