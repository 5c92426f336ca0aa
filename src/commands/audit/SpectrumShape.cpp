// Rules on the shape of curves.
#include <algorithm>
#include <array>
#include <cmath>

#include "commands/audit/Curves.h"
#include "commands/audit/SpectrumRules.h"

namespace orv::commands::audit {

namespace {

/// Steps between points beyond which curves may do anything from one to the next; nm.
constexpr double kWidestStep = 100;
/// A change that is that many times those beside it is none of the pane.
constexpr double kTimesOthers = 4;
constexpr double kLeastChange = 2 * kMeasuringError;

bool isAnyOf(const std::vector<double>& values, std::size_t at, double change) {
  // The changes on both sides, without those to and from the point.
  const double left = std::abs(values[at - 1] - values[at - 2]);
  const double across = std::abs(values[at + 1] - values[at - 1]);
  const double right = std::abs(values[at + 2] - values[at + 1]);
  return std::abs(change) <= kTimesOthers * std::max({left, across, right});
}

constexpr std::size_t kPointsOfEnd = 5;
/// Fewer points say how the curve goes on there, and it may begin to fall with the last one.
constexpr double kLeastChangeAtEnd = 0.05;

/// How far a point lies from the line between its neighbours.
double changeAt(const std::vector<double>& at, const std::vector<double>& values, std::size_t i) {
  const double share = (at[i] - at[i - 1]) / (at[i + 1] - at[i - 1]);
  return values[i] - (values[i - 1] + share * (values[i + 1] - values[i - 1]));
}

/// The first or the last point of a curve, and the one beside it.
void addJumpsAtEnd(const std::vector<double>& at, const std::vector<double>& values, bool isLast,
                   WorstPoint& worst) {
  if (values.size() < kPointsOfEnd) return;
  const auto place = [&](std::size_t i) { return isLast ? values.size() - 1 - i : i; };
  std::array<double, kPointsOfEnd> x{};
  std::array<double, kPointsOfEnd> y{};
  for (std::size_t i = 0; i < kPointsOfEnd; ++i) {
    x[i] = at[place(i)];
    y[i] = values[place(i)];
  }
  if (std::abs(x[4] - x[0]) > 4 * kWidestStep) return;
  const double inside = std::max(std::abs(y[2] - y[3]), std::abs(y[3] - y[4]));
  const auto add = [&](std::size_t i, double change, double least, double others) {
    if (std::abs(change) < least || std::abs(change) <= kTimesOthers * others) return;
    worst.add(x[i], y[i], std::abs(change));
  };
  add(1, changeAt(at, values, place(1)), kLeastChange, std::max(inside, std::abs(y[2] - y[0])));
  const double expected = y[1] + (y[1] - y[2]) * (x[0] - x[1]) / (x[1] - x[2]);
  add(0, y[0] - expected, kLeastChangeAtEnd, std::max(inside, std::abs(y[1] - y[2])));
}

/// Whether the steps around the step from `i` to the next point are alike.
bool isEven(const std::vector<double>& at, std::size_t i) {
  const double step = at[i + 1] - at[i];
  constexpr double kRounding = 0.01;
  for (std::size_t k = i - 2; k <= i + 2; ++k) {
    if (std::abs(at[k + 1] - at[k] - step) > kRounding) return false;
  }
  return true;
}

}  // namespace

std::vector<Fault> jumps(const DataSet& set) {
  const auto& at = set.spectrum.wavelengths;
  return eachCurve(
      set,
      [&](const std::vector<double>& values) {
        WorstPoint worst;
        for (const bool isLast : {false, true}) addJumpsAtEnd(at, values, isLast, worst);
        for (std::size_t i = 2; i + 2 < values.size(); ++i) {
          if (at[i + 2] - at[i - 2] > 4 * kWidestStep) continue;
          const double change = changeAt(at, values, i);
          if (std::abs(change) < kLeastChange || isAnyOf(values, i, change)) continue;
          worst.add(at[i], values[i], std::abs(change));
        }
        return worst;
      },
      [](const WorstPoint& worst, const char* name) {
        return Fault{.value = shortNumber(worst.value()),
                     .message = fmt::format("{} jumps and comes back{}", name, worst.where())};
      });
}

/// Spectrometers change their detector between 700 and 1100 nm. The step stays, and the curve goes
/// on evenly on both sides of it.
std::vector<Fault> detectorSteps(const DataSet& set) {
  constexpr double kFirst = 700;
  constexpr double kLast = 1100;
  const auto& at = set.spectrum.wavelengths;
  return eachCurve(
      set,
      [&](const std::vector<double>& values) {
        WorstPoint worst;
        for (std::size_t i = 2; i + 3 < values.size(); ++i) {
          if (at[i] < kFirst || at[i] > kLast || !isEven(at, i)) continue;
          const double step = std::abs(values[i + 1] - values[i]);
          double others = 0;
          for (const std::size_t k : {i - 2, i - 1, i + 1, i + 2}) {
            others = std::max(others, std::abs(values[k + 1] - values[k]));
          }
          if (step > kMeasuringError && step > kTimesOthers * others) {
            worst.add(at[i + 1], values[i + 1] - values[i], step);
          }
        }
        return worst;
      },
      [](const WorstPoint& worst, const char* name) {
        return Fault{.value = shortNumber(worst.value()),
                     .expected = "no step",
                     .message = fmt::format("{} goes on at another level{}, as where a "
                                            "spectrometer changes its detector",
                                            name, worst.where())};
      });
}

/// All curves at once stand still, and not because nothing passes.
std::vector<Fault> constantStretches(const DataSet& set) {
  constexpr std::size_t kLeastPoints = 10;
  constexpr double kLeastWidth = 100;
  const auto& at = set.spectrum.wavelengths;
  const auto isSame = [&](std::size_t a, std::size_t b) {
    return std::ranges::all_of(set.spectrum.curves,
                               [&](const auto& curve) { return curve[a] == curve[b]; });
  };
  std::size_t from = 0;
  std::size_t to = 0;
  for (std::size_t first = 0, next = 1; first < at.size(); first = next++) {
    while (next < at.size() && isSame(first, next)) ++next;
    const std::size_t last = next - 1;
    if (set.spectrum[Curve::Tf][first] > 0 && at[last] - at[first] > at[to] - at[from]) {
      from = first;
      to = last;
    }
  }
  if (to - from + 1 < kLeastPoints || at[to] - at[from] < kLeastWidth) return {};
  return {{.field = "Tf, Rf, Rb",
           .value = shortNumber(set.spectrum[Curve::Tf][from]),
           .message =
               fmt::format("All curves stand still from {} to {}", place(at[from]), place(at[to])),
           .wavelength = at[from]}};
}

}  // namespace orv::commands::audit
