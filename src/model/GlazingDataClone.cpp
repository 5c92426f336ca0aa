// Copying of a glazing record. Every value goes through the setter of the copy, in a fixed order,
// so what the setters refuse stops the copy at the same place each time.
#include "model/GlazingData.h"

namespace orv {

namespace {

/// Copies one property after the other, each named by its pointer to member.
template <class... Members>
void copyEach(const GlazingData& from, GlazingData& to, Members... members) {
  ((to.*members)((from.*members)()), ...);
}

void copyIdentity(const GlazingData& from, GlazingData& to) {
  using G = GlazingData;
  to.Parent(from.Parent());
  copyEach(from, to, &G::filename, &G::FileDate, &G::NFRC_id, &G::productname, &G::supplier,
           &G::id);
}

void copyValues(const GlazingData& from, GlazingData& to) {
  using G = GlazingData;
  copyEach(from, to, &G::unit, &G::WavelengthUnit, &G::Thickness, &G::Conductivity, &G::TfIR,
           &G::TbiR, &G::ef, &G::ef_source, &G::eb, &G::eb_source);
}

void copyComposition(const GlazingData& from, GlazingData& to) {
  using G = GlazingData;
  copyEach(from, to, &G::GlazingType, &G::material, &G::CoatingName, &G::CoatingID, &G::CoatedSide,
           &G::CoatingFilename, &G::SubstrateFilename, &G::SubstrateReference, &G::LaminateFilename,
           &G::LaminateReference, &G::FilmFilename);
}

void copyDescription(const GlazingData& from, GlazingData& to) {
  using G = GlazingData;
  copyEach(from, to, &G::description, &G::Appearance, &G::Acceptance, &G::IGDBChecksum,
           &G::IGDBChecksumDate, &G::Hidden, &G::group);
}

void copyDatabaseFields(const GlazingData& from, GlazingData& to) {
  using G = GlazingData;
  copyEach(from, to, &G::ORV_Angle, &G::ORV_CoatingClass, &G::ORV_Direction,
           &G::ORV_Emissivity_back, &G::ORV_Emissivity_front, &G::ORV_Frozen, &G::Use_0_30_60,
           &G::use_estimation, &G::spectral_pane, &G::with_and_without_film, &G::film_outdoor_side,
           &G::single_layer);
}

void copyLists(const GlazingData& from, GlazingData& to) {
  for (std::int32_t i = 1; i <= from.UsesCount(); ++i) {
    to.AddUse(from.uses(i));
  }
  for (std::int32_t i = 1; i <= from.AvailabilityCount(); ++i) {
    to.AddAvailability(from.Availability(i)->ShallowClone());
  }
  for (std::int32_t i = 0; i < from.StructureCount(); ++i) {
    to.AddStructure(from.structure(i)->ShallowClone());
  }
}

void copyPrecalculated(const GlazingData& from, GlazingData& to) {
  using G = GlazingData;
  copyEach(from, to, &G::Precalc_StandardName, &G::Precalc_Time, &G::Precalc_Tfsol,
           &G::Precalc_Tbsol, &G::Precalc_Rfsol, &G::Precalc_RbSol, &G::Precalc_Tfvis,
           &G::Precalc_Tbvis, &G::Precalc_Rfvis, &G::Precalc_Rbvis, &G::Precalc_TfIR,
           &G::Precalc_ef, &G::Precalc_eb, &G::Precalc_TCIEX, &G::Precalc_TCIEY, &G::Precalc_TCIEZ,
           &G::Precalc_RfCIEX, &G::Precalc_RfCIEY, &G::Precalc_RfCIEZ, &G::Precalc_Tdw,
           &G::Precalc_Tfuv, &G::Precalc_Tbuv, &G::Precalc_TSPF);
}

}  // namespace

std::shared_ptr<GlazingData> GlazingData::ShallowClone() const {
  auto copy = std::make_shared<GlazingData>();
  copyIdentity(*this, *copy);
  copyValues(*this, *copy);
  copyComposition(*this, *copy);
  copyDescription(*this, *copy);
  copyDatabaseFields(*this, *copy);
  copyLists(*this, *copy);
  if (spectralData_) {
    copy->SpectralData(spectralData_->ShallowClone());
  }
  copyPrecalculated(*this, *copy);
  return copy;
}

}  // namespace orv
