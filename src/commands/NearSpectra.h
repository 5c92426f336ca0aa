// Spectra that are nowhere further apart than a tolerance, found without comparing all with all.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

namespace orv::commands {

/// The means of three curves, which tell spectra apart at first.
using CurveMeans = std::array<double, 3>;

/// Curves that are nowhere further apart than the tolerance have means that are no further apart
/// either. So spectra that are alike lie in the same cell of this width, or in two that touch.
/// `Place` parts spectra that are never alike: by their wavelengths and their angle.
template <class Place, class Item>
class NearSpectra {
 public:
  explicit NearSpectra(double tolerance) : width_(std::max(tolerance + kRounding, 2 * kRounding)) {}

  void add(const Place& place, const CurveMeans& means, Item item) {
    cells_[{place, cellOf(means)}].push_back(std::move(item));
  }

  /// Of one that was added.
  void remove(const Place& place, const CurveMeans& means, const Item& item) {
    std::erase(cells_.at({place, cellOf(means)}), item);
  }

  /// Shows those that may be alike, until `look` is true of one; whether it was.
  template <class Look>
  bool find(const Place& place, const CurveMeans& means, Look look) const {
    const Cell own = cellOf(means);
    for (std::int64_t neighbour = 0; neighbour < kNeighbours; ++neighbour) {
      Cell cell = own;
      std::int64_t step = neighbour;
      for (std::int64_t& mean : cell) {
        mean += step % 3 - 1;
        step /= 3;
      }
      const auto known = cells_.find({place, cell});
      if (known == cells_.end()) continue;
      for (const Item& item : known->second) {
        if (look(item)) return true;
      }
    }
    return false;
  }

 private:
  using Cell = std::array<std::int64_t, 3>;
  static constexpr std::int64_t kNeighbours = 27;  // with itself
  static constexpr double kRounding = 1e-7;        // of 32-bit floats

  Cell cellOf(const CurveMeans& means) const {
    Cell cell{};
    for (std::size_t i = 0; i < means.size(); ++i) cell[i] = std::llround(means[i] / width_);
    return cell;
  }

  double width_;
  std::map<std::pair<Place, Cell>, std::vector<Item>> cells_;
};

}  // namespace orv::commands
