#include "commands/compare/CurveRows.h"

#include <algorithm>
#include <numeric>

#include "optics/Wavelength.h"

namespace orv::commands::compare {

void CurveRows::begin(const CurveKey& key, double wavelength) {
  if (current_ == nullptr || key != key_) open(key);
  current_->wavelengths.push_back(optics::rounded(wavelength));
  ++openPoints_;
}

void CurveRows::open(const CurveKey& key) {
  constexpr std::size_t kMostPoints = std::size_t{1} << 22;
  if (openPoints_ > kMostPoints) closeAll();
  const auto [place, isNew] = all_.try_emplace(key);
  Measurement& measurement = place->second;
  current_ = &measurement;
  key_ = key;
  if (isNew) {
    measurement.curves.angle = key.angle;
    measurement.curves.direction = key.direction;
    for (const bool isSingle : areSingle_) measurement.curves.values.emplace_back(isSingle);
  } else if (!measurement.isOpen) {
    measurement.wavelengths = *measurement.curves.grid;
    measurement.isOpen = true;
  } else {
    return;
  }
  open_.push_back(current_);
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
  measurement.isOpen = false;
}

void CurveRows::closeAll() {
  for (Measurement* measurement : open_) close(*measurement);
  open_.clear();
  openPoints_ = 0;
}

void CurveRows::giveTo(std::vector<Record>& records) {
  closeAll();
  current_ = nullptr;
  for (auto& [key, measurement] : all_) {
    records[key.record].curves.push_back(std::move(measurement.curves));
  }
  all_.clear();
}

}  // namespace orv::commands::compare
