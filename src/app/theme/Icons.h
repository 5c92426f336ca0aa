// The program's own icons.
#pragma once

#include <QIcon>
#include <string_view>

namespace orv::app {

/// The icon of a name ("open", "sort-ascending", ...; the files of src/app/theme/icons without ".svg").
/// It is drawn in the colours of the application's palette at the moment of painting, at any size,
/// so it follows a change of theme by itself. An empty icon for a name that there is not.
QIcon icon(std::string_view name);

/// The icon of the program, in its own colours, for windows and the about box.
QIcon applicationIcon();

}  // namespace orv::app
