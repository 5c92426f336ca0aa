// A database file of the size and shape of the International Glazing Database.
#pragma once

#include <memory>
#include <string>

#include "store/Connection.h"

namespace orv::bench {

inline constexpr int kWavelengths = 420;
/// Wavelength in micrometres of the sample at `place` in a pane's curve.
inline float wavelengthAt(int place) {
  return 0.3f + 0.005f * static_cast<float>(place);
}
/// Transmittance, front or back reflectance (`which` 0, 1, 2) of a pane there.
float sampleAt(int pane, int place, int which);

/// A database of panes and their spectra, written to like the program does: the rows of a pane's
/// curve in one durable commit.
class GlazingFile {
 public:
  /// Makes the file anew at `path`, without panes.
  explicit GlazingFile(const std::string& path);

  store::Connection& connection() { return *connection_; }
  int panes() const { return panes_; }
  /// Adds one pane and its curve in one commit.
  void addPane();
  /// Adds that many panes, many in a commit.
  void addPanes(int count);

 private:
  std::shared_ptr<store::Connection> connection_;
  int panes_ = 0;
};

}  // namespace orv::bench
