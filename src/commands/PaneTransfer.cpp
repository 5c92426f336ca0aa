#include <fmt/format.h>
#include <fmt/ranges.h>

#include <map>
#include <vector>

#include "commands/ErrorText.h"
#include "commands/PaneNotes.h"
#include "commands/RecordNames.h"
#include "commands/Transfer.h"
#include "model/IntegratedColumns.h"
#include "optics/Integrator.h"

namespace orv::commands {

namespace DataType = sources::DataType;

namespace {

using Angles = std::vector<std::int16_t>;
using PanePtr = std::shared_ptr<GlazingData>;

/// The copying of panes, angle by angle.
class PaneTransfer {
 public:
  explicit PaneTransfer(TransferWork& work) : work_(work) {
    if (const auto standard = work.options().integrateBy) integrator_.emplace(*standard);
  }

  void run() {
    countWork();
    std::size_t record = 0;
    work_.forEachRecord([&](const std::string& identifier) {
      isIntegrated_ = false;
      const Outcome outcome = copyPane(identifier, angles_[record++]);
      if (isIntegrated_ && wasWritten(outcome)) countIntegrated();
      return outcome;
    });
    tellOtherAngles();
  }

 private:
  static bool wasWritten(Outcome outcome) {
    return outcome == Outcome::copied || outcome == Outcome::replaced || outcome == Outcome::partly;
  }

  void countIntegrated() {
    ++work_.result().integrated;
    work_.result().standard = optics::nameOf(integrator_->standard()).name;
  }

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
      const Angles angles = work_.reader().angles(identifier);
      return angles.empty() && integrator_ ? work_.reader().spectralAngles(identifier) : angles;
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
    if (work_.options().ifThere == IfThere::replace) return replacePane(identifier, angles);
    std::map<Outcome, std::size_t> outcomes;
    for (const std::int16_t angle : angles) {
      if (work_.result().cancelled) break;
      const Outcome outcome = copyAngle(identifier, angle, angles);
      if (outcome == Outcome::replaced) return outcome;
      ++outcomes[outcome];
    }
    const bool anyWritten = outcomes[Outcome::copied] > 0;
    if (outcomes[Outcome::failed] > 0) return anyWritten ? Outcome::partly : Outcome::failed;
    return anyWritten || outcomes[Outcome::skipped] == 0 ? Outcome::copied : Outcome::skipped;
  }

  /// A record that is not there at all has failed.
  Outcome tellWithoutData(const std::string& identifier) {
    const Outcome found =
        work_.attempt(identifier, [&] { work_.reader().pane(identifier, 0); }, {}, {});
    if (found == Outcome::failed) return found;
    work_.tellFailure(identifier,
                      "The pane has data at no angle of incidence: there is nothing to copy.");
    return Outcome::withoutData;
  }

  Outcome copyAngle(const std::string& identifier, std::int16_t angle, const Angles& angles) {
    PanePtr pane;
    return work_.attempt(
        identifier,
        [&] {
          if (!read(identifier, angle, pane)) return;
          prepare(*pane, database::Existing::refused);
          work_.session().database.InsertPane(*pane, work_.destination());
          work_.wrote(nameOf(*pane), identifier);
          notePane(work_, identifier, *pane, angles);
        },
        {.conflict = [&] { return nameConflict(pane->filename()); },
         .which = [&] { return partOf(identifier, pane.get(), angle, angles.size()); }},
        [&] { return replacePane(identifier, angles); });
  }

  /// The pane at all angles, or nothing of it.
  Outcome replacePane(const std::string& identifier, const Angles& angles) {
    std::vector<PanePtr> panes;
    Outcome outcome = Outcome::copied;
    const Outcome attempted =
        work_.attempt(identifier,
                      [&] {
                        for (const std::int16_t angle : angles) {
                          if (!read(identifier, angle, panes.emplace_back())) return;
                          prepare(*panes.back(), database::Existing::replaced);
                        }
                        if (writeReplacement(identifier, panes)) outcome = Outcome::replaced;
                        for (const PanePtr& pane : panes)
                          notePane(work_, identifier, *pane, angles);
                      },
                      {.which =
                           [&] {
                             return partOf(identifier, panes.back().get(), angles[panes.size() - 1],
                                           angles.size());
                           }},
                      {});
    return attempted == Outcome::copied ? outcome : attempted;
  }

  /// A file may hold one angle of several, so that the others that the destination has stay; a pane
  /// of a database is there with all of its angles. True when there was one to replace.
  bool writeReplacement(const std::string& identifier, const std::vector<PanePtr>& panes) {
    const GlazingData& pane = *panes.front();
    for (const PanePtr& each : panes) work_.requireNotWritten(nameOf(*each), identifier);
    const auto replaced = work_.session().database.ReplacePane(
        panes, isFile() ? database::OtherAngles::kept : database::OtherAngles::deleted,
        work_.destination());
    for (const PanePtr& each : panes) work_.wrote(nameOf(*each), identifier);
    if (!replaced.otherAngles.empty()) others_.emplace_back(pane.filename(), replaced.otherAngles);
    return replaced.wasThere;
  }

  /// Told at the end: another file of the source may have had the data at these angles.
  void tellOtherAngles() {
    for (auto& [name, angles] : others_) {
      std::erase_if(angles, [&](std::int16_t angle) {
        return isFile() && work_.hasWritten(nameAt(name, angle));
      });
      if (angles.empty()) continue;
      work_.result().notes.add(
          fmt::format("replaced; the data at {} degrees, where the source has none, are {}",
                      fmt::join(angles, ", "), isFile() ? "kept" : "gone"),
          name);
    }
  }

  /// Reads the pane at an angle and puts it into its group; false when the user ends the work. What
  /// is checked here would otherwise be found when a part of the pane is written already.
  bool read(const std::string& identifier, std::int16_t angle, PanePtr& pane) {
    work_.status("Reading " + identifier + "...");
    pane = work_.reader().pane(identifier, angle);
    const std::string degrees = std::to_string(pane->ORV_Angle()) + " degrees...";
    work_.status("Reading " + pane->filename() + ", angle = " + degrees);
    settleGroup(*pane);
    const auto group = work_.chooseGroup();
    if (!group) return false;
    pane->group(*group);
    work_.status("Writing " + pane->filename() + " angle = " + degrees);
    requireUsableNames(*pane);
    fillIntegratedValues(*pane);
    requireNoMarker(*pane);
    readReferences(identifier, pane);
    return true;
  }

  void prepare(GlazingData& pane, database::Existing existing) {
    const bool hadSubstrate = pane.HasSubstrate();
    work_.session().database.PreparePane(pane, work_.destination(), existing);
    if (hadSubstrate && !pane.HasSubstrate()) {
      tell("copied without the data of the substrate", pane);
    }
  }

  bool isFile() const {
    return work_.records().DataSourcePtr()->DataType() == DataType::textFolder;
  }

  /// What the pane is known by in the destination, as far as this source goes.
  std::string nameOf(const GlazingData& pane) const {
    return isFile() ? nameAt(pane.filename(), pane.ORV_Angle()) : pane.filename();
  }

  static std::string nameAt(const std::string& name, std::int16_t angle) {
    return fmt::format("{} at {} degrees", name, angle);
  }

  /// What the source does not give follows from the spectrum, as far as that reaches.
  void fillIntegratedValues(GlazingData& pane) {
    if (!integrator_) return;
    const bool isOfDatabase = work_.records().DataSourcePtr()->ADOConnection() != nullptr;
    if (isOfDatabase && hasIntegratedData(pane)) return;
    const auto integration = integrator_->integrate(pane);
    const int stored =
        isOfDatabase ? optics::store(integration, pane) : optics::storeMissing(integration, pane);
    if (stored == 0) return;
    isIntegrated_ = true;
    for (const std::string& remark : integration.remarks) tell(remark, pane);
  }

  /// In a database this value says that there are no integrated data, so that the pane could be
  /// copied to the same angle again and again.
  static void requireNoMarker(const GlazingData& pane) {
    if (hasIntegratedData(pane)) return;
    throw Error(
        kInvalidCall,
        fmt::format("The solar reflectance at {} degrees is -1, which stands for integrated "
                    "data that are not there. Correct reflection_solar_outdoor in the "
                    "source.",
                    pane.ORV_Angle()));
  }

  /// A pane whose substrate or layers are not found is copied all the same.
  void readReferences(const std::string& identifier, const PanePtr& pane) {
    try {
      work_.reader().readReferences(identifier, pane);
    } catch (const Error& error) {
      tell("copied without the files that it names: " + describe(error), *pane);
    }
    const bool hasCurve = pane->HasSubstrate() && pane->SubstrateReference()->SpectralData();
    if (hasCurve) pane->with_and_without_film(true);
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

  TransferWork& work_;
  std::vector<Angles> angles_;
  std::vector<std::pair<std::string, Angles>>
      others_;  ///< of replaced panes, where they had data too
  std::optional<optics::Integrator> integrator_;
  bool isIntegrated_ = false;  ///< whether values of the record under way were computed
};

}  // namespace

void transferPanes(TransferWork& work) {
  PaneTransfer(work).run();
}

}  // namespace orv::commands
