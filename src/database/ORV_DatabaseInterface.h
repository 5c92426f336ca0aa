// All that the program asks of database files.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "database/Existing.h"
#include "database/PaneQuestions.h"
#include "errors/Error.h"
#include "model/FrameDataClass.h"
#include "model/GlazingData.h"
#include "model/ShadingDataClass.h"
#include "store/Connection.h"

namespace orv::database {

/// Reads panes, frames and shadings of ORV databases of versions "2.0.1" and "3.0.0", panes of the
/// IGDB and of Optics5 user databases, and writes and deletes records of ORV databases of version
/// "3.0.0".
///
/// The program has one object of this class. It keeps no connection: each operation gets one,
/// opens its own record sets on it and closes them before it returns. Nothing is cached between
/// calls. All that an operation writes is one commit: a crash, a full disk, a failure of the file
/// leave nothing of it, while an error of the record leaves what was written before it, save where
/// an operation says otherwise. A name goes into statements and criteria as it stands, so that one
/// with an apostrophe fails with the store's error. Errors of the store pass through unchanged.
class ORV_DatabaseInterface {
 public:
  using ConnectionPtr = std::shared_ptr<store::Connection>;
  using PanePtr = std::shared_ptr<GlazingData>;
  using FramePtr = std::shared_ptr<FrameDataClass>;
  using ShadingPtr = std::shared_ptr<ShadingDataClass>;

  /// `questions` answers what InsertPane asks, and outlives this object.
  explicit ORV_DatabaseInterface(PaneQuestions& questions) : questions_(questions) {}

  // --- Connection and version -------------------------------------------------------------------

  /// Opens a database file; an empty password opens a file without one. Path and password go into
  /// a connection string as they stand, so a ";" in a path breaks it.
  ConnectionPtr OpenDatabase(const std::string& path, const std::string& password) const;
  void CloseDatabase(store::Connection& dc) const;
  /// The version in the last row of `ORVdata_version`, as it stands. Raises 1005 without a row.
  std::string LookupDatabaseVersion(store::Connection& dc) const;

  // --- Panes: retrieval -------------------------------------------------------------------------

  /// Reads one pane at one angle by its key, or, with a key below 1, by its name and, unless that
  /// is empty, its group. A direction of 0 means any. Null when no row matches.
  /// Raises kRetrievalFailed when there is neither key nor name.
  PanePtr RetrievePaneORV_30(store::Connection& dc, std::int32_t PaneID,
                             const std::string& PaneName, const std::string& GroupName,
                             std::int16_t Angle, std::int32_t Direction) const;
  PanePtr RetrievePaneORV_20(store::Connection& dc, std::int32_t Pane_id,
                             const std::string& PaneName, std::int16_t Angle,
                             std::int32_t Direction) const;

  /// The angles of incidence, in degrees, for which a pane has integrated data, in table order.
  std::vector<std::int16_t> RetrieveAnglesOfPaneDataORV_30(std::int32_t PaneID,
                                                           store::Connection& dc) const;
  std::vector<std::int16_t> RetrieveAnglesOfPaneDataORV_20(std::int32_t Pane_id,
                                                           store::Connection& dc) const;

  /// Reads one pane of the IGDB or of an Optics5 user database, with its substrate's spectrum.
  /// Null when the file name is not found.
  PanePtr RetrievePaneIGDB(store::Connection& dc, const std::string& FileName) const;

  // --- Frames and shadings: retrieval -----------------------------------------------------------

  /// By key, or with a key below 1 by name (and group). Null when no row matches.
  /// Raises kRetrievalFailed when there is neither key nor name.
  FramePtr RetrieveFrameORV_30(store::Connection& dc, std::int32_t FrameID,
                               const std::string& FrameName, const std::string& GroupName) const;
  FramePtr RetrieveFrameORV_20(store::Connection& dc, std::int32_t Frame_id,
                               const std::string& FrameName) const;

  /// Reads one shading of either version by its key, with its integrated and spectral rows. Null
  /// when no row matches. What the database lacks keeps the default of a new record.
  /// The group is "Unknown".
  ShadingPtr RetrieveShading(store::Connection& dc, std::int32_t Shading_id) const;

  // --- Insertion into databases of version 3.0.0 ------------------------------------------------

  /// Raises what InsertPane raises for the spectra of a pane and asks what it asks, so that a pane
  /// that passes is inserted whole: InsertPane itself comes to the spectra only when it has
  /// written the pane's row. A substrate that is left out is gone from `data` then.
  void PreparePane(GlazingData& data, store::Connection& dc, Existing existing = Existing::refused);

  /// Writes a pane's data at its angle; the pane's own row only when no pane of this name is in
  /// this group yet. Afterwards `data` has the key of the row.
  ///
  /// Raises kRecordExists when the pane has data at this angle, kInvalidSpectrum for an unphysical
  /// spectrum. When the substrate's spectrum is unphysical or at other wavelengths, asks whether to
  /// leave the substrate out, and whether to do so from then on, and raises
  /// kInvalidSubstrateSpectrum or kSubstrateWavelengthsDiffer when refused.
  void InsertPane(GlazingData& data, store::Connection& dc);

  /// Writes a shading with its integrated and spectral rows; the same name may be there already.
  void InsertShading(ShadingDataClass& data, store::Connection& dc) const;

  /// Writes a frame and returns its key. Raises kRecordExists when its group has a frame of this
  /// name, and then writes nothing.
  std::int32_t InsertFrame(FrameDataClass& fData, store::Connection& dc) const;

  /// The key of the row with this name, which is added when there is none.
  std::int32_t InsertGroup(const std::string& strGroup, store::Connection& dc) const;
  std::int32_t InsertFrameType(const std::string& strFrameType, store::Connection& dc) const;
  std::int32_t InsertSupplier(const std::string& strSupplier, store::Connection& dc) const;

  // --- Replacement in databases of version 3.0.0 ------------------------------------------------

  /// Writes a pane, given by its data at each of its angles, in the place of the one that is meant,
  /// whose key and group stay; where there is none, the pane is added. An error leaves the database
  /// as it was. Each angle has passed PreparePane().
  ReplacedPane ReplacePane(const std::vector<PanePtr>& angles, const Replacement& how,
                           store::Connection& dc) const;
  /// The same of a frame, and of a shading; of several of a name the first is meant. Return whether
  /// there was one.
  bool ReplaceFrame(FrameDataClass& fData, const Replacement& how, store::Connection& dc) const;
  bool ReplaceShading(ShadingDataClass& data, const Replacement& how, store::Connection& dc) const;
  /// Writes the integrated values of a pane that is there, by its key, given by its data at some of
  /// its angles, into its rows at these; adds a row where there is none. An error leaves the
  /// database as it was.
  void StoreIntegratedData(const std::vector<PanePtr>& angles, store::Connection& dc) const;
  /// The key of the first shading of this name in this group, 0 when there is none.
  std::int32_t FindShading(const std::string& name, const std::string& group,
                           store::Connection& dc) const;

  // --- Deletion from databases of version 3.0.0 -------------------------------------------------

  /// Deletes a pane with its integrated and spectral rows. Raises kTypeMismatch, "Pane could not be
  /// found!".
  void DeleteGlazing(std::int32_t PaneID, store::Connection& dc) const;
  /// Deletes a row of `Shading`; its detail rows stay.
  void DeleteShading(std::int32_t Shading_id, store::Connection& dc) const;
  void DeleteFrame(std::int32_t FrameID, store::Connection& dc) const;

 private:
  void insertPaneRow(GlazingData& data, store::Connection& dc) const;
  bool replacePaneRow(const GlazingData& data, const Replacement& how, store::Connection& dc) const;
  PanePtr findPane(const GlazingData& data, store::Connection& dc) const;

  /// What is to become of a pane's spectrum.
  struct SpectrumVerdict {
    std::optional<Error> refusal = {};
    bool dropsSubstrate = false;
  };
  SpectrumVerdict judgeSpectra(const GlazingData& data, store::Connection& dc,
                               Existing existing = Existing::refused);
  bool mayDropSubstrate(const GlazingData& data, const std::string& reason);

  PaneQuestions& questions_;
  /// Set once the user has answered that incompatible substrates are left out from then on.
  bool ignoreSubstrate_ = false;
};

}  // namespace orv::database
