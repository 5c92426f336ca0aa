#include "commands/SpectraCsv.h"

#include <fmt/format.h>

#include <array>
#include <map>
#include <set>
#include <utility>

#include "commands/CsvText.h"
#include "optics/Wavelength.h"

namespace orv::commands {

namespace {

constexpr std::array kProperties = {"transmittance front", "transmittance back",
                                    "reflectance front", "reflectance back"};

using Values = std::array<float, kProperties.size()>;

/// A wavelength, and which of the points of a spectrum at it: 0 but where there are several.
using RowKey = std::pair<double, int>;

std::map<RowKey, Values> rowsOf(const SpectralData& spectrum) {
  std::map<RowKey, Values> rows;
  for (std::int32_t i = 0; i < spectrum.count(); ++i) {
    const double wavelength = optics::rounded(spectrum.ConvertedWl(i, kNanometers));
    const Values values = {spectrum.Tf(i), spectrum.Tb(i), spectrum.Rf(i), spectrum.Rb(i)};
    int which = 0;
    while (!rows.try_emplace({wavelength, which}, values).second) ++which;
  }
  return rows;
}

std::string heading(const std::string& spectrum, const char* property) {
  const std::string name = spectrum.empty() ? std::string() : spectrum + " ";
  return csvCell(fmt::format("{}{} (1)", name, property));
}

}  // namespace

std::string spectraCsv(const std::vector<NamedSpectrum>& spectra) {
  std::vector<std::map<RowKey, Values>> columns;
  std::set<RowKey> all;
  std::string text = "wavelength (nm)";
  for (const NamedSpectrum& each : spectra) {
    columns.push_back(each.spectrum ? rowsOf(*each.spectrum) : std::map<RowKey, Values>());
    for (const auto& [key, values] : columns.back()) all.insert(key);
    for (const char* property : kProperties) text += "," + heading(each.name, property);
  }
  text += "\r\n";
  for (const RowKey& key : all) {
    text += fmt::format("{}", key.first);
    for (const auto& column : columns) {
      const auto found = column.find(key);
      for (std::size_t i = 0; i < kProperties.size(); ++i) {
        text += found == column.end() ? "," : fmt::format(",{}", found->second[i]);
      }
    }
    text += "\r\n";
  }
  return text;
}

}  // namespace orv::commands
