#include "commands/ColumnTitle.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "model/Text.h"

namespace orv::commands {

namespace {

struct KnownColumn {
  std::string_view name;
  std::string_view title;
  std::string_view unit = {};
};

constexpr std::array kKnownColumns = {
    KnownColumn{"productname", "Product name"},
    KnownColumn{"GroupName", "Group"},
    KnownColumn{"SupplierName", "Supplier"},
    KnownColumn{"FrameTypeName", "Frame type"},
    KnownColumn{"FileName", "File name"},
    KnownColumn{"Filename", "Filename"},
    KnownColumn{"NFRC_ID", "NFRC ID"},
    KnownColumn{"Substrate_FileName", "Substrate file"},
    KnownColumn{"thickness", "Thickness", "mm"},
    KnownColumn{"conduction", "Conductivity", "W/(m·K)"},
    KnownColumn{"conductivity", "Conductivity", "W/(m·K)"},
    KnownColumn{"ef", "Emissivity front"},
    KnownColumn{"eb", "Emissivity back"},
    KnownColumn{"TIR", "Transmittance IR"},
    KnownColumn{"emission_IR_outdoor", "Emissivity IR outdoor"},
    KnownColumn{"emission_IR_indoor", "Emissivity IR indoor"},
    KnownColumn{"transmission_IR_outdoor", "Transmittance IR outdoor"},
    KnownColumn{"transmission_IR_indoor", "Transmittance IR indoor"},
    KnownColumn{"emissivity_slat_surf_outd", "Slat emissivity outdoor"},
    KnownColumn{"emissivity_slat_surf_ind", "Slat emissivity indoor"},
    KnownColumn{"transmissivity_slat_surf", "Slat transmittance IR"},
    KnownColumn{"coatingcode", "Coating code"},
    KnownColumn{"0_30_60", "Data at 0°, 30°, 60°"},
    KnownColumn{"homogenious", "Homogeneous"},
    KnownColumn{"3D", "3D"},
    KnownColumn{"typeID", "Type"},
    KnownColumn{"Ra", "Colour rendering Ra"},
    KnownColumn{"u_value", "U-value", "W/(m²·K)"},
    KnownColumn{"angle", "Angle", "°"},
    KnownColumn{"slat_length", "Slat width", "mm"},
    KnownColumn{"slat_distance", "Slat distance", "mm"},
    KnownColumn{"slat_curvature", "Slat curvature", "mm"},
    KnownColumn{"window_slat_distance", "Distance to window", "mm"},
};

bool isLower(char c) {
  return std::islower(static_cast<unsigned char>(c)) != 0;
}
bool isUpper(char c) {
  return std::isupper(static_cast<unsigned char>(c)) != 0;
}

/// The first letter of a word that is written in capitals only is no word's beginning.
std::string wordsOf(std::string_view name) {
  std::string words;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const char c = name[i];
    if (c == '_') {
      words += ' ';
    } else if (i > 0 && isUpper(c) && isLower(name[i - 1])) {
      const bool acronym = i + 1 >= name.size() || isUpper(name[i + 1]);
      words += ' ';
      words += acronym ? c : static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    } else {
      words += c;
    }
  }
  if (words.ends_with(" id")) words.replace(words.size() - 2, 2, "ID");
  if (!words.empty()) {
    words[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(words[0])));
  }
  return words;
}

}  // namespace

ColumnTitle columnTitle(std::string_view column) {
  // "FileName" of databases and "Filename" of folders differ in case only: the exact name first.
  auto known = std::find_if(kKnownColumns.begin(), kKnownColumns.end(),
                            [&](const KnownColumn& each) { return each.name == column; });
  if (known == kKnownColumns.end()) {
    known = std::find_if(kKnownColumns.begin(), kKnownColumns.end(), [&](const KnownColumn& each) {
      return equalIgnoringCase(each.name, column);
    });
  }
  if (known == kKnownColumns.end()) return {wordsOf(column), {}};
  return {std::string(known->title), std::string(known->unit)};
}

}  // namespace orv::commands
