#include "commands/Transfer.h"
#include "commands/TransferWork.h"

namespace orv::commands {

namespace {

Outcome copyFrame(TransferWork& work, const std::string& identifier) {
  std::shared_ptr<FrameDataClass> frame;
  return work.attempt(
      identifier,
      [&] {
        work.status("Pasting " + identifier + "...");
        const auto group = work.chooseGroup();
        if (!group) return;
        frame = work.reader().frame(identifier);
        frame->group(*group);
        work.session().database.InsertFrame(*frame, work.destination());
      },
      [&] { return nameConflict(frame->name()); });
}

}  // namespace

PasteResult transferFrames(Session& session, const sources::RecordSelection& records,
                           sources::datasource& destination) {
  TransferWork work(session, records, destination);
  work.progress().expect(records.RecordsCount());
  work.forEachRecord([&](const std::string& identifier) { return copyFrame(work, identifier); });
  return work.result();
}

}  // namespace orv::commands
