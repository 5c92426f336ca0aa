#include "interop/RowsJson.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <chrono>
#include <cmath>
#include <ctime>
#include <utility>

namespace orv::test {
namespace {

using namespace store;

std::string quoted(const std::string& text) {
  std::string json = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') {
      json += '\\';
      json += c;
    } else if (static_cast<unsigned char>(c) < 0x20) {
      json += fmt::format("\\u{:04x}", static_cast<int>(c));
    } else {
      json += c;
    }
  }
  return json + '"';
}

std::string dateText(Date date) {
  const std::chrono::seconds sinceDayZero(std::llround(date.days * 86400));
  const std::chrono::sys_days dayZero{std::chrono::year{1899} / 12 / 30};
  // Seconds alone: the system's clock counts nanoseconds, which end in the year 2262.
  const std::time_t seconds = (dayZero + sinceDayZero).time_since_epoch().count();
  return fmt::format("{:%Y-%m-%d %H:%M:%S}", fmt::gmtime(seconds));
}

std::string json(const Value& value) {
  if (value.isNull()) {
    return "null";
  }
  if (const bool* flag = value.getIf<bool>()) {
    return *flag ? "true" : "false";
  }
  if (const Bytes* bytes = value.getIf<Bytes>()) {
    return fmt::format("\"{:02X}\"", fmt::join(*bytes, ""));
  }
  if (const float* single = value.getIf<float>()) {
    return fmt::format("{}", *single);
  }
  if (const double* number = value.getIf<double>()) {
    return fmt::format("{}", *number);
  }
  if (const Date* date = value.getIf<Date>()) {
    return quoted(dateText(*date));
  }
  if (value.getIf<std::int32_t>() != nullptr) {
    return value.toText();
  }
  return quoted(value.toText());
}

void writeRows(const ModelledTable& model, std::ostream& out) {
  const auto& columns = model.table->definition().columns;
  const char* separator = "\n";
  for (const auto& [id, values] : model.rows) {
    out << std::exchange(separator, ",\n") << '{';
    for (std::size_t i = 0; i < values.size(); ++i) {
      out << (i == 0 ? "" : ", ") << quoted(columns[i].name) << ": " << json(values[i]);
    }
    out << '}';
  }
}

}  // namespace

void writeRows(const std::vector<ModelledTable>& tables, std::ostream& out) {
  const char* separator = "";
  out << '{';
  for (const ModelledTable& model : tables) {
    out << std::exchange(separator, ",\n") << quoted(model.table->name()) << ": [";
    writeRows(model, out);
    out << ']';
  }
  out << "}\n";
}

}  // namespace orv::test
