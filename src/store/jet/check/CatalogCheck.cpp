#include "store/jet/check/CatalogCheck.h"

#include <fmt/format.h>

#include "store/jet/check/TableCheck.h"
#include "store/jet/page/Text.h"

namespace orv::store::jet {
namespace {

using Kind = CatalogEntry::Kind;

constexpr const char* kCatalogName = "MSysObjects";
constexpr const char* kQueriesName = "MSysQueries";

// Attributes of the first and the last part of a query.
constexpr std::int32_t kQueryBegin = 0;
constexpr std::int32_t kQueryEnd = 255;

const Column& need(const TableDefinition& table, std::string_view name) {
  const auto column = table.findColumn(name);
  if (!column) {
    raiseDamaged(table.page, fmt::format("the system table lacks its column '{}'", name));
  }
  return table.columns[*column];
}

// What the columns of a damaged system table hold may be of any type.
std::int32_t longOr0(const Value& value) {
  const auto* number = value.getIf<std::int32_t>();
  return number == nullptr ? 0 : *number;
}

std::string textOrEmpty(const Value& value) {
  const auto* text = value.getIf<std::string>();
  return text == nullptr ? "" : *text;
}

std::string_view describe(Kind kind) {
  switch (kind) {
    case Kind::table:
      return "table";
    case Kind::query:
      return "query";
    case Kind::linkedTable:
    case Kind::linkedOdbcTable:
      return "linked table";
    case Kind::relationship:
      return "relation";
    default:
      return "object";
  }
}

bool isNamedTogether(Kind kind) {
  return kind == Kind::table || kind == Kind::query || kind == Kind::linkedTable ||
         kind == Kind::linkedOdbcTable;
}

}  // namespace

void CatalogCheck::run() {
  readCatalog();
  checkEntries();
  for (const CatalogEntry& entry : entries_) {
    if (entry.kind == Kind::table && static_cast<PageNumber>(entry.id) != kCatalogPage) {
      checkTable(entry);
    }
  }
  checkQueries();
  checkRelations();
}

void CatalogCheck::readCatalog() {
  context_.log.guard({.table = kCatalogName}, Harm::catalogue, [&] {
    const auto table = readTableDefinition(context_.pager, kCatalogPage, kCatalogName);
    tables_[kCatalogPage] = table;
    const Column& id = need(*table, "Id");
    const Column& parent = need(*table, "ParentId");
    const Column& name = need(*table, "Name");
    const Column& type = need(*table, "Type");
    const Column& flags = need(*table, "Flags");
    TableCheck(context_, *table).run([&](RowId place, const RowView& row) {
      entries_.push_back({.id = longOr0(row.value(id)),
                          .parentId = longOr0(row.value(parent)),
                          .name = textOrEmpty(row.value(name)),
                          .kind = static_cast<Kind>(longOr0(row.value(type))),
                          .flags = static_cast<std::uint32_t>(longOr0(row.value(flags))),
                          .row = place});
    });
  });
}

void CatalogCheck::checkEntries() {
  std::map<std::int32_t, const CatalogEntry*> byId;
  std::map<std::string, const CatalogEntry*> byName;
  for (const CatalogEntry& entry : entries_) {
    const auto fault = [&](std::string what) {
      context_.log.fault(CheckPlace{.table = kCatalogName}.at(entry.row), Harm::catalogue,
                         fmt::format("the entry of {} '{}' {}", describe(entry.kind), entry.name,
                                     std::move(what)));
    };
    if (const auto [other, isNew] = byId.emplace(entry.id, &entry); !isNew) {
      fault(fmt::format("has the id of '{}'", other->second->name));
    }
    if (isNamedTogether(entry.kind) && !byName.emplace(foldName(entry.name), &entry).second) {
      fault("has the name of another table or query");
    }
  }
  for (const CatalogEntry& entry : entries_) {
    if (entry.kind != Kind::container && !byId.contains(entry.parentId)) {
      context_.log.fault(CheckPlace{.table = kCatalogName}.at(entry.row), Harm::catalogue,
                         fmt::format("the entry of {} '{}' belongs to an object that is not there",
                                     describe(entry.kind), entry.name));
    }
  }
}

void CatalogCheck::checkTable(const CatalogEntry& entry) {
  const auto page = static_cast<PageNumber>(entry.id);
  context_.log.guard({.table = entry.name}, Harm::table, [&] {
    if (tables_.contains(page)) {
      return;  // a second entry with the id has been reported
    }
    const std::shared_ptr<const TableDefinition> table =
        readTableDefinition(context_.pager, page, entry.name);
    tables_[page] = table;
    if (entry.name == kQueriesName) {
      TableCheck(context_, *table).run([&](RowId, const RowView& row) {
        readQueryPart(*table, row);
      });
      queriesRead_ = true;
    } else {
      TableCheck(context_, *table).run();
    }
  });
}

void CatalogCheck::readQueryPart(const TableDefinition& table, const RowView& row) {
  QueryParts& parts = queryParts_[longOr0(row.value(need(table, "ObjectId")))];
  const std::int32_t attribute = longOr0(row.value(need(table, "Attribute")));
  parts.begin |= attribute == kQueryBegin;
  parts.end |= attribute == kQueryEnd;
}

void CatalogCheck::checkQueries() {
  for (const CatalogEntry& entry : entries_) {
    if (entry.kind != Kind::query) {
      continue;
    }
    ++context_.report.queries;
    if (!queriesRead_) {
      continue;
    }
    const auto parts = queryParts_.find(entry.id);
    const CheckPlace place{.table = kQueriesName};
    if (parts == queryParts_.end()) {
      context_.log.fault(place, Harm::catalogue,
                         fmt::format("query '{}' has no parts", entry.name));
      continue;
    }
    if (!parts->second.begin || !parts->second.end) {
      context_.log.fault(place, Harm::catalogue,
                         fmt::format("query '{}' lacks its {} part", entry.name,
                                     parts->second.begin ? "last" : "first"));
    }
    queryParts_.erase(parts);
  }
  for (const auto& [id, parts] : queryParts_) {
    context_.log.fault({.table = kQueriesName}, Harm::catalogue,
                       fmt::format("there are parts of a query with id {}, but no such query", id));
  }
}

void CatalogCheck::checkRelations() {
  for (const auto& [page, table] : tables_) {
    for (const LogicalIndex& index : table->logicalIndexes) {
      if (index.relationTable != 0 && !tables_.contains(index.relationTable)) {
        context_.log.fault({table->name, index.name, page}, Harm::catalogue,
                           fmt::format("the index serves a relation with the table defined on page "
                                       "{}, but there is none",
                                       index.relationTable));
      }
    }
  }
}

}  // namespace orv::store::jet
