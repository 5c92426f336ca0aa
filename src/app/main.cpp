// The desktop program.
#include <QApplication>
#include <QCommandLineParser>
#include <algorithm>
#include <string_view>

#include "app/Text.h"
#include "app/dialogs/frmSplash.h"
#include "app/theme/Theme.h"
#include "app/window/WindowUserInterface.h"
#include "app/window/frmMain.h"
#include "commands/Session.h"

namespace {

/// The files and folders to be opened. Ends the program where only its help or version is wanted.
QStringList pathsOf(const QCoreApplication& application) {
  QCommandLineParser parser;
  parser.setApplicationDescription(
      QCoreApplication::translate("main", "Opens the window of the ORV database manager."));
  parser.addHelpOption();
  parser.addVersionOption();
  parser.addPositionalArgument(
      "sources", QCoreApplication::translate("main", "Databases, text files and folders to open."),
      "[FILE or FOLDER ...]");
  parser.process(application);
  return parser.positionalArguments();
}

/// Whether only the help or the version is wanted, for which no display is needed.
bool onlyExplains(int argc, char* argv[]) {
  return std::any_of(argv + 1, argv + argc, [](const std::string_view argument) {
    return argument == "-h" || argument == "--help" || argument == "--help-all" ||
           argument == "-v" || argument == "--version";
  });
}

}  // namespace

/// Files that are named on the command line, as the desktop does with files that are opened with
/// the program, are opened. Otherwise the list of data sources is empty.
int main(int argc, char* argv[]) {
  using namespace orv;
  QCoreApplication::setApplicationName(app::qt(commands::kApplicationTitle));
  QCoreApplication::setApplicationVersion(ORV_VERSION);
  if (onlyExplains(argc, argv)) {
    QCoreApplication::setApplicationName("orv-manager");  // by which it is called
    pathsOf(QCoreApplication(argc, argv));
  }
  QApplication application(argc, argv);
  QGuiApplication::setDesktopFileName("io.github.orv_manager.OrvManager");
  const QStringList paths = pathsOf(application);
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
  window.openPaths(paths);
  return QApplication::exec();
}
