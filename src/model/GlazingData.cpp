#include "model/GlazingData.h"

#include <limits>
#include <set>

#include "errors/Error.h"
#include "model/ErrorCatalogue.h"
#include "model/Single.h"
#include "model/Text.h"

namespace orv {

namespace {

constexpr double kMillimetresPerInch = 25.4;
constexpr double kSiPerIpConductivity = 1.7307;  // W/(m·K) per Btu/(h·ft·°F)

constexpr std::size_t kFirstStructureSlots = 2;
constexpr std::size_t kMoreStructureSlots = 6;

constexpr float kEmissivityNotSet = -1.0F;

float converted(float stored, std::int32_t from, std::int32_t to, double siPerIp) {
  if (from == kIP && to == kSI) {
    return toSingle(stored * siPerIp);
  }
  if (from == kSI && to == kIP) {
    return toSingle(stored / siPerIp);
  }
  return stored;
}

bool emissivityExists(float value, std::int32_t source) {
  const bool exists = value != kEmissivityNotSet;
  Assert(exists == (source != kUnknownSource));
  return exists;
}

/// An entry of a list whose positions count from `first`.
template <class List>
const auto& entryAt(const List& list, std::int32_t index, std::int32_t first) {
  if (index < first || static_cast<std::size_t>(index - first) >= list.size()) {
    throw Error(kSubscriptOutOfRange);
  }
  return list[static_cast<std::size_t>(index - first)];
}

}  // namespace

float GlazingData::ConvertedThickness(std::int32_t requested) const {
  return converted(Thickness(), unit(), requested, kMillimetresPerInch);
}

float GlazingData::ConvertedConductivity(std::int32_t requested) const {
  return converted(Conductivity(), unit(), requested, kSiPerIpConductivity);
}

void GlazingData::ResetEf() {
  ef.reset();
  ef_source(kUnknownSource);
}

void GlazingData::ResetEb() {
  eb.reset();
  eb_source(kUnknownSource);
}

bool GlazingData::EfExists() const {
  return emissivityExists(ef(), ef_source());
}

bool GlazingData::EbExists() const {
  return emissivityExists(eb(), eb_source());
}

const std::string& GlazingData::uses(std::int32_t index) const {
  return entryAt(uses_, index, 1);
}

const std::shared_ptr<orv::Availability>& GlazingData::Availability(std::int32_t index) const {
  return entryAt(availability_, index, 1);
}

void GlazingData::AddAvailability(std::shared_ptr<orv::Availability> entry) {
  availability_.push_back(std::move(entry));
}

const std::shared_ptr<GlazingStructure>& GlazingData::structure(std::int32_t index) const {
  return entryAt(structure_, index, 0);
}

void GlazingData::AddStructure(std::shared_ptr<GlazingStructure> layer) {
  if (structure_.size() == std::numeric_limits<std::int16_t>::max()) {
    throw Error(kOverflow, "A pane cannot have more than 32767 layers");
  }
  if (structure_.size() == structure_.capacity()) {
    structure_.reserve(structure_.size() + kMoreStructureSlots);
  }
  structure_.push_back(std::move(layer));
}

void GlazingData::ClearStructures() {
  structure_ = emptyStructure();
}

void GlazingData::SpectralData(std::shared_ptr<orv::SpectralData> spectrum) {
  spectralData_ = std::move(spectrum);
  if (spectralData_) {
    spectralData_->WavelengthUnit(WavelengthUnit());
  }
}

bool GlazingData::EnsureNoAncestorLoops() const {
  std::set<std::string> names{lowerCase(filename())};
  for (auto ancestor = Parent(); ancestor; ancestor = ancestor->Parent()) {
    if (!names.insert(lowerCase(ancestor->filename())).second) {
      return false;
    }
  }
  return true;
}

std::vector<std::shared_ptr<GlazingStructure>> GlazingData::emptyStructure() {
  std::vector<std::shared_ptr<GlazingStructure>> layers;
  layers.reserve(kFirstStructureSlots);
  return layers;
}

}  // namespace orv
