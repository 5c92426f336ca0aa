// Rules on the tables of ORV databases.
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <set>

#include "commands/RecordList.h"
#include "commands/audit/Curves.h"
#include "commands/audit/SourceRules.h"
#include "database/Fields.h"
#include "model/Text.h"

namespace orv::commands::audit {

namespace {

using Keys = std::set<std::int32_t>;

/// A column that holds the keys of another table.
struct Reference {
  RecordKind kind;
  const char* table;
  const char* identifier;
  const char* column;
  const char* target;
  const char* targetKey;
};

constexpr Reference kReferences[] = {
    {RecordKind::panes, "Pane", "PaneID", "groupID", "Groups", "GroupID"},
    {RecordKind::panes, "Pane", "PaneID", "supplierID", "Suppliers", "supplierID"},
    {RecordKind::frames, "Frame", "FrameID", "groupID", "Groups", "GroupID"},
    {RecordKind::frames, "Frame", "FrameID", "supplierID", "Suppliers", "supplierID"},
    {RecordKind::frames, "Frame", "FrameID", "FrameTypeID", "FrameTypes", "FrameTypeID"},
    {RecordKind::shadings, "Shading", "Shading_id", "groupnameID", "Groups", "GroupID"},
    {RecordKind::shadings, "Shading", "Shading_id", "supplierID", "Suppliers", "supplierID"}};

/// A table of names, and one of the details of records. Version 2.0.1 spells the key of panes in
/// another way.
struct Lookup {
  const char* table;
  const char* key;
  const char* name;
};
constexpr Lookup kLookups[] = {{"Groups", "GroupID", "GroupName"},
                               {"Suppliers", "supplierID", "SupplierName"},
                               {"FrameTypes", "FrameTypeID", "FrameTypeName"}};

struct Detail {
  RecordKind kind;
  const char* table;
  std::array<const char*, 2> columns;
  const char* parent;
  const char* what;
};
constexpr Detail kDetails[] = {
    {RecordKind::panes, "Pane_integrated_data", {"PaneID", "Pane_id"}, "Pane", "pane"},
    {RecordKind::panes, "Pane_spectral_data", {"PaneID", "Pane_id"}, "Pane", "pane"},
    {RecordKind::shadings,
     "Shading_integrated_data_temp",
     {"Shading_id", "Shading_ID"},
     "Shading",
     "shading"},
    {RecordKind::shadings,
     "Shading_spectral_data",
     {"Shading_ID", "Shading_id"},
     "Shading",
     "shading"}};

class Tables {
 public:
  explicit Tables(store::Connection& connection)
      : connection_(connection), names_(connection.tableNames()) {}

  bool has(const char* table) const {
    return std::ranges::any_of(names_,
                               [&](const auto& name) { return equalIgnoringCase(name, table); });
  }

  std::unique_ptr<store::Recordset> open(const std::string& statement) const {
    return connection_.openRecordset(statement);
  }

  /// The one of these columns that a table has.
  const char* columnOf(const Detail& detail) const {
    const auto columns = connection_.table(detail.table).columns;
    const auto isThere = [&](const char* name) {
      return std::ranges::any_of(
          columns, [&](const auto& column) { return equalIgnoringCase(column.name, name); });
    };
    const auto found = std::ranges::find_if(detail.columns, isThere);
    return found == detail.columns.end() ? nullptr : *found;
  }

  Keys keysOf(const char* table, const char* column) const {
    Keys keys;
    for (const auto rows = open(fmt::format("SELECT DISTINCT [{}] FROM [{}]", column, table));
         !rows->eof(); rows->moveNext()) {
      keys.insert(database::FieldToLong(rows->value(std::size_t{0})));
    }
    return keys;
  }

 private:
  store::Connection& connection_;
  std::vector<std::string> names_;
};

/// The tables of an ORV database; none where the source is another.
std::optional<Tables> tablesOf(const SourceFacts& source) {
  if (!source.database) return std::nullopt;
  return Tables(*source.database->ADOConnection());
}

bool isAskedFor(const SourceFacts& source, RecordKind kind) {
  return source.kind.value_or(kind) == kind;
}

/// The records that are audited, where that is not all of them; they are of one kind.
std::optional<std::set<std::string>> someOf(const SourceFacts& source) {
  if (source.isWhole) return std::nullopt;
  std::set<std::string> some;
  for (const RecordFacts& record : source.records) some.insert(record.identifier);
  return some;
}

bool isUsed(const Lookup& lookup, std::int32_t key,
            const std::vector<std::pair<const Reference*, Keys>>& uses) {
  return std::ranges::any_of(uses, [&](const auto& use) {
    return use.first->target == std::string_view(lookup.table) && use.second.contains(key);
  });
}

}  // namespace

std::vector<PlacedFault> unusedNames(const SourceFacts& source) {
  const auto tables = tablesOf(source);
  if (!tables || !source.isWhole) return {};
  std::vector<std::pair<const Reference*, Keys>> uses;
  for (const Reference& each : kReferences) {
    if (tables->has(each.table) && tables->has(each.target)) {
      uses.emplace_back(&each, tables->keysOf(each.table, each.column));
    }
  }
  std::vector<PlacedFault> faults;
  for (const Lookup& lookup : kLookups) {
    const bool isOfFrames = lookup.table == std::string_view("FrameTypes");
    if (isOfFrames && !isAskedFor(source, RecordKind::frames)) continue;
    if (!tables->has(lookup.table)) continue;
    const auto rows = tables->open(
        fmt::format("SELECT [{}], [{}] FROM [{}]", lookup.key, lookup.name, lookup.table));
    for (; !rows->eof(); rows->moveNext()) {
      const auto key = database::FieldToLong(rows->value(std::size_t{0}));
      if (isUsed(lookup, key, uses)) continue;
      const auto name = database::FieldToString(rows->value(std::size_t{1}));
      faults.push_back(
          {.set = lookup.table,
           .kind = {},
           .identifier = std::to_string(key),
           .name = name,
           .fault = {.field = lookup.name, .value = name, .message = "No record uses it"}});
    }
  }
  return faults;
}

std::vector<PlacedFault> orphans(const SourceFacts& source) {
  const auto tables = tablesOf(source);
  if (!tables || !source.isWhole) return {};
  std::vector<PlacedFault> faults;
  for (const Detail& detail : kDetails) {
    if (!isAskedFor(source, detail.kind)) continue;
    if (!tables->has(detail.table) || !tables->has(detail.parent)) continue;
    const char* const column = tables->columnOf(detail);
    if (column == nullptr) continue;
    const char* const key = detail.parent == std::string_view("Pane") ? column : "Shading_id";
    const Keys parents = tables->keysOf(detail.parent, key);
    for (const std::int32_t each : tables->keysOf(detail.table, column)) {
      if (parents.contains(each)) continue;
      const auto count = tables->open(
          fmt::format("SELECT COUNT(*) FROM [{}] WHERE [{}] = {}", detail.table, column, each));
      faults.push_back(
          {.set = detail.table,
           .kind = {},
           .identifier = std::to_string(each),
           .name = {},
           .fault = {.field = column,
                     .value = std::to_string(each),
                     .message = fmt::format("Rows of a {} that is gone: {}", detail.what,
                                            count->value(std::size_t{0}).toText())}});
    }
  }
  return faults;
}

std::vector<PlacedFault> danglingKeys(const SourceFacts& source) {
  const auto tables = tablesOf(source);
  if (!tables) return {};
  const auto some = someOf(source);
  std::vector<PlacedFault> faults;
  for (const Reference& each : kReferences) {
    if (!isAskedFor(source, each.kind)) continue;
    if (!tables->has(each.table) || !tables->has(each.target)) continue;
    const Keys known = tables->keysOf(each.target, each.targetKey);
    const auto rows = tables->open(fmt::format("SELECT [{}], [name], [{}] FROM [{}]",
                                               each.identifier, each.column, each.table));
    for (; !rows->eof(); rows->moveNext()) {
      const auto key = database::FieldToLong(rows->value(std::size_t{2}));
      if (key == 0 || known.contains(key)) continue;  // 0 and Null stand for none
      const auto identifier = rows->value(std::size_t{0}).toText();
      if (some && !some->contains(identifier)) continue;
      faults.push_back({.set = setName(each.kind),
                        .kind = each.kind,
                        .identifier = identifier,
                        .name = database::FieldToString(rows->value(std::size_t{1})),
                        .fault = {.field = each.column,
                                  .value = std::to_string(key),
                                  .message = fmt::format("{} has no row {}", each.target, key)}});
    }
  }
  return faults;
}

std::vector<Fault> negativePoints(const sources::datasource& node, const std::string& identifier) {
  const auto rows = node.ADOConnection()->openRecordset(fmt::format(
      "SELECT angle, wavelength, transmission_outdoor, reflection_outdoor, reflection_indoor FROM "
      "Pane_spectral_data WHERE {} = {} ORDER BY angle, wavelength",
      identifierColumn(node.DataType()), recordNumber(identifier)));
  constexpr std::array kFields{"Tf", "Rf", "Rb"};
  constexpr std::size_t kFirstValue = 2;
  std::vector<Fault> faults;
  for (; !rows->eof(); rows->moveNext()) {
    for (std::size_t i = 0; i < kFields.size(); ++i) {
      const double value = database::FieldToDouble(rows->value(kFirstValue + i));
      if (value >= 0) continue;
      const double wavelength = database::FieldToDouble(rows->value(std::size_t{1}));
      faults.push_back({.field = kFields[i],
                        .value = shortNumber(value),
                        .expected = "0 to 1",
                        .message = fmt::format("{} is no fraction at {}, so that the pane cannot "
                                               "be read",
                                               kFields[i], place(wavelength)),
                        .wavelength = wavelength,
                        .angle = database::fieldToInteger(rows->value(std::size_t{0}))});
    }
  }
  return faults;
}

}  // namespace orv::commands::audit
