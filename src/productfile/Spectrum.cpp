#include "productfile/Spectrum.h"

#include <fmt/format.h>

#include <algorithm>

#include "errors/Error.h"
#include "model/Text.h"

namespace orv::productfile {

namespace {

constexpr double kNanometersInMicron = 1000;

struct Row {
  float wavelength;
  float frontTransmittance;
  float backTransmittance;
  float frontReflectance;
  float backReflectance;
};

class SpectrumReader {
 public:
  SpectrumReader(const RowKeys& keys, std::int32_t unit, std::int32_t wanted)
      : keys_(keys), unit_(unit), wanted_(wanted) {}

  void add(const Item& row) {
    row.requireObject();
    const float wavelength = wavelengthOf(row);
    hasScattered_ = hasScattered_ || (!keys_.scattered.empty() && row.find(keys_.scattered));
    const auto transmittance = row.find(keys_.frontTransmittance);
    const auto front = row.find(keys_.frontReflectance);
    const auto back = row.find(keys_.backReflectance);
    if (!transmittance || !front || !back) {
      ++skipped_;
      return;
    }
    const float through = transmittance->fraction();
    const auto reverse = row.find(keys_.backTransmittance);
    rows_.push_back({wavelength, through, reverse ? reverse->fraction() : through,
                     front->fraction(), back->fraction()});
  }

  bool isEmpty() const { return rows_.empty(); }

  std::shared_ptr<SpectralData> take(std::vector<std::string>& notes) {
    if (!std::ranges::is_sorted(rows_, {}, &Row::wavelength)) {
      std::ranges::stable_sort(rows_, {}, &Row::wavelength);
      notes.emplace_back("the rows of the spectrum were put in order");
    }
    if (skipped_ > 0) {
      notes.push_back(fmt::format("{} without a value skipped",
                                  skipped_ == 1 ? "1 row" : fmt::format("{} rows", skipped_)));
    }
    if (hasScattered_) notes.emplace_back("the scattered part of the spectrum is left out");
    return spectrum();
  }

 private:
  float wavelengthOf(const Item& row) const {
    const Item item = row.require(keys_.wavelength);
    const double value = item.number();
    const bool inNanometers = unit_ == kNanometers;
    const double microns = inNanometers ? value / kNanometersInMicron : value;
    constexpr double kShortest = 0.1;
    constexpr double kLongest = 200;
    if (!(microns >= kShortest && microns <= kLongest)) {
      item.refuse(kInvalidCall, inNanometers
                                    ? "No wavelength in nanometers, which this file says it has"
                                    : "No wavelength in microns, which products of this form have");
    }
    if (unit_ == wanted_) return item.single();
    return static_cast<float>(inNanometers ? microns : microns * kNanometersInMicron);
  }

  std::shared_ptr<SpectralData> spectrum() const {
    auto spectrum = std::make_shared<SpectralData>();
    spectrum->Allocate(static_cast<std::int32_t>(rows_.size()) - 1);
    for (std::int32_t i = 0; i < spectrum->count(); ++i) {
      const Row& row = rows_[static_cast<std::size_t>(i)];
      spectrum->wl(i, row.wavelength);
      spectrum->Tf(i, row.frontTransmittance);
      spectrum->Tb(i, row.backTransmittance);
      spectrum->Rf(i, row.frontReflectance);
      spectrum->Rb(i, row.backReflectance);
    }
    return spectrum;
  }

  const RowKeys& keys_;
  std::int32_t unit_;
  std::int32_t wanted_;
  std::vector<Row> rows_;
  std::size_t skipped_ = 0;
  bool hasScattered_ = false;
};

}  // namespace

std::int32_t wavelengthUnitOf(const Form& form, const Item& product) {
  if (form.wavelengthUnit.empty()) return kMicrons;
  const Item item = product.require(form.wavelengthUnit);
  const std::string word = lowerCase(item.text());
  for (const char* known : {"microns", "micron", "micrometers", "um", "µm", "μm"}) {
    if (word == known) return kMicrons;
  }
  for (const char* known : {"nanometers", "nanometer", "nm"}) {
    if (word == known) return kNanometers;
  }
  item.refuse(kInvalidCall, "No unit of wavelengths. It is Microns or Nanometers");
}

std::shared_ptr<SpectralData> readSpectrum(const Item& rows, const RowKeys& keys, std::int32_t unit,
                                           std::int32_t wanted, std::vector<std::string>& notes) {
  const std::size_t count = rows.count();
  SpectrumReader reader(keys, unit, wanted);
  for (std::size_t i = 0; i < count; ++i) reader.add(rows.at(i));
  if (!reader.isEmpty()) return reader.take(notes);
  if (count == 0) return nullptr;
  rows.refuse(kInvalidCall, "No row has all of transmittance and both reflectances");
}

}  // namespace orv::productfile
