#include "model/SpectralWeighting.h"

#include <algorithm>
#include <array>
#include <vector>

namespace orv {

namespace {

constexpr double kLeastCoverage = 0.9;
constexpr double kLastUltraviolet = 380;  // nm

/// A wavelength in nm, and how much counts there.
struct WeightPoint {
  double wavelength;
  double value;
};

// Spectral irradiance in W/(m²·µm), scaled to 1000 W/m² in all.
constexpr std::array kSolarIrradiance{
    WeightPoint{300, 0.0},      WeightPoint{305, 9.5},      WeightPoint{310, 42.3},
    WeightPoint{315, 107.8},    WeightPoint{320, 181.0},    WeightPoint{325, 246.0},
    WeightPoint{330, 395.3},    WeightPoint{335, 390.1},    WeightPoint{340, 435.3},
    WeightPoint{345, 438.9},    WeightPoint{350, 483.7},    WeightPoint{360, 520.3},
    WeightPoint{370, 666.2},    WeightPoint{380, 712.5},    WeightPoint{390, 720.7},
    WeightPoint{400, 1013.1},   WeightPoint{410, 1158.2},   WeightPoint{420, 1184.0},
    WeightPoint{430, 1071.9},   WeightPoint{440, 1302.0},   WeightPoint{450, 1526.0},
    WeightPoint{460, 1599.6},   WeightPoint{470, 1581.0},   WeightPoint{480, 1628.3},
    WeightPoint{490, 1539.2},   WeightPoint{500, 1548.7},   WeightPoint{510, 1586.5},
    WeightPoint{520, 1484.9},   WeightPoint{530, 1572.4},   WeightPoint{540, 1550.7},
    WeightPoint{550, 1561.5},   WeightPoint{570, 1501.5},   WeightPoint{590, 1395.5},
    WeightPoint{610, 1485.3},   WeightPoint{630, 1434.1},   WeightPoint{650, 1419.9},
    WeightPoint{670, 1392.3},   WeightPoint{690, 1130.0},   WeightPoint{710, 1316.7},
    WeightPoint{718, 1010.3},   WeightPoint{724.4, 1043.2}, WeightPoint{740, 1211.2},
    WeightPoint{752.5, 1193.9}, WeightPoint{757.5, 1175.5}, WeightPoint{762.5, 643.1},
    WeightPoint{767.5, 1030.7}, WeightPoint{780, 1131.1},   WeightPoint{800, 1081.6},
    WeightPoint{816, 849.2},    WeightPoint{823.7, 785.0},  WeightPoint{831.5, 916.4},
    WeightPoint{840, 959.9},    WeightPoint{860, 978.9},    WeightPoint{880, 933.2},
    WeightPoint{905, 748.5},    WeightPoint{915, 667.5},    WeightPoint{925, 690.3},
    WeightPoint{930, 403.6},    WeightPoint{937, 258.3},    WeightPoint{948, 313.6},
    WeightPoint{965, 526.8},    WeightPoint{980, 646.4},    WeightPoint{993.5, 746.8},
    WeightPoint{1040, 690.5},   WeightPoint{1070, 637.5},   WeightPoint{1100, 412.6},
    WeightPoint{1120, 108.9},   WeightPoint{1130, 189.1},   WeightPoint{1137, 132.2},
    WeightPoint{1161, 339.0},   WeightPoint{1180, 460.0},   WeightPoint{1200, 423.6},
    WeightPoint{1235, 480.5},   WeightPoint{1290, 413.1},   WeightPoint{1320, 250.2},
    WeightPoint{1350, 32.5},    WeightPoint{1395, 1.6},     WeightPoint{1442.5, 55.7},
    WeightPoint{1462.5, 105.1}, WeightPoint{1477, 105.5},   WeightPoint{1497, 182.1},
    WeightPoint{1520, 262.2},   WeightPoint{1539, 274.2},   WeightPoint{1558, 275.0},
    WeightPoint{1578, 244.6},   WeightPoint{1592, 247.4},   WeightPoint{1610, 228.7},
    WeightPoint{1630, 244.5},   WeightPoint{1646, 234.8},   WeightPoint{1678, 220.5},
    WeightPoint{1740, 171.5},   WeightPoint{1800, 30.7},    WeightPoint{1860, 2.0},
    WeightPoint{1920, 1.2},     WeightPoint{1960, 21.2},    WeightPoint{1985, 91.1},
    WeightPoint{2005, 26.8},    WeightPoint{2035, 99.5},    WeightPoint{2065, 60.4},
    WeightPoint{2100, 89.1},    WeightPoint{2148, 82.2},    WeightPoint{2198, 71.5},
    WeightPoint{2270, 70.2},    WeightPoint{2360, 62.0},    WeightPoint{2450, 21.2},
    WeightPoint{2494, 18.5},    WeightPoint{2537, 3.2},
};

/// One wavelength of the visible range: the relative power of D65 and V(λ).
struct VisiblePoint {
  double wavelength;
  double power;
  double efficiency;
};

constexpr std::array kVisible{
    VisiblePoint{380, 49.9755, 0.000039}, VisiblePoint{390, 54.6482, 0.000120},
    VisiblePoint{400, 82.7549, 0.000396}, VisiblePoint{410, 91.4860, 0.001210},
    VisiblePoint{420, 93.4318, 0.004000}, VisiblePoint{430, 86.6823, 0.011600},
    VisiblePoint{440, 104.865, 0.023000}, VisiblePoint{450, 117.008, 0.038000},
    VisiblePoint{460, 117.812, 0.060000}, VisiblePoint{470, 114.861, 0.090980},
    VisiblePoint{480, 115.923, 0.139020}, VisiblePoint{490, 108.811, 0.208020},
    VisiblePoint{500, 109.354, 0.323000}, VisiblePoint{510, 107.802, 0.503000},
    VisiblePoint{520, 104.790, 0.710000}, VisiblePoint{530, 107.689, 0.862000},
    VisiblePoint{540, 104.405, 0.954000}, VisiblePoint{550, 104.046, 0.994950},
    VisiblePoint{560, 100.000, 0.995000}, VisiblePoint{570, 96.3342, 0.952000},
    VisiblePoint{580, 95.7880, 0.870000}, VisiblePoint{590, 88.6856, 0.757000},
    VisiblePoint{600, 90.0062, 0.631000}, VisiblePoint{610, 89.5991, 0.503000},
    VisiblePoint{620, 87.6987, 0.381000}, VisiblePoint{630, 83.2886, 0.265000},
    VisiblePoint{640, 83.6992, 0.175000}, VisiblePoint{650, 80.0268, 0.107000},
    VisiblePoint{660, 80.2146, 0.061000}, VisiblePoint{670, 82.2778, 0.032000},
    VisiblePoint{680, 78.2842, 0.017000}, VisiblePoint{690, 69.7213, 0.008210},
    VisiblePoint{700, 71.6091, 0.004102}, VisiblePoint{710, 74.3490, 0.002091},
    VisiblePoint{720, 61.6040, 0.001047}, VisiblePoint{730, 69.8856, 0.000520},
    VisiblePoint{740, 75.0870, 0.000249}, VisiblePoint{750, 63.5927, 0.000120},
    VisiblePoint{760, 46.4182, 0.000060}, VisiblePoint{770, 66.8054, 0.000030},
    VisiblePoint{780, 63.3828, 0.000015},
};

/// What each wavelength counts in a sum, by the trapezoidal rule.
std::vector<WeightPoint> trapezoidal(std::span<const WeightPoint> density) {
  std::vector<WeightPoint> weights(density.begin(), density.end());
  const std::size_t last = density.size() - 1;
  for (std::size_t i = 0; i <= last; ++i) {
    const double from = density[i == 0 ? 0 : i - 1].wavelength;
    const double to = density[std::min(i + 1, last)].wavelength;
    weights[i].value *= (to - from) / 2;
  }
  return weights;
}

std::vector<WeightPoint> visualWeights() {
  std::vector<WeightPoint> density;
  for (const VisiblePoint& point : kVisible) {
    density.push_back({point.wavelength, point.power * point.efficiency});
  }
  return trapezoidal(density);
}

std::vector<WeightPoint> ultravioletWeights() {
  const auto* const end = std::ranges::find_if(
      kSolarIrradiance, [](const WeightPoint& p) { return p.wavelength > kLastUltraviolet; });
  return trapezoidal({kSolarIrradiance.begin(), end});
}

const std::vector<WeightPoint>& weightsOf(Weighting weighting) {
  static const std::vector<WeightPoint> kSolar = trapezoidal(kSolarIrradiance);
  static const std::vector<WeightPoint> kVisual = visualWeights();
  static const std::vector<WeightPoint> kUltraviolet = ultravioletWeights();
  switch (weighting) {
    case Weighting::Solar:
      return kSolar;
    case Weighting::Visual:
      return kVisual;
    case Weighting::Ultraviolet:
      break;
  }
  return kUltraviolet;
}

double interpolated(std::span<const double> wavelengths, std::span<const double> values,
                    double wavelength) {
  const auto right = static_cast<std::size_t>(std::ranges::upper_bound(wavelengths, wavelength) -
                                              wavelengths.begin());
  if (right == 0) {
    return values.front();
  }
  if (right == wavelengths.size()) {
    return values.back();
  }
  const std::size_t left = right - 1;
  const double share = (wavelength - wavelengths[left]) / (wavelengths[right] - wavelengths[left]);
  return values[left] + share * (values[right] - values[left]);
}

}  // namespace

std::optional<double> weightedMean(Weighting weighting, std::span<const double> wavelengths,
                                   std::span<const double> values) {
  if (wavelengths.empty()) {
    return std::nullopt;
  }
  double sum = 0;
  double weight = 0;
  double covered = 0;
  for (const WeightPoint& point : weightsOf(weighting)) {
    sum += point.value * interpolated(wavelengths, values, point.wavelength);
    weight += point.value;
    if (point.wavelength >= wavelengths.front() && point.wavelength <= wavelengths.back()) {
      covered += point.value;
    }
  }
  return covered < kLeastCoverage * weight ? std::nullopt : std::optional(sum / weight);
}

}  // namespace orv
