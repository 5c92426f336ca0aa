// A pane as an audit looks at it.
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "commands/RecordReader.h"
#include "optics/Integrator.h"

namespace orv::commands::audit {

/// How much a spectrometer's fraction may be wrong.
inline constexpr double kMeasuringError = 0.01;

/// The units of a spectrum are mistaken: fractions for percent, or a unit of length for another.
enum class UnitFault { none, percent, tooLong, tooShort };

/// The data of a pane at one of its angles.
struct DataSet {
  std::shared_ptr<const GlazingData> pane;
  /// Wavelengths in nm, in the order of the source; none without a spectrum.
  std::vector<double> wavelengths = {};
  /// The same points in order, each wavelength once.
  optics::Spectrum spectrum = {};
  UnitFault units = UnitFault::none;
  /// By each standard, of the spectrum alone: emissivities that the record states are left out.
  /// None without a spectrum, and where its units are mistaken.
  std::vector<optics::Integration> integrations = {};

  bool hasSpectrum() const { return !wavelengths.empty(); }
};

/// A pane with all of its data.
struct AuditedPane {
  std::string identifier;
  std::vector<DataSet> sets = {};
  /// Angles of a 3.0.0 database, as its two tables of details have them; none for other sources.
  std::vector<std::int16_t> integratedAngles = {};
  std::vector<std::int16_t> spectralAngles = {};
  bool isOfOrv3 = false;
  bool storesValues = false;  ///< whether the source has a place for integrated values

  /// The record; there is one set at least.
  const GlazingData& record() const { return *sets.front().pane; }
};

/// Reads panes for an audit. What depends on wavelengths is kept from one to the next.
class PaneAuditReader {
 public:
  /// The session outlives the reader.
  PaneAuditReader(Session& session, const std::shared_ptr<sources::datasource>& node);

  /// Raises what reading the pane raises.
  AuditedPane read(const std::string& identifier);

 private:
  DataSet dataSet(const std::shared_ptr<GlazingData>& pane);

  RecordReader reader_;
  sources::DataTypeCode type_;
  std::vector<optics::Integrator> integrators_;
};

}  // namespace orv::commands::audit
