#include "database/Lookups.h"

#include <algorithm>

#include "database/Fields.h"
#include "database/Recordsets.h"
#include "model/Text.h"

namespace orv::database {

namespace {

std::string nameById(store::Connection& dc, const std::string& table, const std::string& keyColumn,
                     const std::string& nameColumn, std::int32_t id) {
  auto rows = openTable(dc, table);
  rows->find(keyColumn + " = " + quoted(std::to_string(id)));
  return rows->eof() ? std::string() : rows->value(nameColumn).toText();
}

std::int32_t idByName(store::Connection& dc, const std::string& table,
                      const std::string& nameColumn, const std::string& keyColumn,
                      const std::string& name) {
  auto rows = openTable(dc, table);
  rows->find(nameColumn + " = " + quoted(name));
  return rows->eof() ? 0 : rows->value(keyColumn).toLong();
}

}  // namespace

std::string GroupNameById(std::int32_t id, store::Connection& dc) {
  return nameById(dc, "Groups", "GroupID", "GroupName", id);
}

std::int32_t GroupIdByName(const std::string& name, store::Connection& dc) {
  return idByName(dc, "Groups", "GroupName", "GroupID", name);
}

std::vector<std::string> GroupNames(store::Connection& dc) {
  std::vector<std::string> names;
  for (auto rows = openTable(dc, "Groups"); !rows->eof(); rows->moveNext()) {
    names.push_back(FieldToString(rows->value("GroupName")));
  }
  std::ranges::sort(names, {}, [](const std::string& name) { return lowerCase(name); });
  return names;
}

std::string SupplierNameById(std::int32_t id, store::Connection& dc) {
  return nameById(dc, "Suppliers", "SupplierID", "SupplierName", id);
}

std::int32_t SupplierIdByName(const std::string& name, store::Connection& dc) {
  return idByName(dc, "Suppliers", "SupplierName", "SupplierID", name);
}

std::string FrameTypeNameById(std::int32_t id, store::Connection& dc) {
  return nameById(dc, "FrameTypes", "FrameTypeID", "FrameTypeName", id);
}

std::int32_t FrameTypeIdByName(const std::string& name, store::Connection& dc) {
  return idByName(dc, "FrameTypes", "FrameTypeName", "FrameTypeID", name);
}

std::int32_t GlazingIdByFileName(const std::string& name, store::Connection& dc) {
  return idByName(dc, "GlazingProperties", "FileName", "GlazingID", name);
}

}  // namespace orv::database
