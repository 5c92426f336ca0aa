// The flat form: the values of a product side by side, wavelengths in microns.
#include "productfile/Form.h"
#include "productfile/IntegratedMeaning.h"

namespace orv::productfile {

namespace {

constexpr Key kFlatFormKeys[] = {
    {"/id", kId},
    {"/product_id", kId},
    {"/name", kText<&GlazingData::productname>},
    {"/product_name", kText<&GlazingData::productname>},
    {"/data_file_name", kText<&GlazingData::filename>},
    {"/nfrc_id", kWhole<&GlazingData::NFRC_id>},
    {"/acceptance", kText<&GlazingData::Acceptance>},
    {"/appearance", kText<&GlazingData::Appearance>},
    {"/manufacturer_name", kText<&GlazingData::supplier>},
    {"/short_description", kText<&GlazingData::description>},
    {"/type", kType},
    {"/subtype", kType},
    {"/coating_name", kText<&GlazingData::CoatingName>},
    {"/coated_side", kCoatedSide},
    {"/igdb_checksum", kWhole<&GlazingData::IGDBChecksum>},
    {"/measured_data/thickness", kQuantity<&GlazingData::Thickness>},
    {"/measured_data/conductivity", kQuantity<&GlazingData::Conductivity>},
    {"/measured_data/tir_front", kInfrared},
    {"/measured_data/tir_back", kBackInfrared},
    {"/measured_data/emissivity_front", kFrontEmissivity},
    {"/measured_data/emissivity_back", kBackEmissivity},
};

constexpr Key kFlatIntegrated[] = {
    {"/tfsol", kSolarTransmittance},
    {"/tbsol", kFraction<&GlazingData::Precalc_Tbsol>},
    {"/rfsol", kFraction<&GlazingData::Precalc_Rfsol>},
    {"/rbsol", kFraction<&GlazingData::Precalc_RbSol>},
    {"/tfvis", kVisibleTransmittance},
    {"/tbvis", kFraction<&GlazingData::Precalc_Tbvis>},
    {"/rfvis", kFraction<&GlazingData::Precalc_Rfvis>},
    {"/rbvis", kFraction<&GlazingData::Precalc_Rbvis>},
    {"/tuv", kUltravioletTransmittance},
    {"/tdw", kFraction<&GlazingData::Precalc_Tdw>},
    {"/tspf", kSingle<&GlazingData::Precalc_TSPF>},
    {"/tciex", kSingle<&GlazingData::Precalc_TCIEX>},
    {"/tciey", kSingle<&GlazingData::Precalc_TCIEY>},
    {"/tciez", kSingle<&GlazingData::Precalc_TCIEZ>},
    {"/rfciex", kSingle<&GlazingData::Precalc_RfCIEX>},
    {"/rfciey", kSingle<&GlazingData::Precalc_RfCIEY>},
    {"/rfciez", kSingle<&GlazingData::Precalc_RfCIEZ>},
};

}  // namespace

const Form kFlatForm{
    .data = "/spectral_data/spectral_data",
    .hasBlocks = false,
    .rows = {"/wavelength", "/T", "/Tb", "/Rf", "/Rb", ""},
    .wavelengthUnit = "",
    .keys = kFlatFormKeys,
    .summaries = "/integrated_results_summary",
    .standard = "/calculation_standard_name",
    .integrated = kFlatIntegrated,
};

}  // namespace orv::productfile
