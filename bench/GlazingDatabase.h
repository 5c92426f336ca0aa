// A generated database that the programs open as the International Glazing Database.
#pragma once

#include <memory>
#include <string>

#include "store/Connection.h"

namespace orv::bench {

inline constexpr int kWavelengths = 420;
/// Wavelength in micrometres of the sample at `place` in a glazing's curve.
inline float wavelengthAt(int place) {
  return 0.3F + 0.005F * static_cast<float>(place);
}
/// Transmittance, front or back reflectance (`which` 0, 1, 2) of a glazing there.
float sampleAt(int glazing, int place, int which);

std::string fileNameOf(int glazing);
std::string productNameOf(int glazing);

/// A database with the tables, indexes and the saved query of the IGDB, without a password, and
/// with a primary key over the spectral rows. The full size is 6,000 glazings.
class GlazingDatabase {
 public:
  /// Makes the file anew at `path`, without glazings.
  explicit GlazingDatabase(const std::string& path);

  /// Adds one glazing and its curve in one durable commit.
  void addGlazing();
  /// Adds so many glazings, many in a commit.
  void addGlazings(int count);

  int count() const { return count_; }

 private:
  void addProperties();
  void addCurve();

  std::shared_ptr<store::Connection> connection_;
  int count_ = 0;  ///< of glazings
};

}  // namespace orv::bench
