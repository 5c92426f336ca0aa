#include "commands/audit/DataSet.h"

#include <algorithm>

#include "optics/Wavelength.h"

namespace orv::commands::audit {

namespace DataType = sources::DataType;

namespace {

/// No spectrometer measures fractions as large.
constexpr double kPercent = 1.2;
/// Glazing is measured from 0.2 to 50 µm. Wavelengths beyond are of another unit; nm.
constexpr double kShortest = 50;
constexpr double kLongest = 100'000;

/// One point alone is a slip of the decimal; of a curve in percent most points are too large, but
/// for those where nothing passes.
bool isInPercent(const std::vector<double>& curve) {
  const auto zeros = std::ranges::count(curve, 0.0);
  const auto large = std::ranges::count_if(curve, [](double value) { return value > kPercent; });
  return 2 * large > std::ssize(curve) - zeros;
}

UnitFault unitFaultOf(const optics::Spectrum& spectrum) {
  if (spectrum.wavelengths.empty()) return UnitFault::none;
  if (spectrum.wavelengths.back() > kLongest) return UnitFault::tooLong;
  if (spectrum.wavelengths.front() < kShortest) return UnitFault::tooShort;
  return std::ranges::any_of(spectrum.curves, isInPercent) ? UnitFault::percent : UnitFault::none;
}

std::vector<double> wavelengthsOf(const SpectralData& data) {
  std::vector<double> wavelengths;
  for (std::int32_t i = 0; i < data.count(); ++i) {
    wavelengths.push_back(optics::rounded(data.ConvertedWl(i, kNanometers)));
  }
  return wavelengths;
}

}  // namespace

AuditReader::AuditReader(Session& session, const std::shared_ptr<sources::datasource>& node)
    : reader_(session, node), type_(node->DataType()) {
  for (const auto& standard : optics::kStandardNames) integrators_.emplace_back(standard.standard);
}

AuditedPane AuditReader::pane(const std::string& identifier) {
  AuditedPane pane{.identifier = identifier,
                   .isOfOrv3 = type_ == DataType::orv3Panes,
                   .storesValues = type_ == DataType::orv3Panes || type_ == DataType::orv2Panes};
  std::vector<std::int16_t> angles;
  if (pane.isOfOrv3) {
    pane.integratedAngles = reader_.angles(identifier);
    pane.spectralAngles = reader_.spectralAngles(identifier);
    angles = pane.integratedAngles;
    angles.insert(angles.end(), pane.spectralAngles.begin(), pane.spectralAngles.end());
  } else {
    angles = reader_.dataAngles(identifier);
  }
  if (angles.empty()) angles.push_back(0);
  for (std::size_t i = 0; i < angles.size(); ++i) {
    const auto end = angles.begin() + static_cast<std::ptrdiff_t>(i);
    if (std::find(angles.begin(), end, angles[i]) != end) continue;
    pane.sets.push_back(dataSet(reader_.pane(identifier, angles[i])));
  }
  return pane;
}

DataSet AuditReader::dataSet(const std::shared_ptr<GlazingData>& pane) {
  DataSet set{.pane = pane};
  const auto& data = pane->SpectralData();
  if (!data) return set;
  set.mixesAngles = data->MixesAngles();
  if (set.mixesAngles) return set;
  set.wavelengths = wavelengthsOf(*data);
  set.spectrum = optics::spectrumOf(*data);
  integrate(set);
  return set;
}

AuditedShading AuditReader::shading(const std::string& identifier) {
  AuditedShading shading{.record = reader_.shading(identifier),
                         .data = {.pane = std::make_shared<GlazingData>()},
                         .isOfOrv2 = type_ == DataType::orv2Shadings};
  DataSet& set = shading.data;
  for (const ShadingSpectralPoint& at : shading.record->spectrum()) {
    set.wavelengths.push_back(optics::rounded(at.wavelength));
    set.spectrum[Curve::Tf].push_back(at.T_out_BB + at.T_out_BD);
    set.spectrum[Curve::Tb].push_back(at.T_in_BB + at.T_in_BD);
    set.spectrum[Curve::Rf].push_back(at.R_out_BB + at.R_out_BD);
    set.spectrum[Curve::Rb].push_back(at.R_in_BB + at.R_in_BD);
  }
  set.spectrum.wavelengths = set.wavelengths;
  optics::putInOrder(set.spectrum);
  if (set.spectrum.wavelengths.empty()) set.wavelengths.clear();  // points that are no numbers
  integrate(set);
  return shading;
}

std::shared_ptr<const FrameDataClass> AuditReader::frame(const std::string& identifier) {
  return reader_.frame(identifier);
}

void AuditReader::integrate(DataSet& set) {
  set.units = unitFaultOf(set.spectrum);
  if (!set.hasSpectrum() || set.units != UnitFault::none) return;
  const auto surfaces = optics::surfacesOf(*set.pane);
  for (auto& integrator : integrators_) {
    set.integrations.push_back(integrator.integrate(set.spectrum, surfaces));
  }
}

}  // namespace orv::commands::audit
