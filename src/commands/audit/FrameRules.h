// Rules on one frame.
#pragma once

#include <vector>

#include "commands/audit/Finding.h"
#include "model/FrameDataClass.h"

namespace orv::commands::audit {

std::vector<Fault> uValueOfNoFrame(const FrameDataClass& frame);
std::vector<Fault> widthOfNoFrame(const FrameDataClass& frame);
std::vector<Fault> frameMissingQuantities(const FrameDataClass& frame);

}  // namespace orv::commands::audit
