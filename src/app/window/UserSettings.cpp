#include "app/window/UserSettings.h"

#include "app/Text.h"
#include "commands/UserInterface.h"

namespace orv::app {

namespace {

constexpr const char* kStandardOfSpectra = "Settings/SpectrumStandard";
constexpr const char* kFreezesFirstColumn = "Settings/FreezeFirstColumn";
constexpr const char* kRulesLeftOut = "Settings/AuditWithout";

}  // namespace

QSettings userSettings() {
  return QSettings(QSettings::IniFormat, QSettings::UserScope, commands::kApplicationTitle,
                   commands::kApplicationTitle);
}

optics::Standard standardOfSpectra() {
  const std::string word = userSettings().value(kStandardOfSpectra).toString().toStdString();
  for (const auto& each : optics::kStandardNames) {
    if (each.word == word) return each.standard;
  }
  return optics::kUsualStandard;
}

void rememberStandardOfSpectra(optics::Standard standard) {
  userSettings().setValue(kStandardOfSpectra, qt(std::string(optics::nameOf(standard).word)));
}

bool freezesFirstColumn() {
  return userSettings().value(kFreezesFirstColumn).toBool();
}

void rememberFreezing(bool freezes) {
  userSettings().setValue(kFreezesFirstColumn, freezes);
}

QStringList rulesLeftOut() {
  return userSettings().value(kRulesLeftOut).toStringList();
}

void rememberRulesLeftOut(const QStringList& rules) {
  userSettings().setValue(kRulesLeftOut, rules);
}

}  // namespace orv::app
