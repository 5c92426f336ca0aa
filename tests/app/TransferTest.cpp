// Copying, pasting, deleting and exporting records.
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QCompleter>
#include <QDir>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QToolButton>
#include <fstream>

#include "app/WindowTest.h"
#include "app/docks/details/DetailsDock.h"
#include "app/docks/spectra/SpectrumDock.h"
#include "database/OrvSchema.h"

namespace orv::test {

class TransferWindowTest : public WindowTest {
 protected:
  /// Opens a new ORV database.
  void openNew() {
    const std::string path = folder / "new.mdb";
    database::CreateEmptyDatabase(path)->close();
    window.openPaths({QString::fromStdString(path)});
  }
  /// Copies rows of the panes of the IGDB copy.
  void copyFromIgdb(int low, int high) {
    openCopy("glazing.mdb");
    selectRows(low, high);
    trigger("mnuEditCopy");
  }
};

TEST_F(TransferWindowTest, PastesPanesOfTheIgdbWithoutAQuestion) {
  ORV_NEEDS_CORPUS();
  copyFromIgdb(0, 2);
  EXPECT_TRUE(isEnabled("mnuEditPaste"));
  EXPECT_EQ(label("lblPending"), "3 copied");
  openNew();
  trigger("mnuEditPaste");
  EXPECT_TRUE(dialogs.seen().empty()) << dialogs.texts().join('|').toStdString();
  EXPECT_EQ(rows(), 3);
  EXPECT_EQ(cell(2, 3), "IGDB");
  for (const int column : {1, 2, 4}) {  // in a grid that was empty before
    EXPECT_LT(grid().fontMetrics().horizontalAdvance(cell(2, column)), grid().columnWidth(column));
  }
  EXPECT_EQ(label("lblStatus"), "Ready");
  EXPECT_TRUE(isEnabled("mnuEditPaste"));
  EXPECT_FALSE(isEnabled("mnuEditDelete"));
}

TEST_F(TransferWindowTest, AsksForAGroupUntilItMayBeUsed) {
  ORV_NEEDS_CORPUS();
  openCopy("orvdata-2.0.1.mdb");
  selectRows(0, 3);
  trigger("mnuEditCopy");
  openNew();
  dialogs.type("tarven-1").press("OK").type("Glass");
  trigger("mnuEditPaste");
  ASSERT_EQ(dialogs.seen().size(), 3U);
  EXPECT_EQ(dialogs.texts()[0], "Supply a new groupname for all of these records:");
  EXPECT_EQ(dialogs.texts()[1], "tarven-1 is not a valid group name.");
  EXPECT_EQ(dialogs.seen()[2].title, "ORV database manager");
  EXPECT_EQ(label("lblStatus"), "Ready");
  auto& result = *window.findChild<QToolButton*>("btnResult");
  EXPECT_FALSE(result.isHidden());
  EXPECT_EQ(result.text(), "4 records copied, 0 failed.");
  QString report;
  dialogs.then([&](QWidget& dialog) {
    report = dialog.findChild<QPlainTextEdit*>()->toPlainText();
    dialog.close();
  });
  result.click();
  EXPECT_TRUE(report.startsWith("Not ")) << "what is left out: " << report.toStdString();
  ASSERT_GT(rows(), 0);
  EXPECT_EQ(cell(0, 3), "Glass");
}

TEST_F(TransferWindowTest, OffersTheGroupsThatExistAndTakesWhatIsTyped) {
  window.openPaths({QStringLiteral(ORV_SOURCE_DIR "/examples/panes")});
  selectRows(1, 1);
  trigger("mnuEditCopy");
  const std::string path = folder / "groups.mdb";
  const auto database = database::CreateEmptyDatabase(path);
  for (const char* group : {"window Glass", "Foils", "IGDB", "Glass makers"}) {
    session.database.InsertGroup(group, *database);
  }
  database->close();
  window.openPaths({QString::fromStdString(path)});
  QStringList offered;
  QStringList listed;
  dialogs.then([&](QWidget& dialog) {
    auto& list = *dialog.findChild<QComboBox*>();
    for (int i = 0; i < list.count(); ++i) offered << list.itemText(i);
    QTest::keyClicks(list.lineEdit(), "gla");
    const auto* completions = list.completer()->completionModel();
    for (int i = 0; i < completions->rowCount(); ++i) {
      listed << completions->index(i, 0).data().toString();
    }
    QTest::keyClicks(list.lineEdit(), "ss");
    QTest::keyClick(list.lineEdit(), Qt::Key_Return);
  });
  trigger("mnuEditPaste");
  EXPECT_EQ(offered, (QStringList{"Foils", "Glass makers", "window Glass"}))
      << "none that is reserved";
  EXPECT_EQ(listed, (QStringList{"Glass makers", "window Glass"}));
  EXPECT_EQ(rows(), 1);
  EXPECT_EQ(cell(0, 3), "glass") << "not what was listed";
}

TEST_F(TransferWindowTest, ReportsFailuresOnceAndSumsThemUp) {
  ORV_NEEDS_CORPUS();
  copyFromIgdb(0, 4);
  openNew();
  trigger("mnuEditPaste");
  QString summary;
  dialogs
      .then([](QWidget& box) {
        dynamic_cast<QMessageBox&>(box).checkBox()->setChecked(true);
        dynamic_cast<QMessageBox&>(box).accept();
      })
      .then([&](QWidget& dialog) {
        summary = dialog.findChild<QPlainTextEdit*>()->toPlainText();
        dialog.close();
      });
  trigger("mnuEditPaste");
  EXPECT_TRUE(dialogs.isDone());
  ASSERT_EQ(dialogs.seen().size(), 2U);
  EXPECT_EQ(dialogs.texts().front(),
            "The record PANE00001.DAT could not be copied: \nA record with this name "
            "(PANE00001.DAT) already exists.\n\nIf this is a text file, check its format.");
  EXPECT_EQ(summary.count("could not be copied"), 5);
  EXPECT_EQ(rows(), 5);
}

TEST_F(TransferWindowTest, ReplacesAndSkipsRecordsThatExist) {
  ORV_NEEDS_CORPUS();
  copyFromIgdb(0, 4);
  openNew();
  trigger("mnuEditPaste");
  const auto pasteAndPress = [&](const QString& button) {
    dialogs.then([=](QWidget& dialog) {
      auto& box = dynamic_cast<QMessageBox&>(dialog);
      box.checkBox()->setChecked(true);
      for (QAbstractButton* each : box.buttons()) {
        if (each->text() == button) return each->click();
      }
    });
    trigger("mnuEditPaste");
    return find<QToolButton>("btnResult").text();
  };
  EXPECT_EQ(pasteAndPress("&Replace"), "0 records copied, 5 replaced, 0 failed.");
  EXPECT_TRUE(find<QToolButton>("btnResult").isEnabled());
  EXPECT_EQ(pasteAndPress("&Skip"), "0 records copied, 5 skipped, 0 failed.");
  EXPECT_FALSE(find<QToolButton>("btnResult").isEnabled()) << "there is no more to tell";
  EXPECT_EQ(dialogs.seen().size(), 2U) << dialogs.texts().join('|').toStdString();
  EXPECT_EQ(rows(), 5);
}

TEST_F(TransferWindowTest, AsksOnceForAFolderOfLaboratoryFiles) {
  const std::string place = folder / "lab";
  QDir().mkdir(QString::fromStdString(place));
  for (const char* name : {"/a.txt", "/b.txt"}) {
    std::ofstream(place + name) << "SI nm 4,0 mm 1,0\n300;10,5;5;6\n500;80;7;8\n";
  }
  dialogs.press("Yes");
  window.openPaths({QString::fromStdString(place)});
  EXPECT_TRUE(dialogs.texts()[0].contains("a.txt: \"nm\" is read as Nanometers"))
      << dialogs.texts()[0].toStdString();
  tree().setCurrentItem(tree().topLevelItem(0));
  selectRows(0, 1);
  trigger("mnuEditCopy");
  openNew();
  dialogs.type("Lab");
  trigger("mnuEditPaste");
  EXPECT_EQ(dialogs.seen().size(), 2U) << dialogs.texts().join('|').toStdString();
  EXPECT_EQ(find<QToolButton>("btnResult").text(), "2 records copied, 0 failed.");
  EXPECT_EQ(rows(), 2);
}

TEST_F(TransferWindowTest, CopiesRowsThatAreDraggedToANode) {
  ORV_NEEDS_CORPUS();
  openNew();
  openCopy("glazing.mdb");
  selectRows(1, 2);
  std::unique_ptr<QMimeData> data(
      grid().model()->mimeData(grid().selectionModel()->selectedIndexes()));
  EXPECT_EQ(data->text(), "PANE00002.DAT\nPANE00003.DAT");
  const QTreeWidgetItem* database = tree().topLevelItem(0);
  const QPointF place = tree().visualItemRect(database).center();
  QDragEnterEvent enter(place.toPoint(), Qt::CopyAction, data.get(), Qt::LeftButton, {});
  QDragMoveEvent move(place.toPoint(), Qt::CopyAction, data.get(), Qt::LeftButton, {});
  QDropEvent drop(place, Qt::CopyAction, data.get(), Qt::LeftButton, {});
  QApplication::sendEvent(tree().viewport(), &enter);
  QApplication::sendEvent(tree().viewport(), &move);
  EXPECT_TRUE(move.isAccepted());
  const QPoint igdb = tree().visualItemRect(tree().topLevelItem(1)).center();
  QDragMoveEvent elsewhere(igdb, Qt::CopyAction, data.get(), Qt::LeftButton, {});
  QApplication::sendEvent(tree().viewport(), &elsewhere);
  EXPECT_FALSE(elsewhere.isAccepted());
  QApplication::sendEvent(tree().viewport(), &drop);
  QTest::qWait(50);
  EXPECT_TRUE(dialogs.seen().empty()) << dialogs.texts().join('|').toStdString();
  EXPECT_FALSE(isEnabled("mnuEditPaste"));
  selectNode({"new.mdb", "Panes"});
  EXPECT_EQ(rows(), 2);
}

TEST_F(TransferWindowTest, DeletesOnlyWhereAllowedAndConfirmed) {
  ORV_NEEDS_CORPUS();
  openCopy("glazing.mdb");
  selectRows(0, 0);
  trigger("mnuEditDelete");
  EXPECT_EQ(dialogs.texts().back(), "This datasource does not allow deleting any records.");

  openCopy("orvdata-3.0.0.mdb");
  const int before = rows();
  const QString third = cell(2, 0);
  selectRows(0, 1);
  dialogs.press("No").press("Yes");
  trigger("mnuEditDelete");
  EXPECT_EQ(rows(), before);
  selectRows(0, 1);
  trigger("mnuEditDelete");
  const SeenDialog& question = dialogs.seen().back();
  EXPECT_EQ(question.title, "ORV");
  EXPECT_EQ(question.text,
            "Are you sure you want to remove these records? This action cannot be undone.");
  EXPECT_EQ(rows(), before - 2);
  EXPECT_EQ(cell(0, 0), third);
  EXPECT_FALSE(isEnabled("mnuEditDelete"));
}

TEST_F(TransferWindowTest, ShowsTheSelectedRecordInTheDocksThatAreOpen) {
  ORV_NEEDS_CORPUS();
  openCopy("glazing.mdb");
  trigger("mnuViewSpectrum");
  trigger("mnuViewDetails");
  auto& spectrum = *window.findChild<app::SpectrumDock*>();
  auto& details = *window.findChild<app::DetailsDock*>();
  selectRows(0, 1);
  EXPECT_TRUE(QTest::qWaitFor([&] { return spectrum.plot().dataSets.size() == 2; }));
  selectRows(2, 2);
  const auto& fields = *details.findChild<QTreeWidget*>();
  EXPECT_TRUE(QTest::qWaitFor([&] {
    return !fields.findItems("PANE00003.DAT", Qt::MatchExactly | Qt::MatchRecursive, 1).isEmpty();
  }));
  selectNode({"glazing.mdb"});
  EXPECT_TRUE(spectrum.plot().dataSets.empty());
}

TEST_F(TransferWindowTest, TheKeysOfCopyingCopyFieldsWhereFieldsAreShown) {
  ORV_NEEDS_CORPUS();
  openCopy("glazing.mdb");
  trigger("mnuViewDetails");
  selectRows(0, 0);
  auto& fields = *window.findChild<app::DetailsDock*>()->findChild<QTreeWidget*>();
  ASSERT_TRUE(QTest::qWaitFor([&] { return fields.topLevelItemCount() > 0; }));
  fields.setCurrentItem(fields.topLevelItem(0)->child(0));
  fields.setFocus();
  QApplication::setActiveWindow(&window);
  QTest::keyClick(&fields, Qt::Key_C, Qt::ControlModifier);
  EXPECT_FALSE(isEnabled("mnuEditPaste"));
  EXPECT_FALSE(QGuiApplication::clipboard()->text().isEmpty());
  grid().setFocus();
  QTest::keyClick(&grid(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_TRUE(isEnabled("mnuEditPaste"));
}

TEST_F(TransferWindowTest, ExportsPanesAsTextFilesAndReadsThemAgain) {
  ORV_NEEDS_CORPUS();
  openCopy("glazing.mdb");
  selectRows(0, 1);
  const std::string target = folder / "export";
  QDir().mkdir(QString::fromStdString(target));
  dialogs.press("OK").choose({QString::fromStdString(target)}).then([](QWidget& report) {
    const QString text = report.findChild<QPlainTextEdit*>()->toPlainText();
    EXPECT_TRUE(text.startsWith("Filled in, because a text file needs it:")) << text.toStdString();
    EXPECT_TRUE(report.findChild<QLabel*>()->text().startsWith("2 files written to "));
    report.close();
  });
  trigger("mnuFileExport");
  EXPECT_TRUE(dialogs.isDone());
  window.openPaths({QString::fromStdString(target)});
  EXPECT_EQ(rows(), 2);
}

TEST_F(TransferWindowTest, ComputesIntegratedValuesAfterShowingWhatWouldChange) {
  ORV_NEEDS_CORPUS();
  copyFromIgdb(0, 1);
  EXPECT_FALSE(isEnabled("mnuEditIntegrate")) << "these cannot be stored";
  openNew();
  trigger("mnuEditPaste");
  EXPECT_FALSE(isEnabled("mnuEditIntegrate"));
  selectRows(0, 1);
  const auto visible = [this] {
    auto rows = session.MainDataSources.Item(session.MainDataSources.count())
                    ->ADOConnection()
                    ->openRecordset(
                        "SELECT transmission_visual_outdoor FROM Pane_integrated_data "
                        "ORDER BY PaneID");
    return rows->value(0).toDouble();
  };
  const double before = visible();
  QStringList shown;
  const auto look = [&](QWidget& dialog) {
    auto& standards = *dialog.findChild<QComboBox*>("cboIntegrateBy");
    standards.setCurrentText("ISO 9050");
    emit standards.activated(standards.currentIndex());
    const auto& table = *dialog.findChild<QTableWidget*>();
    shown << table.item(0, 2)->text() << table.item(0, 9)->text()
          << dialog.findChild<QLabel*>("lblIntegration")->text();
  };
  dialogs.then([&](QWidget& dialog) {
    look(dialog);
    dialog.close();
  });
  trigger("mnuEditIntegrate");
  EXPECT_EQ(shown[0], "is stored");
  EXPECT_TRUE(shown[1].startsWith(QString::number(before, 'f', 4) + " → 0."))
      << shown[1].toStdString();
  EXPECT_EQ(shown[2], "Values are stored for 2 of 2 panes and angles.");
  EXPECT_EQ(visible(), before) << "the dialog was closed";

  dialogs.then([&](QWidget& dialog) {
    look(dialog);
    for (auto* button : dialog.findChildren<QPushButton*>()) {
      if (button->text() == "&Store") button->click();
    }
  });
  trigger("mnuEditIntegrate");
  EXPECT_TRUE(dialogs.isDone());
  EXPECT_EQ(QString::number(visible(), 'f', 4), shown[1].section(' ', 2));
  EXPECT_TRUE(find<QToolButton>("btnResult")
                  .text()
                  .startsWith("2 rows of integrated values written by ISO 9050"));
}

TEST_F(TransferWindowTest, ShowsIntegratedValuesAsColumnsOnDemand) {
  ORV_NEEDS_CORPUS();
  copyFromIgdb(0, 5);
  openNew();
  trigger("mnuEditPaste");
  const int plain = grid().model()->columnCount();
  const auto isFilled = [this] { return !grid().records().isFilling(); };
  const auto column = [this](const QString& title) {
    for (int i = 0; i < grid().model()->columnCount(); ++i) {
      if (grid().model()->headerData(i, Qt::Horizontal).toString() == title) return i;
    }
    return -1;
  };
  selectRows(1, 3);
  trigger("mnuViewStoredValues");
  EXPECT_EQ(grid().model()->columnCount(), plain + 8);
  ASSERT_TRUE(QTest::qWaitFor(isFilled));
  EXPECT_NEAR(cell(0, column("Visible transmittance front, stored")).toDouble(), 0.8, 0.1);
  EXPECT_EQ(label("lblStatus"), "Values of 6 panes read.");
  trigger("mnuViewComputedValues");
  EXPECT_EQ(grid().model()->columnCount(), plain + 16);
  EXPECT_EQ(grid().selectedRows().high, 3) << "the selection stays";
  const int stored = column("Visible transmittance front, stored");
  const int computed = column("Visible transmittance front, EN 410");
  find<QLineEdit>(("txtFilter" + std::to_string(computed)).c_str()).setText(">0");
  EXPECT_EQ(rows(), 0) << "nothing is computed yet";
  ASSERT_TRUE(QTest::qWaitFor(isFilled));
  EXPECT_EQ(rows(), 6);
  EXPECT_EQ(label("lblStatus"), "Values of 6 panes read.");
  for (int row = 0; row < rows(); ++row) {
    EXPECT_GT(cell(row, computed).toDouble(), 0.8);
    EXPECT_NEAR(cell(row, stored).toDouble(), 0.8, 0.1);
  }
  emit grid().filterHeader().sectionClicked(computed);
  for (int row = 1; row < rows(); ++row) {
    EXPECT_LE(cell(row - 1, computed).toDouble(), cell(row, computed).toDouble());
  }
  trigger("mnuViewStoredValues");
  EXPECT_EQ(grid().model()->columnCount(), plain + 8);
  trigger("mnuViewComputedValues");
  EXPECT_EQ(grid().model()->columnCount(), plain);
  EXPECT_EQ(rows(), 6);

  trigger("mnuViewComputedValues");
  QTest::keyClick(&grid(), Qt::Key_Escape);
  EXPECT_TRUE(isFilled());
  EXPECT_EQ(cell(5, computed), "") << "stopped before it began";
}

}  // namespace orv::test
