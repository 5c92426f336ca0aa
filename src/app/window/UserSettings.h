// What the program keeps for its user from run to run.
#pragma once

#include <QSettings>

#include "optics/Standard.h"

namespace orv::app {

/// The settings of the program's user.
QSettings userSettings();

/// By which standard the values beside the spectra are computed. The usual one where the user has
/// not chosen, or the settings have a word that is none.
optics::Standard standardOfSpectra();
void rememberStandardOfSpectra(optics::Standard standard);

/// Whether the first column of the grid stands still.
bool freezesFirstColumn();
void rememberFreezing(bool freezes);

/// The rules of audits of which nothing is shown.
QStringList rulesLeftOut();
void rememberRulesLeftOut(const QStringList& rules);

}  // namespace orv::app
