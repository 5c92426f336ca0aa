// The cost of integrated values: generated panes of 420 wavelengths, each with other curves,
// integrated by every standard on one core; once with the same wavelengths for all, as records of
// one laboratory have them, and once with wavelengths of their own, for which everything is
// prepared anew.
//
// usage: integration_bench [PANES]     (10000 unless told otherwise)

#include <fmt/format.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <vector>

#include "optics/Integrator.h"

namespace {

using Clock = std::chrono::steady_clock;

/// From 300 nm to 2500 nm and on to 25 µm; with `shift`, a little beside that.
std::shared_ptr<orv::GlazingData> makePane(int number, float shift) {
  constexpr int kWavelengths = 420;
  constexpr int kInfrared = 100;
  auto spectrum = std::make_shared<orv::SpectralData>();
  spectrum->Allocate(kWavelengths - 1);
  for (int i = 0; i < kWavelengths; ++i) {
    const int solar = kWavelengths - kInfrared;
    const float at = i < solar ? 300.0F + 2200.0F * static_cast<float>(i) / (solar - 1)
                               : 2500.0F + 225.0F * static_cast<float>(i - solar + 1);
    spectrum->wl(i, at + shift);
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
  constexpr float kShifts = 10;
  std::vector<std::shared_ptr<orv::GlazingData>> records;
  for (int i = 0; i < panes; ++i) {
    records.push_back(makePane(i, step * std::fmod(static_cast<float>(i), kShifts)));
  }
  double sum = 0;
  const auto start = Clock::now();
  for (const auto& standard : orv::optics::kStandardNames) {
    orv::optics::Integrator integrator(standard.standard);
    for (const auto& record : records) sum += *integrator.integrate(*record)["Tf_sol"];
  }
  const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
  fmt::print("{} panes by {} standards, {}: {:.3f} s (mean Tf_sol {:.6f})\n", panes,
             orv::optics::kStandardNames.size(), what, seconds,
             sum / panes / static_cast<double>(orv::optics::kStandardNames.size()));
}

}  // namespace

int main(int count, char** arguments) {
  const int panes = count > 1 ? std::atoi(arguments[1]) : 10000;
  measure("the same wavelengths", panes, 0);
  measure("other wavelengths each", panes, 0.25F);
}
