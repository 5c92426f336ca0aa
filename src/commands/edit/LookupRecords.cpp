#include "commands/edit/LookupRecords.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <map>
#include <set>

#include "commands/ChangeHistory.h"
#include "commands/GroupName.h"
#include "database/Fields.h"
#include "database/Rows.h"
#include "errors/Error.h"
#include "model/Text.h"

namespace orv::commands::edit {

using database::FieldToLong;
using database::FieldToString;

namespace {

int& countOf(LookupRecord& record, EditSet users) {
  return users == EditSet::panes    ? record.panes
         : users == EditSet::frames ? record.frames
                                    : record.shadings;
}

const LookupRecord& recordNumbered(const std::vector<LookupRecord>& records, std::int32_t id,
                                   EditSet names) {
  const auto found = std::ranges::find(records, id, &LookupRecord::id);
  if (found != records.end()) return *found;
  throw Error(kInvalidCall, fmt::format("There is no {} {}.", designOf(names).one, id));
}

/// Raises kInvalidCall where two records of one name would come into one group.
void refuseSameNames(const std::set<std::int32_t>& groups, store::Connection& database) {
  std::vector<std::string> doubles;
  for (const Reference& reference : designOf(EditSet::groups).references) {
    if (reference.from == EditSet::shadings) continue;  // they may have one name
    const SetDesign& design = designOf(reference.from);
    std::set<std::string> names;
    for (auto rows = database::openTable(database, design.table); !rows->eof(); rows->moveNext()) {
      if (!groups.contains(FieldToLong(rows->value(reference.column)))) continue;
      const std::string name = FieldToString(rows->value(design.nameColumn));
      if (!names.insert(lowerCase(name)).second) {
        doubles.push_back(fmt::format("{} \"{}\"", design.one, name));
      }
    }
  }
  if (doubles.empty()) return;
  throw Error(kInvalidCall,
              fmt::format("These would be twice in the group: {}. Rename or delete them first.",
                          fmt::join(doubles, ", ")));
}

/// Puts the records that hold one of the keys in a column to another.
void redirect(const Reference& reference, const std::set<std::int32_t>& from, std::int32_t into,
              store::Connection& database) {
  auto rows = database::openKeyset(database, designOf(reference.from).table);
  for (; !rows->eof(); rows->moveNext()) {
    if (!from.contains(FieldToLong(rows->value(reference.column)))) continue;
    rows->setValue(reference.column, into);
    rows->update();
  }
}

void deleteName(EditSet names, std::int32_t id, store::Connection& database) {
  const SetDesign& design = designOf(names);
  auto row = database::findRecord(database, design.table, design.key, id);
  row->deleteRow();
}

}  // namespace

std::vector<LookupRecord> lookupRecords(EditSet names, store::Connection& database) {
  const SetDesign& design = designOf(names);
  std::vector<LookupRecord> records;
  std::map<std::int32_t, std::size_t> places;
  for (auto rows = database::openTable(database, design.table); !rows->eof(); rows->moveNext()) {
    records.push_back({.id = FieldToLong(rows->value(design.key)),
                       .name = FieldToString(rows->value(design.nameColumn))});
  }
  std::ranges::sort(records, {}, &LookupRecord::id);
  for (std::size_t i = 0; i < records.size(); ++i) places.emplace(records[i].id, i);
  for (const Reference& reference : design.references) {
    auto rows = database::openTable(database, designOf(reference.from).table);
    for (; !rows->eof(); rows->moveNext()) {
      const auto place = places.find(FieldToLong(rows->value(reference.column)));
      if (place != places.end()) ++countOf(records[place->second], reference.from);
    }
  }
  return records;
}

void mergeLookups(EditSet names, const std::vector<std::int32_t>& from, std::int32_t into,
                  store::Connection& database, UserInterface& ui) {
  const HistoryScope history(
      ui, database,
      fmt::format("Merge {} {} into {}", designOf(names).name, fmt::join(from, ", "), into));
  database.inOneCommit([&] {
    const auto records = lookupRecords(names, database);
    const std::string& name = recordNumbered(records, into, names).name;
    if (names == EditSet::groups && !isUnreservedGroupName(name)) {
      throw Error(kInvalidCall, fmt::format("The group {} is reserved: no records are put into it "
                                            "but by who made it.",
                                            name));
    }
    std::set<std::int32_t> gone;
    for (const std::int32_t id : from) {
      recordNumbered(records, id, names);
      if (id == into) {
        throw Error(kInvalidCall, fmt::format("The {} {} cannot be merged into itself.",
                                              designOf(names).one, id));
      }
      gone.insert(id);
    }
    if (names == EditSet::groups) {
      std::set<std::int32_t> together = gone;
      together.insert(into);
      refuseSameNames(together, database);
    }
    for (const Reference& reference : designOf(names).references) {
      redirect(reference, gone, into, database);
    }
    for (const std::int32_t id : gone) deleteName(names, id, database);
  });
}

void deleteLookups(EditSet names, const std::vector<std::int32_t>& ids, store::Connection& database,
                   UserInterface& ui) {
  const HistoryScope history(
      ui, database, fmt::format("Delete {} {}", designOf(names).name, fmt::join(ids, ", ")));
  database.inOneCommit([&] {
    const auto records = lookupRecords(names, database);
    std::vector<std::string> used;
    for (const std::int32_t id : ids) {
      const LookupRecord& record = recordNumbered(records, id, names);
      if (record.uses() > 0) used.push_back(fmt::format("{} ({})", record.name, record.uses()));
    }
    if (!used.empty()) {
      throw Error(kInvalidCall,
                  fmt::format("There are records with: {}. Merge them into another {} instead.",
                              fmt::join(used, ", "), designOf(names).one));
    }
    for (const std::int32_t id : ids) deleteName(names, id, database);
  });
}

}  // namespace orv::commands::edit
