#include "app/docks/spectra/ShadingSpectrum.h"

namespace orv::app {

std::shared_ptr<GlazingData> paneOf(const ShadingDataClass& shading) {
  auto pane = std::make_shared<GlazingData>();
  if (shading.id() >= 0) pane->id(shading.id());  // that of one that is stored
  pane->filename(shading.name());
  pane->productname(shading.productname());
  pane->supplier(shading.supplier());
  pane->group(shading.group());
  const auto& points = shading.spectrum();
  if (points.empty()) return pane;
  auto spectrum = std::make_shared<SpectralData>();
  spectrum->Allocate(static_cast<std::int32_t>(points.size()) - 1);
  std::int32_t i = 0;
  for (const ShadingSpectralPoint& point : points) {
    spectrum->wl(i, static_cast<float>(point.wavelength));
    spectrum->Tf(i, static_cast<float>(point.T_out_BB + point.T_out_BD));
    spectrum->Tb(i, static_cast<float>(point.T_in_BB + point.T_in_BD));
    spectrum->Rf(i, static_cast<float>(point.R_out_BB + point.R_out_BD));
    spectrum->Rb(i, static_cast<float>(point.R_in_BB + point.R_in_BD));
    ++i;
  }
  pane->WavelengthUnit(kNanometers);
  pane->SpectralData(spectrum);
  return pane;
}

}  // namespace orv::app
