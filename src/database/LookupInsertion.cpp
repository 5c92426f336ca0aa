// Names that get a key: groups, frame types and suppliers.
#include "database/Lookups.h"
#include "database/ORV_DatabaseInterface.h"
#include "database/Recordsets.h"

namespace orv::database {

namespace {

std::int32_t findOrAdd(store::Connection& dc, const LookupTable& table, const std::string& name) {
  auto rows = openUpdatable(dc, table.table);
  rows->find(std::string(table.name) + " = " + quoted(name));
  if (rows->eof()) {
    rows->addNew();
    rows->setValue(table.name, name);
  }
  const std::int32_t key = rows->value(table.key).toLong();
  rows->update();
  return key;
}

}  // namespace

std::int32_t ORV_DatabaseInterface::InsertGroup(const std::string& strGroup,
                                                store::Connection& dc) const {
  return findOrAdd(dc, kGroups, strGroup);
}

std::int32_t ORV_DatabaseInterface::InsertFrameType(const std::string& strFrameType,
                                                    store::Connection& dc) const {
  return findOrAdd(dc, kFrameTypes, strFrameType);
}

std::int32_t ORV_DatabaseInterface::InsertSupplier(const std::string& strSupplier,
                                                   store::Connection& dc) const {
  return findOrAdd(dc, kSuppliers, strSupplier);
}

}  // namespace orv::database
