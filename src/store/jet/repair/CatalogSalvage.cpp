#include "store/jet/repair/CatalogSalvage.h"

#include <fmt/format.h>

#include <algorithm>

#include "errors/Counted.h"
#include "store/jet/catalog/FixedObjects.h"
#include "store/jet/page/Text.h"

namespace orv::store::jet {
namespace {

using Kind = CatalogEntry::Kind;

/// The values of some columns of a system table's rows, which every file has.
class Fields {
 public:
  explicit Fields(const TableDefinition& table) : table_(table) {}

  std::int32_t number(const RowView& row, std::string_view name) const {
    const Value value = valueOf(row, name);
    const auto* number = value.getIf<std::int32_t>();
    return number == nullptr ? 0 : *number;
  }
  std::string text(const RowView& row, std::string_view name) const {
    const Value value = valueOf(row, name);
    const auto* text = value.getIf<std::string>();
    return text == nullptr ? "" : *text;
  }

 private:
  Value valueOf(const RowView& row, std::string_view name) const {
    return row.value(table_.columns[table_.findColumn(name).value()]);
  }

  const TableDefinition& table_;
};

/// Whether an entry has the number or the name of what every file has, and is not that.
bool takesPlaceOfFixedObject(const CatalogEntry& entry) {
  return std::ranges::any_of(fixedObjects(), [&](const CatalogObject& object) {
    const bool hasName = entry.parentId == object.parentId && sameName(entry.name, object.name);
    return (entry.id == object.id) != hasName;
  });
}

}  // namespace

CatalogSalvage::CatalogSalvage(Pager& pager, const PageSurvey& survey, CompactReport& report)
    : pager_(pager), survey_(survey), report_(report) {
  add(kCatalogPage, nameOfFixedTable(kCatalogPage), true);
  readEntries();
  readTables();
  addFixedTables();
  addLostTables();
  fitQueries();
  leaveOutEntries();
}

SalvagedTableContent* CatalogSalvage::add(PageNumber page, const std::string& name, bool isNamed) {
  auto definition = salvageDefinition(pager_, page, name);
  if (!definition) {
    return nullptr;
  }
  auto rows = std::make_unique<RowSalvage>(pager_, survey_, definition->table, definition->isSure);
  return &(tables_[page] = {*std::move(definition), std::move(rows), isNamed});
}

void CatalogSalvage::readEntries() {
  const SalvagedTableContent& catalog = tables_.at(kCatalogPage);
  const Fields fields(*catalog.definition.table);
  std::set<std::int32_t> ids;
  std::set<std::pair<std::int32_t, std::string>> names;
  for (const RowSalvage::Place& place : catalog.rows->rows()) {
    const RowView row = catalog.rows->view(place);
    CatalogEntry entry{.id = fields.number(row, "Id"),
                       .parentId = fields.number(row, "ParentId"),
                       .name = fields.text(row, "Name"),
                       .kind = static_cast<Kind>(fields.number(row, "Type")),
                       .flags = static_cast<std::uint32_t>(fields.number(row, "Flags")),
                       .row = place.home};
    const bool isNew = !takesPlaceOfFixedObject(entry) && ids.insert(entry.id).second;
    if (!isNew || !names.emplace(entry.parentId, foldName(entry.name)).second) {
      leftOut_.insert(place.home);
      report_.lost.push_back(
          fmt::format("an object '{}' with the number or the name of another", entry.name));
      continue;
    }
    entries_.push_back(std::move(entry));
  }
}

void CatalogSalvage::readTables() {
  std::erase_if(entries_, [&](const CatalogEntry& entry) {
    const auto page = static_cast<PageNumber>(entry.id);
    if (entry.kind != Kind::table || page == kCatalogPage) {
      return false;
    }
    if (entry.id > 0 && add(page, entry.name, true) != nullptr) {
      return false;
    }
    leftOut_.insert(entry.row);
    const std::size_t pages = survey_.pagesOf(page).size();
    const std::string rows =
        pages == 0 ? ""
                   : fmt::format(", so that the rows on {} mean nothing", counted(pages, "page"));
    report_.lost.push_back(fmt::format("table '{}': its definition on page {} cannot be read{}",
                                       entry.name, page, rows));
    return true;
  });
}

void CatalogSalvage::addFixedTables() {
  for (PageNumber page = kCatalogPage; !nameOfFixedTable(page).empty(); ++page) {
    if (!tables_.contains(page)) {
      add(page, nameOfFixedTable(page), false);
    }
  }
  if (std::ranges::none_of(entries_, [](const CatalogEntry& entry) {
        return entry.id == static_cast<std::int32_t>(kCatalogPage);
      })) {
    tables_.at(kCatalogPage).isNamed = false;
  }
}

/// Definitions with rows that the catalogue does not name are tables that it has lost, where it has
/// lost something, or of former days, also where it is not known which pages are free.
void CatalogSalvage::addLostTables() {
  const SalvagedTable catalog = tables_.at(kCatalogPage).rows->report();
  const bool hasLost = !report_.lost.empty() || !catalog.isWhole() ||
                       !tables_.at(kCatalogPage).definition.fault.empty() ||
                       catalog.rowsSaved < tables_.at(kCatalogPage).rows->rowsSaid();
  for (const PageNumber page : survey_.definitions()) {
    const bool mayBeLost =
        !tables_.contains(page) && !survey_.isFree(page) && !survey_.pagesOf(page).empty();
    if (!mayBeLost) {
      continue;
    }
    if (!hasLost || !survey_.knowsFreePages()) {
      report_.notes.push_back(
          fmt::format("page {} defines a table that the catalogue does not "
                      "name; it was left out",
                      page));
      continue;
    }
    const std::string name = fmt::format("Recovered table {}", page);
    if (add(page, name, false) != nullptr) {
      report_.notes.push_back(fmt::format(
          "the table defined on page {} has lost its name; it is called '{}'", page, name));
    }
  }
}

/// A query is its entry in the catalogue and its parts: none is left without the other, and none
/// without its beginning and its end.
void CatalogSalvage::fitQueries() {
  constexpr std::int32_t kBegin = 0;
  constexpr std::int32_t kEnd = 255;
  const SalvagedTableContent& queries = tables_.at(kQueriesPage);
  const Fields fields(*queries.definition.table);
  RowSalvage& parts = *queries.rows;
  std::set<std::int32_t> begun;
  std::set<std::int32_t> ended;
  for (const RowSalvage::Place& place : parts.rows()) {
    const RowView row = parts.view(place);
    const std::int32_t attribute = fields.number(row, "Attribute");
    const std::int32_t query = fields.number(row, "ObjectId");
    if (attribute == kBegin) begun.insert(query);
    if (attribute == kEnd) ended.insert(query);
  }
  std::set<std::int32_t> kept;
  std::erase_if(entries_, [&](const CatalogEntry& entry) {
    if (entry.kind != Kind::query) {
      return false;
    }
    if (begun.contains(entry.id) && ended.contains(entry.id)) {
      kept.insert(entry.id);
      return false;
    }
    leftOut_.insert(entry.row);
    report_.lost.push_back(fmt::format("query '{}': parts of it are lost", entry.name));
    return true;
  });
  parts.drop([&](const RowSalvage::Place&,
                 const RowView& row) { return !kept.contains(fields.number(row, "ObjectId")); },
             "it is part of a query that is lost");
}

void CatalogSalvage::leaveOutEntries() {
  tables_.at(kCatalogPage)
      .rows->drop([&](const RowSalvage::Place& place,
                      const RowView&) { return leftOut_.contains(place.home); },
                  "what it names is lost");
}

}  // namespace orv::store::jet
