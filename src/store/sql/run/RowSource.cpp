#include "store/sql/run/RowSource.h"

#include <algorithm>
#include <cstring>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/index/IndexKey.h"
#include "store/jet/table/RowReader.h"
#include "store/sql/run/KeyBound.h"

namespace orv::store::sql {
namespace {

class ScanSource final : public RowSource {
 public:
  explicit ScanSource(const jet::Table& table) : scan_(table.scan()) {}
  bool next() override { return scan_.next(); }
  const jet::RowView& row() const override { return scan_.row(); }
  jet::RowId rowId() const override { return scan_.rowId(); }

 private:
  jet::TableScan scan_;
};

class LookupSource final : public RowSource {
 public:
  LookupSource(std::shared_ptr<const jet::Table> table, std::shared_ptr<const ColumnLookup> lookup,
               std::span<const ColumnLookup::Entry> entries)
      : rows_(std::move(table)), lookup_(std::move(lookup)), entries_(entries) {}

  bool next() override {
    while (!entries_.empty()) {
      id_ = jet::RowId::fromPointer(entries_.front().pointer);
      entries_ = entries_.subspan(1);
      if (row_ = rows_.read(id_); row_ != nullptr) {
        return true;
      }
    }
    return false;
  }
  const jet::RowView& row() const override { return *row_; }
  jet::RowId rowId() const override { return id_; }

 private:
  jet::RowReader rows_;
  std::shared_ptr<const ColumnLookup> lookup_;
  std::span<const ColumnLookup::Entry> entries_;
  jet::RowId id_;
  const jet::RowView* row_ = nullptr;
};

/// The keys between which the entries of an index are wanted: both are prefixes of keys, and the
/// entries that begin with them are included.
struct KeyRange {
  Bytes lower;
  Bytes upper;
  bool empty = false;
};

/// Narrows a range by the plan's constraints, as far as their values have keys.
class RangeBuilder {
 public:
  RangeBuilder(const jet::TableDefinition& table, const jet::RealIndex& index)
      : table_(table), index_(index) {}

  KeyRange build(std::span<const Constraint::Kind> kinds, BoundValues values) {
    std::size_t at = 0;
    bool exact = true;
    while (exact && at < kinds.size() &&
           (kinds[at] == Constraint::Kind::equal || kinds[at] == Constraint::Kind::isNull)) {
      exact = kinds[at] == Constraint::Kind::isNull ? addNull() : addEqual(values[at]);
      ++at;
    }
    for (; exact && at < kinds.size(); ++at) {
      addBound(kinds[at], values[at]);
    }
    return std::move(range_);
  }

 private:
  const jet::Column& column() const { return table_.columns[index_.columns[depth_].column]; }
  bool ascending() const { return index_.columns[depth_].ascending; }

  /// False when the key is only the beginning of one.
  bool append(Bytes& key, const Value& value) const {
    return jet::appendSearchKey(key, column(), value, ascending());
  }

  bool addNull() {
    append(range_.lower, Value());
    range_.upper = range_.lower;
    ++depth_;
    return true;
  }

  /// False when the columns that follow cannot narrow the range any more.
  bool addEqual(sqlite3_value* value) {
    const KeyBound bound = keyBound(column(), value, BoundSide::equal);
    range_.empty = range_.empty || bound.kind == KeyBound::Kind::nothing;
    if (bound.kind != KeyBound::Kind::value) {
      return false;
    }
    const bool zeros = hasTwoZeros(column().type) && bound.value.toDouble() == 0;
    if (zeros) {
      addBound(Constraint::Kind::lower, value);
      addBound(Constraint::Kind::upper, value);
      return false;
    }
    const bool isWhole = append(range_.lower, bound.value);
    range_.upper = range_.lower;
    ++depth_;
    return isWhole;
  }

  /// Of each kind there is one at the most.
  void addBound(Constraint::Kind kind, sqlite3_value* value) {
    const bool isLower = kind == Constraint::Kind::lower;
    const KeyBound bound = keyBound(column(), value, isLower ? BoundSide::lower : BoundSide::upper);
    range_.empty = range_.empty || bound.kind == KeyBound::Kind::nothing;
    if (bound.kind != KeyBound::Kind::value) {
      return;
    }
    // In a descending column great values come first.
    append(isLower == ascending() ? range_.lower : range_.upper, bound.value);
  }

  const jet::TableDefinition& table_;
  const jet::RealIndex& index_;
  std::size_t depth_ = 0;
  KeyRange range_;
};

/// Compares a key with a prefix of keys: 0 when it begins with it.
int comparePrefix(std::span<const std::uint8_t> key, const Bytes& prefix) {
  const std::size_t common = std::min(key.size(), prefix.size());
  const int order = common == 0 ? 0 : std::memcmp(key.data(), prefix.data(), common);
  return order != 0 || key.size() >= prefix.size() ? order : -1;
}

/// The rows that an index should have in a range, in its order: their keys are made anew.
class KeyedSource final : public RowSource {
 public:
  KeyedSource(std::shared_ptr<const jet::Table> table, std::size_t index, bool backward,
              const KeyRange& range)
      : rows_(std::move(table)) {
    const jet::TableDefinition& definition = rows_.table().definition();
    const jet::RealIndex& design = definition.realIndexes.at(index);
    for (jet::TableScan scan = rows_.table().scan(); scan.next();) {
      const std::vector<Value> values = keyValues(definition, design, scan.row());
      if (!jet::hasEntry(design, values)) continue;
      Bytes key = jet::makeKey(definition, design, values);
      const bool isWanted =
          comparePrefix(key, range.lower) >= 0 && comparePrefix(key, range.upper) <= 0;
      if (isWanted) entries_.push_back({std::move(key), scan.rowId()});
    }
    std::sort(entries_.begin(), entries_.end());
    if (backward) std::reverse(entries_.begin(), entries_.end());
  }

  bool next() override {
    while (at_ < entries_.size()) {
      id_ = entries_[at_++].row;
      if (row_ = rows_.read(id_); row_ != nullptr) return true;
    }
    return false;
  }
  const jet::RowView& row() const override { return *row_; }
  jet::RowId rowId() const override { return id_; }

 private:
  struct Entry {
    Bytes key;
    jet::RowId row;
    auto operator<=>(const Entry&) const = default;
  };

  static std::vector<Value> keyValues(const jet::TableDefinition& table,
                                      const jet::RealIndex& index, const jet::RowView& row) {
    std::vector<Value> values(table.columns.size());
    for (const jet::IndexColumn& key : index.columns) {
      values[key.column] = row.value(table.columns[key.column]);
    }
    return values;
  }

  jet::RowReader rows_;
  std::vector<Entry> entries_;
  std::size_t at_ = 0;
  jet::RowId id_;
  const jet::RowView* row_ = nullptr;
};

/// Reads an index, and when that turns out to be damaged, the rows themselves from there on.
class IndexSource final : public RowSource {
 public:
  IndexSource(std::shared_ptr<const jet::Table> table, std::size_t index, bool backward,
              KeyRange range)
      : table_(table),
        rows_(std::move(table)),
        index_(index),
        backward_(backward),
        range_(std::move(range)) {}

  bool next() override {
    if (range_.empty) return false;
    if (!instead_) {
      try {
        const bool found = nextEntry();
        passed_ += found ? 1 : 0;
        return found;
      } catch (const Error& error) {
        if (error.number() != kCorruptFile) throw;
        instead_ = std::make_unique<KeyedSource>(table_, index_, backward_, range_);
        table_->distrust(index_);
        while (passed_ > 0 && instead_->next()) --passed_;
      }
    }
    return instead_->next();
  }
  const jet::RowView& row() const override { return instead_ ? instead_->row() : *row_; }
  jet::RowId rowId() const override { return instead_ ? instead_->rowId() : cursor_->rowId(); }

 private:
  bool nextEntry() {
    if (!cursor_) cursor_ = start(table_->index(index_), backward_, range_);
    while (backward_ ? cursor_->previous() : cursor_->next()) {
      const bool past = backward_ ? comparePrefix(cursor_->key(), range_.lower) < 0
                                  : comparePrefix(cursor_->key(), range_.upper) > 0;
      if (past) {
        return false;
      }
      if (row_ = rows_.read(cursor_->rowId()); row_ != nullptr) {
        return true;
      }
    }
    return false;
  }

  static jet::IndexCursor start(const jet::IndexTree& tree, bool backward, const KeyRange& range) {
    if (backward) {
      return range.upper.empty() ? tree.last() : tree.upperBound(range.upper);
    }
    return range.lower.empty() ? tree.first() : tree.lowerBound(range.lower);
  }

  std::shared_ptr<const jet::Table> table_;
  jet::RowReader rows_;
  std::optional<jet::IndexCursor> cursor_;
  std::size_t index_;
  bool backward_;
  KeyRange range_;
  std::size_t passed_ = 0;              ///< rows that the index has brought
  std::unique_ptr<RowSource> instead_;  ///< once the index is found damaged
  const jet::RowView* row_ = nullptr;
};

}  // namespace

std::unique_ptr<RowSource> scanRows(const jet::Table& table) {
  return std::make_unique<ScanSource>(table);
}

std::unique_ptr<RowSource> indexedRows(std::shared_ptr<const jet::Table> table, std::size_t index,
                                       bool backward, std::span<const Constraint::Kind> kinds,
                                       BoundValues values) {
  const jet::TableDefinition& definition = table->definition();
  KeyRange range = RangeBuilder(definition, definition.realIndexes.at(index)).build(kinds, values);
  return std::make_unique<IndexSource>(std::move(table), index, backward, std::move(range));
}

std::unique_ptr<RowSource> lookedUpRows(std::shared_ptr<const jet::Table> table, std::size_t column,
                                        std::shared_ptr<const ColumnLookup> lookup,
                                        sqlite3_value* value) {
  const KeyBound bound = keyBound(table->definition().columns[column], value, BoundSide::equal);
  if (bound.kind == KeyBound::Kind::unknown || bound.kind == KeyBound::Kind::all) {
    return scanRows(*table);
  }
  const auto entries = bound.kind == KeyBound::Kind::nothing
                           ? std::span<const ColumnLookup::Entry>()
                           : lookup->find(bound.value);
  return std::make_unique<LookupSource>(std::move(table), std::move(lookup), entries);
}

}  // namespace orv::store::sql
