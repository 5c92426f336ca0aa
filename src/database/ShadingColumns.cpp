#include "database/ShadingColumns.h"

namespace orv::database {

namespace {

constexpr ShadingColumn kColumns[] = {
    {"name", &ShadingDataClass::name},
    {"groupnameID", ShadingKey::group},
    {"typeID", &ShadingDataClass::typeID},
    {"productname", &ShadingDataClass::productname},
    {"thickness", &ShadingDataClass::thickness},
    {"appearance", &ShadingDataClass::appearance},
    {"conduction", &ShadingDataClass::conduction},
    {"emission_IR_outdoor", &ShadingDataClass::emission_IR_outdoor},
    {"emission_IR_indoor", &ShadingDataClass::emission_IR_indoor},
    {"transmission_IR_outdoor", &ShadingDataClass::transmission_IR_outdoor},
    {"transmission_IR_indoor", &ShadingDataClass::transmission_IR_indoor},
    {"emissivity_slat_surf_outd", &ShadingDataClass::emissivity_slat_surf_outd},
    {"emissivity_slat_surf_ind", &ShadingDataClass::emissivity_slat_surf_ind},
    {"transmissivity_slat_surf", &ShadingDataClass::transmissivity_slat_surf},
    {"measured", &ShadingDataClass::measured},
    {"single_layer", &ShadingDataClass::single_layer},
    {"spectral", &ShadingDataClass::spectral},
    {"permeability", &ShadingDataClass::permeability},
    {"horizontal", &ShadingDataClass::horizontal},
    {"vertical", &ShadingDataClass::vertical},
    {"homogenious", &ShadingDataClass::homogenious},
    {"3D", &ShadingDataClass::ThreeD},
    {"supplierID", ShadingKey::supplier},
    {"Supplier_dataID", &ShadingDataClass::Supplier_dataID},
    {"window_slat_distance", &ShadingDataClass::window_slat_distance},
    {"slat_curvature", &ShadingDataClass::slat_curvature},
    {"slat_length", &ShadingDataClass::slat_length},
    {"slat_distance", &ShadingDataClass::slat_distance},
    {"angle", &ShadingDataClass::angle},
    {"Sol_refl_slat_surf_outd", &ShadingDataClass::Sol_refl_slat_surf_outd},
    {"Sol_refl_slat_surf_ind", &ShadingDataClass::Sol_refl_slat_surf_ind},
    {"Sol_transm_slat_surf", &ShadingDataClass::Sol_transm_slat_surf},
    {"Vis_refl_slat_surf_outd", &ShadingDataClass::Vis_refl_slat_surf_outd},
    {"Vis_refl_slat_surf_ind", &ShadingDataClass::Vis_refl_slat_surf_ind},
    {"Vis_transm_slat_surf", &ShadingDataClass::Vis_transm_slat_surf},
    {"Uv_refl_slat_surf_outd", &ShadingDataClass::Uv_refl_slat_surf_outd},
    {"Uv_refl_slat_surf_ind", &ShadingDataClass::Uv_refl_slat_surf_ind},
    {"Uv_transm_slat_surf", &ShadingDataClass::Uv_transm_slat_surf},
    {"Info", &ShadingDataClass::Info},
    {"freeze", &ShadingDataClass::freeze},
    {"Sol_refl_slat_surf_outd_BB", &ShadingDataClass::Sol_refl_slat_surf_outd_BB},
    {"Sol_refl_slat_surf_ind_BB", &ShadingDataClass::Sol_refl_slat_surf_ind_BB},
    {"Sol_transm_slat_surf_BB", &ShadingDataClass::Sol_transm_slat_surf_BB},
    {"Vis_refl_slat_surf_outd_BB", &ShadingDataClass::Vis_refl_slat_surf_outd_BB},
    {"Vis_refl_slat_surf_ind_BB", &ShadingDataClass::Vis_refl_slat_surf_ind_BB},
    {"Vis_transm_slat_surf_BB", &ShadingDataClass::Vis_transm_slat_surf_BB},
    {"Uv_refl_slat_surf_outd_BB", &ShadingDataClass::Uv_refl_slat_surf_outd_BB},
    {"Uv_refl_slat_surf_ind_BB", &ShadingDataClass::Uv_refl_slat_surf_ind_BB},
    {"Uv_transm_slat_surf_BB", &ShadingDataClass::Uv_transm_slat_surf_BB},
    {"reference", &ShadingDataClass::reference},
};

}  // namespace

std::span<const ShadingColumn> shadingColumns() {
  return kColumns;
}

bool isShadingCode(const ShadingColumn& column) {
  return std::holds_alternative<Property<std::int32_t> ShadingDataClass::*>(column.member);
}

}  // namespace orv::database
