// The tolerant reading of pane files: a step before the reader of the format.
#pragma once

#include <string>

namespace orv::textfile {

/// Makes the text one of the format where it differs from it in ways that have one meaning. Says
/// what was done: "semicolons part columns, percent"; empty when nothing was.
std::string repair(std::string& text);

}  // namespace orv::textfile
