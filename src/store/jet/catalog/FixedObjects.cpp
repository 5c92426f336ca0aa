#include "store/jet/catalog/FixedObjects.h"

#include <algorithm>
#include <array>

namespace orv::store::jet {
namespace {

using Kind = CatalogEntry::Kind;

constexpr std::uint32_t kSystemObject = 0x80000000;

CatalogObject fixedContainer(std::int32_t id, const char* name) {
  return {id, kRootContainer, name, Kind::container, kSystemObject};
}

CatalogObject fixedTable(PageNumber page, const char* name) {
  return {static_cast<std::int32_t>(page), kTablesContainer, name, Kind::table, kSystemObject};
}

}  // namespace

std::span<const CatalogObject> fixedObjects() {
  static const std::array<CatalogObject, 8> kObjects = {
      fixedContainer(kTablesContainer, "Tables"),
      fixedContainer(kDatabasesContainer, "Databases"),
      fixedContainer(kRelationshipsContainer, "Relationships"),
      CatalogObject{kDatabaseObject, kDatabasesContainer, "MSysDb", Kind::database, kSystemObject},
      fixedTable(kCatalogPage, "MSysObjects"),
      fixedTable(kPermissionsPage, "MSysACEs"),
      fixedTable(kQueriesPage, "MSysQueries"),
      fixedTable(kRelationshipsPage, "MSysRelationships"),
  };
  return kObjects;
}

void addFixedObject(CatalogWriter& catalog, const CatalogObject& object) {
  const bool isDatabase = object.kind == Kind::database;
  catalog.addObject(object, isDatabase ? catalog.ids().admin() : catalog.ids().engine());
}

std::string nameOfFixedTable(PageNumber page) {
  const auto objects = fixedObjects();
  const auto found =
      std::ranges::find(objects, static_cast<std::int32_t>(page), &CatalogObject::id);
  return found == objects.end() || found->kind != Kind::table ? "" : found->name;
}

bool isFixed(const CatalogEntry& entry) {
  return std::ranges::any_of(fixedObjects(), [&](const CatalogObject& object) {
    return entry.kind == object.kind &&
           (entry.kind == Kind::table ? entry.name == object.name : entry.id == object.id);
  });
}

}  // namespace orv::store::jet
