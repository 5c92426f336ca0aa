#include "model/SpectralData.h"

#include <algorithm>

#include "errors/Error.h"
#include "model/ErrorCatalogue.h"
#include "model/Single.h"

namespace orv {

namespace {

constexpr double kMicronsPerNanometer = 0.001;
constexpr float kInfraredBound = 5.0F;  // microns

}  // namespace

void SpectralData::Allocate(std::int32_t lastIndex) {
  if (lastIndex < 0) {
    throw Error(kSubscriptOutOfRange);
  }
  const auto size = static_cast<std::size_t>(lastIndex) + 1;
  for (auto* values : {&wl_, &tf_, &tb_, &rf_, &rb_}) {
    values->assign(size, 0.0F);
  }
}

std::int32_t SpectralData::count() const {
  if (wl_.empty()) {
    throw Error(kSubscriptOutOfRange);
  }
  Assert(tf_.size() == wl_.size());
  Assert(tb_.size() == wl_.size());
  Assert(rf_.size() == wl_.size());
  Assert(rb_.size() == wl_.size());
  return static_cast<std::int32_t>(wl_.size());
}

float SpectralData::ConvertedWl(std::int32_t index, std::int32_t unit) const {
  return toSingle(convertedWl(index, unit));
}

void SpectralData::GetDataArrays(std::int32_t unit, std::span<float> wl, std::span<float> Tf,
                                 std::span<float> Tb, std::span<float> Rf,
                                 std::span<float> Rb) const {
  const std::int32_t points = count();
  for (std::int32_t i = 0; i < points; ++i) {
    wl[i] = ConvertedWl(i, unit);
  }
  std::ranges::copy(tf_, Tf.begin());
  std::ranges::copy(tb_, Tb.begin());
  std::ranges::copy(rf_, Rf.begin());
  std::ranges::copy(rb_, Rb.begin());
}

void SpectralData::GetDataArraysAsDoubles(std::int32_t unit, std::span<double> wl,
                                          std::span<double> Tf, std::span<double> Tb,
                                          std::span<double> Rf, std::span<double> Rb) const {
  const std::int32_t points = count();
  for (std::int32_t i = 0; i < points; ++i) {
    wl[i] = convertedWl(i, unit);
  }
  std::ranges::copy(tf_, Tf.begin());
  std::ranges::copy(tb_, Tb.begin());
  std::ranges::copy(rf_, Rf.begin());
  std::ranges::copy(rb_, Rb.begin());
}

bool SpectralData::HasIRData() const {
  return ConvertedWl(count() - 1, kMicrons) >= kInfraredBound;
}

std::shared_ptr<SpectralData> SpectralData::ShallowClone() const {
  count();  // a spectrum that was never allocated cannot be cloned: error 9
  return std::make_shared<SpectralData>(*this);
}

void SpectralData::set(std::vector<float>& values, std::int32_t index, float value) {
  if (!isNotNegative(value)) {
    throw Error(kInvalidCall, "", fmt::format("A spectral value cannot be {}", value));
  }
  values[index] = value;
}

double SpectralData::convertedWl(std::int32_t index, std::int32_t unit) const {
  const double stored = wl_[index];
  if (WavelengthUnit() == kNanometers && unit == kMicrons) {
    return stored * kMicronsPerNanometer;
  }
  if (WavelengthUnit() == kMicrons && unit == kNanometers) {
    return stored / kMicronsPerNanometer;
  }
  return stored;
}

}  // namespace orv
