#include "store/jet/repair/DefinitionSalvage.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <set>

#include "errors/Error.h"
#include "store/jet/catalog/EmptyDatabase.h"
#include "store/jet/catalog/FixedObjects.h"
#include "store/jet/compact/DefinitionEditor.h"
#include "store/jet/definition/DefinitionPages.h"
#include "store/jet/repair/Fault.h"

namespace orv::store::jet {
namespace {

bool canBeIndexed(ColumnType type) {
  return isColumnType(type) && type != ColumnType::ole && type != ColumnType::extendedDate &&
         type != ColumnType{0x0d} && type != ColumnType{0x0e} && type != ColumnType{0x11};
}

/// What no definition of a table has; empty for nothing.
std::string columnFault(const TableDefinition& table) {
  std::set<std::uint16_t> numbers;
  std::set<std::uint16_t> places;
  for (const Column& column : table.columns) {
    const bool isVariable = !column.fixed && column.type != ColumnType::boolean;
    if (!isColumnType(column.type)) {
      return fmt::format("column '{}' has a type that there is not", column.name);
    }
    if (column.name.empty() || !numbers.insert(column.number).second ||
        column.number >= table.maxColumns) {
      return fmt::format("column '{}' has a number that it cannot have", column.name);
    }
    if ((!column.fixed && column.variableIndex >= table.variableColumns) ||
        (isVariable && !places.insert(column.variableIndex).second)) {
      return fmt::format("column '{}' has a place in the rows that it cannot have", column.name);
    }
  }
  return table.columns.empty() ? "the table has no columns" : "";
}

std::string indexFault(const TableDefinition& table) {
  for (const RealIndex& index : table.realIndexes) {
    const bool isPossible =
        !index.columns.empty() && std::ranges::all_of(index.columns, [&](const IndexColumn& key) {
          return canBeIndexed(table.columns[key.column].type);
        });
    if (!isPossible) {
      return "an index is over columns that it cannot have";
    }
  }
  for (const LogicalIndex& index : table.logicalIndexes) {
    if (index.name.empty() || index.kind > LogicalIndex::Kind::foreign) {
      return "an index has no name, or a kind that there is not";
    }
  }
  return {};
}

/// The definition as it is; raises what is wrong.
SalvagedDefinition readWhole(Pager& pager, PageNumber page, const std::string& name) {
  SalvagedDefinition result{readTableDefinition(pager, page, name), {}, {}, true};
  result.bytes = readDefinitionPages(pager, page, name).bytes;
  DefinitionEditor(pager.format(), result.bytes, page);
  for (const std::string& fault : {columnFault(*result.table), indexFault(*result.table)}) {
    if (!fault.empty()) {
      raiseDamaged(page, fault);
    }
  }
  return result;
}

/// Columns of types that there are not hold bytes; rows have room for all columns.
void mendColumns(const Format& format, Bytes& bytes, const TableDefinition& table) {
  constexpr auto kBytes = static_cast<std::uint8_t>(ColumnType::binary);
  const auto& d = format.definition;
  std::uint16_t most = load16(&bytes[d.maxColumns]);
  std::uint16_t variable = load16(&bytes[d.variableColumns]);
  for (const Column& column : table.columns) {
    most = std::max<std::uint16_t>(most, column.number + 1);
    if (!column.fixed) {
      variable = std::max<std::uint16_t>(variable, column.variableIndex + 1);
    }
  }
  constexpr std::uint16_t kMost = 255;
  store16(&bytes[d.maxColumns], std::min(most, kMost));
  store16(&bytes[d.variableColumns], std::min(variable, kMost));
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    std::uint8_t& type = bytes[d.headerSize + i * format.column.size + format.column.type];
    type = isColumnType(ColumnType{type}) ? type : kBytes;
  }
}

SalvagedDefinition readColumnsOnly(Pager& pager, PageNumber page, const std::string& name,
                                   std::string fault) {
  const Bytes there = readDefinitionPagesAsFarAsPossible(pager, page).bytes;
  const auto columns = readTableColumns(pager, there, page, name);
  SalvagedDefinition result{nullptr,
                            DefinitionEditor::withoutIndexes(pager.format(), there, *columns),
                            std::move(fault), false};
  mendColumns(pager.format(), result.bytes, *columns);
  result.table = readTableColumns(pager, result.bytes, page, name);
  if (const std::string still = columnFault(*result.table); !still.empty()) {
    raiseDamaged(page, still);
  }
  return result;
}

/// As every file has it. Its maps lead nowhere.
SalvagedDefinition fixedDefinition(PageNumber page, const std::string& name, std::string fault) {
  Bytes content = emptyDatabase();
  const auto pager = Pager::overMemory(content, "(empty)");
  SalvagedDefinition result = readWhole(*pager, page, name);
  auto table = std::make_shared<TableDefinition>(*result.table);
  table->ownedPages = {};
  result.table = std::move(table);
  result.fault = std::move(fault);
  return result;
}

bool hasColumnsOf(const TableDefinition& fixed, const TableDefinition& found) {
  return std::ranges::all_of(fixed.columns, [&](const Column& column) {
    const auto same = found.findColumn(column.name);
    return same && found.columns[*same].type == column.type &&
           found.columns[*same].number == column.number &&
           found.columns[*same].fixed == column.fixed &&
           (column.fixed ? found.columns[*same].fixedOffset == column.fixedOffset
                         : found.columns[*same].variableIndex == column.variableIndex);
  });
}

}  // namespace

SalvagedDefinition withoutIndexes(Pager& pager, const SalvagedDefinition& definition,
                                  const std::string& why) {
  const TableDefinition& table = *definition.table;
  Bytes bytes = DefinitionEditor::withoutIndexes(pager.format(), definition.bytes, table);
  auto without = readTableColumns(pager, bytes, table.page, table.name);
  return {std::move(without), std::move(bytes), why, definition.isSure};
}

std::optional<SalvagedDefinition> salvageDefinition(Pager& pager, PageNumber page,
                                                    const std::string& name) {
  const bool isFixed = !nameOfFixedTable(page).empty();
  std::string fault;
  try {
    SalvagedDefinition found = readWhole(pager, page, name);
    if (!isFixed || hasColumnsOf(*fixedDefinition(page, name, "").table, *found.table)) {
      return found;
    }
    fault = "it lacks a column that every file has";
  } catch (const Error& error) {
    fault = faultOf(error);
  }
  if (isFixed) {
    return fixedDefinition(page, name, std::move(fault));
  }
  try {
    return readColumnsOnly(pager, page, name, std::move(fault));
  } catch (const Error&) {
    return std::nullopt;
  }
}

}  // namespace orv::store::jet
