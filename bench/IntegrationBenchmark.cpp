// The cost of integrated values: generated panes of 420 wavelengths, each with other curves,
// integrated by every standard on one core; once with the same wavelengths for all, as records of
// one laboratory have them, and once with wavelengths of their own, for which everything is
// prepared anew.
//
// The times are those of the processor.
//
// usage: integration_bench [PANES]     (10000 unless told otherwise)

#include <fmt/format.h>

#include <cmath>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <vector>

#include "optics/Integrator.h"

namespace {

/// Every 5 nm from 300 nm, every 10 nm to 2500 nm, then every 250 nm to 25 µm; with `shift`, a
/// little beside that.
float wavelength(int i) {
  constexpr int kCoarse = 220;
  constexpr int kInfrared = 330;
  if (i < kCoarse) return 300.0F + 5.0F * static_cast<float>(i);
  if (i < kInfrared) return 1400.0F + 10.0F * static_cast<float>(i - kCoarse);
  return 2500.0F + 250.0F * static_cast<float>(i - kInfrared);
}

std::shared_ptr<orv::GlazingData> makePane(int number, float shift) {
  constexpr int kWavelengths = 420;
  auto spectrum = std::make_shared<orv::SpectralData>();
  spectrum->Allocate(kWavelengths - 1);
  for (int i = 0; i < kWavelengths; ++i) {
    spectrum->wl(i, wavelength(i) + shift);
    spectrum->Tf(i, static_cast<float>(0.45 + 0.4 * std::sin(0.01 * (i + number))));
    spectrum->Tb(i, spectrum->Tf(i));
    spectrum->Rf(i, 0.05F);
    spectrum->Rb(i, 0.06F);
  }
  auto pane = std::make_shared<orv::GlazingData>();
  pane->WavelengthUnit(orv::kNanometers);
  pane->SpectralData(spectrum);
  pane->CoatedSide(orv::kNeitherSide);
  return pane;
}

void measure(const char* what, int panes, float step) {
  std::vector<std::shared_ptr<orv::GlazingData>> records;
  for (int i = 0; i < panes; ++i) {
    records.push_back(makePane(i, step * static_cast<float>(i)));
  }
  double sum = 0;
  const std::clock_t start = std::clock();
  for (const auto& standard : orv::optics::kStandardNames) {
    orv::optics::Integrator integrator(standard.standard);
    for (const auto& record : records) sum += *integrator.integrate(*record)["Tf_sol"];
  }
  const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
  fmt::print("{} panes by {} standards, {}: {:.3f} s (mean Tf_sol {:.6f})\n", panes,
             orv::optics::kStandardNames.size(), what, seconds,
             sum / panes / static_cast<double>(orv::optics::kStandardNames.size()));
}

}  // namespace

int main(int count, char** arguments) {
  const int panes = count > 1 ? std::atoi(arguments[1]) : 10000;
  measure("the same wavelengths", panes, 0);
  measure("other wavelengths each", panes, 0.002F);
}
