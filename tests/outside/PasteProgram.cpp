// The window without a screen, and a user who pastes some panes of one database into another:
//   paste_program SOURCE DESTINATION GROUP
// Prints what message boxes say; ends with 1 when there was one, else with 0.
#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>
#include <iostream>

#include "app/Dialogs.h"
#include "app/grid/RecordGrid.h"
#include "app/window/MainActions.h"
#include "app/window/WindowUserInterface.h"
#include "app/window/frmMain.h"
#include "commands/Session.h"

int main(int argc, char* argv[]) {
  using namespace orv;
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QTemporaryDir settings;
  QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
  QApplication application(argc, argv);
  const QStringList arguments = QApplication::arguments();
  if (arguments.size() != 4) return 2;

  app::WindowUserInterface ui;
  commands::Session session(ui);
  app::frmMain window(session, ui);
  test::Dialogs user;
  window.show();
  window.openPaths({arguments[1]});
  window.findChild<app::RecordGrid*>("RecordGrid")->selectRows({2, 5});
  window.findChild<QAction*>("mnuEditCopy")->trigger();
  window.openPaths({arguments[2]});
  user.type(arguments[3]);  // when it asks for the group
  window.findChild<QAction*>("mnuEditPaste")->trigger();

  int boxes = 0;
  for (const test::SeenDialog& dialog : user.seen()) {
    if (dialog.text.startsWith("Supply a new groupname")) continue;
    std::cerr << dialog.title.toStdString() << ": " << dialog.text.toStdString() << std::endl;
    ++boxes;
  }
  return boxes == 0 && user.isDone() ? 0 : 1;
}
