#include "store/jet/convert/CatalogConversion.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <functional>
#include <set>
#include <utility>

#include "errors/Counted.h"
#include "store/jet/catalog/FixedObjects.h"
#include "store/jet/catalog/SecurityIds.h"
#include "store/jet/definition/Properties.h"
#include "store/jet/page/Text.h"

namespace orv::store::jet {
namespace {

using Kind = CatalogEntry::Kind;
using ValueOf = std::function<Value(const Column&)>;

constexpr std::array<std::pair<std::int16_t, const char*>, 4> kWindowObjects = {
    {{-32768, "form"}, {-32764, "report"}, {-32766, "macro"}, {-32761, "module"}}};

// Tables in which Access keeps those.
constexpr std::array<std::string_view, 3> kWindowTables = {"MSysModules", "MSysModules2",
                                                           "MSysAccessObjects"};
// Properties that say which version of Access those are made for.
constexpr std::array<std::string_view, 3> kWindowProperties = {"AccessVersion", "Build", "ProjVer"};
// What Access keeps beside an object for its windows, in forms of each version: how a query was
// drawn, what it knew of a linked table.
constexpr std::array<std::string_view, 5> kWindowColumns = {"Lv", "LvModule", "LvExtra",
                                                            "RmtInfoShort", "RmtInfoLong"};

template <class List, class Item>
bool has(const List& list, const Item& item) {
  return std::ranges::find(list, item) != std::end(list);
}

const char* nameOfWindowObject(const CatalogEntry& entry) {
  const auto* const found = std::ranges::find(kWindowObjects, static_cast<std::int16_t>(entry.kind),
                                              &std::pair<std::int16_t, const char*>::first);
  return found == kWindowObjects.end() ? nullptr : found->second;
}

/// Copies those rows of a system table that `changed` does not leave out; it gives the value of a
/// column of the new row, from the former ones.
void copyRows(Database& source, Database& target, std::string_view name,
              const std::function<bool(const ValueOf& former)>& isCopied,
              const std::function<Value(const Column&, Value former)>& changed) {
  const auto from = source.table(name);
  const auto to = target.table(name);
  for (TableScan scan = from->scan(); scan.next();) {
    const ValueOf former = [&](const Column& column) {
      const auto same = from->definition().findColumn(column.name);
      return same && from->definition().columns[*same].type == column.type
                 ? scan.row().value(from->definition().columns[*same])
                 : Value();
    };
    if (!isCopied(former)) {
      continue;
    }
    std::vector<Value> values;
    for (const Column& column : to->definition().columns) {
      values.push_back(changed(column, former(column)));
    }
    to->insert(values);
  }
}

std::int32_t numberIn(const ValueOf& row, std::string name) {
  const Value value = row(Column{.name = std::move(name), .type = ColumnType::longInteger});
  return value.isNull() ? 0 : value.toLong();
}

/// Properties in the form of Jet 4, with their texts as Jet 4 has them.
Value convertProperties(const Pager& source, const Value& block) {
  const Bytes* bytes = block.getIf<Bytes>();
  if (bytes == nullptr) {
    return {};
  }
  PropertyMap properties = readProperties(source, *bytes);
  for (auto& [owner, list] : properties) {
    std::erase_if(list, [](const Property& each) { return has(kWindowProperties, each.name); });
    for (Property& property : list) {
      if (property.type == ColumnType::text || property.type == ColumnType::memo) {
        property.value = utf16Bytes(decodeText(source, property.value));
      }
    }
  }
  properties[""];  // the object's own come first, also when it has none
  return writeProperties(properties);
}

/// Copies the rows of system tables, as far as they belong to objects that are copied. Containers
/// that would be empty are those of the windows: Access makes them when it first opens the file.
class CatalogRows {
 public:
  CatalogRows(Database& source, Database& target, const TableNumbers& numbers)
      : source_(source),
        target_(target),
        numbers_(numbers),
        formerIds_(SecurityIds::of(*source.table("MSysObjects"))),
        ids_(SecurityIds::of(*target.table("MSysObjects"))) {
    std::set<std::int32_t> parents;
    for (const CatalogEntry& entry : source.entries()) {
      if (isConverted(entry) && entry.kind != Kind::container) {
        parents.insert(entry.parentId);
      }
    }
    for (const CatalogEntry& entry : source.entries()) {
      const bool isEmptyContainer = entry.kind == Kind::container && !parents.contains(entry.id);
      if (isConverted(entry) && !isFixed(entry) && !isEmptyContainer) {
        objects_.insert(entry.id);
      }
    }
  }

  void copyObjects() {
    copyRows(
        source_, target_, "MSysObjects",
        [&](const ValueOf& row) { return objects_.contains(numberIn(row, "Id")); },
        [&](const Column& column, Value former) -> Value {
          if (column.name == "LvProp") return convertProperties(source_.pager(), former);
          if (column.name == "Id") return renumbered(former);
          if (column.name == "Owner") return ownerOf(former);
          return has(kWindowColumns, column.name) ? Value() : former;
        });
  }

  void copyRights() {
    const Column user{.name = "SID", .type = ColumnType::binary};
    copyRows(
        source_, target_, "MSysACEs",
        [&](const ValueOf& row) {
          return objects_.contains(numberIn(row, "ObjectId")) && !translated(row(user)).isNull();
        },
        [&](const Column& column, Value former) -> Value {
          if (column.name == "ObjectId") return renumbered(former);
          return column.name == "SID" ? translated(former) : former;
        });
  }

  void copyAll(std::string_view table) {
    copyRows(
        source_, target_, table, [](const ValueOf&) { return true; },
        [](const Column&, Value former) { return former; });
  }

  void copyDatabaseProperties() {
    const auto from = source_.table("MSysObjects");
    const auto to = target_.table("MSysObjects");
    const auto formerColumn = from->definition().findColumn("LvProp");
    const std::size_t column = to->definition().findColumn("LvProp").value();
    const auto former = findDatabase(source_);
    const RowId now = findDatabase(target_).value();
    if (!former || !formerColumn) {
      return;
    }
    const auto formerRow = from->row(*former);
    const auto row = to->row(now);
    std::vector<Value> values;
    for (const Column& each : to->definition().columns) {
      values.push_back(row->value(each));
    }
    values[column] = convertProperties(source_.pager(),
                                       formerRow->value(from->definition().columns[*formerColumn]));
    to->update(now, values);
  }

 private:
  static std::optional<RowId> findDatabase(Database& database) {
    const auto found = std::ranges::find(database.entries(), kDatabaseObject, &CatalogEntry::id);
    return found == database.entries().end() ? std::nullopt : std::optional(found->row);
  }

  Value renumbered(const Value& former) const {
    return former.isNull() ? former
                           : Value(static_cast<std::int32_t>(
                                 numbers_[static_cast<PageNumber>(former.toLong())]));
  }

  /// Null for a user of a workgroup.
  Value translated(const Value& user) const {
    const Bytes* bytes = user.getIf<Bytes>();
    return bytes != nullptr && bytes->size() == SecurityIds::kSize
               ? Value(formerIds_.translate(*bytes, ids_))
               : Value();
  }

  /// The admin user in place of one of a workgroup.
  Value ownerOf(const Value& former) const {
    const Value owner = translated(former);
    return owner.isNull() && !former.isNull() ? Value(ids_.admin()) : owner;
  }

  Database& source_;
  Database& target_;
  const TableNumbers& numbers_;
  SecurityIds formerIds_;
  SecurityIds ids_;
  std::set<std::int32_t> objects_{};
};

/// How many rows of a system table name a user of a workgroup, whose ids are longer than those that
/// every file has.
std::size_t countOfWorkgroup(Database& source, std::string_view name, std::string_view column) {
  const auto table = source.table(name);
  const auto user = table->definition().findColumn(column);
  std::size_t count = 0;
  for (TableScan scan = table->scan(); user && scan.next();) {
    const Value value = scan.row().value(table->definition().columns[*user]);
    const Bytes* id = value.getIf<Bytes>();
    if (id != nullptr && id->size() > SecurityIds::kSize) ++count;
  }
  return count;
}

}  // namespace

bool isConverted(const CatalogEntry& entry) {
  const bool isTable = entry.kind == Kind::table;
  return nameOfWindowObject(entry) == nullptr && !(isTable && has(kWindowTables, entry.name));
}

std::vector<std::string> unconvertedObjects(Database& source) {
  std::vector<std::string> names;
  for (const CatalogEntry& entry : source.entries()) {
    if (const char* what = nameOfWindowObject(entry)) {
      names.push_back(fmt::format("{} '{}'", what, entry.name));
    }
  }
  const std::size_t owned = countOfWorkgroup(source, "MSysObjects", "Owner");
  if (owned > 0) {
    const std::size_t rights = countOfWorkgroup(source, "MSysACEs", "SID");
    names.push_back(
        fmt::format("what users of a workgroup own: {}, which the admin user gets, and {}",
                    counted(owned, "object"), counted(rights, "right")));
  }
  return names;
}

std::string droppedRights(Database& source) {
  const std::size_t rights = countOfWorkgroup(source, "MSysACEs", "SID");
  return rights == 0 ? "" : fmt::format("rights of users of a workgroup are left out: {}", rights);
}

void convertCatalog(Database& source, Database& target, const TableNumbers& numbers) {
  CatalogRows rows(source, target, numbers);
  rows.copyObjects();
  rows.copyRights();
  rows.copyAll("MSysQueries");
  rows.copyAll("MSysRelationships");
  rows.copyDatabaseProperties();
  target.forgetCatalog();
}

}  // namespace orv::store::jet
