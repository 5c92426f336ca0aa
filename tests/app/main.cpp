// Tests of the window run without a screen and without the user's settings.
#include <gtest/gtest.h>

#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>

#include "app/theme/Theme.h"

int main(int argc, char* argv[]) {
  testing::InitGoogleTest(&argc, argv);
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QTemporaryDir settings;
  QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
  QApplication application(argc, argv);
  orv::app::applyTheme(orv::app::Theme::system);
  return RUN_ALL_TESTS();
}
