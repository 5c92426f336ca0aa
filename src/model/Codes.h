// The codes of the glazing record, and the texts that files and messages use for them.
//
// The properties that hold a code take any number, since a database may hold codes that this
// version does not know; these are the ones that it does.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace orv {

/// Unit system of a record's thickness and conductivity.
enum UnitCode : std::int32_t {
  kSI = 0,  ///< millimetres, W/(m·K)
  kIP = 1,  ///< inches, Btu/(h·ft·°F)
};

enum WavelengthUnitCode : std::int32_t { kMicrons = 0, kNanometers = 1 };

/// Where the value of an emissivity comes from.
enum EmittanceSourceCode : std::int32_t {
  kUnknownSource = 0,
  kSpectralDataSource = 1,
  kMaterialSource = 2,
  kTextFileSource = 3,
};

enum GlazingTypeCode : std::int32_t {
  kUnknownType = 0,
  kMonolithic = 1,
  kFilm = 2,
  kCoated = 3,
  kAppliedFilm = 4,
  kLaminate = 5,
  kInterlayer = 6,
};

/// Which surface carries the coating.
enum CoatedSideCode : std::int32_t {
  kSideNotSet = 0,  ///< the state of a new record; it has no text
  kUnknownSide = 1,
  kFrontSide = 2,
  kBackSide = 3,
  kBothSides = 4,
  kNeitherSide = 5,
};

/// The markers that text properties hold in place of a name.
inline constexpr std::string_view kUnknown = "Unknown";    ///< there is a value, nobody knows it
inline constexpr std::string_view kNotApplicable = "N/A";  ///< a pane of this kind has no value

/// A code and its text.
struct CodeName {
  std::int32_t code;
  std::string_view text;
};

inline constexpr std::array kEmittanceSourceNames{
    CodeName{kSpectralDataSource, "Spectral Data"},
    CodeName{kMaterialSource, "Material"},
    CodeName{kTextFileSource, "Text File"},
};

inline constexpr std::array kGlazingTypeNames{
    CodeName{kMonolithic, "Monolithic"}, CodeName{kAppliedFilm, "Applied Film"},
    CodeName{kCoated, "Coated"},         CodeName{kFilm, "Film"},
    CodeName{kLaminate, "Laminate"},     CodeName{kInterlayer, "Interlayer"},
    CodeName{kUnknownType, "Unknown"},
};

inline constexpr std::array kCoatedSideNames{
    CodeName{kFrontSide, "Front"},     CodeName{kBackSide, "Back"},
    CodeName{kBothSides, "Both"},      CodeName{kNeitherSide, "Neither"},
    CodeName{kUnknownSide, "Unknown"},
};

/// The code whose text this is, letter case ignored; none when no text matches.
std::optional<std::int32_t> codeOf(std::span<const CodeName> names, std::string_view text);

/// The text of a code; none when the code has none.
std::optional<std::string_view> nameOf(std::span<const CodeName> names, std::int32_t code);

}  // namespace orv
