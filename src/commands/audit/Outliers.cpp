// Records far outside their group.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "commands/audit/Curves.h"
#include "commands/audit/SourceRules.h"

namespace orv::commands::audit {

namespace {

using Members = std::vector<const RecordFacts*>;

double medianOf(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

/// A quantity, and how far a record has to be from the middle of its group, whatever the others:
/// by so much, or by so many times or that part of it.
struct Quantity {
  const char* field;
  std::optional<double> RecordFacts::*member;
  std::size_t leastMembers;
  double leastApart;
  double leastTimes;
  const char* unit;

  bool isFar(double value, double median) const {
    return std::abs(value - median) > leastApart &&
           (value > leastTimes * median || value * leastTimes < median);
  }
};

constexpr Quantity kQuantities[] = {{"thickness", &RecordFacts::thickness, 6, 0, 3, " mm"},
                                    {"Tf_vis", &RecordFacts::transmittance, 12, 0.5, 1, ""}};

/// Of values that scatter by chance one in a million lies ten times as far as half of them do.
void tellOutliers(const Members& members, const Quantity& quantity,
                  std::vector<PlacedFault>& faults) {
  constexpr double kTimesOthers = 10;
  std::vector<double> values;
  for (const RecordFacts* each : members) {
    if (each->*quantity.member) values.push_back(*(each->*quantity.member));
  }
  if (values.size() < quantity.leastMembers) return;
  const double median = medianOf(values);
  for (double& value : values) value = std::abs(value - median);
  const double apart = kTimesOthers * medianOf(values);
  for (const RecordFacts* each : members) {
    const auto& value = each->*quantity.member;
    if (!value || !quantity.isFar(*value, median)) continue;
    if (std::abs(*value - median) <= apart) continue;
    faults.push_back(
        at(*each, {.field = quantity.field,
                   .value = shortNumber(*value) + quantity.unit,
                   .expected = "about " + shortNumber(median) + quantity.unit,
                   .message = fmt::format("The {} is far from that of the others of the group {}",
                                          quantity.field, each->group)}));
  }
}

}  // namespace

std::vector<PlacedFault> outliers(const SourceFacts& source) {
  std::map<std::string, Members> groups;
  for (const RecordFacts& record : source.records) {
    if (record.kind == RecordKind::panes && !record.group.empty()) {
      groups[record.group].push_back(&record);
    }
  }
  std::vector<PlacedFault> faults;
  for (const auto& [name, members] : groups) {
    for (const Quantity& quantity : kQuantities) tellOutliers(members, quantity, faults);
  }
  return faults;
}

}  // namespace orv::commands::audit
