// Names that get a key: groups, frame types and suppliers.
#include "database/ORV_DatabaseInterface.h"
#include "database/Recordsets.h"

namespace orv::database {

namespace {

std::int32_t findOrAdd(store::Connection& dc, const std::string& table,
                       const std::string& nameColumn, const std::string& keyColumn,
                       const std::string& name) {
  auto rows = openUpdatable(dc, table);
  rows->find(nameColumn + " = " + quoted(name));
  if (rows->eof()) {
    rows->addNew();
    rows->setValue(nameColumn, name);
  }
  const std::int32_t key = rows->value(keyColumn).toLong();
  rows->update();
  return key;
}

}  // namespace

std::int32_t ORV_DatabaseInterface::InsertGroup(const std::string& strGroup,
                                                store::Connection& dc) const {
  return findOrAdd(dc, "Groups", "GroupName", "GroupID", strGroup);
}

std::int32_t ORV_DatabaseInterface::InsertFrameType(const std::string& strFrameType,
                                                    store::Connection& dc) const {
  return findOrAdd(dc, "FrameTypes", "FrameTypeName", "FrameTypeID", strFrameType);
}

std::int32_t ORV_DatabaseInterface::InsertSupplier(const std::string& strSupplier,
                                                   store::Connection& dc) const {
  return findOrAdd(dc, "Suppliers", "SupplierName", "supplierID", strSupplier);
}

}  // namespace orv::database
