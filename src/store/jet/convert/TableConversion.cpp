#include "store/jet/convert/TableConversion.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/definition/DefinitionPages.h"
#include "store/jet/definition/DefinitionWriter.h"
#include "store/jet/page/PageAllocator.h"
#include "store/jet/table/IndexBuilder.h"
#include "store/jet/table/Table.h"
#include "store/jet/table/TablePlacement.h"

namespace orv::store::jet {
namespace {

constexpr std::size_t kRowsOfACommit = 1000;

/// How many bytes of a text the code page does not have. No other text has this character.
std::size_t unknownCharacters(const Value& value) {
  constexpr std::string_view kReplacement = "\uFFFD";
  const auto* text = value.getIf<std::string>();
  if (text == nullptr) return 0;
  std::size_t count = 0;
  for (std::size_t at = text->find(kReplacement); at != std::string::npos;
       at = text->find(kReplacement, at + kReplacement.size())) {
    ++count;
  }
  return count;
}

/// A column as Jet 4 has it: text in two bytes a character, in the order of the same language.
Column convert(Column column) {
  const bool isText = column.type == ColumnType::text;
  column.length = static_cast<std::uint16_t>(isText ? 2 * column.length : column.length);
  column.compressible = isText || column.type == ColumnType::memo;
  column.sortOrder = {.language = column.sortOrder.language};
  column.longValuePages.reset();
  column.longValueFreePages.reset();
  return column;
}

/// The columns without gaps where others were deleted, and no indexes.
TableDefinition withoutIndexes(const TableDefinition& former) {
  TableDefinition table;
  table.name = former.name;
  table.systemTable = former.systemTable;
  std::uint16_t fixedEnd = 0;
  for (const Column& each : former.columns) {
    Column& column = table.columns.emplace_back(convert(each));
    column.number = table.maxColumns++;
    column.variableIndex = table.variableColumns;
    if (column.type == ColumnType::boolean) {
      continue;  // a bit of the null mask
    }
    if (column.fixed) {
      column.fixedOffset = fixedEnd;
      fixedEnd = static_cast<std::uint16_t>(fixedEnd + column.length);
    } else {
      ++table.variableColumns;
    }
  }
  return table;
}

/// The table for copying: numbers of rows are as they are.
std::shared_ptr<TableDefinition> withoutNumbering(TableDefinition table) {
  table.realIndexes.clear();
  table.logicalIndexes.clear();
  for (Column& column : table.columns) {
    column.autoNumber = false;
    column.autoGuid = false;
  }
  return std::make_shared<TableDefinition>(std::move(table));
}

}  // namespace

TableConversion::TableConversion(Pager& source, std::shared_ptr<const TableDefinition> former,
                                 std::shared_ptr<Pager> target)
    : source_(source),
      former_(std::move(former)),
      target_(std::move(target)),
      table_(std::make_shared<TableDefinition>(withoutIndexes(*former_))) {
  table_->page = PageAllocator(*target_).allocate();
  placeTable(*target_, *table_);
}

std::size_t TableConversion::copyRows(const std::function<void()>& rowDone,
                                      std::vector<std::string>& lost) {
  Table table(target_, withoutNumbering(*table_));
  std::optional<Transaction> transaction(std::in_place, *target_);
  std::size_t rows = 0;
  std::vector<Value> values(former_->columns.size());
  std::vector<std::size_t> unknown(values.size());
  for (TableScan scan(source_, former_); scan.next();) {
    for (std::size_t i = 0; i < values.size(); ++i) {
      values[i] = scan.row().value(former_->columns[i]);
      unknown[i] += unknownCharacters(values[i]);
    }
    table.insert(values);
    rowDone();
    if (++rows % kRowsOfACommit == 0) {
      transaction->commit();
      transaction.emplace(*target_);
    }
  }
  for (std::size_t i = 0; i < unknown.size(); ++i) {
    if (unknown[i] == 0) continue;
    lost.push_back(fmt::format(
        "{} of column '{}' of table '{}', which the code page of the file does not have",
        unknown[i] == 1 ? "a character" : fmt::format("{} characters", unknown[i]),
        former_->columns[i].name, name()));
  }
  const std::uint32_t lastNumber =
      source_.read(former_->page).view().u32(source_.format().definition.autoNumber);
  store32(target_->modify(page()) + target_->format().definition.autoNumber, lastNumber);
  transaction->commit();
  return rows;
}

std::string TableConversion::describeIndex(const LogicalIndex& index) const {
  return fmt::format("index '{}' of table '{}'", index.name, name());
}

void TableConversion::buildIndexes(std::vector<std::string>& lost) {
  const Table rows(target_, withoutNumbering(*table_));
  for (const RealIndex& former : former_->realIndexes) {
    RealIndex& index = table_->realIndexes.emplace_back(former);
    index.number = table_->realIndexes.size() - 1;
    index.ownedPages = {};
    std::vector<LogicalIndex> names;
    std::ranges::copy_if(former_->logicalIndexes, std::back_inserter(names),
                         [&](const LogicalIndex& each) { return each.realIndex == former.number; });
    try {
      Savepoint savepoint(*target_);
      keyCounts_.push_back(buildTree(rows, *table_, index));
      savepoint.commit();
    } catch (const Error& error) {
      if (error.number() != kNotSupported && error.number() != kDuplicateKey) {
        throw;
      }
      table_->realIndexes.pop_back();
      for (const LogicalIndex& each : names) {
        lost.push_back(fmt::format("{} ({})", describeIndex(each), error.description()));
      }
      continue;
    }
    for (LogicalIndex& each : names) {
      each.realIndex = index.number;
      table_->logicalIndexes.push_back(std::move(each));
    }
  }
}

bool TableConversion::hasIndex(std::uint32_t number) const {
  return std::ranges::find(table_->logicalIndexes, number, &LogicalIndex::number) !=
         table_->logicalIndexes.end();
}

void TableConversion::nameIndexes(const std::map<PageNumber, TableConversion>& tables,
                                  std::vector<std::string>& lost) {
  if (table_->realIndexes.empty()) {
    return;
  }
  const Format& format = target_->format();
  DefinitionPages definition = readDefinitionPages(*target_, page(), name());
  for (const RealIndex& index : table_->realIndexes) {
    addTree(format, definition.bytes, *table_, index, keyCounts_[index.number]);
  }
  for (LogicalIndex& index : table_->logicalIndexes) {
    if (index.relationTable != 0) {
      const auto other = tables.find(index.relationTable);
      if (other != tables.end() &&
          other->second.hasIndex(static_cast<std::uint32_t>(index.relationIndex))) {
        index.relationTable = other->second.page();
      } else {
        lost.push_back("the relation that " + describeIndex(index) + " enforces");
        index.relationTable = 0;
        index.relationIndex = -1;
        index.kind = LogicalIndex::Kind::plain;
      }
    }
    addIndexName(format, definition.bytes, *table_, index);
  }
  writeDefinitionPages(*target_, page(), definition);
}

}  // namespace orv::store::jet
