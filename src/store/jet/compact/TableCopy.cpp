#include "store/jet/compact/TableCopy.h"

#include <fmt/format.h>

#include <algorithm>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/index/IndexKey.h"
#include "store/jet/index/IndexLoader.h"
#include "store/jet/index/IndexTree.h"
#include "store/jet/index/SortOrders.h"
#include "store/jet/page/DataPage.h"

namespace orv::store::jet {
namespace {

/// Whether keys of some values of the index may be unknown.
bool mayBeUnknown(const TableDefinition& table, const RealIndex& index) {
  return std::ranges::any_of(index.columns, [&](const IndexColumn& key) {
    const Column& column = table.columns[key.column];
    const bool isText = column.type == ColumnType::text || column.type == ColumnType::memo;
    return isText && knowledgeOf(column.sortOrder) != OrderKnowledge::all;
  });
}

}  // namespace

TableCopy::TableCopy(CopySource& source, CopyTarget& target, const TableNumbers& numbers,
                     CompactReport& report, std::shared_ptr<const TableDefinition> table)
    : source_(source),
      target_(target),
      numbers_(numbers),
      report_(report),
      table_(std::move(table)),
      page_(numbers[table_->page]),
      definition_{source.definition(*table_), {}},
      editor_(source.pager().format(), definition_.bytes, table_->page),
      rows_(target, page_),
      isKey_(table_->columns.size(), false),
      values_(table_->columns.size()) {
  for (const Column& column : table_->columns) {
    if (column.isLongValue()) {
      longColumns_.push_back({&column, RowFiller(target, kLongValueOwner)});
    }
    if (column.type == ColumnType::longInteger && TableNumbers::isIn(table_->name, column.name)) {
      numbered_.push_back(&column);
    }
  }
  for (const RealIndex& index : table_->realIndexes) {
    indexes_.push_back({&index});
    needsPlaces_ |= mayBeUnknown(*table_, index);
    for (const IndexColumn& key : index.columns) {
      isKey_[key.column] = true;
    }
  }
}

void TableCopy::run() {
  // All but the first page, which the file has.
  const std::size_t room =
      target_.pager().format().pageSize - target_.pager().format().definition.pageHeader;
  definition_.more.clear();
  for (std::size_t at = definition_.bytes.size();
       at > room + target_.pager().format().definition.pageHeader; at -= room) {
    definition_.more.push_back(target_.newPage());
  }
  copyLongValues();
  copyRows();
  for (Index& index : indexes_) {
    writeIndex(index);
  }
  writeDefinition();
  ++report_.tables;
}

// Rows --------------------------------------------------------------------------------------

/// Before the rows, so that these know where the values are.
void TableCopy::copyLongValues() {
  if (longColumns_.empty()) {
    return;
  }
  source_.forEachRow(table_, [&](RowId id, const RowView& row) {
    for (LongColumn& column : longColumns_) {
      const auto stored = row.bytes(*column.column);
      if (stored.empty() ||
          LongValueDefinition::read(stored, id.page).form == LongValueDefinition::Form::inRow) {
        continue;
      }
      const Bytes value = source_.longValue(stored, id.page);
      column.places.push_back(value.empty() ? LongValueDefinition{}
                                            : column.pages.addLongValue(value));
      ++report_.longValues;
    }
  });
  for (LongColumn& column : longColumns_) {
    column.pages.finish();
  }
}

void TableCopy::copyRows() {
  source_.forEachRow(table_, [&](RowId id, const RowView& row) { copyRow(id, row); });
  rows_.finish();
  report_.rows += rowCount_;
}

void TableCopy::copyRow(RowId former, const RowView& row) {
  row_.assign(row.content().begin(), row.content().end());
  for (std::size_t i = 0; i < values_.size(); ++i) {
    if (isKey_[i]) {
      values_[i] = row.value(table_->columns[i]);
    }
  }
  placeLongValues(former, row);
  renumber(row);
  const RowId place = rows_.add(row_);
  ++rowCount_;
  addEntries(place);
  if (needsPlaces_) {
    formerPlaces_.push_back(former);
    places_.push_back(place);
  }
}

void TableCopy::placeLongValues(RowId former, const RowView& row) {
  for (LongColumn& column : longColumns_) {
    const auto stored = row.bytes(*column.column);
    if (stored.empty()) {
      setNull(*column.column, row);
      continue;
    }
    auto place = LongValueDefinition::read(stored, former.page);
    if (place.form == LongValueDefinition::Form::inRow) {
      const std::size_t room = stored.size() - std::min(stored.size(), LongValueDefinition::kSize);
      place.length = source_.inRowLength(place.length, room, former.page);
    } else {
      place = column.places.front();
      column.places.pop_front();
    }
    place.writeTo(&row_[static_cast<std::size_t>(stored.data() - row.content().data())]);
  }
}

/// A row without as much as the place of a long value may say that it has one.
void TableCopy::setNull(const Column& column, const RowView& row) {
  if (!row.isNull(column)) {
    const std::size_t mask = row_.size() - (row.columnCount() + std::size_t{7}) / 8;
    row_[mask + column.number / 8] &= static_cast<std::uint8_t>(~(1u << column.number % 8));
  }
}

void TableCopy::renumber(const RowView& row) {
  for (const Column* column : numbered_) {
    const auto stored = row.bytes(*column);
    if (stored.size() != sizeof(std::uint32_t)) {
      continue;
    }
    const PageNumber now = numbers_[load32(stored.data())];
    store32(&row_[static_cast<std::size_t>(stored.data() - row.content().data())], now);
    const auto position = static_cast<std::size_t>(column - table_->columns.data());
    values_[position] = static_cast<std::int32_t>(now);
  }
}

// Indexes -----------------------------------------------------------------------------------

void TableCopy::addEntries(RowId row) {
  for (Index& index : indexes_) {
    if (index.keysAreKnown && hasEntry(*index.index, values_)) {
      addEntry(index, row);
    }
  }
}

void TableCopy::addEntry(Index& index, RowId row) {
  const bool hasNull = anyNull(*index.index, values_);
  if (hasNull && index.required) {
    source_.refuse(*table_, *index.index, "a row has no value in a column of it");
    index.required = false;
  }
  try {
    index.entries.add(row, hasNull, [&](Bytes& bytes) {
      for (const IndexColumn& key : index.index->columns) {
        appendKey(bytes, table_->columns[key.column], values_[key.column], key.ascending);
      }
    });
  } catch (const Error& error) {
    if (error.number() != kNotSupported || !needsPlaces_) {
      throw;
    }
    index.keysAreKnown = false;
    index.entries = {};
  }
}

/// Of texts in a sort order that is not known the old index has the keys.
void TableCopy::takeEntriesOver(Index& index) {
  const IndexTree tree(source_.pager(), *index.index, table_->page);
  for (IndexCursor cursor = tree.first(); cursor.next();) {
    const auto former = std::ranges::lower_bound(formerPlaces_, cursor.rowId());
    if (former == formerPlaces_.end() || *former != cursor.rowId()) {
      source_.refuse(*table_, *index.index, "it has an entry of a row that is not there");
      continue;
    }
    index.entries.add(
        places_[static_cast<std::size_t>(former - formerPlaces_.begin())], true,
        [&](Bytes& bytes) { bytes.insert(bytes.end(), cursor.key().begin(), cursor.key().end()); });
  }
}

void TableCopy::writeIndex(Index& index) {
  if (!index.keysAreKnown) {
    takeEntriesOver(index);
  }
  std::vector<PageNumber> pages;
  IndexLoader loader(target_.pager(), page_, [&] {
    pages.push_back(target_.newPage());
    return pages.back();
  });
  const std::uint32_t keys = loader.addAll(index.entries, [&](std::size_t) {
    if (index.unique) {
      source_.refuse(*table_, *index.index, "several rows have the same values in it");
      index.unique = false;
    }
  });
  const PageNumber root = loader.finish();
  editor_.setIndex(index.index->number, root, target_.addMap(pages), keys);
  editor_.allow(index.index->number, !index.unique, !index.required);
  index.entries = {};
  ++report_.indexes;
}

// Definition --------------------------------------------------------------------------------

void TableCopy::writeDefinition() {
  editor_.setRowCount(rowCount_);
  const RowId pages = target_.addMap(rows_.pages());
  editor_.setRowMaps(pages, target_.addMap(rows_.pagesWithRoom()));
  for (const LongColumn& column : longColumns_) {
    if (!column.pages.pages().empty()) editor_.needLongValueMaps(column.column->number);
  }
  editor_.changeLongValueMaps([&](std::uint16_t number, RowId& maps, RowId& withRoom) {
    const auto column = std::ranges::find(
        longColumns_, number, [](const LongColumn& each) { return each.column->number; });
    if (column == longColumns_.end()) {
      maps = target_.addMap({});  // of a column that is no more
      withRoom = target_.addMap({});
      return;
    }
    maps = target_.addMap(column->pages.pages());
    withRoom = target_.addMap(column->pages.pagesWithRoom());
  });
  editor_.changeRelations(
      [&](PageNumber& table) { table = numbers_.contains(table) ? numbers_[table] : 0; });
  writeDefinitionPages(target_.pager(), page_, definition_);
}

}  // namespace orv::store::jet
