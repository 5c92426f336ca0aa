// The newer form: spectra in blocks, one an angle, wavelengths in microns, integrated values in
// objects within each other. It is the one that is written.
#include "productfile/Form.h"
#include "productfile/IntegratedMeaning.h"

namespace orv::productfile {

namespace {

/// Thickness and conductivity are in mm and W/(m·K), whatever the record has.
constexpr Meaning kThickness{
    [](const Item& item, GlazingData& pane) { pane.Thickness(item.quantity()); },
    [](const GlazingData& pane) { return numberOf(pane.ConvertedThickness(kSI)); }};
constexpr Meaning kConductivity{
    [](const Item& item, GlazingData& pane) { pane.Conductivity(item.quantity()); },
    [](const GlazingData& pane) { return numberOf(pane.ConvertedConductivity(kSI)); }};

constexpr Key kNewerFormKeys[] = {
    {"/id", kId},
    {"/type", kType},
    {"/subtype", kType},
    {"/name", kText<&GlazingData::productname>},
    {"/product_name", kText<&GlazingData::productname>},
    {"/nfrc_id", kWhole<&GlazingData::NFRC_id>},
    {"/acceptance", kText<&GlazingData::Acceptance>},
    {"/appearance", kText<&GlazingData::Appearance>},
    {"/hidden", kFlag<&GlazingData::Hidden>},
    {"/manufacturer", kText<&GlazingData::supplier>},
    {"/data_file_name", kText<&GlazingData::filename>},
    {"/short_description", kText<&GlazingData::description>},
    {"/coating_name", kText<&GlazingData::CoatingName>},
    {"/coated_side", kCoatedSide},
    {"/igdb_checksum", kWhole<&GlazingData::IGDBChecksum>},
    {"/physical_properties/thickness", kThickness},
    {"/physical_properties/conductivity", kConductivity},
    {"/physical_properties/predefined_tir_front", kInfrared},
    {"/physical_properties/predefined_tir_back", kBackInfrared},
    {"/physical_properties/predefined_emissivity_front", kFrontEmissivity},
    {"/physical_properties/predefined_emissivity_back", kBackEmissivity},
};

constexpr Key kNewerIntegrated[] = {
    {"/solar/transmittance_front/direct_direct", kSolarTransmittance},
    {"/solar/transmittance_back/direct_direct", kFraction<&GlazingData::Precalc_Tbsol>},
    {"/solar/reflectance_front/direct_direct", kFraction<&GlazingData::Precalc_Rfsol>},
    {"/solar/reflectance_back/direct_direct", kFraction<&GlazingData::Precalc_RbSol>},
    {"/photopic/transmittance_front/direct_direct", kVisibleTransmittance},
    {"/photopic/transmittance_back/direct_direct", kFraction<&GlazingData::Precalc_Tbvis>},
    {"/photopic/reflectance_front/direct_direct", kFraction<&GlazingData::Precalc_Rfvis>},
    {"/photopic/reflectance_back/direct_direct", kFraction<&GlazingData::Precalc_Rbvis>},
    {"/tuv/transmittance_front/direct_direct", kUltravioletTransmittance},
    {"/tuv/transmittance_back/direct_direct", kFraction<&GlazingData::Precalc_Tbuv>},
    {"/tuv/reflectance_front/direct_direct", kFraction<&GlazingData::Precalc_Rfuv>},
    {"/tuv/reflectance_back/direct_direct", kFraction<&GlazingData::Precalc_Rbuv>},
    {"/tdw/transmittance_front/direct_direct", kFraction<&GlazingData::Precalc_Tdw>},
    {"/spf/transmittance_front/direct_direct", kSingle<&GlazingData::Precalc_TSPF>},
    {"/color/transmittance_front/direct_direct/trichromatic/x",
     kSingle<&GlazingData::Precalc_TCIEX>},
    {"/color/transmittance_front/direct_direct/trichromatic/y",
     kSingle<&GlazingData::Precalc_TCIEY>},
    {"/color/transmittance_front/direct_direct/trichromatic/z",
     kSingle<&GlazingData::Precalc_TCIEZ>},
    {"/color/reflectance_front/direct_direct/trichromatic/x",
     kSingle<&GlazingData::Precalc_RfCIEX>},
    {"/color/reflectance_front/direct_direct/trichromatic/y",
     kSingle<&GlazingData::Precalc_RfCIEY>},
    {"/color/reflectance_front/direct_direct/trichromatic/z",
     kSingle<&GlazingData::Precalc_RfCIEZ>},
    {"/thermal_ir/transmittance_front_diffuse_diffuse", kFraction<&GlazingData::Precalc_TfIR>},
    {"/thermal_ir/absorptance_front_hemispheric", kFraction<&GlazingData::Precalc_ef>},
    {"/thermal_ir/absorptance_back_hemispheric", kFraction<&GlazingData::Precalc_eb>},
};

}  // namespace

const Form kNewerForm{
    .data = "/physical_properties/optical_properties/optical_data/angle_blocks",
    .hasBlocks = true,
    .rows = {"/w", "/specular/tf", "/specular/tb", "/specular/rf", "/specular/rb", "/diffuse/tf"},
    .wavelengthUnit = "",
    .keys = kNewerFormKeys,
    .summaries = "/integrated_spectral_averages_summaries",
    .standard = "/calculation_standard",
    .integrated = kNewerIntegrated,
};

}  // namespace orv::productfile
