// The form of the checker of submissions: spectra in blocks, one an angle; it names its units, and
// has no integrated values.
#include "productfile/Form.h"

namespace orv::productfile {

namespace {

constexpr Key kCheckerFormKeys[] = {
    {"/unit_system", kUnitSystem},
    {"/product_name", kText<&GlazingData::productname>},
    {"/filename", kText<&GlazingData::filename>},
    {"/nfrc_id", kWhole<&GlazingData::NFRC_id>},
    {"/acceptance", kText<&GlazingData::Acceptance>},
    {"/appearance", kText<&GlazingData::Appearance>},
    {"/manufacturer", kText<&GlazingData::supplier>},
    {"/product_type", kType},
    {"/coating_properties/coating_name", kText<&GlazingData::CoatingName>},
    {"/coating_properties/coated_side", kCoatedSide},
    {"/measured_data/thickness", kQuantity<&GlazingData::Thickness>},
    {"/measured_data/bulk_properties_override/thermal_conductivity",
     kQuantity<&GlazingData::Conductivity>},
    {"/measured_data/tir_front", kInfrared},
    {"/measured_data/tir_back", kBackInfrared},
    {"/measured_data/emissivity_front", kFrontEmissivity},
    {"/measured_data/emissivity_back", kBackEmissivity},
};

}  // namespace

const Form kCheckerForm{
    .data = "/measured_data/spectral_data/angle_block",
    .hasBlocks = true,
    .rows = {"/w", "/tf", "/tb", "/rf", "/rb", ""},
    .wavelengthUnit = "/measured_data/spectral_data/unit",
    .keys = kCheckerFormKeys,
    .summaries = "",
    .standard = "",
    .integrated = {},
};

}  // namespace orv::productfile
