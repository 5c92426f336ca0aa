// What rules on quantities of records have in common.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "commands/audit/DataSet.h"
#include "commands/audit/Finding.h"
#include "model/IntegratedColumns.h"

namespace orv::commands::audit {

struct Bounds {
  double least;
  double most;
};

/// What a quantity of `what` ("glass", "a frame") cannot be; 0 stands for one that is not given.
std::vector<Fault> outside(const char* field, double value, const Bounds& bounds,
                           const std::string& unit, const char* what);

/// Adds a fault where a value is none of 0 to 1.
void addUnlessFraction(std::vector<Fault>& faults, const char* field, double value,
                       std::optional<std::int16_t> angle);

/// Stored integrated values that are far from those of each standard; the furthest stands for all.
/// `stored` gives a value, none where the source does not know it.
std::vector<Fault> storedAgainst(
    const DataSet& set,
    const std::function<std::optional<double>(const IntegratedColumn&)>& stored);

/// The value of the standard that comes nearest to what is stored: not every source says by which
/// standard its values are.
std::optional<double> nearest(const DataSet& set, std::string_view name, double stored);

}  // namespace orv::commands::audit
