#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/Codes.h"
#include "model/Property.h"
#include "model/ShadingIntegratedData.h"
#include "model/ShadingSpectralPoint.h"

namespace orv {

/// A shading device (a sheet such as a screen, or a blind of slats) while it travels between
/// files and databases. Apart from the three names and the properties of the last group, each
/// property has the name of its column in the databases. Lengths are in millimetres, optics are
/// fractions; "outd" and "ind" are the sides that face outdoors and indoors.
class ShadingDataClass {
 public:
  // --- Identity ------------------------------------------------------------------------------
  Property<std::int32_t> id{-1};  ///< `Shading_id`; -1 while not stored
  Property<std::string> name;
  Property<std::string> group;             ///< name behind `groupnameID`
  Property<std::string> supplier;          ///< name behind `supplierID`
  Property<std::int32_t> Supplier_dataID;  ///< the supplier's own reference of the data
  Property<std::int32_t> typeID;           ///< kind of product, 1 to 4; 0 when not known
  Property<std::string> productname;
  Property<std::string> appearance;
  Property<std::string> Info;
  Property<std::string> reference;
  Property<bool> freeze;

  // --- The material, or the sheet as a whole -----------------------------------------------------
  Property<double> thickness;
  Property<double> conduction;           ///< W/(m·K)
  Property<double> emission_IR_outdoor;  ///< infrared emissivity
  Property<double> emission_IR_indoor;
  Property<double> transmission_IR_outdoor;  ///< infrared transmittance
  Property<double> transmission_IR_indoor;
  Property<double> permeability;  ///< to air
  Property<bool> measured;
  Property<bool> single_layer;
  Property<bool> spectral;     ///< there is a spectrum
  Property<bool> horizontal;   ///< slats lie horizontally
  Property<bool> vertical;     ///< slats stand vertically
  Property<bool> homogenious;  ///< the same all over: a sheet, not slats
  Property<bool> ThreeD;       ///< column `3D`

  // --- Slats
  // ---------------------------------------------------------------------------------------
  Property<double> window_slat_distance;
  Property<double> slat_curvature;  ///< crown height
  Property<double> slat_length;     ///< width of a slat
  Property<double> slat_distance;   ///< pitch
  Property<double> angle;           ///< slat angle, degrees
  Property<double> emissivity_slat_surf_outd;
  Property<double> emissivity_slat_surf_ind;
  Property<double> transmissivity_slat_surf;

  // Optics of the surface, scattered part: solar, visible, ultraviolet.
  Property<double> Sol_refl_slat_surf_outd;
  Property<double> Sol_refl_slat_surf_ind;
  Property<double> Sol_transm_slat_surf;
  Property<double> Vis_refl_slat_surf_outd;
  Property<double> Vis_refl_slat_surf_ind;
  Property<double> Vis_transm_slat_surf;
  Property<double> Uv_refl_slat_surf_outd;
  Property<double> Uv_refl_slat_surf_ind;
  Property<double> Uv_transm_slat_surf;

  // Optics of the surface, beam part.
  Property<double> Sol_refl_slat_surf_outd_BB;
  Property<double> Sol_refl_slat_surf_ind_BB;
  Property<double> Sol_transm_slat_surf_BB;
  Property<double> Vis_refl_slat_surf_outd_BB;
  Property<double> Vis_refl_slat_surf_ind_BB;
  Property<double> Vis_transm_slat_surf_BB;
  Property<double> Uv_refl_slat_surf_outd_BB;
  Property<double> Uv_refl_slat_surf_ind_BB;
  Property<double> Uv_transm_slat_surf_BB;

  // --- Detail data
  // -----------------------------------------------------------------------------------
  Property<std::vector<ShadingIntegratedData>> integrated;  ///< a row an angle of incidence
  Property<std::vector<ShadingSpectralPoint>> spectrum;     ///< a row a wavelength

  // --- Known to text files only
  // --------------------------------------------------------------------
  Property<std::string> material;
  Property<std::int32_t> CoatedSide{kSideNotSet};  ///< `CoatedSideCode`
  Property<std::string> position;                  ///< where in the window it hangs
};

}  // namespace orv
