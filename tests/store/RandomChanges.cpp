#include "store/RandomChanges.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <stdexcept>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/index/IndexKey.h"
#include "store/jet/page/Text.h"

namespace orv::test {
namespace {

using namespace store;
using namespace store::jet;
using enum ColumnType;

/// The key of a row, where the values have one that a unique index compares: no Null, no text in
/// an order that the store does not know.
std::optional<Bytes> comparedKey(const TableDefinition& definition, const RealIndex& index,
                                 const std::vector<Value>& values) {
  if (anyNull(index, values)) return std::nullopt;
  try {
    return makeKey(definition, index, values);
  } catch (const Error& error) {
    if (error.number() != kNotSupported) throw;
    return std::nullopt;
  }
}

std::vector<Value> valuesOf(const Table& table, const RowView& row) {
  std::vector<Value> values;
  for (const Column& column : table.definition().columns) values.push_back(row.value(column));
  return values;
}

/// Whether a new row gets a value where it has none.
bool isMade(const Column& column) {
  return column.autoNumber || column.autoGuid;
}

/// Whether a refusal says what the store cannot do, not that the row is wrong.
bool isBeyondStore(const Error& error) {
  return error.number() == kNotSupported || error.number() == kOverflow;
}

/// Why the row must be refused; empty where it must be taken. `before` are the row's values when
/// it is there already.
std::string refusal(const ModelledTable& model, const std::vector<Value>& values,
                    const std::vector<Value>* before) {
  const TableDefinition& definition = model.table->definition();
  for (std::size_t i = 0; i < values.size(); ++i) {
    const Column& column = definition.columns[i];
    const std::string* text = values[i].getIf<std::string>();
    const bool isMissing = values[i].isNull() && !(before == nullptr && isMade(column));
    if ((column.required && isMissing) ||
        (!column.allowZeroLength && text != nullptr && text->empty())) {
      return "column " + column.name;
    }
  }
  for (const RealIndex& index : definition.realIndexes) {
    if (anyNull(index, values)) {
      const bool isLeft =
          before == nullptr && isMade(definition.columns[index.columns.front().column]);
      if (index.required && !isLeft) return fmt::format("Null in index {}", index.number);
      continue;
    }
    const std::optional<Bytes> key = comparedKey(definition, index, values);
    const bool isOwn = before != nullptr && comparedKey(definition, index, *before) == key;
    if (index.unique && key && !isOwn && model.keys[index.number].contains(*key)) {
      return fmt::format("a key of index {}", index.number);
    }
  }
  return {};
}

}  // namespace

RandomChanges::RandomChanges(std::string path, std::string password,
                             std::shared_ptr<Database> database, unsigned seed, std::size_t period)
    : path_(std::move(path)),
      password_(std::move(password)),
      database_(std::move(database)),
      random_(seed),
      period_(std::max<std::size_t>(period, 1)) {
  for (const CatalogEntry& entry : database_->entries()) {
    if (entry.kind != CatalogEntry::Kind::table || entry.isSystem()) continue;
    ModelledTable& model = tables_.emplace_back();
    model.table = database_->table(entry.name);
    model.keys.resize(model.table->definition().realIndexes.size());
    for (TableScan scan = model.table->scan(); scan.next();) {
      put(model, scan.rowId(), valuesOf(*model.table, scan.row()));
    }
  }
}

void RandomChanges::reopen() {
  std::vector<std::string> names;
  for (ModelledTable& model : tables_) {
    names.push_back(model.table->name());
    model.table.reset();
  }
  database_.reset();
  database_ = Database::open(path_, password_);
  for (std::size_t i = 0; i < tables_.size(); ++i) tables_[i].table = database_->table(names[i]);
}

// Values --------------------------------------------------------------------------------------

std::size_t RandomChanges::below(std::size_t end) {
  return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_);
}

/// Up to so many UTF-16 units, often with beginnings that others have too.
std::string RandomChanges::text(std::size_t most) {
  static const char* const kPieces[] = {
      "a",  "B", "glass", "Glass", "7", "42", "z", " ", "  ", "-",  "'",      "é",  "È",
      "ß",  "Œ", "ñ",     "Å",     "®", ".",  ",", "_", "%",  "\"", "Ωμ",     "Жя", "日本",
      "カ", "ｶ", "ッ",    "が",    "١", "ש",  "½", "€", "\n", "𝄞",  "e\u0301"};
  static const char* const kBeginnings[] = {"", "", "Clear float ", "Clear float 6", "low-e ", "A"};
  std::string text = kBeginnings[below(std::size(kBeginnings))];
  const std::size_t wanted = oneIn(8) ? most : below(std::min<std::size_t>(most, 24) + 1);
  while (text.size() < wanted) text += kPieces[below(oneIn(3) ? std::size(kPieces) : 7)];
  while (utf16FromUtf8(text).size() > most) {
    text.pop_back();
    while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0xc0) == 0x80) {
      text.pop_back();
    }
    if (!text.empty() && static_cast<unsigned char>(text.back()) >= 0xc0) {
      text.pop_back();  // the rest of a character that was cut
    }
  }
  return text;
}

Bytes RandomChanges::bytes(std::size_t most) {
  Bytes bytes(below(most + 1));
  for (auto& byte : bytes) byte = static_cast<std::uint8_t>(oneIn(3) ? 0 : below(256));
  return bytes;
}

/// Of a memo or picture: mostly short, some over a page, few over several.
std::size_t RandomChanges::longLength() {
  return oneIn(40) ? below(20000) : oneIn(6) ? below(5000) : below(120);
}

Value RandomChanges::value(const Column& column) {
  if (oneIn(9)) return column.type == boolean ? Value(false) : Value();
  const auto whole = [&](std::int32_t most) {
    const std::int32_t number = static_cast<std::int32_t>(below(static_cast<std::size_t>(most)));
    return oneIn(2) ? number : -number;
  };
  const auto padded = [&](auto content, std::size_t length, auto filling) {
    content.resize(column.fixed ? length : content.size(), filling);
    return content;
  };
  switch (column.type) {
    case boolean:
      return oneIn(2);
    case byte:
      return static_cast<std::int32_t>(below(256));
    case integer:
      return oneIn(20) ? -32768 : whole(32768);
    case longInteger:
      return oneIn(20) ? std::numeric_limits<std::int32_t>::min() : whole(oneIn(2) ? 50 : 2000000);
    case currency:
      return Currency{std::int64_t{whole(1000000)} * (oneIn(2) ? 1 : 100003)};
    case single:
      return static_cast<float>(whole(4000)) / 7.0f + 0.0f;
    case double_:
      return whole(100000) / 7.0 * (oneIn(10) ? 1e200 : 1) + 0.0;
    case dateTime:
      return Date{oneIn(4) ? static_cast<double>(whole(20000))
                           : static_cast<double>(below(std::size_t{60000} * 86400)) / 86400.0};
    case binary:
      return padded(bytes(column.length), column.length, std::uint8_t{0});
    case guid: {
      Guid guid{};
      for (auto& byte : guid.bytes) byte = static_cast<std::uint8_t>(below(oneIn(2) ? 3 : 256));
      return guid;
    }
    case numeric: {
      std::int32_t most = 1;
      for (int digits = column.precision - column.scale; digits > 0 && most < 1000000; --digits) {
        most *= 10;
      }
      std::string fraction = std::to_string(below(10000));
      fraction.resize(std::min<std::size_t>(column.scale, fraction.size()));
      return Decimal::fromText(fmt::format("{}.{}", whole(most), fraction), column.precision,
                               column.scale);
    }
    case ColumnType::text: {
      std::string content = text(column.length / 2);
      const std::size_t units = utf16FromUtf8(content).size();
      return padded(content, content.size() + column.length / 2 - units, ' ');
    }
    case memo:
      return text(longLength());
    case ole:
      return bytes(longLength());
    default:
      return {};
  }
}

RandomChanges::Rows::iterator RandomChanges::anyRow(ModelledTable& model) {
  return std::next(model.rows.begin(), static_cast<std::ptrdiff_t>(below(model.rows.size())));
}

std::vector<Value> RandomChanges::newRow(ModelledTable& model) {
  std::vector<Value> row;
  for (const Column& column : model.table->definition().columns) {
    row.push_back(column.autoNumber ? Value() : value(column));
  }
  if (!model.rows.empty() && oneIn(10)) {  // values that another row has, as in its unique keys
    const auto& other = anyRow(model)->second;
    for (std::size_t i = oneIn(2) ? 1 : 0; i < std::min<std::size_t>(row.size(), 6); ++i) {
      row[i] = other[i];
    }
  }
  return row;
}

// Changes -------------------------------------------------------------------------------------

void RandomChanges::change(std::size_t operations) {
  for (const std::size_t end = operations_ + operations; operations_ < end && !tables_.empty();) {
    const std::size_t most = std::min<std::size_t>(end - operations_, 60);
    if (oneIn(2)) {
      changeInOneTransaction(most);
      continue;
    }
    for (std::size_t single = below(most) + 1; single > 0; --single) {
      changeOnce(tables_[below(tables_.size())], true);
    }
  }
}

void RandomChanges::changeInOneTransaction(std::size_t most) {
  const std::size_t count = 1 + below(most);
  const bool isUndone = oneIn(10);
  const std::vector<ModelledTable> before = isUndone ? tables_ : std::vector<ModelledTable>();
  {
    Transaction transaction(database_->pager());
    for (std::size_t i = 0; i < count; ++i) changeOnce(tables_[below(tables_.size())], false);
    if (!isUndone) transaction.commit();
  }
  if (isUndone) tables_ = before;
}

/// One change of a table. Rows that must be refused are only tried `alone`: within a transaction
/// they would undo all of it.
void RandomChanges::changeOnce(ModelledTable& model, bool alone) {
  ++operations_;
  if (model.table->definition().columns.empty()) return;
  const bool grows = operations_ % period_ < period_ * 2 / 3;
  const std::size_t action = below(10);
  if (model.rows.empty() || action < (grows ? 6 : 2)) {
    std::vector<Value> values = newRow(model);
    while (!refusal(model, values, nullptr).empty() && !oneIn(4)) values = newRow(model);
    if (refusal(model, values, nullptr).empty()) {
      write(model, Action::insert, {}, std::move(values));
    } else if (alone) {
      expectRefusal(model, Action::insert, {}, values);
    }
    return;
  }
  const auto chosen = anyRow(model);
  if (action < (grows ? 7 : 6)) return write(model, Action::erase, chosen->first, {});
  std::vector<Value> values = chosen->second;
  for (std::size_t changes = 1 + below(3); changes > 0; --changes) {
    const std::size_t at = below(values.size());
    const Column& column = model.table->definition().columns[at];
    values[at] = column.autoNumber ? values[at] : value(column);
  }
  if (refusal(model, values, &chosen->second).empty()) {
    write(model, Action::update, chosen->first, std::move(values));
  } else if (alone) {
    expectRefusal(model, Action::update, chosen->first, values);
  }
}

/// Makes a change that must succeed, unless the store cannot make it, in the table and in the
/// model.
void RandomChanges::write(ModelledTable& model, Action action, RowId row,
                          std::vector<Value> values) {
  try {
    Savepoint savepoint(database_->pager());
    makeChange(model, action, row, std::move(values));
    savepoint.commit();
    ++model.changes;
  } catch (const Error& error) {
    if (!isBeyondStore(error)) throw;
    ++model.unsupported[error.description()];
  }
}

void RandomChanges::makeChange(ModelledTable& model, Action action, RowId row,
                               std::vector<Value> values) {
  switch (action) {
    case Action::insert: {
      row = model.table->insert(values);
      if (model.rows.contains(row)) throw std::logic_error("a new row was put where one is");
      for (std::size_t i = 0; i < values.size(); ++i) {
        const Column& column = model.table->definition().columns[i];
        if (isMade(column)) values[i] = model.table->row(row)->value(column);
      }
      return put(model, row, std::move(values));
    }
    case Action::update:
      model.table->update(row, values);
      return put(model, row, std::move(values));
    case Action::erase:
      model.table->erase(row);
      return put(model, row, std::nullopt);
  }
}

void RandomChanges::expectRefusal(ModelledTable& model, Action action, RowId row,
                                  const std::vector<Value>& values) {
  ++refused_;
  try {
    action == Action::insert ? void(model.table->insert(values)) : model.table->update(row, values);
  } catch (const Error& error) {
    if (!isBeyondStore(error) && error.number() != kDuplicateKey) throw;
    if (isBeyondStore(error)) ++model.unsupported[error.description()];
    return;
  }
  throw std::logic_error("a row of " + model.table->name() + " was taken in spite of " +
                         refusal(model, values, nullptr));
}

/// Gives a row of the model these values, or takes it away.
void RandomChanges::put(ModelledTable& model, RowId row, std::optional<std::vector<Value>> values) {
  const TableDefinition& definition = model.table->definition();
  const auto count = [&](const std::vector<Value>& of, int change) {
    for (const RealIndex& index : definition.realIndexes) {
      const auto key = index.unique ? comparedKey(definition, index, of) : std::nullopt;
      auto& keys = model.keys[index.number];
      if (key && (keys[*key] += change) == 0) keys.erase(*key);
    }
  };
  if (const auto found = model.rows.find(row); found != model.rows.end()) {
    count(found->second, -1);
    model.rows.erase(found);
  }
  if (values) {
    count(*values, 1);
    model.rows.emplace(row, std::move(*values));
  }
}

}  // namespace orv::test
