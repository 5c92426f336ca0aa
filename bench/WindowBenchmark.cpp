// How long the window keeps its user waiting: drives the real window, and tells
//   - the time from the closing of the file dialog to the first painted rows of a database as large
//     as the International Glazing Database,
//   - the longest time that the event loop was away while panes were pasted.
//
// usage: window_bench [GLAZINGS] [PANES]     (6000 in the database, 1000 pasted, unless told
// otherwise). Needs a display.
#include <fmt/format.h>
#include <unistd.h>

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileDialog>
#include <QLineEdit>
#include <QSettings>
#include <QTimer>
#include <filesystem>

#include "app/grid/RecordGrid.h"
#include "app/theme/Theme.h"
#include "app/window/WindowUserInterface.h"
#include "app/window/frmMain.h"
#include "bench/GlazingDatabase.h"
#include "commands/Session.h"
#include "database/OrvSchema.h"

namespace {

using namespace orv;

double milliseconds(const QElapsedTimer& clock) {
  return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

/// Chooses a file in the dialog that opens next, and starts a clock when the dialog closes.
class Chooser : public QTimer {
 public:
  Chooser(QString path, QElapsedTimer& clock) : path_(std::move(path)), clock_(clock) {
    connect(this, &QTimer::timeout, this, &Chooser::look);
    start(20);
  }

 private:
  void look() {
    auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    if (dialog == nullptr) return;
    stop();
    connect(dialog, &QDialog::finished, this, [this] { clock_.start(); });
    dialog->setDirectory(QFileInfo(path_).absolutePath());
    dialog->findChild<QLineEdit*>("fileNameEdit")->setText(path_);
    QMetaObject::invokeMethod(dialog, "accept");
  }

  QString path_;
  QElapsedTimer& clock_;
};

/// Notes when the grid has painted rows for the first time.
class FirstRows : public QObject {
 public:
  FirstRows(const app::RecordGrid& grid, const QElapsedTimer& clock) : grid_(grid), clock_(clock) {
    grid.viewport()->installEventFilter(this);
  }
  double time = -1;  ///< milliseconds
  int rows = 0;

 protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() != QEvent::Paint || grid_.model()->rowCount() == 0) return false;
    grid_.viewport()->removeEventFilter(this);
    rows = grid_.model()->rowCount();
    const auto note = [this] { time = milliseconds(clock_); };
    QMetaObject::invokeMethod(this, note, Qt::QueuedConnection);  // once the painting is done
    return false;
  }

 private:
  const app::RecordGrid& grid_;
  const QElapsedTimer& clock_;
};

/// Notes the longest time between two turns of the event loop.
class Watch : public QTimer {
 public:
  Watch() {
    connect(this, &QTimer::timeout, this, [this] {
      longest = std::max(longest, milliseconds(clock_));
      clock_.restart();
    });
    clock_.start();
    start(0);
  }
  double longest = 0;

 private:
  QElapsedTimer clock_;
};

void wait(int time) {
  QEventLoop loop;
  QTimer::singleShot(time, &loop, &QEventLoop::quit);
  loop.exec();
}

void trigger(const QWidget& window, const char* command) {
  window.findChild<QAction*>(command)->trigger();
}

void measureOpening(app::frmMain& window, app::RecordGrid& grid, const std::string& path) {
  QElapsedTimer clock;
  const Chooser chooser(QString::fromStdString(path), clock);
  FirstRows painted(grid, clock);
  trigger(window, "mnuFileOpenIGDB");
  while (painted.time < 0) QApplication::processEvents();
  fmt::print("first {} rows painted {:.0f} ms after the file dialog's closing\n", painted.rows,
             painted.time);
  while (grid.records().canFetchMore({}) || !grid.records().isComplete()) {
    QApplication::processEvents();
  }
  fmt::print("all {} rows read in idle time after {:.0f} ms\n", grid.model()->rowCount(),
             milliseconds(clock));
}

void measurePaste(app::frmMain& window, app::RecordGrid& grid, const std::string& target,
                  int panes) {
  grid.selectRows({0, panes - 1});
  trigger(window, "mnuEditCopy");
  window.openPaths({QString::fromStdString(target)});
  wait(500);
  QElapsedTimer clock;
  clock.start();
  Watch watch;
  QTimer::singleShot(0, [&] { trigger(window, "mnuEditPaste"); });
  do {
    QApplication::processEvents();
  } while (grid.model()->rowCount() == 0);
  const double paste = milliseconds(clock);
  wait(300);
  fmt::print("{} panes pasted in {:.1f} s; the event loop was away {:.0f} ms at most\n",
             grid.model()->rowCount(), paste / 1000, watch.longest);
}

}  // namespace

int main(int count, char** arguments) {
  QApplication application(count, arguments);
  const int glazings = count > 1 ? std::atoi(arguments[1]) : 6000;
  const int panes = count > 2 ? std::atoi(arguments[2]) : 1000;
  const auto folder =
      std::filesystem::temp_directory_path() / fmt::format("orv-window-bench-{}", getpid());
  std::filesystem::create_directory(folder);
  QSettings::setPath(QSettings::IniFormat, QSettings::UserScope,
                     QString::fromStdString(folder.string()));
  const std::string source = folder / "glazing.mdb";
  bench::GlazingDatabase(source).addGlazings(glazings);
  database::CreateEmptyDatabase(folder / "orvdata.mdb")->close();
  {
    app::applyTheme(app::Theme::light);
    app::WindowUserInterface ui;
    commands::Session session(ui);
    app::frmMain window(session, ui);
    window.resize(1200, 800);
    window.show();
    wait(500);
    auto& grid = *window.findChild<app::RecordGrid*>();
    measureOpening(window, grid, source);
    measurePaste(window, grid, folder / "orvdata.mdb", std::min(panes, glazings));
  }
  std::filesystem::remove_all(folder);
}
