#include "commands/CopyRules.h"
#include "commands/RecordNames.h"
#include "commands/Transfer.h"

namespace orv::commands {

namespace {

void noteFrame(TransferWork& work, const FrameDataClass& frame) {
  if (!frame.pictureText().empty()) {
    work.result().notes.add(
        "in place of a picture the source has a text, which is kept: " + frame.pictureText(),
        frame.name());
  }
  for (const auto& name : lossesOf(frame)) work.result().notKept.add(name, frame.name());
}

/// Inserts the frame, or replaces the one of its name where there is one.
Outcome copyFrame(TransferWork& work, const std::string& identifier, bool replaces) {
  std::shared_ptr<FrameDataClass> frame;
  bool wasThere = false;
  const Outcome outcome = work.attempt(
      identifier,
      [&] {
        work.status("Pasting " + identifier + "...");
        const auto group = work.chooseGroup();
        if (!group) return;
        frame = work.reader().frame(identifier);
        frame->group(*group);
        requireUsableNames(*frame);
        auto& database = work.session().database;
        if (replaces) {
          const auto how = work.replacement(identifier);
          if (how.key == 0) work.requireNotWritten(frame->name(), identifier);
          wasThere = database.ReplaceFrame(*frame, how, work.destination());
        } else {
          database.InsertFrame(*frame, work.destination());
        }
        work.wrote(frame->name(), identifier);
        noteFrame(work, *frame);
      },
      {.conflict = [&] { return nameConflict(frame->name()); }},
      [&] { return copyFrame(work, identifier, true); });
  return wasThere ? Outcome::replaced : outcome;
}

}  // namespace

void transferFrames(TransferWork& work) {
  work.progress().expect(work.records().RecordsCount());
  work.forEachRecord([&](const std::string& identifier) {
    return copyFrame(work, identifier, work.options().ifThere == IfThere::replace);
  });
}

}  // namespace orv::commands
