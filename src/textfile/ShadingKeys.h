// The keys of shading files, and the property that each stands for: read by the reader, written
// by the writer, both in this order. Keys with a special form are in the reader and the writer.
#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <string_view>

#include "model/ShadingDataClass.h"

namespace orv::textfile {

struct ShadingTextKey {
  std::string_view key;
  Property<std::string> ShadingDataClass::*property;
};

struct ShadingNumberKey {
  std::string_view key;
  Property<double> ShadingDataClass::*property;
};

struct ShadingFlagKey {
  std::string_view key;
  Property<bool> ShadingDataClass::*property;
};

inline constexpr std::array kShadingTextKeys{
    ShadingTextKey{"Product Name", &ShadingDataClass::productname},
    ShadingTextKey{"Manufacturer", &ShadingDataClass::supplier},
    ShadingTextKey{"Material", &ShadingDataClass::material},
    ShadingTextKey{"Position", &ShadingDataClass::position},
    ShadingTextKey{"Appearance", &ShadingDataClass::appearance},
    ShadingTextKey{"Reference", &ShadingDataClass::reference},
    ShadingTextKey{"Info", &ShadingDataClass::Info},
};

/// What is measured of the material and of the slats.
inline constexpr std::array kShadingMeasureKeys{
    ShadingNumberKey{"Thickness", &ShadingDataClass::thickness},
    ShadingNumberKey{"Width", &ShadingDataClass::slat_length},
    ShadingNumberKey{"Crown height", &ShadingDataClass::slat_curvature},
    ShadingNumberKey{"Angle", &ShadingDataClass::angle},
    ShadingNumberKey{"Pitch", &ShadingDataClass::slat_distance},
    ShadingNumberKey{"Conductivity", &ShadingDataClass::conduction},
    ShadingNumberKey{"Emissivity front", &ShadingDataClass::emission_IR_outdoor},
    ShadingNumberKey{"Emissivity back", &ShadingDataClass::emission_IR_indoor},
    ShadingNumberKey{"IR transmittance", &ShadingDataClass::transmission_IR_outdoor},
    ShadingNumberKey{"Permeability", &ShadingDataClass::permeability},
};

/// What follows from the measures and the spectrum where a file does not give it, under the names
/// of the databases.
inline constexpr std::array kShadingDerivedKeys{
    ShadingNumberKey{"window_slat_distance", &ShadingDataClass::window_slat_distance},
    ShadingNumberKey{"transmission_IR_indoor", &ShadingDataClass::transmission_IR_indoor},
    ShadingNumberKey{"emissivity_slat_surf_outd", &ShadingDataClass::emissivity_slat_surf_outd},
    ShadingNumberKey{"emissivity_slat_surf_ind", &ShadingDataClass::emissivity_slat_surf_ind},
    ShadingNumberKey{"transmissivity_slat_surf", &ShadingDataClass::transmissivity_slat_surf},
    ShadingNumberKey{"Sol_refl_slat_surf_outd", &ShadingDataClass::Sol_refl_slat_surf_outd},
    ShadingNumberKey{"Sol_refl_slat_surf_ind", &ShadingDataClass::Sol_refl_slat_surf_ind},
    ShadingNumberKey{"Sol_transm_slat_surf", &ShadingDataClass::Sol_transm_slat_surf},
    ShadingNumberKey{"Vis_refl_slat_surf_outd", &ShadingDataClass::Vis_refl_slat_surf_outd},
    ShadingNumberKey{"Vis_refl_slat_surf_ind", &ShadingDataClass::Vis_refl_slat_surf_ind},
    ShadingNumberKey{"Vis_transm_slat_surf", &ShadingDataClass::Vis_transm_slat_surf},
    ShadingNumberKey{"Uv_refl_slat_surf_outd", &ShadingDataClass::Uv_refl_slat_surf_outd},
    ShadingNumberKey{"Uv_refl_slat_surf_ind", &ShadingDataClass::Uv_refl_slat_surf_ind},
    ShadingNumberKey{"Uv_transm_slat_surf", &ShadingDataClass::Uv_transm_slat_surf},
    ShadingNumberKey{"Sol_refl_slat_surf_outd_BB", &ShadingDataClass::Sol_refl_slat_surf_outd_BB},
    ShadingNumberKey{"Sol_refl_slat_surf_ind_BB", &ShadingDataClass::Sol_refl_slat_surf_ind_BB},
    ShadingNumberKey{"Sol_transm_slat_surf_BB", &ShadingDataClass::Sol_transm_slat_surf_BB},
    ShadingNumberKey{"Vis_refl_slat_surf_outd_BB", &ShadingDataClass::Vis_refl_slat_surf_outd_BB},
    ShadingNumberKey{"Vis_refl_slat_surf_ind_BB", &ShadingDataClass::Vis_refl_slat_surf_ind_BB},
    ShadingNumberKey{"Vis_transm_slat_surf_BB", &ShadingDataClass::Vis_transm_slat_surf_BB},
    ShadingNumberKey{"Uv_refl_slat_surf_outd_BB", &ShadingDataClass::Uv_refl_slat_surf_outd_BB},
    ShadingNumberKey{"Uv_refl_slat_surf_ind_BB", &ShadingDataClass::Uv_refl_slat_surf_ind_BB},
    ShadingNumberKey{"Uv_transm_slat_surf_BB", &ShadingDataClass::Uv_transm_slat_surf_BB},
};

inline constexpr std::array kShadingFlagKeys{
    ShadingFlagKey{"measured", &ShadingDataClass::measured},
    ShadingFlagKey{"single_layer", &ShadingDataClass::single_layer},
    ShadingFlagKey{"spectral", &ShadingDataClass::spectral},
    ShadingFlagKey{"homogenious", &ShadingDataClass::homogenious},
    ShadingFlagKey{"3D", &ShadingDataClass::ThreeD},
    ShadingFlagKey{"freeze", &ShadingDataClass::freeze},
};

/// Which way the slats run, and the flags that say so.
struct ShadingOrientation {
  std::string_view text;
  bool horizontal;
  bool vertical;
};

inline constexpr std::array kShadingOrientations{
    ShadingOrientation{"", false, false},
    ShadingOrientation{"Horizontal", true, false},
    ShadingOrientation{"Vertical", false, true},
    ShadingOrientation{"Both", true, true},
};

inline constexpr std::string_view kProductTypeKey = "Product type";  ///< 1 to 4
inline constexpr std::string_view kCoatedSideKey = "Coated Side";
inline constexpr std::string_view kOrientationKey = "Orientation";
inline constexpr std::string_view kUnitsKey = "Units";
inline constexpr std::string_view kSupplierDataKey = "Supplier_dataID";
/// An integrated row: the angle and its twelve values. There may be several.
inline constexpr std::string_view kIntegratedKey = "Integrated data";

/// The name of the shading in a file of this name.
inline std::string shadingName(std::string_view filename) {
  return std::filesystem::path(filename).stem().string();
}

/// The kinds of product that a file may name.
inline constexpr std::int32_t kFirstProductType = 1;
inline constexpr std::int32_t kLastProductType = 4;

}  // namespace orv::textfile
