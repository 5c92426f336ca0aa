#include "optics/Spectrum.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <numeric>

#include "optics/Wavelength.h"

namespace orv::optics {

namespace {

constexpr double kWhole = 1.0001;  // with what rounding adds

/// The points by their numbers, ascending in wavelength.
std::vector<std::size_t> order(const std::vector<double>& wavelengths) {
  std::vector<std::size_t> numbers(wavelengths.size());
  std::iota(numbers.begin(), numbers.end(), 0U);
  std::ranges::stable_sort(numbers, {}, [&](std::size_t i) { return wavelengths[i]; });
  return numbers;
}

bool isNumber(const Spectrum& spectrum, std::size_t i) {
  return std::isfinite(spectrum.wavelengths[i]) &&
         std::ranges::all_of(spectrum.curves,
                             [i](const auto& curve) { return std::isfinite(curve[i]); });
}

/// Adds the mean of `count` points, which are at one wavelength.
void addMean(Spectrum& to, const Spectrum& from, const std::size_t* first, std::size_t count) {
  to.wavelengths.push_back(from.wavelengths[*first]);
  for (std::size_t c = 0; c < from.curves.size(); ++c) {
    double sum = 0;
    for (std::size_t i = 0; i < count; ++i) sum += from.curves[c][first[i]];
    to.curves[c].push_back(sum / static_cast<double>(count));
  }
}

/// Wavelengths at which there are several points.
class Doubled {
 public:
  void add(double wavelength, std::size_t points) {
    if (count_++ >= kMost) return;
    text_ += fmt::format("{}{} points at {} nm", text_.empty() ? "" : ", ", points, wavelength);
  }

  void remark(std::vector<std::string>& remarks) const {
    if (count_ == 0) return;
    const std::string more =
        count_ > kMost ? fmt::format(", several at {} more", count_ - kMost) : "";
    remarks.push_back(text_ + more + ", of which the mean is taken");
  }

 private:
  static constexpr std::size_t kMost = 3;  ///< are named
  std::size_t count_ = 0;
  std::string text_;
};

void rearrange(Spectrum& spectrum) {
  std::vector<std::size_t> numbers = order(spectrum.wavelengths);
  if (std::erase_if(numbers, [&](std::size_t i) { return !isNumber(spectrum, i); }) > 0) {
    spectrum.remarks.emplace_back("points that are no numbers are left out");
  }
  Spectrum result;
  result.remarks = std::move(spectrum.remarks);
  Doubled doubled;
  for (std::size_t i = 0, next = 0; i < numbers.size(); i = next) {
    const double wavelength = spectrum.wavelengths[numbers[i]];
    while (next < numbers.size() && spectrum.wavelengths[numbers[next]] == wavelength) ++next;
    addMean(result, spectrum, &numbers[i], next - i);
    if (next - i > 1) doubled.add(wavelength, next - i);
  }
  doubled.remark(result.remarks);
  spectrum = std::move(result);
}

bool isOrdered(const Spectrum& spectrum) {
  const auto& all = spectrum.wavelengths;
  if (std::ranges::adjacent_find(all, std::ranges::greater_equal()) != all.end()) return false;
  const auto sum = [](const auto& values) {
    return std::accumulate(values.begin(), values.end(), 0.0);
  };
  return std::isfinite(sum(all)) && std::ranges::all_of(spectrum.curves, [&](const auto& curve) {
           return std::isfinite(sum(curve));
         });
}

}  // namespace

void putInOrder(Spectrum& spectrum) {
  const bool isOutside = std::ranges::any_of(spectrum.curves, [](const auto& curve) {
    return std::ranges::any_of(curve, [](double value) { return value < 0 || value > kWhole; });
  });
  if (isOutside) spectrum.remarks.emplace_back("values outside 0 to 1");
  if (!isOrdered(spectrum)) rearrange(spectrum);
}

Spectrum spectrumOf(const SpectralData& data) {
  Spectrum spectrum;
  const auto count = static_cast<std::size_t>(data.count());
  spectrum.wavelengths.resize(count);
  for (auto& curve : spectrum.curves) curve.resize(count);
  auto& wavelengths = spectrum.wavelengths;
  data.GetDataArraysAsDoubles(kNanometers, wavelengths, spectrum[Curve::Tf], spectrum[Curve::Tb],
                              spectrum[Curve::Rf], spectrum[Curve::Rb]);
  for (double& wavelength : wavelengths) wavelength = rounded(wavelength);
  putInOrder(spectrum);
  return spectrum;
}

}  // namespace orv::optics
