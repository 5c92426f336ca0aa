#include "textfile/PaneWriter.h"

#include <fmt/format.h>

#include "errors/Error.h"
#include "model/ErrorCatalogue.h"
#include "textfile/HeaderField.h"
#include "textfile/Number.h"
#include "textfile/PaneKeys.h"
#include "textfile/Structure.h"

namespace orv::textfile {

namespace {

constexpr float kNotSet = -1.0F;
constexpr std::int32_t kNoNfrcId = -1;

std::string requireName(std::span<const CodeName> names, std::int32_t code, const char* refusal) {
  const auto name = nameOf(names, code);
  if (!name) {
    throw Error(kInvalidCall, refusal);
  }
  return std::string(*name);
}

std::string wavelengthUnit(std::int32_t code) {
  switch (code) {
    case kMicrons:
      return "Microns";
    case kNanometers:
      return "Nanometers";
    default:
      return "Wavenumber";
  }
}

std::string emissivityLine(const GlazingData& pane) {
  const bool front = pane.ef() != kNotSet;
  const bool back = pane.eb() != kNotSet;
  RaiseUnless(front || !back, kEmissivitiesNotSet);
  if (front && back) {
    return fmt::format("{{ Emissivity, front back }} Emis= {} {}\r\n", formatNumber(pane.ef()),
                       formatNumber(pane.eb()));
  }
  return front ? fmt::format("{{ Emissivity, front }} Emis= {}\r\n", formatNumber(pane.ef())) : "";
}

std::string scalars(const GlazingData& pane) {
  std::string text =
      fmt::format("{{ Units, Wavelength Units }} {} {}\r\n", pane.unit() == kIP ? "IP" : "SI",
                  wavelengthUnit(pane.WavelengthUnit()));
  text += fmt::format("{{ Thickness }} {}\r\n", formatNumber(pane.Thickness()));
  text += fmt::format("{{ Conductivity }} {}\r\n", formatNumber(pane.Conductivity()));
  if (pane.TfIR() != kNotSet) {
    text += fmt::format("{{ IR Transmittance }} TIR={}\r\n", formatNumber(pane.TfIR()));
  }
  text += emissivityLine(pane);
  text += "{ }\r\n";
  return text;
}

std::string header(const GlazingData& pane, PaneEntries entries) {
  const auto source = [](std::int32_t code) {
    return requireName(kEmittanceSourceNames, code, "Unknown Emittance Source");
  };
  const auto type = [](std::int32_t code) {
    return requireName(kGlazingTypeNames, code, "Unknown glazing type");
  };
  const auto side = [](std::int32_t code) {
    return requireName(kCoatedSideNames, code, "Unknown coated_side type");
  };
  std::string text;
  const bool all = entries == PaneEntries::all;
  if (!all || pane.ef() != kNotSet) text += headerField("Ef_Source", source(pane.ef_source()));
  if (!all || pane.eb() != kNotSet) text += headerField("Eb_Source", source(pane.eb_source()));
  text += headerField("IGDB_Checksum", fmt::format("{}", pane.IGDBChecksum()));
  text += headerField("Product Name", pane.productname());
  text += headerField("supplier", pane.supplier());
  text +=
      headerField("NFRC ID", pane.NFRC_id() == kNoNfrcId ? "" : fmt::format("{}", pane.NFRC_id()));
  text += headerField("Type", type(pane.GlazingType()));
  text += headerField("Material", pane.material());
  text += headerField("Coating Name", pane.CoatingName());
  text += headerField("Coated Side", side(pane.CoatedSide()));
  text += headerField("Substrate Filename", pane.SubstrateFilename());
  text += headerField("Appearance", pane.Appearance());
  text += headerField("Acceptance", pane.Acceptance());
  text += headerField("Structure", formatStructure(pane));
  return text;
}

std::string ifNotEmpty(std::string_view key, std::string_view value) {
  return value.empty() ? std::string() : headerField(key, value);
}

/// Flags that follow from the type are left out.
std::string flagLines(const GlazingData& pane) {
  GlazingData derived;
  derived.single_layer(pane.GlazingType() == kMonolithic);
  derived.use_estimation(!derived.single_layer());
  std::string text;
  for (const PaneFlagKey& flag : kPaneFlagKeys) {
    const bool value = (pane.*flag.property)();
    if (value != (derived.*flag.property)())
      text += headerField(flag.key, value ? "True" : "False");
  }
  return text;
}

/// The entries that the fixed layout leaves out.
std::string furtherEntries(const GlazingData& pane, std::string_view filename) {
  std::string text;
  if (pane.filename() != filename) text += headerField(kRecordNameKey, pane.filename());
  if (pane.ORV_Angle() != 0) {
    text += headerField("Angle of Incidence", fmt::format("{}", pane.ORV_Angle()));
  }
  text += ifNotEmpty("Description", pane.description());
  text += ifNotEmpty("Coating class", pane.ORV_CoatingClass());
  text += ifNotEmpty("Coating Filename", pane.CoatingFilename());
  text += ifNotEmpty("Film Filename", pane.FilmFilename());
  if (pane.TbiR() != 0) text += headerField(kBackTransmittanceKey, formatNumber(pane.TbiR()));
  text += flagLines(pane);
  for (std::int32_t i = 1; i <= pane.UsesCount(); ++i) text += headerField(kUseKey, pane.uses(i));
  for (std::int32_t i = 1; i <= pane.AvailabilityCount(); ++i) {
    const Availability& entry = *pane.Availability(i);
    text += headerField(kAvailabilityKey,
                        fmt::format("{}; {}", entry.Region(), entry.AlternateProductName()));
  }
  return text;
}

/// With this many decimals, or as many as the number needs.
std::string decimals(float value, int count, PaneEntries entries) {
  std::string text = fmt::format("{:.{}f}", value, count);
  if (entries == PaneEntries::fixed || parseSingle(text) == value) return text;
  return formatNumber(value);
}

std::string dataLines(const GlazingData& pane, PaneEntries entries) {
  if (!pane.SpectralData()) {
    throw Error(kInvalidCall, "The pane has no spectral data, and a pane file cannot be without");
  }
  const SpectralData& spectrum = *pane.SpectralData();
  std::string text;
  for (std::int32_t i = 0; i < spectrum.count(); ++i) {
    text += fmt::format("{}    {}    {}    {}\r\n", decimals(spectrum.wl(i), 3, entries),
                        decimals(spectrum.Tf(i), 4, entries), decimals(spectrum.Rf(i), 4, entries),
                        decimals(spectrum.Rb(i), 4, entries));
  }
  return text;
}

}  // namespace

std::string FormatSpectralText(const GlazingData& pane, PaneEntries entries,
                               std::string_view filename) {
  const std::string further =
      entries == PaneEntries::all ? furtherEntries(pane, filename) : std::string();
  return scalars(pane) + header(pane, entries) + further + dataLines(pane, entries);
}

}  // namespace orv::textfile
