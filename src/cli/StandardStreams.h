// The streams that a program is started with.
#pragma once

namespace orv::cli {

/// Takes the place of each standard stream that is closed, so that no file that is opened later
/// gets its number and the texts meant for it. Writing to a closed standard output then fails.
void occupyClosedStreams();

/// Writes out what standard output still holds. False when that, or any writing to it before,
/// failed.
bool finishOutput();

}  // namespace orv::cli
