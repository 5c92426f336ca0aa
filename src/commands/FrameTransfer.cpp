#include "commands/CopyLosses.h"
#include "commands/RecordNames.h"
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
        requireUsableNames(*frame);
        work.session().database.InsertFrame(*frame, work.destination());
        if (!frame->pictureText().empty()) {
          work.result().notes.add(
              "in place of a picture the source has a text, which is kept: " + frame->pictureText(),
              frame->name());
        }
        for (const auto& name : lossesOf(*frame)) work.result().notKept.add(name, frame->name());
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
