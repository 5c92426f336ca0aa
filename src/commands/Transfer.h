// The transfer of the records of a selection into a record set, one function a kind of record.
#pragma once

#include "commands/PasteRecords.h"

namespace orv::commands {

PasteResult transferPanes(Session& session, const sources::RecordSelection& records,
                          sources::datasource& destination);
PasteResult transferFrames(Session& session, const sources::RecordSelection& records,
                           sources::datasource& destination);
PasteResult transferShadings(Session& session, const sources::RecordSelection& records,
                             sources::datasource& destination);

}  // namespace orv::commands
