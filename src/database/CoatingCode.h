// The service that names the coating code of a pane.
#pragma once

#include <string>

namespace orv::database {

/// The two arguments with which the program asks for a coating code.
inline constexpr int kCoatingCodeArgument = 24;

/// Coating code of a pane whose class is not given. No rule for it is known, so the text is empty:
/// the class of a pane from a glazing database, and of an inserted pane without one, stays empty.
std::string coatingCode(int first, int second);

}  // namespace orv::database
