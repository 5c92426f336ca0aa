#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "model/Availability.h"
#include "model/Codes.h"
#include "model/Date.h"
#include "model/GlazingStructure.h"
#include "model/Property.h"
#include "model/SpectralData.h"

namespace orv {

/// The test that the names of component files pass. It approves every name; a rule for names, once
/// there is one, belongs here.
inline bool isComponentFileName(const std::string& /*name*/) {
  return true;
}

/// The test of identifiers of stored records.
inline bool isRecordId(const std::int32_t& id) {
  return id >= 0;
}

/// The one in-memory form of a glazing pane, whatever source it came from: its identity, its
/// thermal and optical values, its layers, its spectrum, and the values that only databases keep.
/// It knows nothing of files and databases.
///
/// Who owns what: a record owns its lists and shares its spectrum, its substrate, its laminate
/// and the records of its layers (`std::shared_ptr`). `Parent` points back without owning, so a
/// record and its components never keep each other alive; it reads as none once the parent is
/// gone. A copy is made with `ShallowClone` only.
class GlazingData {
 public:
  GlazingData() = default;
  GlazingData(const GlazingData&) = delete;
  GlazingData& operator=(const GlazingData&) = delete;

  // --- Identity and file -------------------------------------------------------------------

  /// The record whose structure or substrate names this one's file; none for a pane by itself.
  std::shared_ptr<GlazingData> Parent() const { return parent_.lock(); }
  void Parent(const std::shared_ptr<GlazingData>& parent) { parent_ = parent; }

  Property<std::string> filename;   ///< spectral text file the record is read from or written to
  Property<OptionalDate> FileDate;  ///< date of that file
  Property<std::int32_t> NFRC_id;   ///< NFRC identification number
  Property<std::string> productname;
  Property<std::string> supplier;
  Property<std::string> group;  ///< product group
  Property<std::string> description;
  Property<std::string> Appearance;
  Property<std::string> Acceptance;     ///< acceptance mark, "#" for NFRC
  Property<std::int32_t> IGDBChecksum;  ///< checksum of the record as the IGDB carries it
  Property<OptionalDate> IGDBChecksumDate;
  Property<bool> Hidden;

  /// Identifier in the data source; -1 while the record is not stored. The setter refuses
  /// negative numbers (error 5).
  CheckedProperty<std::int32_t, isRecordId> id{"id", -1};

  // --- Units and scalars (the setters of quantities refuse negative values: error 5) ---------

  Property<std::int32_t> unit{kSI};                  ///< `UnitCode` of thickness and conductivity
  Property<std::int32_t> WavelengthUnit{kMicrons};   ///< `WavelengthUnitCode` of the spectrum
  Quantity Thickness{"Thickness"};                   ///< mm (SI) or inches (IP)
  Quantity Conductivity{"Conductivity"};             ///< W/(m·K) (SI) or Btu/(h·ft·°F) (IP)
  Quantity TfIR{"TfIR"};                             ///< infrared transmittance, front
  Quantity TbiR{"TbiR"};                             ///< infrared transmittance, back
  Quantity ef{"ef", -1.0F};                          ///< emissivity of the front; -1 = not set
  Property<std::int32_t> ef_source{kUnknownSource};  ///< `EmittanceSourceCode` of `ef`
  Quantity eb{"eb", -1.0F};                          ///< emissivity of the back; -1 = not set
  Property<std::int32_t> eb_source{kUnknownSource};  ///< `EmittanceSourceCode` of `eb`

  /// The value in the unit system asked for; as stored when either code is neither SI nor IP.
  /// Raises error 6 when the result does not fit a 32-bit float.
  float ConvertedThickness(std::int32_t unit) const;
  float ConvertedConductivity(std::int32_t unit) const;

  /// Clear an emissivity and its source.
  void ResetEf();
  void ResetEb();

  /// Whether an emissivity is set. Raises error 5 when value and source do not belong together:
  /// a set value needs a known source, an unset one none.
  bool EfExists() const;
  bool EbExists() const;

  // --- Composition ---------------------------------------------------------------------------

  using FileName = CheckedProperty<std::string, isComponentFileName>;

  Property<std::int32_t> GlazingType{kUnknownType};  ///< `GlazingTypeCode`
  Property<std::string> material;                    ///< of a monolithic pane
  Property<std::string> CoatingName;
  Property<std::int32_t> CoatingID{-1};
  Property<std::int32_t> CoatedSide{kSideNotSet};   ///< `CoatedSideCode`
  FileName CoatingFilename{"CoatingFilename"};      ///< spectral data of the coating
  FileName SubstrateFilename{"SubstrateFilename"};  ///< the pane under the coating or film
  FileName LaminateFilename{"LaminateFilename"};
  FileName FilmFilename{"FilmFilename"};                      ///< the applied film
  Property<std::string> LaminateMaterial;                     ///< interlayer of a laminate
  Property<std::shared_ptr<GlazingData>> SubstrateReference;  ///< the substrate, once read
  Property<std::shared_ptr<GlazingData>> LaminateReference;   ///< the laminate, once read

  bool HasSubstrate() const { return SubstrateReference() != nullptr; }

  // --- Lists ---------------------------------------------------------------------------------

  /// Uses of the product, positions 1..`UsesCount`; error 9 for any other.
  const std::string& uses(std::int32_t index) const;
  std::int32_t UsesCount() const { return static_cast<std::int32_t>(uses_.size()); }
  void AddUse(std::string use) { uses_.push_back(std::move(use)); }

  /// Where the product is available, positions 1..`AvailabilityCount`; error 9 for any other.
  const std::shared_ptr<orv::Availability>& Availability(std::int32_t index) const;
  std::int32_t AvailabilityCount() const { return static_cast<std::int32_t>(availability_.size()); }
  void AddAvailability(std::shared_ptr<orv::Availability> entry);

  /// The layers from front to back, positions 0..`StructureCount` - 1; error 9 for any other.
  const std::shared_ptr<GlazingStructure>& structure(std::int32_t index) const;
  std::int16_t StructureCount() const { return static_cast<std::int16_t>(structure_.size()); }
  /// Raises error 6 when the layers can no longer be counted in 16 bits.
  void AddStructure(std::shared_ptr<GlazingStructure> layer);
  void ClearStructures();
  /// Slots of the list, filled or not: 2 at first, then in steps that leave room for 5 more.
  std::size_t StructureCapacity() const { return structure_.capacity(); }

  /// The spectrum; none until set. Setting it also sets the spectrum's wavelength unit to the
  /// record's; a later change of the record's does not touch the spectrum.
  const std::shared_ptr<orv::SpectralData>& SpectralData() const { return spectralData_; }
  void SpectralData(std::shared_ptr<orv::SpectralData> spectrum);

  // --- Values calculated from the spectrum, as databases store them ----------------------------

  Property<std::string> Precalc_StandardName;  ///< the standard they follow
  Property<OptionalDate> Precalc_Time;         ///< when they were calculated
  Property<float> Precalc_Tfsol;               ///< solar transmittance, front
  Property<float> Precalc_Tbsol;
  Property<float> Precalc_Rfsol;  ///< -1 marks that a database holds no such values
  Property<float> Precalc_RbSol;
  Property<float> Precalc_Tfvis;  ///< visible
  Property<float> Precalc_Tbvis;
  Property<float> Precalc_Rfvis;
  Property<float> Precalc_Rbvis;
  Property<float> Precalc_TfIR;  ///< infrared transmittance and emissivities
  Property<float> Precalc_ef;
  Property<float> Precalc_eb;
  Property<float> Precalc_TCIEX;  ///< CIE tristimulus values of transmission
  Property<float> Precalc_TCIEY;
  Property<float> Precalc_TCIEZ;
  Property<float> Precalc_RfCIEX;  ///< CIE tristimulus values of front reflection
  Property<float> Precalc_RfCIEY;
  Property<float> Precalc_RfCIEZ;
  Property<float> Precalc_Tdw;   ///< damage-weighted transmittance
  Property<float> Precalc_Tfuv;  ///< ultraviolet
  Property<float> Precalc_Tbuv;
  Property<float> Precalc_Rfuv;
  Property<float> Precalc_Rbuv;
  Property<float> Precalc_TSPF;  ///< transmittance weighted for skin protection

  // --- Kept only by ORV databases ----------------------------------------------------------------

  Property<double> ORV_Emissivity_back;
  Property<double> ORV_Emissivity_front;
  Property<std::string> ORV_CoatingClass;
  Property<std::int16_t> ORV_Angle;      ///< angle of incidence of the data set, whole degrees
  Property<std::int32_t> ORV_Direction;  ///< direction code of the data set
  Property<bool> ORV_Frozen;
  Property<bool> with_and_without_film;
  Property<bool> film_outdoor_side;
  Property<bool> single_layer;
  Property<bool> spectral_pane;  ///< the pane has a spectrum
  Property<bool> Use_0_30_60;
  Property<bool> use_estimation;

  // --- The record as a whole
  // -----------------------------------------------------------------------

  /// A copy with its own lists and spectrum that refers to the same components. It goes through
  /// the setters, so a record that is not stored or lacks an emissivity cannot be cloned (error
  /// 5). `LaminateMaterial`, `Precalc_Rfuv` and `Precalc_Rbuv` are not carried over.
  std::shared_ptr<GlazingData> ShallowClone() const;

  /// Whether no file name occurs twice, letter case ignored, in this record and the chain of its
  /// parents. False means that a file refers to itself by way of others.
  bool EnsureNoAncestorLoops() const;

  /// Makes the record consistent for writing: fills empty names with "Unknown" or "N/A" as its
  /// kind of pane needs, and raises one error 5 that lists every broken rule, a line each. The
  /// names are filled even then.
  void EnforceSemantics();

 private:
  std::weak_ptr<GlazingData> parent_;
  std::vector<std::string> uses_;
  std::vector<std::shared_ptr<orv::Availability>> availability_;
  std::vector<std::shared_ptr<GlazingStructure>> structure_ = emptyStructure();
  std::shared_ptr<orv::SpectralData> spectralData_;

  static std::vector<std::shared_ptr<GlazingStructure>> emptyStructure();
};

}  // namespace orv
