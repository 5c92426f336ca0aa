#pragma once

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

}  // namespace orv
