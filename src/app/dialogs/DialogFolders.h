// Where the dialogs for files and folders begin.
#pragma once

#include <QString>

namespace orv::app {

/// The folder that was chosen last in the dialogs of a kind, as long as the program runs; before
/// the first choice the one that was chosen last in any, and the user's own at first.
QString dialogFolder(const QString& kind);
void rememberDialogFolder(const QString& kind, const QString& folder);

}  // namespace orv::app
