// Records in which every field has a value of its own, and records as texts to be compared.
#pragma once

#include <fmt/format.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "model/FrameDataClass.h"
#include "model/GlazingData.h"
#include "model/ShadingDataClass.h"

namespace orv::test {

inline std::string listOf(const SpectralData& spectrum) {
  std::string text = fmt::format("unit {}", spectrum.WavelengthUnit());
  for (std::int32_t i = 0; i < spectrum.count(); ++i) {
    text += fmt::format("; {} {} {} {} {}", spectrum.wl(i), spectrum.Tf(i), spectrum.Tb(i),
                        spectrum.Rf(i), spectrum.Rb(i));
  }
  return text;
}

inline std::string dateText(const OptionalDate& date) {
  return date ? std::to_string(date->time_since_epoch().count()) : "none";
}

/// The values, a line each.
template <class... Values>
std::string inLines(const Values&... values) {
  return (fmt::format("{}\n", values) + ...);
}

/// Every property, a line each.
inline std::string whole(const GlazingData& p) {
  std::string text =
      inLines(p.filename(), dateText(p.FileDate()), p.NFRC_id(), p.productname(), p.supplier(),
              p.group(), p.description(), p.Appearance(), p.Acceptance(), p.IGDBChecksum(),
              dateText(p.IGDBChecksumDate()), p.Hidden(), p.id(), p.unit(), p.WavelengthUnit(),
              p.Thickness(), p.Conductivity(), p.TfIR(), p.TbiR(), p.ef(), p.ef_source(), p.eb(),
              p.eb_source(), p.GlazingType(), p.material(), p.CoatingName(), p.CoatingID(),
              p.CoatedSide(), p.CoatingFilename(), p.SubstrateFilename(), p.LaminateFilename(),
              p.FilmFilename(), p.LaminateMaterial());
  for (std::int32_t i = 1; i <= p.UsesCount(); ++i) text += p.uses(i) + "\n";
  for (std::int32_t i = 1; i <= p.AvailabilityCount(); ++i) {
    text += inLines(p.Availability(i)->Region(), p.Availability(i)->AlternateProductName());
  }
  for (std::int32_t i = 0; i < p.StructureCount(); ++i) {
    const auto& layer = *p.structure(i);
    text += inLines(layer.filename(), layer.Thickness(), layer.Flipped());
  }
  text += inLines(p.Precalc_StandardName(), dateText(p.Precalc_Time()), p.Precalc_Tfsol(),
                  p.Precalc_Tbsol(), p.Precalc_Rfsol(), p.Precalc_RbSol(), p.Precalc_Tfvis(),
                  p.Precalc_Tbvis(), p.Precalc_Rfvis(), p.Precalc_Rbvis(), p.Precalc_TfIR(),
                  p.Precalc_ef(), p.Precalc_eb(), p.Precalc_TCIEX(), p.Precalc_TCIEY(),
                  p.Precalc_TCIEZ(), p.Precalc_RfCIEX(), p.Precalc_RfCIEY(), p.Precalc_RfCIEZ(),
                  p.Precalc_Tdw(), p.Precalc_Tfuv(), p.Precalc_Tbuv(), p.Precalc_Rfuv(),
                  p.Precalc_Rbuv(), p.Precalc_TSPF(), p.ORV_Emissivity_back(),
                  p.ORV_Emissivity_front(), p.ORV_CoatingClass(), p.ORV_Angle(), p.ORV_Direction(),
                  p.ORV_Frozen(), p.with_and_without_film(), p.film_outdoor_side(),
                  p.single_layer(), p.spectral_pane(), p.Use_0_30_60(), p.use_estimation());
  if (p.SpectralData()) text += listOf(*p.SpectralData());
  if (p.HasSubstrate()) text += "\nsubstrate:\n" + whole(*p.SubstrateReference());
  return text;
}

/// A spectrum of points that are wavelength, Tf, Tb, Rf and Rb.
inline std::shared_ptr<SpectralData> spectrumOf(const std::vector<std::array<float, 5>>& points) {
  auto spectrum = std::make_shared<SpectralData>();
  spectrum->Allocate(static_cast<std::int32_t>(points.size()) - 1);
  for (std::int32_t i = 0; const auto& [wavelength, tf, tb, rf, rb] : points) {
    spectrum->wl(i, wavelength);
    spectrum->Tf(i, tf);
    spectrum->Tb(i, tb);
    spectrum->Rf(i, rf);
    spectrum->Rb(i++, rb);
  }
  return spectrum;
}

inline std::shared_ptr<SpectralData> spectrumOfTwo(float first) {
  constexpr float kShift = 1.0F / 3;
  return spectrumOf(
      {{first, 0.1F, 0.2F, 0.3F, 1e-8F},
       {first + kShift, 0.1F + kShift, 0.2F + kShift, 0.3F + kShift, 1e-8F + kShift}});
}

/// Another value in every field that has more than two.
inline std::shared_ptr<GlazingData> fullPane() {
  auto pane = std::make_shared<GlazingData>();
  GlazingData& p = *pane;
  const auto date = [](int days) { return Date(std::chrono::hours(24 * days + 1)); };
  float f = 0.0625F;
  const auto next = [&] { return f += 0.013F; };
  p.filename("file \"ä\".dat"), p.FileDate(date(-9000)), p.NFRC_id(11), p.productname("product");
  p.supplier("maker"), p.group("group"), p.description("{text}\nof two"), p.Appearance("grey");
  p.Acceptance("#"), p.IGDBChecksum(-12), p.IGDBChecksumDate(date(20000)), p.Hidden(true);
  p.id(13), p.unit(kIP), p.WavelengthUnit(kNanometers), p.Thickness(next());
  p.Conductivity(next()), p.TfIR(next()), p.TbiR(next()), p.ef(next()), p.eb(next());
  p.ef_source(kSpectralDataSource), p.eb_source(kMaterialSource), p.GlazingType(kAppliedFilm);
  p.material("material"), p.CoatingName("coating"), p.CoatingID(14), p.CoatedSide(kBothSides);
  p.CoatingFilename("c.txt"), p.SubstrateFilename("s.txt"), p.LaminateFilename("l.txt");
  p.FilmFilename("f.txt"), p.LaminateMaterial("PVB"), p.AddUse("one"), p.AddUse("two");
  const auto availability = std::make_shared<Availability>();
  availability->Region("region"), availability->AlternateProductName("other");
  p.AddAvailability(availability);
  const auto layer = std::make_shared<GlazingStructure>();
  layer->filename("layer.txt"), layer->Thickness(next()), layer->Flipped(true);
  p.AddStructure(layer);
  p.Precalc_StandardName("standard"), p.Precalc_Time(date(15000)), p.Precalc_Tfsol(next());
  p.Precalc_Tbsol(next()), p.Precalc_Rfsol(next()), p.Precalc_RbSol(next());
  p.Precalc_Tfvis(next()), p.Precalc_Tbvis(next()), p.Precalc_Rfvis(next());
  p.Precalc_Rbvis(next()), p.Precalc_TfIR(next()), p.Precalc_ef(next()), p.Precalc_eb(next());
  p.Precalc_TCIEX(next()), p.Precalc_TCIEY(next()), p.Precalc_TCIEZ(next());
  p.Precalc_RfCIEX(next()), p.Precalc_RfCIEY(next()), p.Precalc_RfCIEZ(next());
  p.Precalc_Tdw(next()), p.Precalc_Tfuv(next()), p.Precalc_Tbuv(next()), p.Precalc_Rfuv(next());
  p.Precalc_Rbuv(next()), p.Precalc_TSPF(next()), p.ORV_Emissivity_back(0.123456789012345);
  p.ORV_Emissivity_front(0.9876543210987), p.ORV_CoatingClass("AB"), p.ORV_Angle(37);
  p.ORV_Direction(5), p.ORV_Frozen(true), p.with_and_without_film(true);
  p.film_outdoor_side(true), p.single_layer(true), p.Use_0_30_60(true), p.use_estimation(false);
  p.spectral_pane(true);
  p.SpectralData(spectrumOfTwo(302.5F));
  const auto substrate = std::make_shared<GlazingData>();
  substrate->WavelengthUnit(kNanometers);
  substrate->SpectralData(spectrumOfTwo(400));
  p.SubstrateReference(substrate);
  return pane;
}

inline FrameDataClass fullFrame() {
  FrameDataClass frame;
  frame.name("frame");
  frame.group("Tarven frames");
  frame.supplier("Frame maker");
  frame.frametype("Wood");
  frame.u_value(1.3);
  frame.width(70);
  frame.picture({1, 2, 3});
  frame.Info("of oak");
  return frame;
}

inline std::string whole(const FrameDataClass& f) {
  return inLines(f.name(), f.productname(), f.group(), f.supplier(), f.frametype(), f.u_value(),
                 f.width(), fmt::format("{}", fmt::join(f.picture(), ",")), f.Info());
}

/// The numbers, flags and texts of a shading, these with names.
constexpr auto shadingNumbers() {
  using S = ShadingDataClass;
  return std::array{&S::thickness,
                    &S::conduction,
                    &S::emission_IR_outdoor,
                    &S::emission_IR_indoor,
                    &S::transmission_IR_outdoor,
                    &S::transmission_IR_indoor,
                    &S::emissivity_slat_surf_outd,
                    &S::emissivity_slat_surf_ind,
                    &S::transmissivity_slat_surf,
                    &S::permeability,
                    &S::window_slat_distance,
                    &S::slat_curvature,
                    &S::slat_length,
                    &S::slat_distance,
                    &S::angle,
                    &S::Sol_refl_slat_surf_outd,
                    &S::Sol_refl_slat_surf_ind,
                    &S::Sol_transm_slat_surf,
                    &S::Vis_refl_slat_surf_outd,
                    &S::Vis_refl_slat_surf_ind,
                    &S::Vis_transm_slat_surf,
                    &S::Uv_refl_slat_surf_outd,
                    &S::Uv_refl_slat_surf_ind,
                    &S::Uv_transm_slat_surf,
                    &S::Sol_refl_slat_surf_outd_BB,
                    &S::Sol_refl_slat_surf_ind_BB,
                    &S::Sol_transm_slat_surf_BB,
                    &S::Vis_refl_slat_surf_outd_BB,
                    &S::Vis_refl_slat_surf_ind_BB,
                    &S::Vis_transm_slat_surf_BB,
                    &S::Uv_refl_slat_surf_outd_BB,
                    &S::Uv_refl_slat_surf_ind_BB,
                    &S::Uv_transm_slat_surf_BB};
}
constexpr auto shadingFlags() {
  using S = ShadingDataClass;
  return std::array{&S::measured, &S::single_layer, &S::spectral, &S::horizontal,
                    &S::vertical, &S::homogenious,  &S::ThreeD,   &S::freeze};
}
inline auto shadingTexts() {
  using S = ShadingDataClass;
  return std::array{std::pair{"name", &S::name}, std::pair{"productname", &S::productname},
                    std::pair{"appearance", &S::appearance}, std::pair{"Info", &S::Info},
                    std::pair{"reference", &S::reference}};
}

/// Numbers are sevenths, the first 1/7; texts their names; flags alternate.
inline ShadingDataClass fullShading() {
  ShadingDataClass shading;
  for (double next = 0; const auto field : shadingNumbers()) (shading.*field)(++next / 7);
  for (bool next = false; const auto field : shadingFlags()) (shading.*field)(next = !next);
  for (const auto& [name, field] : shadingTexts()) (shading.*field)(std::string("the ® ") + name);
  shading.group("Shades");
  shading.supplier("Shade maker");
  shading.material("Aluminium");
  shading.position("outdoor");
  shading.typeID(4);
  shading.CoatedSide(kBothSides);
  shading.Supplier_dataID(-8);
  shading.integrated({{30, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 1 / 3.0},
                      {60, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 0.25}});
  shading.spectrum({{300.1, 0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 1 / 3.0},
                    {2500, 0.8, 0.7, 0.6, 0.5, 0.4, 0.3, 0.2, 1e-7}});
  return shading;
}

inline std::string whole(const ShadingDataClass& s) {
  std::string text = inLines(s.group(), s.supplier(), s.material(), s.position(), s.typeID(),
                             s.CoatedSide(), s.Supplier_dataID());
  for (const auto field : shadingNumbers()) text += inLines((s.*field)());
  for (const auto field : shadingFlags()) text += inLines((s.*field)());
  for (const auto& [name, field] : shadingTexts()) text += inLines((s.*field)());
  for (const ShadingIntegratedData& row : s.integrated()) {
    text += inLines(row.angle, row.reflection_solar_outdoor, row.reflection_solar_indoor,
                    row.transmission_solar_outdoor, row.transmission_solar_indoor,
                    row.reflection_visual_outdoor, row.reflection_visual_indoor,
                    row.transmission_visual_outdoor, row.transmission_visual_indoor,
                    row.reflection_UV_outdoor, row.reflection_UV_indoor,
                    row.transmission_UV_outdoor, row.transmission_UV_indoor);
  }
  for (const ShadingSpectralPoint& at : s.spectrum()) {
    text += inLines(at.wavelength, at.T_out_BB, at.T_in_BB, at.R_out_BB, at.R_in_BB, at.T_out_BD,
                    at.T_in_BD, at.R_out_BD, at.R_in_BD);
  }
  return text;
}

}  // namespace orv::test
