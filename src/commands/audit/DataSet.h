// Panes and shadings as an audit looks at them.
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

/// The data of a pane at one of its angles, or those of a shading.
struct DataSet {
  std::shared_ptr<const GlazingData> pane;  ///< of a shading one that holds nothing
  /// Wavelengths in nm, in the order of the source; none without a spectrum.
  std::vector<double> wavelengths = {};
  /// The same points in order, each wavelength once.
  optics::Spectrum spectrum = {};
  UnitFault units = UnitFault::none;
  /// There are rows, but of several angles, which version 2.0.1 does not tell apart: no spectrum.
  bool mixesAngles = false;
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

struct AuditedShading {
  std::shared_ptr<const ShadingDataClass> record;
  /// The light that goes on as a beam and the scattered light, together.
  DataSet data;
  bool isOfOrv2 = false;
};

/// Reads records for an audit. What depends on wavelengths is kept from one to the next.
class AuditReader {
 public:
  /// The session outlives the reader.
  AuditReader(Session& session, const std::shared_ptr<sources::datasource>& node);

  // These raise what reading the record raises.
  AuditedPane pane(const std::string& identifier);
  AuditedShading shading(const std::string& identifier);
  std::shared_ptr<const FrameDataClass> frame(const std::string& identifier);

  /// Whether a product that cannot be read is a shading, which is no fault of it.
  bool isShadingProduct(const std::string& identifier) const {
    return reader_.isShadingProduct(identifier);
  }

 private:
  DataSet dataSet(const std::shared_ptr<GlazingData>& pane);
  void integrate(DataSet& set);

  RecordReader reader_;
  sources::DataTypeCode type_;
  std::vector<optics::Integrator> integrators_;
};

}  // namespace orv::commands::audit
