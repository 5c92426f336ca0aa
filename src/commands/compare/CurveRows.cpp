#include "commands/compare/CurveRows.h"

#include <algorithm>
#include <numeric>

#include "optics/Wavelength.h"

namespace orv::commands::compare {

void CurveRows::begin(const CurveKey& key, double wavelength) {
  if (current_ == nullptr || key != key_) open(key);
  current_->wavelengths.push_back(optics::rounded(wavelength));
}

void CurveRows::open(const CurveKey& key) {
  if (current_ != nullptr) close(*current_);
  const auto [place, isNew] = all_.try_emplace(key);
  current_ = &place->second;
  key_ = key;
  Curves& curves = current_->curves;
  if (isNew) {
    curves.angle = key.angle;
    curves.direction = key.direction;
    for (const bool isSingle : areSingle_) curves.values.emplace_back(isSingle);
    return;
  }
  current_->wavelengths = *curves.grid;
  for (Samples& each : curves.values) each.expand(current_->wavelengths.size());
}

void CurveRows::close(Measurement& measurement) {
  auto& wavelengths = measurement.wavelengths;
  if (!std::ranges::is_sorted(wavelengths)) {
    std::vector<std::size_t> order(wavelengths.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::stable_sort(order, {}, [&](std::size_t i) { return wavelengths[i]; });
    for (Samples& each : measurement.curves.values) each.arrange(order);
    std::ranges::sort(wavelengths);
  }
  measurement.curves.grid = grids_.of(std::move(wavelengths));
  wavelengths = {};
  for (Samples& each : measurement.curves.values) each.compact();
}

void CurveRows::giveTo(std::vector<Record>& records) {
  if (current_ != nullptr) close(*current_);
  current_ = nullptr;
  for (auto& [key, measurement] : all_) {
    records[key.record].curves.push_back(std::move(measurement.curves));
  }
  all_.clear();
}

}  // namespace orv::commands::compare
