#include "textfile/PaneHeader.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <array>
#include <cmath>
#include <limits>

#include "errors/Error.h"
#include "model/Text.h"
#include "textfile/HeaderEntry.h"
#include "textfile/PaneKeys.h"
#include "textfile/Structure.h"

namespace orv::textfile {

namespace {

/// The writer leaves out the NFRC number of a pane that has none.
constexpr std::int32_t kNoNfrcId = -1;

std::int32_t emittanceSource(const HeaderEntry& entry) {
  return codeOf(kEmittanceSourceNames, entry.value).value_or(kUnknownSource);
}

/// "It is one of Front, Back, Both."
std::string choiceOf(std::span<const CodeName> names) {
  std::vector<std::string_view> texts;
  for (const CodeName& name : names) texts.push_back(name.text);
  return fmt::format("It is one of {}.", fmt::join(texts, ", "));
}

std::int32_t requireCode(const HeaderEntry& entry, std::span<const CodeName> names,
                         std::string_view explanation) {
  const auto code = codeOf(names, entry.value);
  if (!code) {
    raiseExplained(kInvalidCall, explanation, entry.place.told(entry.value, choiceOf(names)));
  }
  return *code;
}

/// Whole degrees, halves to the even one.
std::int16_t angleOf(const HeaderEntry& entry) {
  const double degrees = std::nearbyint(entry.number());
  if (std::abs(degrees) > std::numeric_limits<std::int16_t>::max()) {
    raiseAt(entry.place, kOverflow, fmt::format("{} '{}' is too large", entry.key, entry.value));
  }
  return static_cast<std::int16_t>(degrees);
}

using Entry = const HeaderEntry&;

/// A key that fills a property with its text as it stands.
template <auto member>
void setText(GlazingData& pane, Entry entry) {
  (pane.*member)(std::string(entry.value));
}

bool flagOf(Entry entry) {
  const bool isTrue = equalIgnoringCase(entry.value, "True");
  if (!isTrue && !equalIgnoringCase(entry.value, "False")) {
    raiseAt(entry.place, kTypeMismatch,
            fmt::format("{} '{}' is neither True nor False", entry.key, entry.value));
  }
  return isTrue;
}

template <auto member>
void setFlag(GlazingData& pane, Entry entry) {
  (pane.*member)(flagOf(entry));
}

float quantityOf(Entry entry) {
  const double value = entry.number();
  if (!(value >= 0) || value > std::numeric_limits<float>::max()) {
    raiseAt(entry.place, kInvalidCall,
            fmt::format("{} '{}' is negative or too large", entry.key, entry.value));
  }
  return static_cast<float>(value);
}

/// "Region; name of the product there"
void addAvailability(GlazingData& pane, Entry entry) {
  const auto end = entry.value.find(';');
  auto availability = std::make_shared<Availability>();
  availability->Region(std::string(trimmed(entry.value.substr(0, end))));
  if (end != std::string_view::npos) {
    availability->AlternateProductName(std::string(trimmed(entry.value.substr(end + 1))));
  }
  pane.AddAvailability(availability);
}

struct HeaderKey {
  std::string_view key;
  void (*set)(GlazingData& pane, Entry entry);
};

constexpr std::array kHeaderKeys{
    HeaderKey{"Product Name", setText<&GlazingData::productname>},
    HeaderKey{"Manufacturer", setText<&GlazingData::supplier>},
    HeaderKey{"supplier", setText<&GlazingData::supplier>},  // the writer's label
    HeaderKey{"NFRC ID",
              [](GlazingData& pane, Entry e) { pane.NFRC_id(e.wholeNumber(kNoNfrcId)); }},
    HeaderKey{"Ef_Source", [](GlazingData& pane, Entry e) { pane.ef_source(emittanceSource(e)); }},
    HeaderKey{"Eb_Source", [](GlazingData& pane, Entry e) { pane.eb_source(emittanceSource(e)); }},
    HeaderKey{"IGDB_Checksum",
              [](GlazingData& pane, Entry e) { pane.IGDBChecksum(e.wholeNumber()); }},
    HeaderKey{"Type",
              [](GlazingData& pane, Entry e) {
                pane.GlazingType(requireCode(e, kGlazingTypeNames, "Glazing Type not recognized"));
              }},
    HeaderKey{"Material", setText<&GlazingData::material>},
    HeaderKey{"Coating Name", setText<&GlazingData::CoatingName>},
    HeaderKey{"Coated Side",
              [](GlazingData& pane, Entry e) {
                pane.CoatedSide(
                    requireCode(e, kCoatedSideNames, "Coating side type not recognized"));
              }},
    HeaderKey{"Coating Filename", setText<&GlazingData::CoatingFilename>},
    HeaderKey{"Substrate Filename", setText<&GlazingData::SubstrateFilename>},
    HeaderKey{"Film Filename", setText<&GlazingData::FilmFilename>},
    HeaderKey{"Description", setText<&GlazingData::description>},
    HeaderKey{"Appearance", setText<&GlazingData::Appearance>},
    HeaderKey{"Acceptance", setText<&GlazingData::Acceptance>},
    HeaderKey{"Angle of Incidence", [](GlazingData& pane, Entry e) { pane.ORV_Angle(angleOf(e)); }},
    HeaderKey{"Coating class", setText<&GlazingData::ORV_CoatingClass>},
    HeaderKey{kRecordNameKey, setText<&GlazingData::filename>},
    HeaderKey{kUseKey, [](GlazingData& pane, Entry e) { pane.AddUse(std::string(e.value)); }},
    HeaderKey{kAvailabilityKey, addAvailability},
    HeaderKey{kBackTransmittanceKey, [](GlazingData& pane, Entry e) { pane.TbiR(quantityOf(e)); }},
    HeaderKey{kPaneFlagKeys[0].key, setFlag<kPaneFlagKeys[0].property>},
    HeaderKey{kPaneFlagKeys[1].key, setFlag<kPaneFlagKeys[1].property>},
    HeaderKey{kPaneFlagKeys[2].key, setFlag<kPaneFlagKeys[2].property>},
    HeaderKey{kPaneFlagKeys[3].key, setFlag<kPaneFlagKeys[3].property>},
    HeaderKey{kPaneFlagKeys[4].key, setFlag<kPaneFlagKeys[4].property>},
    HeaderKey{"Structure",
              [](GlazingData& pane, Entry e) { parseStructure(e.value, e.place, pane); }},
};

/// What databases say of such a pane unless the entries say otherwise: it has a spectrum; and where
/// it is not of one material, its values at other angles can only be estimated.
void deriveFlags(const std::vector<HeaderEntry>& entries, GlazingData& pane) {
  bool isMonolithic = false;
  for (const HeaderEntry& entry : entries) {
    if (entry.hasKey("Type")) isMonolithic = codeOf(kGlazingTypeNames, entry.value) == kMonolithic;
  }
  pane.spectral_pane(true);
  pane.single_layer(isMonolithic);
  pane.use_estimation(!isMonolithic);
}

}  // namespace

void ReadHeaderEntries(const Tokenizer& tokenizer, GlazingData& pane) {
  const std::vector<HeaderEntry> entries = headerEntries(tokenizer);
  deriveFlags(entries, pane);
  for (const HeaderEntry& entry : entries) {
    for (const HeaderKey& header : kHeaderKeys) {
      if (entry.hasKey(header.key)) {
        header.set(pane, entry);
      }
    }
  }
}

}  // namespace orv::textfile
