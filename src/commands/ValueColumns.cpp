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
                           optics::Standard standard)
    : table_(std::move(table)), reader_(session, node), integrator_(standard) {
  columns_ = table_->columns();
  for (const char* name : kNames) {
    columns_.push_back(
        {fmt::format("{} stored", name), fmt::format("{}, stored", titleOf(name)), "", true});
  }
  for (const char* name : kNames) {
    columns_.push_back({fmt::format("{} computed", name),
                        fmt::format("{}, {}", titleOf(name), optics::nameOf(standard).name), "",
                        true});
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
    const auto computed = integrator_.integrate(*pane);
    for (std::size_t i = 0; i < kNames.size(); ++i) {
      values[i] = storedValue(*pane, kNames[i]);
      values[kNames.size() + i] = computed[kNames[i]];
    }
  } catch (const Error&) {
    values = {};  // commands on the pane say why
  }
  return values;
}

}  // namespace orv::commands
