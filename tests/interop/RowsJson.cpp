#include "interop/RowsJson.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <chrono>
#include <cmath>
#include <nlohmann/json.hpp>

namespace orv::test {
namespace {

using namespace store;

std::string dateText(Date date) {
  const std::chrono::seconds sinceDayZero(std::llround(date.days * 86400));
  const std::chrono::sys_days dayZero{std::chrono::year{1899} / 12 / 30};
  // Seconds alone: the system's clock counts nanoseconds, which end in the year 2262.
  const std::time_t seconds = (dayZero + sinceDayZero).time_since_epoch().count();
  return fmt::format("{:%Y-%m-%d %H:%M:%S}", fmt::gmtime(seconds));
}

nlohmann::json json(const Value& value) {
  if (value.isNull()) return nullptr;
  if (const bool* flag = value.getIf<bool>()) return *flag;
  if (const float* single = value.getIf<float>()) return *single;
  if (const double* number = value.getIf<double>()) return *number;
  if (const std::int32_t* number = value.getIf<std::int32_t>()) return *number;
  if (const Bytes* bytes = value.getIf<Bytes>())
    return fmt::format("{:02X}", fmt::join(*bytes, ""));
  if (const Date* date = value.getIf<Date>()) return dateText(*date);
  return value.toText();
}

}  // namespace

void writeRows(const std::vector<ModelledTable>& tables, std::ostream& out) {
  nlohmann::json all = nlohmann::json::object();
  for (const ModelledTable& model : tables) {
    const auto& columns = model.table->definition().columns;
    nlohmann::json& rows = all[model.table->name()] = nlohmann::json::array();
    for (const auto& [id, values] : model.rows) {
      nlohmann::json& row = rows.emplace_back(nlohmann::json::object());
      for (std::size_t i = 0; i < values.size(); ++i) row[columns[i].name] = json(values[i]);
    }
  }
  out << all << '\n';
}

}  // namespace orv::test
