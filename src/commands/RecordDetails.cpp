#include "commands/RecordDetails.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <chrono>
#include <span>

#include "commands/NumberText.h"
#include "commands/StoredValues.h"
#include "model/IntegratedColumns.h"

namespace orv::commands {

namespace {

std::string words(const std::string& text) {
  return text;
}
std::string words(bool value) {
  return value ? "yes" : "no";
}
std::string words(std::int32_t value) {
  return fmt::format("{}", value);
}
std::string words(float value) {
  return fmt::format("{}", value);
}
std::string words(double value) {
  return numberText(value);
}

std::string words(const OptionalDate& date) {
  if (!date) return {};
  const auto seconds = date->time_since_epoch().count();
  return fmt::format("{:%Y-%m-%d %H:%M:%S}", fmt::gmtime(static_cast<std::time_t>(seconds)));
}

/// The text of a code; the number of one that has none.
std::string words(std::span<const CodeName> names, std::int32_t code) {
  const auto name = nameOf(names, code);
  return name ? std::string(*name) : fmt::format("{}", code);
}

std::string sourceOfEmissivity(std::int32_t code) {
  return code == kUnknownSource ? "unknown" : words(kEmittanceSourceNames, code);
}

template <class T>
store::Value rawValue(const T& value) {
  return value;
}
store::Value rawValue(const OptionalDate& date) {
  return date ? store::Value(words(date)) : store::Value();
}

/// The fields gathered so far.
class Fields {
 public:
  /// The section of the fields that are added from now on.
  void begin(std::string section) { section_ = std::move(section); }

  template <class T>
  void add(const std::string& name, const T& value, const char* unit = "") {
    fields_.push_back({section_, name, words(value), unit, rawValue(value)});
  }
  void addText(const std::string& name, std::string value) {
    fields_.push_back({section_, name, value, "", value});
  }
  /// A number that the source does not give, with a word for that.
  void addMissing(const std::string& name, const std::string& word) {
    fields_.push_back({section_, name, word, "", store::Value()});
  }
  /// An emissivity of -1 is not set.
  void addEmissivity(const std::string& name, float value) {
    value >= 0 ? add(name, value) : addMissing(name, "not set");
  }
  /// A number that is 0 where a source does not hold it.
  void addUnlessZero(const char* name, float value) {
    if (value != 0) add(name, value);
  }
  std::vector<DetailField> take() { return std::move(fields_); }

 private:
  std::string section_;
  std::vector<DetailField> fields_;
};

void addIdentity(Fields& fields, const GlazingData& pane) {
  fields.begin("Pane");
  fields.add("id", pane.id());
  fields.add("name", pane.filename());
  fields.add("product name", pane.productname());
  fields.add("supplier", pane.supplier());
  fields.add("group", pane.group());
  fields.add("NFRC id", pane.NFRC_id());
  fields.add("description", pane.description());
  fields.add("appearance", pane.Appearance());
  fields.add("acceptance", pane.Acceptance());
  fields.add("file date", pane.FileDate());
  fields.add("IGDB checksum", pane.IGDBChecksum());
  fields.add("IGDB checksum date", pane.IGDBChecksumDate());
  fields.add("hidden", pane.Hidden());
}

/// `prefix` tells the values of a component from the pane's own.
void addMaterial(Fields& fields, const GlazingData& pane, const std::string& prefix = {}) {
  const bool si = pane.unit() == kSI;
  fields.add(prefix + "thickness", pane.Thickness(), si ? "mm" : "in");
  fields.add(prefix + "conductivity", pane.Conductivity(), si ? "W/(m·K)" : "Btu/(h·ft·°F)");
}

void addScalars(Fields& fields, const GlazingData& pane) {
  fields.begin("Thermal values");
  addMaterial(fields, pane);
  fields.add("infrared transmittance front", pane.TfIR());
  fields.add("infrared transmittance back", pane.TbiR());
  fields.addEmissivity("emissivity front", pane.ef());
  fields.addText("source of emissivity front", sourceOfEmissivity(pane.ef_source()));
  fields.addEmissivity("emissivity back", pane.eb());
  fields.addText("source of emissivity back", sourceOfEmissivity(pane.eb_source()));
}

void addComposition(Fields& fields, const GlazingData& pane) {
  fields.begin("Composition");
  fields.addText("type", words(kGlazingTypeNames, pane.GlazingType()));
  fields.add("material", pane.material());
  fields.add("coating name", pane.CoatingName());
  fields.add("coating id", pane.CoatingID());
  fields.addText("coated side", pane.CoatedSide() == kSideNotSet
                                    ? "not set"
                                    : words(kCoatedSideNames, pane.CoatedSide()));
  fields.add("coating file", pane.CoatingFilename());
  fields.add("substrate file", pane.SubstrateFilename());
  fields.add("laminate file", pane.LaminateFilename());
  fields.add("laminate material", pane.LaminateMaterial());
  fields.add("film file", pane.FilmFilename());
}

/// The layers from front to back.
void addLayers(Fields& fields, const GlazingData& pane) {
  const char* unit = pane.unit() == kSI ? "mm" : "in";
  fields.begin("Layers");
  for (std::int32_t i = 0; i < pane.StructureCount(); ++i) {
    const GlazingStructure& layer = *pane.structure(i);
    const std::string name = fmt::format("layer {} ", i + 1);
    fields.add(name + "file", layer.filename());
    fields.add(name + "thickness", layer.Thickness(), unit);
    fields.add(name + "flipped", layer.Flipped());
    if (!layer.HasReference()) continue;
    fields.add(name + "product name", layer.FileGlazingData()->productname());
    fields.add(name + "supplier", layer.FileGlazingData()->supplier());
  }
}

/// The substrate's own record, once it has been read.
void addSubstrate(Fields& fields, const GlazingData& pane) {
  if (!pane.HasSubstrate()) return;
  const GlazingData& substrate = *pane.SubstrateReference();
  fields.begin("Substrate");
  fields.add("substrate name", substrate.filename());
  fields.add("substrate product name", substrate.productname());
  fields.add("substrate supplier", substrate.supplier());
  fields.addText("substrate type", words(kGlazingTypeNames, substrate.GlazingType()));
  addMaterial(fields, substrate, "substrate ");
}

void addUses(Fields& fields, const GlazingData& pane) {
  fields.begin("Uses and availability");
  for (std::int32_t i = 1; i <= pane.UsesCount(); ++i) fields.add("use", pane.uses(i));
  for (std::int32_t i = 1; i <= pane.AvailabilityCount(); ++i) {
    const auto& entry = *pane.Availability(i);
    fields.addText("availability", entry.Region() + ": " + entry.AlternateProductName());
  }
}

/// The values calculated from the spectrum that only some sources hold.
void addRareIntegrated(Fields& fields, const GlazingData& pane) {
  fields.addUnlessZero("calculated infrared transmittance", pane.Precalc_TfIR());
  fields.addUnlessZero("calculated emissivity front", pane.Precalc_ef());
  fields.addUnlessZero("calculated emissivity back", pane.Precalc_eb());
  fields.addUnlessZero("CIE X of transmission", pane.Precalc_TCIEX());
  fields.addUnlessZero("CIE Y of transmission", pane.Precalc_TCIEY());
  fields.addUnlessZero("CIE Z of transmission", pane.Precalc_TCIEZ());
  fields.addUnlessZero("CIE X of front reflection", pane.Precalc_RfCIEX());
  fields.addUnlessZero("CIE Y of front reflection", pane.Precalc_RfCIEY());
  fields.addUnlessZero("CIE Z of front reflection", pane.Precalc_RfCIEZ());
  fields.addUnlessZero("damage-weighted transmittance", pane.Precalc_Tdw());
  fields.addUnlessZero("skin protection transmittance", pane.Precalc_TSPF());
  if (!pane.Precalc_StandardName().empty()) fields.add("standard", pane.Precalc_StandardName());
  if (pane.Precalc_Time()) fields.add("calculated", pane.Precalc_Time());
}

void addIntegrated(Fields& fields, const GlazingData& pane) {
  fields.begin("Integrated values");
  if (!hasIntegratedData(pane)) {
    fields.addText("integrated values", "none at this angle");
    return;
  }
  for (const IntegratedColumn& value : kIntegratedColumns) {
    if (storedValue(pane, value.name)) {
      fields.add(value.title, (pane.*value.pane)());
    } else {
      fields.addMissing(value.title, "not stored");
    }
  }
  addRareIntegrated(fields, pane);
}

void addOrvFields(Fields& fields, const GlazingData& pane) {
  fields.begin("ORV database");
  fields.add("angle of incidence", std::int32_t{pane.ORV_Angle()}, "°");
  fields.add("direction", pane.ORV_Direction());
  fields.add("database emissivity front", pane.ORV_Emissivity_front());
  fields.add("database emissivity back", pane.ORV_Emissivity_back());
  fields.add("coating class", pane.ORV_CoatingClass());
  fields.add("frozen", pane.ORV_Frozen());
  fields.add("single layer", pane.single_layer());
  fields.add("spectral pane", pane.spectral_pane());
  fields.add("with and without film", pane.with_and_without_film());
  fields.add("film on outdoor side", pane.film_outdoor_side());
  fields.add("data at 0, 30 and 60 degrees", pane.Use_0_30_60());
  fields.add("use estimation", pane.use_estimation());
}

void addSpectrumExtent(Fields& fields, const GlazingData& pane) {
  fields.begin("Spectrum");
  const auto& spectrum = pane.SpectralData();
  const std::int32_t count = spectrum ? spectrum->count() : 0;
  fields.add("spectral points", count);
  if (count == 0) return;
  fields.add("first wavelength", spectrum->ConvertedWl(0, kNanometers), "nm");
  fields.add("last wavelength", spectrum->ConvertedWl(count - 1, kNanometers), "nm");
  fields.addText("spectrum of the substrate",
                 pane.HasSubstrate() && pane.SubstrateReference()->SpectralData() ? "yes" : "no");
}

}  // namespace

std::vector<DetailField> paneDetails(const GlazingData& pane) {
  Fields fields;
  addIdentity(fields, pane);
  addScalars(fields, pane);
  addComposition(fields, pane);
  addLayers(fields, pane);
  addSubstrate(fields, pane);
  addUses(fields, pane);
  addOrvFields(fields, pane);
  addIntegrated(fields, pane);
  addSpectrumExtent(fields, pane);
  return fields.take();
}

std::vector<DetailField> frameDetails(const FrameDataClass& frame) {
  Fields fields;
  fields.begin("Frame");
  fields.add("id", frame.id());
  fields.add("name", frame.name());
  fields.add("product name", frame.productname());
  fields.add("supplier", frame.supplier());
  fields.add("group", frame.group());
  fields.add("frame type", frame.frametype());
  fields.add("U-value", frame.u_value(), "W/(m²·K)");
  fields.add("width", frame.width(), "m");
  if (frame.pictureText().empty()) {
    fields.add("picture", static_cast<std::int32_t>(frame.picture().size()), "bytes");
  } else {
    fields.add("picture", frame.pictureText());
  }
  fields.add("info", frame.Info());
  return fields.take();
}

}  // namespace orv::commands
