#pragma once

#include <array>

namespace orv {

/// The optics of a shading at one wavelength, as fractions. "out" and "in" are incidence from
/// outdoors and from indoors; "BB" is light that goes on as a beam, "BD" light that is scattered.
/// The members are named as the columns of the databases are.
struct ShadingSpectralPoint {
  double wavelength = 0;  ///< nm
  double T_out_BB = 0;
  double T_in_BB = 0;
  double R_out_BB = 0;
  double R_in_BB = 0;
  double T_out_BD = 0;
  double T_in_BD = 0;
  double R_out_BD = 0;
  double R_in_BD = 0;

  bool operator==(const ShadingSpectralPoint&) const = default;
};

/// A column of spectral rows: its name in databases and the member that holds it.
struct ShadingSpectralColumn {
  const char* name;
  double ShadingSpectralPoint::*member;
};

/// All of them, in the order of files and databases.
inline constexpr std::array kShadingSpectralColumns{
    ShadingSpectralColumn{"wavelength", &ShadingSpectralPoint::wavelength},
    ShadingSpectralColumn{"T_out_BB", &ShadingSpectralPoint::T_out_BB},
    ShadingSpectralColumn{"T_in_BB", &ShadingSpectralPoint::T_in_BB},
    ShadingSpectralColumn{"R_out_BB", &ShadingSpectralPoint::R_out_BB},
    ShadingSpectralColumn{"R_in_BB", &ShadingSpectralPoint::R_in_BB},
    ShadingSpectralColumn{"T_out_BD", &ShadingSpectralPoint::T_out_BD},
    ShadingSpectralColumn{"T_in_BD", &ShadingSpectralPoint::T_in_BD},
    ShadingSpectralColumn{"R_out_BD", &ShadingSpectralPoint::R_out_BD},
    ShadingSpectralColumn{"R_in_BD", &ShadingSpectralPoint::R_in_BD},
};

}  // namespace orv
