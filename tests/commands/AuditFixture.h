// What tests of audits have in common.
#pragma once

#include <algorithm>
#include <cmath>

#include "commands/CommandsTest.h"
#include "commands/audit/Audit.h"

namespace orv::test {

struct Point {
  double nm;
  double T;
  double Rf;
  double Rb;
};
using Points = std::vector<Point>;

/// Smooth curves from 300 to 2500 nm, others for each number.
inline Points glass(int number, double step = 5) {
  Points points;
  for (double nm = 300; nm <= 2500; nm += step) {
    points.push_back({nm, 0.7 + 0.1 * std::sin(nm / 300 + number),
                      0.08 + 0.02 * std::cos(nm / 250 + number),
                      0.09 + 0.02 * std::cos(nm / 200 + number)});
  }
  return points;
}

/// Audits a source, and lists what is found.
class AuditFixture : public CommandsTest {
 protected:
  using Finding = commands::audit::Finding;
  using AuditOptions = commands::audit::AuditOptions;
  using Lines = std::vector<std::string>;

  std::vector<Finding> audit(const Node& source, const AuditOptions& options = {},
                             std::optional<commands::RecordKind> kind = {}) {
    std::vector<Finding> findings;
    result = commands::audit::auditSource(session, source, kind, options,
                                          [&](const Finding& each) { findings.push_back(each); });
    return findings;
  }

  /// "rule identifier", each once.
  static Lines linesOf(const std::vector<Finding>& findings) {
    Lines lines;
    for (const Finding& each : findings) {
      lines.push_back(std::string(each.rule) + ' ' + each.identifier);
    }
    std::ranges::sort(lines);
    lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
    return lines;
  }

  /// "rule angle@wavelength|field|value|expected|message"
  static std::string faultOf(const Finding& each) {
    const auto& fault = each.fault;
    return fmt::format("{} {}{}|{}|{}|{}|{}", each.rule,
                       fault.angle ? std::to_string(*fault.angle) : "",
                       fault.wavelength ? fmt::format("@{}", *fault.wavelength) : "", fault.field,
                       fault.value, fault.expected, fault.message);
  }

  /// Findings with their records, in the order of the texts.
  static Lines whole(const std::vector<Finding>& findings) {
    Lines lines;
    for (const Finding& each : findings) {
      lines.push_back(
          fmt::format("{} {} {}: {}", each.set, each.identifier, each.name, faultOf(each)));
    }
    std::ranges::sort(lines);
    return lines;
  }

  commands::audit::AuditResult result;
};

}  // namespace orv::test
