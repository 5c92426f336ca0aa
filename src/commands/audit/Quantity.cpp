#include "commands/audit/Quantity.h"

#include <algorithm>
#include <cmath>

#include "commands/audit/Curves.h"

namespace orv::commands::audit {

std::vector<Fault> outside(const char* field, double value, const Bounds& bounds,
                           const std::string& unit, const char* what) {
  if (value == 0 || (value >= bounds.least && value <= bounds.most)) return {};
  return {{.field = field,
           .value = fmt::format("{} {}", shortNumber(value), unit),
           .expected = fmt::format("{:g} to {:g} {}", bounds.least, bounds.most, unit),
           .message =
               fmt::format("A {} of {} {} is none of {}", field, shortNumber(value), unit, what)}};
}

void addUnlessFraction(std::vector<Fault>& faults, const char* field, double value,
                       std::optional<std::int16_t> angle) {
  constexpr double kRounding = 1e-6;  // of 32-bit floats
  if (value >= -kRounding && value <= 1 + kRounding) return;
  const std::string text = fmt::format("{:.7g}", value);  // a short one may be 1 itself
  faults.push_back({.field = field,
                    .value = text,
                    .expected = "0 to 1",
                    .message = fmt::format("{} is {}, which is no fraction", field, text),
                    .angle = angle});
}

std::optional<double> nearest(const DataSet& set, std::string_view name, double stored) {
  std::optional<double> best;
  for (const auto& integration : set.integrations) {
    const auto value = integration[name];
    if (value && (!best || std::abs(*value - stored) < std::abs(*best - stored))) best = value;
  }
  return best;
}

std::vector<Fault> storedAgainst(
    const DataSet& set,
    const std::function<std::optional<double>(const IntegratedColumn&)>& stored) {
  constexpr double kApart = 0.01;
  double furthest = kApart;
  int count = 0;
  Fault fault;
  for (const IntegratedColumn& column : kIntegratedColumns) {
    const auto there = stored(column);
    const auto computed = there ? nearest(set, column.name, *there) : std::nullopt;
    if (!computed || std::abs(*there - *computed) <= kApart) continue;
    ++count;
    if (std::abs(*there - *computed) <= furthest) continue;
    furthest = std::abs(*there - *computed);
    fault = {.field = column.name,
             .value = shortNumber(*there),
             .expected = shortNumber(*computed),
             .message = fmt::format("The {} is {}, but {} by the spectrum, whatever the standard",
                                    column.title, shortNumber(*there), shortNumber(*computed))};
  }
  if (count == 0) return {};
  if (count > 1) fault.message += fmt::format("; {} values are off", count);
  return {fault};
}

}  // namespace orv::commands::audit
