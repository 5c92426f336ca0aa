#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <map>
#include <set>
#include <vector>

#include "commands/CopyRules.h"
#include "commands/ErrorText.h"
#include "commands/GroupName.h"
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

/// The data of a pane at an angle, and the record that has them: of files there may be several.
struct Part {
  std::string identifier;
  std::int16_t angle;
};
using Parts = std::vector<Part>;
using Columns = std::set<std::string>;

/// A pane as it was read, and which of its values were computed.
struct ReadPart {
  PanePtr pane;
  Columns computed = {};
};

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
      const Outcome outcome = copyPane(identifier, parts_[record++]);
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
      parts_.push_back(partsOf(records.SelectedRecordID(i)));
    }
    work_.progress().expect(records.RecordsCount());
  }

  Parts partsOf(const std::string& identifier) {
    Parts parts;
    const auto add = [&](const std::string& each) {
      for (const std::int16_t angle : anglesOf(each)) parts.push_back({each, angle});
    };
    add(identifier);
    for (const std::string& other : work_.known(identifier).parts) add(other);
    return parts;
  }

  static Angles anglesOf(const Parts& parts) {
    Angles angles;
    for (const Part& part : parts) angles.push_back(part.angle);
    return angles;
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
  Outcome copyPane(const std::string& identifier, const Parts& parts) {
    if (parts.empty()) return tellWithoutData(identifier);
    if (work_.options().ifThere == IfThere::replace) return replacePane(identifier, parts);
    std::map<Outcome, std::size_t> outcomes;
    for (const Part& part : parts) {
      if (work_.result().cancelled) break;
      const Outcome outcome = copyPart(part, parts);
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

  Outcome copyPart(const Part& part, const Parts& parts) {
    ReadPart read;
    return work_.attempt(
        part.identifier,
        [&] {
          if (!readPart(part, read)) return;
          prepare(*read.pane, database::Existing::refused);
          work_.session().database.InsertPane(*read.pane, work_.destination());
          work_.wrote(nameOf(*read.pane), part.identifier);
          notePane(work_, part.identifier, *read.pane, anglesOf(parts));
        },
        {.conflict = [&] { return nameConflict(read.pane->filename()); },
         .which = [&] { return textOf(part, read.pane.get(), parts.size()); }},
        [&] { return replacePane(part.identifier, parts); });
  }

  /// The pane at all angles, or nothing of it.
  Outcome replacePane(const std::string& identifier, const Parts& parts) {
    std::vector<ReadPart> read;
    Outcome outcome = Outcome::copied;
    const Outcome attempted = work_.attempt(
        identifier,
        [&] {
          for (const Part& part : parts) {
            if (!readPart(part, read.emplace_back())) return;
            prepare(*read.back().pane, database::Existing::replaced);
          }
          if (writeReplacement(identifier, read)) outcome = Outcome::replaced;
          const Zeros zeros = outcome != Outcome::replaced            ? Zeros::all
                              : work_.known(identifier).replaces != 0 ? Zeros::none
                                                                      : Zeros::ofValues;
          for (std::size_t i = 0; i < read.size(); ++i) {
            notePane(work_, parts[i].identifier, *read[i].pane, anglesOf(parts), zeros);
          }
        },
        {.which =
             [&] { return textOf(parts[read.size() - 1], read.back().pane.get(), parts.size()); }},
        {});
    return attempted == Outcome::copied ? outcome : attempted;
  }

  /// A file may hold one angle of several, so that the others that the destination has stay; a pane
  /// of a database is there with all of its angles. True when there was one to replace.
  bool writeReplacement(const std::string& identifier, const std::vector<ReadPart>& read) {
    std::vector<PanePtr> panes;
    auto how = work_.replacement(identifier);
    const bool isByComparison = how.key != 0;
    how.others = isFile() ? database::OtherAngles::kept : database::OtherAngles::deleted;
    for (const ReadPart& each : read) {
      panes.push_back(each.pane);
      if (!isByComparison) work_.requireNotWritten(nameOf(*each.pane), identifier);
      // Who asks for a replacement by name asks for values by a standard, or none, too.
      how.angles[each.pane->ORV_Angle()] = {.computed = isByComparison ? each.computed : Columns(),
                                            .direction = each.pane->ORV_Direction()};
    }
    noteUnread(identifier, panes, how);
    const auto replaced = work_.session().database.ReplacePane(panes, how, work_.destination());
    if (isByComparison) isIntegrated_ &= replaced.tookComputed;
    for (const PanePtr& each : panes) work_.wrote(nameOf(*each), identifier);
    if (!replaced.otherAngles.empty()) {
      others_.emplace_back(panes.front()->filename(), replaced.otherAngles);
      if (replaced.lostSubstrate && isFile()) {
        tell("replaced by a pane without a substrate: that of other angles is not read any more",
             *panes.front());
      }
    }
    return replaced.wasThere;
  }

  /// What the source has, and does not give, takes the place of nothing.
  void noteUnread(const std::string& identifier, const std::vector<PanePtr>& panes,
                  database::Replacement& how) const {
    const auto type = work_.records().DataSourcePtr()->DataType();
    how.notGiven.merge(work_.reader().columnsNotGiven(identifier, *panes.front()));
    const bool knowsAngles = type != DataType::orv2Panes;
    const auto spectral = work_.reader().spectralAngles(identifier);
    if (knowsAngles) how.unbrought.insert(spectral.begin(), spectral.end());
    for (const PanePtr& pane : panes) {
      const std::int16_t angle = pane->ORV_Angle();
      database::GivenAngle& given = how.angles[angle];
      const bool hasSpectrum =
          knowsAngles ? std::ranges::find(spectral, angle) != spectral.end() : !spectral.empty();
      const bool isRead = pane->spectral_pane() && pane->SpectralData();
      given.hasUnreadSpectrum = !isRead && (isFile() || hasSpectrum);
      how.unbrought.erase(angle);
      const auto directions = work_.reader().directions(identifier, angle);
      if (directions.size() == 1) given.direction = directions.front();
    }
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
  bool readPart(const Part& part, ReadPart& read) {
    work_.status("Reading " + part.identifier + "...");
    PanePtr& pane = read.pane;
    pane = work_.reader().pane(part.identifier, part.angle);
    const std::string degrees = std::to_string(pane->ORV_Angle()) + " degrees...";
    work_.status("Reading " + pane->filename() + ", angle = " + degrees);
    settleGroup();
    const auto group = work_.chooseGroup();
    if (!group) return false;
    pane->group(*group);
    work_.status("Writing " + pane->filename() + " angle = " + degrees);
    requireUsableNames(*pane);
    read.computed = fillIntegratedValues(*pane);
    requireNoMarker(*pane);
    readReferences(part.identifier, pane);
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

  bool hasDatabase() const { return work_.records().DataSourcePtr()->ADOConnection() != nullptr; }

  /// What the source does not give follows from the spectrum, as far as that reaches. The columns
  /// of that.
  Columns fillIntegratedValues(GlazingData& pane) {
    const bool isIgdb = work_.records().DataSourcePtr()->DataType() == DataType::optics5Panes;
    const bool isThere = hasDatabase() && hasIntegratedData(pane);
    if (isThere && !isIgdb) return {};
    Columns missing = valuesNotGiven(pane);
    if (isThere || !integrator_) return missing;
    const auto integration = integrator_->integrate(pane);
    const int stored =
        hasDatabase() ? optics::store(integration, pane) : optics::storeMissing(integration, pane);
    if (stored == 0) return missing;
    isIntegrated_ = true;
    for (const std::string& remark : integration.remarks) tell(remark, pane);
    return missing;
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
    const std::string failure = work_.reader().readReferences(identifier, pane);
    if (!failure.empty()) tell("copied without the files that it names: " + failure, *pane);
  }

  void tell(const std::string& text, const GlazingData& pane) {
    work_.result().notes.add(text, pane.filename());
  }

  /// The pane's name where the identifier is another, and the angle where there are several.
  static std::string textOf(const Part& part, const GlazingData* pane, std::size_t parts) {
    std::vector<std::string> words;
    if (pane && pane->filename() != part.identifier) words.push_back(pane->filename());
    if (parts > 1) words.push_back(fmt::format("at {} degrees", part.angle));
    return fmt::format("{}", fmt::join(words, " "));
  }

  /// Panes of the IGDB stay in a group of that name, for which nobody is asked.
  void settleGroup() {
    const auto group = groupOfSource(*work_.records().DataSourcePtr());
    if (group) work_.group().settle(*group);
  }

  TransferWork& work_;
  std::vector<Parts> parts_;  ///< of each record
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
