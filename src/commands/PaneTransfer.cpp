#include <vector>

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
      angles_.push_back(work_.reader().angles(records.SelectedRecordID(i)));
    }
    work_.progress().expect(records.RecordsCount());
  }

  /// A pane of which one angle fails counts as failed. A wish to end waits for the pane's last
  /// angle, so that no part of it is left for another copy to find.
  Outcome copyPane(const std::string& identifier, const Angles& angles) {
    if (angles.empty()) return Outcome::withoutData;
    Outcome outcome = Outcome::copied;
    for (const std::int16_t angle : angles) {
      if (work_.result().cancelled) break;
      if (copyAngle(identifier, angle) == Outcome::failed) outcome = Outcome::failed;
    }
    return outcome;
  }

  Outcome copyAngle(const std::string& identifier, std::int16_t angle) {
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
          work_.session().database.InsertPane(*pane, work_.destination());
        },
        [&] { return nameConflict(pane->filename()); });
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
