// The cost of a pane: writes generated panes of 420 wavelengths into a new ORV database, each
// durable before the next, and tells what the first and the last hundred took.
//
// usage: copy_bench [PANES]     (1000 unless told otherwise)

#include <fmt/format.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "database/ORV_DatabaseInterface.h"
#include "database/OrvSchema.h"

namespace {

using Clock = std::chrono::steady_clock;

class NoQuestions : public orv::database::PaneQuestions {
 public:
  bool confirm(const std::string&, const std::string&) override { return false; }
};

std::shared_ptr<orv::GlazingData> makePane(int number) {
  constexpr int kWavelengths = 420;
  auto spectrum = std::make_shared<orv::SpectralData>();
  spectrum->Allocate(kWavelengths - 1);
  spectrum->WavelengthUnit(1);
  for (int i = 0; i < kWavelengths; ++i) {
    const auto transmittance = static_cast<float>(0.5 + 0.4 * std::sin(0.01 * (i + number)));
    spectrum->wl(i, 300.0f + 5.0f * static_cast<float>(i));
    spectrum->Tf(i, transmittance);
    spectrum->Tb(i, transmittance);
    spectrum->Rf(i, 0.05f);
    spectrum->Rb(i, 0.06f);
  }
  auto pane = std::make_shared<orv::GlazingData>();
  pane->filename(fmt::format("bench{:06}.txt", number));
  pane->productname(fmt::format("Pane {}", number));
  pane->supplier(fmt::format("Maker {}", number % 20));
  pane->group("Benchmark");
  pane->Thickness(4);
  pane->Conductivity(1);
  pane->spectral_pane(true);
  pane->WavelengthUnit(1);
  pane->SpectralData(spectrum);
  return pane;
}

double milliseconds(Clock::duration time) {
  return std::chrono::duration<double, std::milli>(time).count();
}

}  // namespace

int main(int count, char** arguments) {
  const int panes = count > 1 ? std::atoi(arguments[1]) : 1000;
  const std::string path =
      (std::filesystem::temp_directory_path() / fmt::format("orv-copy-bench-{}.mdb", getpid()))
          .string();
  NoQuestions questions;
  orv::database::ORV_DatabaseInterface database(questions);
  auto connection = orv::database::CreateEmptyDatabase(path);
  std::vector<double> times;
  for (int i = 0; i < panes; ++i) {
    const auto pane = makePane(i);
    const auto start = Clock::now();
    database.InsertPane(*pane, *connection);
    times.push_back(milliseconds(Clock::now() - start));
  }
  auto mean = [&](std::size_t from, std::size_t to) {
    double sum = 0;
    for (std::size_t i = from; i < to; ++i) {
      sum += times[i];
    }
    return sum / static_cast<double>(to - from);
  };
  const std::size_t part = std::min<std::size_t>(100, times.size());
  fmt::print("{} panes of 420 wavelengths, each durable: {:.2f} ms a pane\n", panes,
             mean(0, times.size()));
  fmt::print("first {}: {:.2f} ms a pane; last {}: {:.2f} ms a pane\n", part, mean(0, part), part,
             mean(times.size() - part, times.size()));
  connection.reset();
  std::filesystem::remove(path);
}
