#include "model/ShadingIntegration.h"

#include <algorithm>
#include <array>
#include <functional>

#include "model/SpectralWeighting.h"

namespace orv {

namespace {

using Shading = ShadingDataClass;
using Point = ShadingSpectralPoint;
using Row = ShadingIntegratedData;

/// A property of the surface is the weighted mean of one column.
struct SurfaceValue {
  Property<double> Shading::*property;
  Weighting weighting;
  double Point::*column;
};

constexpr std::array kSurfaceValues{
    SurfaceValue{&Shading::Sol_refl_slat_surf_outd, Weighting::Solar, &Point::R_out_BD},
    SurfaceValue{&Shading::Sol_refl_slat_surf_ind, Weighting::Solar, &Point::R_in_BD},
    SurfaceValue{&Shading::Sol_transm_slat_surf, Weighting::Solar, &Point::T_out_BD},
    SurfaceValue{&Shading::Vis_refl_slat_surf_outd, Weighting::Visual, &Point::R_out_BD},
    SurfaceValue{&Shading::Vis_refl_slat_surf_ind, Weighting::Visual, &Point::R_in_BD},
    SurfaceValue{&Shading::Vis_transm_slat_surf, Weighting::Visual, &Point::T_out_BD},
    SurfaceValue{&Shading::Uv_refl_slat_surf_outd, Weighting::Ultraviolet, &Point::R_out_BD},
    SurfaceValue{&Shading::Uv_refl_slat_surf_ind, Weighting::Ultraviolet, &Point::R_in_BD},
    SurfaceValue{&Shading::Uv_transm_slat_surf, Weighting::Ultraviolet, &Point::T_out_BD},
    SurfaceValue{&Shading::Sol_refl_slat_surf_outd_BB, Weighting::Solar, &Point::R_out_BB},
    SurfaceValue{&Shading::Sol_refl_slat_surf_ind_BB, Weighting::Solar, &Point::R_in_BB},
    SurfaceValue{&Shading::Sol_transm_slat_surf_BB, Weighting::Solar, &Point::T_out_BB},
    SurfaceValue{&Shading::Vis_refl_slat_surf_outd_BB, Weighting::Visual, &Point::R_out_BB},
    SurfaceValue{&Shading::Vis_refl_slat_surf_ind_BB, Weighting::Visual, &Point::R_in_BB},
    SurfaceValue{&Shading::Vis_transm_slat_surf_BB, Weighting::Visual, &Point::T_out_BB},
    SurfaceValue{&Shading::Uv_refl_slat_surf_outd_BB, Weighting::Ultraviolet, &Point::R_out_BB},
    SurfaceValue{&Shading::Uv_refl_slat_surf_ind_BB, Weighting::Ultraviolet, &Point::R_in_BB},
    SurfaceValue{&Shading::Uv_transm_slat_surf_BB, Weighting::Ultraviolet, &Point::T_out_BB},
};

/// An integrated value is the weighted mean of the sum of two columns.
struct TotalValue {
  double Row::*value;
  Weighting weighting;
  double Point::*beam;
  double Point::*scattered;
};

constexpr std::array kTotalValues{
    TotalValue{&Row::reflection_solar_outdoor, Weighting::Solar, &Point::R_out_BB,
               &Point::R_out_BD},
    TotalValue{&Row::reflection_solar_indoor, Weighting::Solar, &Point::R_in_BB, &Point::R_in_BD},
    TotalValue{&Row::transmission_solar_outdoor, Weighting::Solar, &Point::T_out_BB,
               &Point::T_out_BD},
    TotalValue{&Row::transmission_solar_indoor, Weighting::Solar, &Point::T_in_BB, &Point::T_in_BD},
    TotalValue{&Row::reflection_visual_outdoor, Weighting::Visual, &Point::R_out_BB,
               &Point::R_out_BD},
    TotalValue{&Row::reflection_visual_indoor, Weighting::Visual, &Point::R_in_BB, &Point::R_in_BD},
    TotalValue{&Row::transmission_visual_outdoor, Weighting::Visual, &Point::T_out_BB,
               &Point::T_out_BD},
    TotalValue{&Row::transmission_visual_indoor, Weighting::Visual, &Point::T_in_BB,
               &Point::T_in_BD},
    TotalValue{&Row::reflection_UV_outdoor, Weighting::Ultraviolet, &Point::R_out_BB,
               &Point::R_out_BD},
    TotalValue{&Row::reflection_UV_indoor, Weighting::Ultraviolet, &Point::R_in_BB,
               &Point::R_in_BD},
    TotalValue{&Row::transmission_UV_outdoor, Weighting::Ultraviolet, &Point::T_out_BB,
               &Point::T_out_BD},
    TotalValue{&Row::transmission_UV_indoor, Weighting::Ultraviolet, &Point::T_in_BB,
               &Point::T_in_BD},
};

/// The spectrum in ascending order, column by column.
class Columns {
 public:
  explicit Columns(std::vector<Point> points) : points_(std::move(points)) {
    std::ranges::stable_sort(points_, {}, &Point::wavelength);
    wavelengths_ = column(&Point::wavelength);
  }

  std::vector<double> column(double Point::*member) const {
    std::vector<double> values(points_.size());
    std::ranges::transform(points_, values.begin(), member);
    return values;
  }

  double mean(Weighting weighting, const std::vector<double>& values) const {
    return weightedMean(weighting, wavelengths_, values).value_or(0);
  }

 private:
  std::vector<Point> points_;
  std::vector<double> wavelengths_;
};

}  // namespace

void calculateIntegratedValues(ShadingDataClass& shading) {
  if (shading.spectrum().empty()) {
    return;
  }
  const Columns columns(shading.spectrum());
  for (const SurfaceValue& surface : kSurfaceValues) {
    (shading.*surface.property)(columns.mean(surface.weighting, columns.column(surface.column)));
  }
  Row normalIncidence;
  for (const TotalValue& total : kTotalValues) {
    std::vector<double> values = columns.column(total.beam);
    std::ranges::transform(values, columns.column(total.scattered), values.begin(), std::plus<>());
    normalIncidence.*total.value = columns.mean(total.weighting, values);
  }
  shading.integrated({normalIncidence});
}

}  // namespace orv
