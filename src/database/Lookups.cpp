#include "database/Lookups.h"

#include <algorithm>

#include "database/Fields.h"
#include "database/Recordsets.h"
#include "model/Text.h"
#include "store/TextKey.h"

namespace orv::database {

namespace {

constexpr LookupTable kGlazings{"GlazingProperties", "GlazingID", "FileName"};

std::string nameById(store::Connection& dc, const LookupTable& table, std::int32_t id) {
  auto rows = openTable(dc, table.table);
  rows->find(std::string(table.key) + " = " + quoted(std::to_string(id)));
  return rows->eof() ? std::string() : rows->value(table.name).toText();
}

std::int32_t idByName(store::Connection& dc, const LookupTable& table, const std::string& name) {
  auto rows = openTable(dc, table.table);
  findName(*rows, table, name);
  return rows->eof() ? 0 : rows->value(table.key).toLong();
}

}  // namespace

void findName(store::Recordset& rows, const LookupTable& table, const std::string& name) {
  rows.find(std::string(table.name) + " = " + quoted(name));
  if (!rows.eof()) return;
  const std::string key = store::textKey(name);
  for (rows.moveFirst(); !rows.eof(); rows.moveNext()) {
    if (store::textKey(FieldToString(rows.value(table.name))) == key) return;
  }
}

std::unordered_map<std::int32_t, std::string> allNames(const LookupTable& table,
                                                       store::Connection& dc) {
  std::unordered_map<std::int32_t, std::string> names;
  const auto rows = dc.openRecordset(table.table, store::CursorType::forwardOnly,
                                     store::LockType::readOnly, store::SourceKind::table);
  for (; !rows->eof(); rows->moveNext()) {
    names.emplace(FieldToLong(rows->value(table.key)), FieldToString(rows->value(table.name)));
  }
  return names;
}

std::string GroupNameById(std::int32_t id, store::Connection& dc) {
  return nameById(dc, kGroups, id);
}

std::int32_t GroupIdByName(const std::string& name, store::Connection& dc) {
  return idByName(dc, kGroups, name);
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
  return nameById(dc, kSuppliers, id);
}

std::int32_t SupplierIdByName(const std::string& name, store::Connection& dc) {
  return idByName(dc, kSuppliers, name);
}

std::string FrameTypeNameById(std::int32_t id, store::Connection& dc) {
  return nameById(dc, kFrameTypes, id);
}

std::int32_t FrameTypeIdByName(const std::string& name, store::Connection& dc) {
  return idByName(dc, kFrameTypes, name);
}

std::int32_t GlazingIdByFileName(const std::string& name, store::Connection& dc) {
  return idByName(dc, kGlazings, name);
}

}  // namespace orv::database
