#include "store/jet/catalog/CatalogWriter.h"

#include <map>

#include "store/jet/file/Clock.h"

namespace orv::store::jet {
namespace {

std::size_t columnOf(const Table& table, std::string_view name) {
  const auto column = table.definition().findColumn(name);
  if (!column) {
    raiseDamaged(table.definition().page, "system table '" + table.name() + "' lacks its column '" +
                                              std::string(name) + "'");
  }
  return *column;
}

}  // namespace

std::vector<Value> systemRow(const Table& table,
                             std::initializer_list<std::pair<std::string_view, Value>> values) {
  std::vector<Value> row(table.definition().columns.size());
  for (const auto& [name, value] : values) {
    row[columnOf(table, name)] = value;
  }
  return row;
}

CatalogWriter::CatalogWriter(std::shared_ptr<Table> objects, std::shared_ptr<Table> permissions,
                             SecurityIds ids)
    : objects_(std::move(objects)), permissions_(std::move(permissions)), ids_(ids) {}

CatalogWriter::CatalogWriter(Database& database)
    : objects_(database.table("MSysObjects")),
      permissions_(database.table("MSysACEs")),
      ids_(SecurityIds::of(*objects_)) {}

void CatalogWriter::addObject(const CatalogObject& object, const Bytes& owner) {
  const Date time = localTime();
  objects_->insert(systemRow(
      *objects_, {{"Id", object.id},
                  {"ParentId", object.parentId},
                  {"Name", object.name},
                  {"Type", static_cast<std::int32_t>(object.kind)},
                  {"DateCreate", time},
                  {"DateUpdate", time},
                  {"Owner", owner},
                  {"Flags", static_cast<std::int32_t>(object.flags)},
                  {"LvProp", object.properties.empty() ? Value() : Value(object.properties)}}));
}

void CatalogWriter::addPermission(std::int32_t object, const Bytes& user, std::int32_t rights,
                                  bool inheritable) {
  permissions_->insert(systemRow(
      *permissions_,
      {{"ObjectId", object}, {"SID", user}, {"ACM", rights}, {"FInheritable", inheritable}}));
}

void CatalogWriter::addUserObject(const CatalogObject& object) {
  addObject(object, ids_.admin());
  const auto& columns = permissions_->definition().columns;
  const Column& objectId = columns[columnOf(*permissions_, "ObjectId")];
  const Column& sid = columns[columnOf(*permissions_, "SID")];
  const Column& acm = columns[columnOf(*permissions_, "ACM")];
  const Column& inheritable = columns[columnOf(*permissions_, "FInheritable")];
  std::map<Bytes, std::int32_t> granted;
  for (TableScan scan = permissions_->scan(); scan.next();) {
    const RowView& row = scan.row();
    const Value user = row.value(sid), rights = row.value(acm);
    if (row.value(objectId) == Value(object.parentId) && row.value(inheritable).toBoolean() &&
        user.getIf<Bytes>() != nullptr && !rights.isNull()) {
      const bool own = *user.getIf<Bytes>() == ids_.creator();
      granted[own ? ids_.admin() : *user.getIf<Bytes>()] |= rights.toLong();
    }
  }
  for (const auto& [user, rights] : granted) {
    addPermission(object.id, user, rights, false);
  }
}

}  // namespace orv::store::jet
