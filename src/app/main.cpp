// The desktop program.
#include <QApplication>

#include "app/Text.h"
#include "app/Theme.h"
#include "app/WindowUserInterface.h"
#include "app/frmMain.h"
#include "app/frmSplash.h"
#include "commands/Session.h"

/// Files that are named on the command line, as the desktop does with files that are opened with
/// the program, are opened. Otherwise the list of data sources is empty.
int main(int argc, char* argv[]) {
  using namespace orv;
  QApplication application(argc, argv);
  QApplication::setApplicationName(app::qt(commands::kApplicationTitle));
  QApplication::setApplicationVersion(ORV_VERSION);
  QGuiApplication::setDesktopFileName("io.github.orv_manager.OrvManager");
  QApplication::setQuitOnLastWindowClosed(false);  // the splash window's closing is no end
  app::applyTheme(app::Theme::system);

  app::frmSplash splash;
  splash.open();
  app::WindowUserInterface ui;
  commands::Session session(ui);
  app::frmMain window(session, ui);
  splash.close();
  session.strictGroupNames = true;
  window.show();
  QApplication::setQuitOnLastWindowClosed(true);
  window.openPaths(QApplication::arguments().mid(1));
  return QApplication::exec();
}
