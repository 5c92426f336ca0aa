#include "textfile/ShadingReader.h"

#include <fmt/format.h>

#include <algorithm>

#include "errors/Error.h"
#include "model/ErrorCatalogue.h"
#include "model/IntegratedColumns.h"
#include "model/Text.h"
#include "optics/ShadingIntegration.h"
#include "textfile/HeaderEntry.h"
#include "textfile/Number.h"
#include "textfile/PaneKeys.h"
#include "textfile/Remedy.h"
#include "textfile/ShadingKeys.h"
#include "textfile/TextFile.h"
#include "textfile/Tokenizer.h"

namespace orv::textfile {

namespace {

constexpr double kNanometersPerMicron = 1000;
constexpr std::string_view kSpectralData = "Spectral Data";

/// Refuses what a line holds.
void require(bool condition, std::int32_t number, const Tokenizer& tokenizer, const Token& token) {
  if (condition) return;
  raiseAt(tokenizer.placeOf(token), number,
          DescribeError(number, std::string(token.text), kSpectralData),
          token.isWord() ? remedyForNumber(token.text).text
                         : "A line needs a wavelength and eight values.");
}

double readValue(const Tokenizer& tokenizer, const Token& token) {
  require(token.isWord(), kNotAToken, tokenizer, token);
  const auto value = parseDouble(token.text);
  require(value.has_value(), kNotANumber, tokenizer, token);
  if (*value < 0) {
    raiseAt(tokenizer.placeOf(token), kInvalidCall,
            fmt::format("'{}' is negative. No value of a shading is below 0", token.text));
  }
  return *value;
}

/// A line of the spectrum, whose first word is `wavelength`. Further columns are passed over.
ShadingSpectralPoint readPoint(Tokenizer& tokenizer, const Token& wavelength) {
  ShadingSpectralPoint point;
  Token token = wavelength;
  for (const ShadingSpectralColumn& column : kShadingSpectralColumns) {
    if (column.member != &ShadingSpectralPoint::wavelength) {
      token = tokenizer.GetToken();
    }
    point.*column.member = readValue(tokenizer, token);
  }
  tokenizer.SkipLine();
  return point;
}

/// The spectrum, wavelengths as they stand in the file.
std::vector<ShadingSpectralPoint> readSpectrum(Tokenizer& tokenizer) {
  std::vector<ShadingSpectralPoint> points;
  for (Token token = tokenizer.GetToken(); token.type != TokenType::EndOfText;
       token = tokenizer.GetToken()) {
    if (token.isWord()) {
      points.push_back(readPoint(tokenizer, token));
    }
  }
  return points;
}

/// Fills the record from the entries of the header. Keys are taken in the order of the tables, so
/// that what follows from one key is settled before another key can say otherwise.
class HeaderReader {
 public:
  HeaderReader(const Tokenizer& tokenizer, ShadingDataClass& shading)
      : entries_(headerEntries(tokenizer)), place_(tokenizer.place()), shading_(shading) {}

  bool has(std::string_view key) const { return find(key) != nullptr; }
  void readUnits(std::vector<ShadingSpectralPoint>& points) const;
  void readHeader() const;

 private:
  const HeaderEntry* find(std::string_view key) const;
  void readTexts() const;
  void readProductType() const;
  void readCoatedSide() const;
  void readOrientation() const;
  template <class Keys>
  void readNumbers(const Keys& keys) const;
  void deriveFromMeasures() const;
  void readFlags() const;
  void readIntegratedRows() const;
  ShadingIntegratedData integratedRow(const HeaderEntry& entry) const;
  [[noreturn]] void refuse(const HeaderEntry* entry, const std::string& description,
                           const std::string& remedy) const;

  std::vector<HeaderEntry> entries_;
  Place place_;
  ShadingDataClass& shading_;
};

/// The last entry of this key; null when there is none.
const HeaderEntry* HeaderReader::find(std::string_view key) const {
  const auto found = std::find_if(entries_.rbegin(), entries_.rend(),
                                  [key](const HeaderEntry& entry) { return entry.hasKey(key); });
  return found == entries_.rend() ? nullptr : &*found;
}

/// Turns the wavelengths into nanometres, as records hold them.
void HeaderReader::readUnits(std::vector<ShadingSpectralPoint>& points) const {
  const HeaderEntry* const entry = find(kUnitsKey);
  const std::string unit = entry == nullptr ? "" : lowerCase(entry->value);
  if (unit == "microns") {
    for (ShadingSpectralPoint& point : points) {
      point.wavelength *= kNanometersPerMicron;
    }
  } else if (unit != "nanometers") {
    refuse(entry, "Units not recognized", "It is { Units: Nanometers } or { Units: Microns }.");
  }
}

void HeaderReader::readHeader() const {
  readTexts();
  readProductType();
  readCoatedSide();
  readOrientation();
  readNumbers(kShadingMeasureKeys);
  deriveFromMeasures();
  readNumbers(kShadingDerivedKeys);
  readFlags();
  readIntegratedRows();
  if (const HeaderEntry* const entry = find(kSupplierDataKey)) {
    shading_.Supplier_dataID(entry->wholeNumber());
  }
}

void HeaderReader::readTexts() const {
  if (const HeaderEntry* const entry = find(kRecordNameKey)) {
    shading_.name(std::string(entry->value));
  }
  if (const HeaderEntry* const entry = find("supplier")) {  // the label of pane files
    shading_.supplier(std::string(entry->value));
  }
  for (const ShadingTextKey& text : kShadingTextKeys) {
    if (const HeaderEntry* const entry = find(text.key)) {
      (shading_.*text.property)(std::string(entry->value));
    }
  }
}

void HeaderReader::readProductType() const {
  if (const HeaderEntry* const entry = find(kProductTypeKey)) {
    const auto type = parseWhole(entry->value).value_or(0);
    if (type < kFirstProductType || type > kLastProductType) {
      refuse(entry, fmt::format("Product Type ({}) not recognized", entry->value),
             fmt::format("It is a number from {} to {}.", kFirstProductType, kLastProductType));
    }
    shading_.typeID(type);
  }
}

void HeaderReader::readCoatedSide() const {
  if (const HeaderEntry* const entry = find(kCoatedSideKey)) {
    const auto side = codeOf(kCoatedSideNames, entry->value);
    if (!side) {
      raiseExplained(
          kInvalidCall, "Coating side type not recognized",
          entry->place.told(entry->value, "It is Front, Back, Both, Neither or Unknown."));
    }
    shading_.CoatedSide(*side);
  }
}

void HeaderReader::readOrientation() const {
  if (const HeaderEntry* const entry = find(kOrientationKey)) {
    const auto* const orientation =
        std::ranges::find_if(kShadingOrientations, [entry](const ShadingOrientation& known) {
          return equalIgnoringCase(known.text, entry->value);
        });
    if (orientation == kShadingOrientations.end()) {
      refuse(entry,
             fmt::format("Orientation ({}) not recognized. It is Horizontal, Vertical or Both",
                         entry->value),
             "");
    }
    shading_.horizontal(orientation->horizontal);
    shading_.vertical(orientation->vertical);
  }
}

template <class Keys>
void HeaderReader::readNumbers(const Keys& keys) const {
  for (const ShadingNumberKey& number : keys) {
    if (const HeaderEntry* const entry = find(number.key)) {
      (shading_.*number.property)(entry->number());
    }
  }
}

/// The material is the same on a sheet and on a slat, and light passes it the same both ways.
void HeaderReader::deriveFromMeasures() const {
  shading_.transmission_IR_indoor(shading_.transmission_IR_outdoor());
  shading_.emissivity_slat_surf_outd(shading_.emission_IR_outdoor());
  shading_.emissivity_slat_surf_ind(shading_.emission_IR_indoor());
  shading_.transmissivity_slat_surf(shading_.transmission_IR_outdoor());
  shading_.measured(true);
  shading_.single_layer(true);
  shading_.spectral(!shading_.spectrum().empty());
  shading_.homogenious(shading_.slat_length() == 0 && shading_.slat_distance() == 0);
}

void HeaderReader::readFlags() const {
  for (const ShadingFlagKey& flag : kShadingFlagKeys) {
    if (const HeaderEntry* const entry = find(flag.key)) {
      const bool isTrue = equalIgnoringCase(entry->value, "True");
      if (!isTrue && !equalIgnoringCase(entry->value, "False")) {
        raiseAt(entry->place, kTypeMismatch,
                fmt::format("{} '{}' is neither True nor False", flag.key, entry->value));
      }
      (shading_.*flag.property)(isTrue);
    }
  }
}

void HeaderReader::readIntegratedRows() const {
  std::vector<ShadingIntegratedData> rows;
  for (const HeaderEntry& entry : entries_) {
    if (entry.hasKey(kIntegratedKey)) {
      rows.push_back(integratedRow(entry));
    }
  }
  if (!rows.empty()) {
    shading_.integrated(std::move(rows));
  }
}

ShadingIntegratedData HeaderReader::integratedRow(const HeaderEntry& entry) const {
  ShadingIntegratedData row;
  Tokenizer tokenizer(entry.value, entry.place.file);
  for (const ShadingIntegratedColumn& column : kShadingIntegratedColumns) {
    const auto value = parseDouble(tokenizer.GetToken().text);
    if (!value) {
      raiseAt(entry.place, kTypeMismatch,
              fmt::format("{} needs {} numbers: '{}'", entry.key, kShadingIntegratedColumns.size(),
                          entry.value));
    }
    row.*column.member = *value;
  }
  return row;
}

/// Raises an error in these words about an entry, or about a file that lacks it.
void HeaderReader::refuse(const HeaderEntry* entry, const std::string& description,
                          const std::string& remedy) const {
  const std::string told = entry == nullptr
                               ? fmt::format("{} has no such entry. {}", place_.file, remedy)
                               : entry->place.told(entry->value, remedy);
  throw Error(kInvalidCall, description, "", told);
}

}  // namespace

std::shared_ptr<ShadingDataClass> readShading(const std::filesystem::path& path,
                                              const std::string& filename) {
  const std::string text = readText(path);
  Tokenizer tokenizer(text, filename);
  std::vector<ShadingSpectralPoint> points = readSpectrum(tokenizer);

  auto shading = std::make_shared<ShadingDataClass>();
  shading->name(shadingName(filename));
  const HeaderReader header(tokenizer, *shading);
  header.readUnits(points);
  if (points.empty() && !header.has("spectral")) {
    throw Error(kSubscriptOutOfRange, "The file holds no spectral data", "", filename);
  }
  shading->spectrum(std::move(points));
  optics::calculateIntegratedValues(*shading);
  header.readHeader();
  return shading;
}

}  // namespace orv::textfile
