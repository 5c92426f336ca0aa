#include "commands/RecordView.h"

#include <algorithm>
#include <numeric>

#include "commands/CellText.h"
#include "model/Text.h"

namespace orv::commands {

namespace {

/// What a field is sorted by. Empty fields come first, then numbers, then texts.
struct SortKey {
  enum class Kind { empty, number, text } kind = Kind::empty;
  double number = 0;
  std::string text{};

  bool operator<(const SortKey& other) const {
    if (kind != other.kind) return kind < other.kind;
    if (kind == Kind::number) return number < other.number;
    return text < other.text;
  }
};

/// Has each number written so that texts of numbers are in the numbers' order: behind its length.
std::string withNumbersInOrder(const std::string& text) {
  std::string key;
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t end = std::min(text.find_first_not_of("0123456789", i), text.size());
    if (end == i) {
      key += text[i++];
      continue;
    }
    const std::size_t start = std::min(text.find_first_not_of('0', i), end);
    key += '0';
    key += static_cast<char>(std::min<std::size_t>(end - start, 127));
    key.append(text, start, end - start);
    i = end;
  }
  return key;
}

SortKey sortKey(const store::Value& value, bool readsNumbers) {
  if (value.isNull()) return {};
  if (isNumber(value)) return {SortKey::Kind::number, value.toDouble()};
  if (const auto* date = value.getIf<store::Date>()) return {SortKey::Kind::number, date->days};
  std::string text = lowerCase(cellText(value, kAllDigits));
  return {SortKey::Kind::text, 0, readsNumbers ? withNumbersInOrder(text) : std::move(text)};
}

}  // namespace

std::size_t RecordView::count() const {
  return isFiltered() ? matches_.size() : gone_;
}

std::size_t RecordView::tableRow(std::size_t row) const {
  if (isFiltered()) return matches_[row];
  return order_.empty() ? row : order_[row];
}

store::Value RecordView::value(std::size_t row, std::size_t column) const {
  return table_->value(tableRow(row), column);
}

std::string RecordView::text(std::size_t row, std::size_t column) const {
  return cellText(columns()[column], value(row, column), digits_);
}

std::vector<std::string> RecordView::identifiersRead() const {
  std::vector<std::string> identifiers;
  for (std::size_t row = 0; row < rowsRead(); ++row) {
    identifiers.push_back(cellText(table_->value(row, 0), kAllDigits));
  }
  return identifiers;
}

bool RecordView::isComplete() const {
  return table_->isComplete() && gone_ == table_->rowsRead();
}

void RecordView::advance(std::size_t rows) {
  table_->readTo(gone_ + rows);
  const std::size_t end = std::min(gone_ + rows, table_->rowsRead());
  if (!isFiltered()) {
    gone_ = end;
    return;
  }
  for (; gone_ < end; ++gone_) {
    const std::size_t row = order_.empty() ? gone_ : order_[gone_];
    if (accepts(row)) matches_.push_back(static_cast<std::uint32_t>(row));
  }
}

void RecordView::filter(const std::vector<std::string>& texts) {
  filters_.clear();
  for (std::size_t i = 0; i < texts.size() && i < columns().size(); ++i) {
    CellFilter filter(texts[i], columns()[i].isShownAsNumber());
    if (!filter.isEmpty()) filters_.push_back({i, std::move(filter)});
  }
  restart();
}

void RecordView::sort(const std::vector<SortColumn>& columns) {
  table_->readAll();
  order_.resize(columns.empty() ? 0 : table_->rowsRead());
  std::iota(order_.begin(), order_.end(), 0U);
  // By the last column first: what is equal in the next one keeps that order.
  for (auto by = columns.rbegin(); by != columns.rend(); ++by) {
    std::vector<SortKey> keys;
    keys.reserve(order_.size());
    for (std::size_t row = 0; row < order_.size(); ++row) {
      keys.push_back(sortKey(table_->value(row, by->column), by->readsNumbers));
    }
    std::stable_sort(order_.begin(), order_.end(), [&](std::uint32_t a, std::uint32_t b) {
      return by->isAscending ? keys[a] < keys[b] : keys[b] < keys[a];
    });
  }
  restart();
}

void RecordView::digits(int value) {
  digits_ = value;
  restart();
}

std::optional<std::size_t> RecordView::find(const std::string& text, std::size_t start,
                                            bool forward) {
  while (!isComplete()) advance(10000);
  const std::size_t width = columns().size();
  const std::size_t cells = count() * width;
  if (cells == 0 || text.empty()) return std::nullopt;
  const std::string wanted = lowerCase(text);
  for (std::size_t i = 0; i < cells; ++i) {
    const std::size_t cell = (forward ? start + i : start + cells - i) % cells;
    if (lowerCase(this->text(cell / width, cell % width)).find(wanted) != std::string::npos) {
      return cell;
    }
  }
  return std::nullopt;
}

bool RecordView::accepts(std::size_t tableRow) const {
  return std::all_of(filters_.begin(), filters_.end(), [&](const ColumnFilter& each) {
    const RecordColumn& column = columns()[each.column];
    const store::Value value = table_->value(tableRow, each.column);
    if (column.names.empty()) return each.filter.accepts(value, digits_);
    return each.filter.accepts(cellText(column, value, digits_), digits_);
  });
}

void RecordView::restart() {
  gone_ = 0;
  matches_.clear();
}

}  // namespace orv::commands
