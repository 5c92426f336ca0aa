#include <fmt/format.h>
#include <fmt/ranges.h>

#include <vector>

#include "commands/CopyLosses.h"
#include "commands/ErrorText.h"
#include "commands/RecordNames.h"
#include "commands/Transfer.h"
#include "commands/TransferWork.h"

namespace orv::commands {

namespace DataType = sources::DataType;

namespace {

using Angles = std::vector<std::int16_t>;

/// The copying of panes, angle by angle.
class PaneTransfer {
 public:
  PaneTransfer(Session& session, const sources::RecordSelection& records,
               sources::datasource& destination)
      : work_(session, records, destination) {}

  PasteResult run() {
    countWork();
    std::size_t record = 0;
    work_.forEachRecord(
        [&](const std::string& identifier) { return copyPane(identifier, angles_[record++]); });
    return work_.result();
  }

 private:
  /// An error here ends the command.
  void countWork() {
    const auto& records = work_.records();
    for (std::int32_t i = 1; i <= records.RecordsCount(); ++i) {
      angles_.push_back(anglesOf(records.SelectedRecordID(i)));
    }
    work_.progress().expect(records.RecordsCount());
  }

  Angles anglesOf(const std::string& identifier) {
    try {
      return work_.reader().angles(identifier);
    } catch (const Error& error) {
      throw Error(error.number(), fmt::format("The angles of the record {} cannot be read: {} "
                                              "Nothing was copied.",
                                              identifier, describe(error)));
    }
  }

  /// A wish to end waits for the pane's last angle, so that no part of it is left for another copy
  /// to find.
  Outcome copyPane(const std::string& identifier, const Angles& angles) {
    if (angles.empty()) return tellWithoutData(identifier);
    std::size_t written = 0;
    std::size_t failed = 0;
    for (const std::int16_t angle : angles) {
      if (work_.result().cancelled) break;
      const bool succeeded = copyAngle(identifier, angle, angles.size()) == Outcome::copied;
      ++(succeeded ? written : failed);
    }
    if (failed == 0) return Outcome::copied;
    return written > 0 ? Outcome::partly : Outcome::failed;
  }

  /// A record that is not there at all has failed.
  Outcome tellWithoutData(const std::string& identifier) {
    const Outcome found = work_.attempt(
        identifier, [&] { work_.reader().pane(identifier, 0); }, [] { return std::string(); });
    if (found == Outcome::failed) return found;
    work_.tellFailure(identifier,
                      "The pane has data at no angle of incidence: there is nothing to copy.");
    return Outcome::withoutData;
  }

  Outcome copyAngle(const std::string& identifier, std::int16_t angle, std::size_t angles) {
    std::shared_ptr<GlazingData> pane;
    return work_.attempt(
        identifier,
        [&] {
          work_.status("Reading " + identifier + "...");
          pane = work_.reader().pane(identifier, angle);
          const std::string degrees = std::to_string(pane->ORV_Angle()) + " degrees...";
          work_.status("Reading " + pane->filename() + ", angle = " + degrees);
          settleGroup(*pane);
          const auto group = work_.chooseGroup();
          if (!group) return;
          pane->group(*group);
          work_.status("Writing " + pane->filename() + " angle = " + degrees);
          write(identifier, pane, angles);
        },
        [&] { return nameConflict(pane->filename()); },
        [&] { return partOf(identifier, pane.get(), angle, angles); });
  }

  /// What is checked here would otherwise be found when a part of the pane is written already.
  void write(const std::string& identifier, const std::shared_ptr<GlazingData>& pane,
             std::size_t angles) {
    requireUsableNames(*pane);
    requireNoMarker(*pane);
    readReferences(pane);
    auto& database = work_.session().database;
    const bool hadSubstrate = pane->HasSubstrate();
    database.PreparePane(*pane, work_.destination());
    database.InsertPane(*pane, work_.destination());
    tellLosses(identifier, *pane, angles);
    if (hadSubstrate && !pane->HasSubstrate()) {
      tell("copied without the data of the substrate", *pane);
    }
  }

  /// In a database this value says that there are no integrated data, so that the pane could be
  /// copied to the same angle again and again.
  static void requireNoMarker(const GlazingData& pane) {
    if (pane.Precalc_Rfsol() != -1) return;
    throw Error(
        kInvalidCall,
        fmt::format("The solar reflectance at {} degrees is -1, which stands for integrated "
                    "data that are not there. Correct reflection_solar_outdoor in the "
                    "source.",
                    pane.ORV_Angle()));
  }

  /// A pane whose substrate or layers are not found is copied all the same.
  void readReferences(const std::shared_ptr<GlazingData>& pane) {
    try {
      work_.reader().readReferences(pane);
    } catch (const Error& error) {
      tell("copied without the files that it names: " + describe(error), *pane);
    }
    const bool hasCurve = pane->HasSubstrate() && pane->SubstrateReference()->SpectralData();
    if (hasCurve) pane->with_and_without_film(true);
  }

  void tellLosses(const std::string& identifier, const GlazingData& pane, std::size_t angles) {
    for (const auto& names : {lossesOf(pane), work_.reader().unreadColumns(identifier, pane)}) {
      for (const std::string& name : names) work_.result().notKept.add(name, pane.filename());
    }
    if (lacksIntegratedValues(pane)) {
      work_.result().zeros.add("integrated values", pane.filename());
    }
    if (pane.ORV_Emissivity_front() == 0 && pane.ORV_Emissivity_back() == 0) {
      work_.result().zeros.add("emissivities", pane.filename());
    }
    if (pane.spectral_pane() && !pane.SpectralData()) {
      tell("marked as spectral, but without a spectrum at an angle", pane);
    }
    const auto type = work_.records().DataSourcePtr()->DataType();
    if (type == DataType::orv2Panes && angles > 1) {
      tell(
          "version 2.0.1 does not tell spectra of several angles apart: each angle has all rows of "
          "the pane",
          pane);
    }
    tellDirections(identifier, pane);
  }

  void tellDirections(const std::string& identifier, const GlazingData& pane) {
    const auto directions = work_.reader().directions(identifier, pane.ORV_Angle());
    if (directions.size() < 2) return;
    tell(fmt::format(
             "of the spectra of the directions {} at {} degrees only that of direction {} is "
             "copied",
             fmt::join(directions, ", "), pane.ORV_Angle(), pane.ORV_Direction()),
         pane);
  }

  void tell(const std::string& text, const GlazingData& pane) {
    work_.result().notes.add(text, pane.filename());
  }

  /// The pane's name where the identifier is another, and the angle where there are several.
  static std::string partOf(const std::string& identifier, const GlazingData* pane,
                            std::int16_t angle, std::size_t angles) {
    std::vector<std::string> parts;
    if (pane && pane->filename() != identifier) parts.push_back(pane->filename());
    if (angles > 1) parts.push_back(fmt::format("at {} degrees", angle));
    return fmt::format("{}", fmt::join(parts, " "));
  }

  /// Panes of the IGDB stay in a group of that name, for which nobody is asked.
  void settleGroup(GlazingData& pane) {
    const auto& source = work_.records().DataSourcePtr();
    if (source->DataType() != DataType::optics5Panes) return;
    const auto database = source->Parent();
    if (!database) return;
    if (database->DataType() == DataType::optics5User) pane.group("Unknown");
    if (database->DataType() == DataType::igdb) work_.group().settle("IGDB");
  }

  TransferWork work_;
  std::vector<Angles> angles_;
};

}  // namespace

PasteResult transferPanes(Session& session, const sources::RecordSelection& records,
                          sources::datasource& destination) {
  return PaneTransfer(session, records, destination).run();
}

}  // namespace orv::commands
