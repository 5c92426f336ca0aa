// The main window, as a user has it before him.
#pragma once

#include <gmock/gmock.h>

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QTreeWidget>

#include "app/Dialogs.h"
#include "app/Printing.h"
#include "app/grid/FilterHeader.h"
#include "app/grid/RecordGrid.h"
#include "app/sources/DataSourceTree.h"
#include "app/window/WindowUserInterface.h"
#include "app/window/frmMain.h"
#include "commands/Session.h"
#include "support/Corpus.h"
#include "support/TemporaryFolder.h"

namespace orv::test {

inline QString file(const std::filesystem::path& path) {
  return QString::fromStdString(path.string());
}

class WindowTest : public ::testing::Test {
 protected:
  WindowTest() { window.show(); }

  template <class Widget>
  Widget& find(const char* name) {
    auto* widget = window.findChild<Widget*>(name);
    if (widget == nullptr) throw std::logic_error(std::string("no ") + name);
    return *widget;
  }
  QAction& action(const char* name) { return find<QAction>(name); }
  void trigger(const char* name) { action(name).trigger(); }
  bool isEnabled(const char* name) { return action(name).isEnabled(); }

  app::DataSourceTree& tree() { return find<app::DataSourceTree>("tvDataSources"); }
  app::RecordGrid& grid() { return find<app::RecordGrid>("RecordGrid"); }
  QString label(const char* name) { return find<QLabel>(name).text(); }
  QString status() { return label("lblStatus"); }
  QString counts() { return label("lblCounts"); }
  QString text();
  QString cell(int row, int column) { return grid().model()->index(row, column).data().toString(); }
  int rows() { return grid().model()->rowCount(); }
  int columns() { return grid().model()->columnCount(); }
  /// The column of a heading; -1 where there is none.
  int column(const QString& heading);
  QLineEdit& filter(int column) {
    return find<QLineEdit>(qPrintable(QStringLiteral("txtFilter%1").arg(column)));
  }

  /// A copy of a file of the corpus, opened as dropped files are.
  QString openCopy(const char* name) {
    const QString copy = QString::fromStdString(folder.copyOf(corpusFolder() / "sources" / name));
    window.openPaths({copy});
    return copy;
  }
  /// Opens a folder of the examples.
  void openExamples(const char* name) {
    window.openPaths({QStringLiteral(ORV_SOURCE_DIR "/examples/") + name});
  }
  /// Opens a folder with the corpus's pane files.
  void openPanes() { window.openPaths({file(corpusFolder() / "panes")}); }

  /// Writes a text to a file of the folder.
  QString writeFile(const std::string& name, const std::string& text = {});
  /// Makes an ORV database with a row a pane and no spectra, which is soon done: the first is
  /// called PANE0000.DAT, their thicknesses go from 3 to 12 mm and around.
  QString makeRows(const char* name, int panes);

  /// Gives the window a size, or the one that the tests are run with where that is smaller.
  void resize(int width, int height);
  /// Presses keys where the user's next key goes: in a menu, a dialog, or what has the focus.
  void press(int key, Qt::KeyboardModifiers modifiers = {});
  /// The same with each letter of a text.
  void type(const QString& text);

  /// Chooses an item of the tree by the texts from its root on.
  void selectNode(const QStringList& path);
  void selectRows(int low, int high) { grid().selectRows({low, high}); }
  void copyRows(int low, int high) {
    selectRows(low, high);
    trigger("mnuEditCopy");
  }
  void clickCell(int row, int column, Qt::KeyboardModifiers modifiers = {});
  static void clickItem(QTreeWidget& list, const QTreeWidgetItem* item,
                        Qt::MouseButton button = Qt::LeftButton,
                        Qt::KeyboardModifiers modifiers = {});

  TemporaryFolder folder;
  app::WindowUserInterface ui;
  commands::Session session{ui};
  app::frmMain window{session, ui};
  Dialogs dialogs;
};

}  // namespace orv::test
