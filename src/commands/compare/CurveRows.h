// Curves out of the rows of a table, a row a wavelength.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <vector>

#include "commands/compare/Record.h"

namespace orv::commands::compare {

/// Which measurement a row is of.
struct CurveKey {
  std::size_t record = 0;  ///< position
  std::optional<double> angle = {};
  std::optional<std::int32_t> direction = {};
  auto operator<=>(const CurveKey&) const = default;
};

/// Takes rows in any order; those of a measurement mostly follow each other.
class CurveRows {
 public:
  /// Whether each curve is kept in single precision.
  CurveRows(Grids& grids, std::vector<bool> areSingle)
      : grids_(grids), areSingle_(std::move(areSingle)) {}

  /// Begins a point of a measurement, at a wavelength in nm.
  void begin(const CurveKey& key, double wavelength);
  /// A value of it, of the curve at this position.
  void add(std::size_t curve, double value) { current_->curves.values[curve].add(value); }
  /// Gives each record its curves, by ascending angle and direction.
  void giveTo(std::vector<Record>& records);

 private:
  struct Measurement {
    Curves curves;
    std::vector<double> wavelengths;  ///< while it is open
    bool isOpen = true;
  };

  void open(const CurveKey& key);
  void close(Measurement& measurement);
  void closeAll();

  Grids& grids_;
  std::vector<bool> areSingle_;
  std::map<CurveKey, Measurement> all_;
  CurveKey key_;
  Measurement* current_ = nullptr;
  std::vector<Measurement*> open_;
  std::size_t openPoints_ = 0;  ///< which take room, as each has its wavelength
};

}  // namespace orv::commands::compare
