#include "productfile/RecordKeys.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <cstdio>

#include "errors/Error.h"

namespace orv::productfile {

namespace {

template <auto member, auto reset>
void readUnlessNegative(const Item& item, GlazingData& pane) {
  const float value = item.single();
  value < 0 ? (pane.*reset)() : (pane.*member)(value);
}

/// A property whose marker for "not set" its setter does not take.
template <auto member, auto reset>
constexpr Meaning kUnlessNegative{readUnlessNegative<member, reset>, writeSingle<member>};

constexpr const char* kDatePattern = "%4d-%2u-%2uT%2u:%2u:%2u%n";

Date dateAt(const Item& item) {
  int year = 0, length = 0;
  unsigned month = 0, day = 0, hour = 0, minute = 0, second = 0;  // a sign makes them too large
  const std::string text = item.text();
  const int found = std::sscanf(text.c_str(), kDatePattern, &year, &month, &day, &hour, &minute,
                                &second, &length);
  const auto date = std::chrono::year(year) / month / day;
  constexpr int kParts = 6;
  if (found != kParts || static_cast<std::size_t>(length) != text.size() || !date.ok() ||
      hour > 23 || minute > 59 || second > 59) {
    item.refuse(kTypeMismatch, "Here a date such as 2026-01-31T12:00:00 is wanted");
  }
  return std::chrono::local_days(date) + std::chrono::hours(hour) + std::chrono::minutes(minute) +
         std::chrono::seconds(second);
}

template <auto member>
void readDate(const Item& item, GlazingData& pane) {
  (pane.*member)(dateAt(item));
}

template <auto member>
OrderedJson writeDate(const GlazingData& pane) {
  const OptionalDate& date = (pane.*member)();
  if (!date) return nullptr;
  const auto seconds = static_cast<std::time_t>(date->time_since_epoch().count());
  return fmt::format("{:%Y-%m-%dT%H:%M:%S}", fmt::gmtime(seconds));
}

template <auto member>
constexpr Meaning kDate{readDate<member>, writeDate<member>};

constexpr Meaning kUses{[](const Item& item, GlazingData& pane) {
                          for (std::size_t i = 0; i < item.count(); ++i) {
                            pane.AddUse(item.at(i).text());
                          }
                        },
                        [](const GlazingData& pane) {
                          OrderedJson uses = OrderedJson::array();
                          for (std::int32_t i = 1; i <= pane.UsesCount(); ++i) {
                            uses.push_back(pane.uses(i));
                          }
                          return uses;
                        }};

constexpr Meaning kAvailability{
    [](const Item& list, GlazingData& pane) {
      for (std::size_t i = 0; i < list.count(); ++i) {
        const Item item = list.at(i);
        const auto entry = std::make_shared<Availability>();
        entry->Region(item.require("/region").text());
        entry->AlternateProductName(item.require("/product_name").text());
        pane.AddAvailability(entry);
      }
    },
    [](const GlazingData& pane) {
      OrderedJson list = OrderedJson::array();
      for (std::int32_t i = 1; i <= pane.AvailabilityCount(); ++i) {
        const Availability& entry = *pane.Availability(i);
        list.push_back(
            {{"region", entry.Region()}, {"product_name", entry.AlternateProductName()}});
      }
      return list;
    }};

constexpr Meaning kLayers{[](const Item& list, GlazingData& pane) {
                            for (std::size_t i = 0; i < list.count(); ++i) {
                              const Item item = list.at(i);
                              const auto layer = std::make_shared<GlazingStructure>();
                              layer->filename(item.require("/file").text());
                              layer->Thickness(item.require("/thickness").quantity());
                              layer->Flipped(item.require("/flipped").flag());
                              pane.AddStructure(layer);
                            }
                          },
                          [](const GlazingData& pane) {
                            OrderedJson list = OrderedJson::array();
                            for (std::int32_t i = 0; i < pane.StructureCount(); ++i) {
                              const GlazingStructure& layer = *pane.structure(i);
                              list.push_back({{"file", layer.filename()},
                                              {"thickness", numberOf(layer.Thickness())},
                                              {"flipped", layer.Flipped()}});
                            }
                            return list;
                          }};

constexpr Key kRecordKeysKeys[] = {
    {"/id", kId},
    {"/name", kText<&GlazingData::filename>},
    {"/file_date", kDate<&GlazingData::FileDate>},
    {"/nfrc_id", kWhole<&GlazingData::NFRC_id>},
    {"/product_name", kText<&GlazingData::productname>},
    {"/supplier", kText<&GlazingData::supplier>},
    {"/group", kText<&GlazingData::group>},
    {"/description", kText<&GlazingData::description>},
    {"/appearance", kText<&GlazingData::Appearance>},
    {"/acceptance", kText<&GlazingData::Acceptance>},
    {"/igdb_checksum", kWhole<&GlazingData::IGDBChecksum>},
    {"/igdb_checksum_date", kDate<&GlazingData::IGDBChecksumDate>},
    {"/hidden", kFlag<&GlazingData::Hidden>},

    {"/unit", kWhole<&GlazingData::unit>},
    {kWavelengthUnitKey, kWhole<&GlazingData::WavelengthUnit>},
    {"/thickness", kQuantity<&GlazingData::Thickness>},
    {"/conductivity", kQuantity<&GlazingData::Conductivity>},
    {"/tir_front", kQuantity<&GlazingData::TfIR>},
    {"/tir_back", kQuantity<&GlazingData::TbiR>},
    {"/emissivity_front", kUnlessNegative<&GlazingData::ef, &GlazingData::ResetEf>},
    {"/emissivity_front_source", kWhole<&GlazingData::ef_source>},
    {"/emissivity_back", kUnlessNegative<&GlazingData::eb, &GlazingData::ResetEb>},
    {"/emissivity_back_source", kWhole<&GlazingData::eb_source>},
    {"/database_emissivity_front", kDouble<&GlazingData::ORV_Emissivity_front>},
    {"/database_emissivity_back", kDouble<&GlazingData::ORV_Emissivity_back>},

    {"/type", kWhole<&GlazingData::GlazingType>},
    {"/material", kText<&GlazingData::material>},
    {"/coating_name", kText<&GlazingData::CoatingName>},
    {"/coating_id", kWhole<&GlazingData::CoatingID>},
    {"/coating_class", kText<&GlazingData::ORV_CoatingClass>},
    {"/coated_side", kWhole<&GlazingData::CoatedSide>},
    {"/coating_file", kText<&GlazingData::CoatingFilename>},
    {"/substrate_file", kText<&GlazingData::SubstrateFilename>},
    {"/laminate_file", kText<&GlazingData::LaminateFilename>},
    {"/laminate_material", kText<&GlazingData::LaminateMaterial>},
    {"/film_file", kText<&GlazingData::FilmFilename>},
    {"/uses", kUses},
    {"/availability", kAvailability},
    {"/layers", kLayers},

    {"/integrated/standard", kText<&GlazingData::Precalc_StandardName>},
    {"/integrated/time", kDate<&GlazingData::Precalc_Time>},
    {"/integrated/tfsol", kSingle<&GlazingData::Precalc_Tfsol>},
    {"/integrated/tbsol", kSingle<&GlazingData::Precalc_Tbsol>},
    {"/integrated/rfsol", kSingle<&GlazingData::Precalc_Rfsol>},
    {"/integrated/rbsol", kSingle<&GlazingData::Precalc_RbSol>},
    {"/integrated/tfvis", kSingle<&GlazingData::Precalc_Tfvis>},
    {"/integrated/tbvis", kSingle<&GlazingData::Precalc_Tbvis>},
    {"/integrated/rfvis", kSingle<&GlazingData::Precalc_Rfvis>},
    {"/integrated/rbvis", kSingle<&GlazingData::Precalc_Rbvis>},
    {"/integrated/tfuv", kSingle<&GlazingData::Precalc_Tfuv>},
    {"/integrated/tbuv", kSingle<&GlazingData::Precalc_Tbuv>},
    {"/integrated/rfuv", kSingle<&GlazingData::Precalc_Rfuv>},
    {"/integrated/rbuv", kSingle<&GlazingData::Precalc_Rbuv>},
    {"/integrated/tir", kSingle<&GlazingData::Precalc_TfIR>},
    {"/integrated/emissivity_front", kSingle<&GlazingData::Precalc_ef>},
    {"/integrated/emissivity_back", kSingle<&GlazingData::Precalc_eb>},
    {"/integrated/tciex", kSingle<&GlazingData::Precalc_TCIEX>},
    {"/integrated/tciey", kSingle<&GlazingData::Precalc_TCIEY>},
    {"/integrated/tciez", kSingle<&GlazingData::Precalc_TCIEZ>},
    {"/integrated/rfciex", kSingle<&GlazingData::Precalc_RfCIEX>},
    {"/integrated/rfciey", kSingle<&GlazingData::Precalc_RfCIEY>},
    {"/integrated/rfciez", kSingle<&GlazingData::Precalc_RfCIEZ>},
    {"/integrated/tdw", kSingle<&GlazingData::Precalc_Tdw>},
    {"/integrated/tspf", kSingle<&GlazingData::Precalc_TSPF>},

    {"/direction", kWhole<&GlazingData::ORV_Direction>},
    {"/frozen", kFlag<&GlazingData::ORV_Frozen>},
    {"/with_and_without_film", kFlag<&GlazingData::with_and_without_film>},
    {"/film_outdoor_side", kFlag<&GlazingData::film_outdoor_side>},
    {"/single_layer", kFlag<&GlazingData::single_layer>},
    {kSpectralPaneKey, kFlag<&GlazingData::spectral_pane>},
    {"/0_30_60", kFlag<&GlazingData::Use_0_30_60>},
    {"/use_estimation", kFlag<&GlazingData::use_estimation>},
};

}  // namespace

std::span<const Key> recordKeys() {
  return kRecordKeysKeys;
}

}  // namespace orv::productfile
