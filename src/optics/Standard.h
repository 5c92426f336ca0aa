// The standards by which spectra are integrated.
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace orv::optics {

enum class Standard { nfrc300, en410, iso9050 };

struct StandardName {
  Standard standard;
  std::string_view word;  ///< for the command line and settings
  std::string_view name;  ///< for people
};

inline constexpr std::array kStandardNames{
    StandardName{Standard::nfrc300, "nfrc300", "NFRC 300"},
    StandardName{Standard::en410, "en410", "EN 410"},
    StandardName{Standard::iso9050, "iso9050", "ISO 9050"},
};

constexpr const StandardName& nameOf(Standard standard) {
  return kStandardNames[static_cast<std::size_t>(standard)];
}

/// By which values are computed where nobody has chosen.
inline constexpr Standard kUsualStandard = Standard::en410;

}  // namespace orv::optics
