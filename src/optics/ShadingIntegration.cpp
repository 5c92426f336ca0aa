#include "optics/ShadingIntegration.h"

#include <algorithm>
#include <array>
#include <functional>

#include "model/IntegratedColumns.h"
#include "optics/Coverage.h"
#include "optics/Rules.h"

namespace orv::optics {

namespace {

using Shading = ShadingDataClass;
using Point = ShadingSpectralPoint;

/// A property of the surface is the weighted mean of one column.
struct SurfaceValue {
  Property<double> Shading::*property;
  Band band;
  double Point::*column;
};

constexpr std::array kSurfaceValues{
    SurfaceValue{&Shading::Sol_refl_slat_surf_outd, Band::solar, &Point::R_out_BD},
    SurfaceValue{&Shading::Sol_refl_slat_surf_ind, Band::solar, &Point::R_in_BD},
    SurfaceValue{&Shading::Sol_transm_slat_surf, Band::solar, &Point::T_out_BD},
    SurfaceValue{&Shading::Vis_refl_slat_surf_outd, Band::visible, &Point::R_out_BD},
    SurfaceValue{&Shading::Vis_refl_slat_surf_ind, Band::visible, &Point::R_in_BD},
    SurfaceValue{&Shading::Vis_transm_slat_surf, Band::visible, &Point::T_out_BD},
    SurfaceValue{&Shading::Uv_refl_slat_surf_outd, Band::ultraviolet, &Point::R_out_BD},
    SurfaceValue{&Shading::Uv_refl_slat_surf_ind, Band::ultraviolet, &Point::R_in_BD},
    SurfaceValue{&Shading::Uv_transm_slat_surf, Band::ultraviolet, &Point::T_out_BD},
    SurfaceValue{&Shading::Sol_refl_slat_surf_outd_BB, Band::solar, &Point::R_out_BB},
    SurfaceValue{&Shading::Sol_refl_slat_surf_ind_BB, Band::solar, &Point::R_in_BB},
    SurfaceValue{&Shading::Sol_transm_slat_surf_BB, Band::solar, &Point::T_out_BB},
    SurfaceValue{&Shading::Vis_refl_slat_surf_outd_BB, Band::visible, &Point::R_out_BB},
    SurfaceValue{&Shading::Vis_refl_slat_surf_ind_BB, Band::visible, &Point::R_in_BB},
    SurfaceValue{&Shading::Vis_transm_slat_surf_BB, Band::visible, &Point::T_out_BB},
    SurfaceValue{&Shading::Uv_refl_slat_surf_outd_BB, Band::ultraviolet, &Point::R_out_BB},
    SurfaceValue{&Shading::Uv_refl_slat_surf_ind_BB, Band::ultraviolet, &Point::R_in_BB},
    SurfaceValue{&Shading::Uv_transm_slat_surf_BB, Band::ultraviolet, &Point::T_out_BB},
};

/// The two columns whose sum is a curve: light that goes on as a beam, and scattered light.
struct Parts {
  double Point::*beam;
  double Point::*scattered;
};

constexpr Parts partsOf(Curve curve) {
  switch (curve) {
    case Curve::Tf:
      return {&Point::T_out_BB, &Point::T_out_BD};
    case Curve::Tb:
      return {&Point::T_in_BB, &Point::T_in_BD};
    case Curve::Rf:
      return {&Point::R_out_BB, &Point::R_out_BD};
    case Curve::Rb:
      break;
  }
  return {&Point::R_in_BB, &Point::R_in_BD};
}

/// The spectrum in ascending order, column by column.
class Columns {
 public:
  explicit Columns(std::vector<Point> points) : points_(std::move(points)) {
    std::ranges::stable_sort(points_, {}, &Point::wavelength);
    const std::vector<double> wavelengths = column(&Point::wavelength);
    for (const MeanRule& rule : rulesOf(Standard::iso9050).means) {
      weights_.emplace_back(rule.weights, wavelengths);
      reached_.push_back(coverageOf(rule.weights, wavelengths).reached);
    }
  }

  std::vector<double> column(double Point::*member) const {
    std::vector<double> values(points_.size());
    std::ranges::transform(points_, values.begin(), member);
    return values;
  }

  double mean(Band band, const std::vector<double>& values) const {
    const auto rule = static_cast<std::size_t>(band);
    return reached_[rule] >= kLeastCovered ? weights_[rule].mean(values) : 0;
  }

 private:
  std::vector<Point> points_;
  std::vector<GridWeights> weights_;  ///< those of the bands first
  std::vector<double> reached_;       ///< part of these weights between the spectrum's ends
};

}  // namespace

void calculateIntegratedValues(ShadingDataClass& shading) {
  if (shading.spectrum().empty()) return;
  const Columns columns(shading.spectrum());
  for (const SurfaceValue& surface : kSurfaceValues) {
    (shading.*surface.property)(columns.mean(surface.band, columns.column(surface.column)));
  }
  ShadingIntegratedData normalIncidence;
  for (const IntegratedColumn& total : kIntegratedColumns) {
    const Parts parts = partsOf(total.curve);
    std::vector<double> values = columns.column(parts.beam);
    std::ranges::transform(values, columns.column(parts.scattered), values.begin(), std::plus<>());
    normalIncidence.*total.shading = columns.mean(total.band, values);
  }
  shading.integrated({normalIncidence});
}

}  // namespace orv::optics
