// Tests of the window run without a screen and without the user's settings. ORV_TEST_THEME=dark has
// them run in dark colours, ORV_TEST_SIZE=1024x768 in a window that is no larger.
#include <gtest/gtest.h>

#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>

#include "app/theme/Theme.h"
#include "app/window/UserSettings.h"

namespace {

/// Tests may leave another theme and settings behind.
class FreshStart : public testing::EmptyTestEventListener {
 public:
  void OnTestStart(const testing::TestInfo& /*test*/) override {
    orv::app::userSettings().clear();
    const bool isDark = qEnvironmentVariable("ORV_TEST_THEME") == "dark";
    orv::app::applyTheme(isDark ? orv::app::Theme::dark : orv::app::Theme::system);
  }
};

}  // namespace

int main(int argc, char* argv[]) {
  testing::InitGoogleTest(&argc, argv);
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QTemporaryDir settings;
  QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
  QApplication application(argc, argv);
  testing::UnitTest::GetInstance()->listeners().Append(new FreshStart);
  return RUN_ALL_TESTS();
}
