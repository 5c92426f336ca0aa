#include "commands/ValueColumns.h"

#include <fmt/format.h>

#include <algorithm>

#include "commands/CellText.h"
#include "commands/StoredValues.h"
#include "errors/Error.h"
#include "model/IntegratedColumns.h"

namespace orv::commands {

namespace {

/// "Solar transmittance front".
std::string titleOf(std::string_view name) {
  const auto column =
      std::ranges::find(kIntegratedColumns, name, [](const auto& each) { return each.name; });
  std::string title = column->title;
  title.front() = static_cast<char>(title.front() - 'a' + 'A');
  return title;
}

}  // namespace

ValueColumns::ValueColumns(std::unique_ptr<RecordTable> table, Session& session,
                           const std::shared_ptr<sources::datasource>& node,
                           const ValueChoice& choice)
    : table_(std::move(table)), reader_(session, node), showsStored_(choice.stored) {
  columns_ = table_->columns();
  if (showsStored_) addColumns("stored", "stored");
  if (!choice.computedBy) return;
  integrator_.emplace(*choice.computedBy);
  addColumns("computed", optics::nameOf(*choice.computedBy).name);
}

void ValueColumns::addColumns(const std::string& kind, std::string_view titleOfKind) {
  for (const char* name : kNames) {
    columns_.push_back({fmt::format("{} {}", name, kind),
                        fmt::format("{}, {}", titleOf(name), titleOfKind), "", true});
  }
}

store::Value ValueColumns::value(std::size_t row, std::size_t column) const {
  const std::size_t first = table_->columns().size();
  if (column < first) return table_->value(row, column);
  if (row >= values_.size()) return {};
  const auto value = values_[row][column - first];
  return value ? store::Value(*value) : store::Value();
}

bool ValueColumns::fillNext() {
  const std::size_t row = values_.size();
  if (row >= table_->rowsRead()) table_->readTo(row + 1);
  if (row >= table_->rowsRead()) return false;
  values_.push_back(valuesOf(cellText(table_->value(row, 0), kAllDigits)));
  return true;
}

ValueColumns::RowValues ValueColumns::valuesOf(const std::string& identifier) {
  RowValues values;
  try {
    const auto angles = reader_.dataAngles(identifier);
    const auto pane = reader_.pane(identifier, angles.empty() ? std::int16_t{0} : angles.front());
    if (showsStored_) {
      for (const char* name : kNames) values.push_back(storedValue(*pane, name));
    }
    if (integrator_) {
      const auto computed = integrator_->integrate(*pane);
      for (const char* name : kNames) values.push_back(computed[name]);
    }
  } catch (const Error&) {
    // Commands on the pane say why.
  }
  values.resize(columns_.size() - table_->columns().size());
  return values;
}

}  // namespace orv::commands
