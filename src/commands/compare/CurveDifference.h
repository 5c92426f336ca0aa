// How far apart two curves are.
#pragma once

#include <optional>

#include "commands/compare/Record.h"

namespace orv::commands::compare {

/// The largest difference, where there is one beyond the tolerance.
struct LargestDifference {
  double wavelength = 0;  ///< nm
  double a = 0;
  double b = 0;
};

/// Compares the curves at this position, at the wavelengths that both have.
std::optional<LargestDifference> largestDifference(const Curves& a, const Curves& b,
                                                   std::size_t curve, double tolerance);

/// Whether two measurements have the same wavelengths, and the same first `count` curves.
bool areSameCurves(const Curves& a, const Curves& b, std::size_t count, double tolerance);

}  // namespace orv::commands::compare
