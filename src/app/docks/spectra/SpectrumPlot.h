// What the spectrum dock plots, apart from how it is drawn.
#pragma once

#include <QPointF>
#include <QRectF>
#include <QString>
#include <array>
#include <memory>
#include <optional>
#include <vector>

#include "app/docks/spectra/WavelengthScale.h"
#include "model/GlazingData.h"
#include "optics/Standard.h"

namespace orv::app {

/// The optical properties that are plotted against wavelength.
enum class SpectralQuantity { transmittance, frontReflectance, backReflectance };

inline constexpr std::array kSpectralQuantities{SpectralQuantity::transmittance,
                                                SpectralQuantity::frontReflectance,
                                                SpectralQuantity::backReflectance};

/// "T", "Rf", "Rb".
QString symbolOf(SpectralQuantity quantity);
/// "Transmittance", "Reflectance, front", "Reflectance, back".
QString nameOf(SpectralQuantity quantity);

/// A record to be plotted. More panes than `kMostCurves` are drawn together, but for those pinned.
struct SpectrumRecord {
  std::shared_ptr<const GlazingData> pane;
  bool isPinned = false;
  QString name{};  ///< in the plot; empty for the pane's own

  template <class Pane>
  SpectrumRecord(std::shared_ptr<Pane> record, bool pinned = false, QString title = {})
      : pane(std::move(record)), isPinned(pinned), name(std::move(title)) {}
};

/// More panes are not told apart by their colours.
inline constexpr int kMostCurves = 12;

/// The spectrum of one pane at one angle of incidence.
struct SpectrumDataSet {
  std::shared_ptr<const GlazingData> record;
  bool isPinned = false;
  bool isInBand = false;  ///< drawn with others as a band from the least to the greatest value
  QString name;           ///< of the pane
  QString label;          ///< the name, with the angle and the direction where the pane is
                          ///< shown at several
  int pane = 0;           ///< position of the pane among those shown
  int angleIndex = 0;     ///< position of the angle among those of its pane
  int angle = 0;          ///< degrees
  int direction = 0;      ///< of incidence; 0 where the record does not tell it
  std::vector<double> wavelengths;  ///< microns, ascending, above 0; empty without a spectrum
  std::array<std::vector<double>, kSpectralQuantities.size()> values;  ///< fractions

  const std::vector<double>& of(SpectralQuantity quantity) const {
    return values[static_cast<std::size_t>(quantity)];
  }
  bool hasSpectrum() const { return !wavelengths.empty(); }
  /// The value between the two nearest points, in a straight line; none beyond the ends.
  std::optional<double> valueAt(SpectralQuantity quantity, double microns) const;
};

/// The data sets of records. Records of the same pane at different angles belong together,
/// wherever they stand in the list; the colours of a plot follow the panes.
std::vector<SpectrumDataSet> dataSetsOf(const std::vector<SpectrumRecord>& records);

/// Everything that decides what a plot shows.
struct SpectrumPlot {
  std::vector<SpectrumDataSet> dataSets;
  std::vector<bool> hidden;  ///< one a data set: switched off by the user
  std::array<bool, kSpectralQuantities.size()> quantities{true, true, true};
  std::optional<int> angle;     ///< the one angle shown; all of them when not set
  bool showsWeighting = false;  ///< that of the standard, behind the curves
  optics::Standard standard = optics::kUsualStandard;
  bool showsDifference = false;  ///< of the two data sets that are shown
  bool showsMean = false;        ///< with a band, of those that are shown
  WavelengthScale scale;
  /// The part shown: x in positions on the scale, y in fractions, y growing upwards.
  QRectF range;
  bool zoomed = false;  ///< the range is the user's choice; else it is the full one

  /// Takes other records. A range that the user chose is kept as far as they reach into it.
  void setRecords(const std::vector<SpectrumRecord>& records);

  bool shows(SpectralQuantity quantity) const {
    return quantities[static_cast<std::size_t>(quantity)];
  }
  bool showsDataSet(std::size_t index) const;
  bool hasSpectra() const;
  bool hasBand() const;
  int paneCount() const;
  std::vector<int> angles() const;  ///< those of the data sets, ascending, each once

  /// The range that holds all shown data, and their difference; 0 to 1 at least in y. Of no data:
  /// 0.3 to 2.5 microns.
  QRectF fullRange() const;
  /// Shows the full range again, unless the user chose another.
  void fit();
};

}  // namespace orv::app
