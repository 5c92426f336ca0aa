#include "commands/CopyLosses.h"
#include "commands/RecordNames.h"
#include "commands/Transfer.h"
#include "commands/TransferWork.h"

namespace orv::commands {

namespace {

Outcome copyShading(TransferWork& work, const std::string& identifier) {
  return work.attempt(
      identifier,
      [&] {
        work.status("Reading " + identifier + "...");
        const auto shading = work.reader().shading(identifier);
        const auto group = work.chooseGroup();
        if (!group) return;
        shading->group(*group);
        work.status("Writing " + identifier + "...");
        requireUsableNames(*shading);
        work.session().database.InsertShading(*shading, work.destination());
        for (const auto& name : lossesOf(*shading)) {
          work.result().notKept.add(name, shading->name());
        }
      },
      [] { return "A record with this name already exists."; });
}

}  // namespace

PasteResult transferShadings(Session& session, const sources::RecordSelection& records,
                             sources::datasource& destination) {
  TransferWork work(session, records, destination);
  work.progress().expect(records.RecordsCount());
  work.forEachRecord([&](const std::string& identifier) { return copyShading(work, identifier); });
  return work.result();
}

}  // namespace orv::commands
