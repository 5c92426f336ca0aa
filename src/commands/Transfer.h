// The transfer of the records of a selection into a record set, one function a kind of record.
#pragma once

#include "commands/TransferWork.h"

namespace orv::commands {

void transferPanes(TransferWork& work);
void transferFrames(TransferWork& work);
void transferShadings(TransferWork& work);

}  // namespace orv::commands
