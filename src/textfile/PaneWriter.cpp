#include "textfile/PaneWriter.h"

#include <fmt/format.h>

#include "errors/Error.h"
#include "model/ErrorCatalogue.h"
#include "textfile/HeaderField.h"
#include "textfile/Number.h"
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

std::string header(const GlazingData& pane) {
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
  text += headerField("Ef_Source", source(pane.ef_source()));
  text += headerField("Eb_Source", source(pane.eb_source()));
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

std::string dataLines(const GlazingData& pane) {
  if (!pane.SpectralData()) {
    throw Error(kInvalidCall, "The pane has no spectral data, and a pane file cannot be without");
  }
  const SpectralData& spectrum = *pane.SpectralData();
  std::string text;
  for (std::int32_t i = 0; i < spectrum.count(); ++i) {
    text += fmt::format("{:.3f}    {:.4f}    {:.4f}    {:.4f}\r\n", spectrum.wl(i), spectrum.Tf(i),
                        spectrum.Rf(i), spectrum.Rb(i));
  }
  return text;
}

}  // namespace

std::string FormatSpectralText(const GlazingData& pane) {
  return scalars(pane) + header(pane) + dataLines(pane);
}

}  // namespace orv::textfile
