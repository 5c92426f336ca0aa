#include "textfile/PaneHeader.h"

#include <fmt/format.h>

#include <array>
#include <cmath>
#include <limits>

#include "errors/Error.h"
#include "model/Text.h"
#include "textfile/HeaderEntry.h"
#include "textfile/Structure.h"

namespace orv::textfile {

namespace {

/// The writer leaves out the NFRC number of a pane that has none.
constexpr std::int32_t kNoNfrcId = -1;

std::int32_t emittanceSource(const HeaderEntry& entry) {
  return codeOf(kEmittanceSourceNames, entry.value).value_or(kUnknownSource);
}

std::int32_t requireCode(const HeaderEntry& entry, std::span<const CodeName> names,
                         std::string_view explanation) {
  const auto code = codeOf(names, entry.value);
  if (!code) {
    raiseExplained(kInvalidCall, explanation, entry.place);
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
    HeaderKey{"Structure",
              [](GlazingData& pane, Entry e) { parseStructure(e.value, e.place, pane); }},
};

}  // namespace

void ReadHeaderEntries(const Tokenizer& tokenizer, GlazingData& pane) {
  for (const HeaderEntry& entry : headerEntries(tokenizer)) {
    for (const HeaderKey& header : kHeaderKeys) {
      if (entry.hasKey(header.key)) {
        header.set(pane, entry);
      }
    }
  }
}

}  // namespace orv::textfile
