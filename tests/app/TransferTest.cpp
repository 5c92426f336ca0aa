// Copying, pasting, deleting and exporting records.
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QCompleter>
#include <QDropEvent>
#include <QMessageBox>
#include <QMimeData>
#include <QTableWidget>
#include <QToolButton>

#include "app/WindowTest.h"
#include "app/docks/details/DetailsTree.h"
#include "app/docks/spectra/SpectrumDock.h"

namespace orv::test {

class TransferWindowTest : public WindowTest {
 protected:
  /// Opens a new ORV database.
  void openNew() { window.openPaths({makeRows("new.mdb", 0)}); }
  /// Copies panes of the IGDB copy, from the first on, and opens a new database for them.
  void copyFromIgdb(int count) {
    openCopy("glazing.mdb");
    copyRows(0, count - 1);
    openNew();
  }
  QToolButton& result() { return find<QToolButton>("btnResult"); }
};

TEST_F(TransferWindowTest, PastesPanesAndThenAsksAboutThoseThatExist) {
  ORV_NEEDS_CORPUS();
  copyFromIgdb(5);
  EXPECT_EQ(label("lblPending"), "5 copied");
  trigger("mnuEditPaste");
  EXPECT_TRUE(dialogs.seen().empty()) << dialogs.told();
  EXPECT_EQ(cell(2, 3), "IGDB");
  for (const int column : {1, 2, 4}) {  // in a grid that was empty before
    EXPECT_LT(grid().fontMetrics().horizontalAdvance(cell(2, column)), grid().columnWidth(column));
  }
  EXPECT_EQ(status(), "Ready");
  EXPECT_FALSE(isEnabled("mnuEditDelete"));

  const auto pasteAndPress = [&](const QString& button) {
    dialogs.then([=](QWidget& box) {
      dynamic_cast<QMessageBox&>(box).checkBox()->setChecked(true);
      buttonOf(box, button)->click();
    });
    trigger("mnuEditPaste");
  };
  QString summary;
  dialogs.then([](QWidget& box) {
    dynamic_cast<QMessageBox&>(box).checkBox()->setChecked(true);
    dynamic_cast<QMessageBox&>(box).accept();
  });
  dialogs.read(summary);
  trigger("mnuEditPaste");
  EXPECT_EQ(dialogs.seen().size(), 2U) << dialogs.told();
  EXPECT_EQ(dialogs.texts()[0],
            "The record PANE00001.DAT could not be copied: \nA record with this name "
            "(PANE00001.DAT) already exists.\n\nIf this is a text file, check its format.");
  EXPECT_EQ(summary.count("could not be copied"), 5);

  pasteAndPress("Replace");
  EXPECT_EQ(result().text(), "0 records copied, 5 replaced, 0 failed.");
  EXPECT_TRUE(result().isEnabled());
  pasteAndPress("Skip");
  EXPECT_EQ(result().text(), "0 records copied, 5 skipped, 0 failed.");
  EXPECT_FALSE(result().isEnabled()) << "there is no more to tell";
  EXPECT_EQ(dialogs.seen().size(), 4U) << dialogs.told();
  EXPECT_EQ(rows(), 5);
}

TEST_F(TransferWindowTest, AsksForAGroupUntilItMayBeUsed) {
  ORV_NEEDS_CORPUS();
  openCopy("orvdata-2.0.1.mdb");
  copyRows(0, 3);
  openNew();
  dialogs.type("tarven-1").press("OK").type("Glass");
  trigger("mnuEditPaste");
  ASSERT_EQ(dialogs.seen().size(), 3U);
  EXPECT_EQ(dialogs.texts()[0], "Supply a new groupname for all of these records:");
  EXPECT_EQ(dialogs.texts()[1], "tarven-1 is not a valid group name.");
  EXPECT_EQ(dialogs.seen()[2].title, "ORV database manager");
  EXPECT_FALSE(result().isHidden());
  EXPECT_EQ(result().text(), "4 records copied, 0 failed.");
  QString report;
  dialogs.read(report);
  result().click();
  EXPECT_THAT(report, Begins("Not ")) << "what is left out";
  ASSERT_GT(rows(), 0);
  EXPECT_EQ(cell(0, 3), "Glass");
}

TEST_F(TransferWindowTest, OffersTheGroupsThatExistAndTakesWhatIsTyped) {
  openExamples("panes");
  copyRows(1, 1);
  openNew();
  for (const char* group : {"window Glass", "Foils", "IGDB", "Glass makers"}) {
    session.database.InsertGroup(group, *session.MainDataSources.Item(2)->ADOConnection());
  }
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

TEST_F(TransferWindowTest, AsksOnceForAFolderOfLaboratoryFiles) {
  std::filesystem::create_directory(folder / "lab");
  for (const char* name : {"lab/a.txt", "lab/b.txt"}) {
    writeFile(name, "SI nm 4,0 mm 1,0\n300;10,5;5;6\n500;80;7;8\n");
  }
  dialogs.press("Yes");
  window.openPaths({file(folder / "lab")});
  EXPECT_THAT(dialogs.texts()[0], Contains("a.txt: \"nm\" is read as Nanometers"));
  tree().setCurrentItem(tree().topLevelItem(0));
  copyRows(0, 1);
  openNew();
  dialogs.type("Lab");
  trigger("mnuEditPaste");
  EXPECT_EQ(dialogs.seen().size(), 2U) << dialogs.told();
  EXPECT_EQ(result().text(), "2 records copied, 0 failed.");
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
  const auto send = [&](auto event) {
    QApplication::sendEvent(tree().viewport(), &event);
    return event.isAccepted();
  };
  const auto placeOf = [&](int node) {
    return tree().visualItemRect(tree().topLevelItem(node)).center();
  };
  send(QDragEnterEvent(placeOf(0), Qt::CopyAction, data.get(), Qt::LeftButton, {}));
  EXPECT_TRUE(send(QDragMoveEvent(placeOf(0), Qt::CopyAction, data.get(), Qt::LeftButton, {})));
  EXPECT_FALSE(send(QDragMoveEvent(placeOf(1), Qt::CopyAction, data.get(), Qt::LeftButton, {})));
  send(QDropEvent(placeOf(0), Qt::CopyAction, data.get(), Qt::LeftButton, {}));
  QTest::qWait(50);
  EXPECT_TRUE(dialogs.seen().empty()) << dialogs.told();
  EXPECT_FALSE(isEnabled("mnuEditPaste"));
  selectNode({"new.mdb", "Panes"});
  EXPECT_EQ(rows(), 2);
}

TEST_F(TransferWindowTest, DocksThatAreOpenShowTheSelectedRecordAndCopyItsFields) {
  ORV_NEEDS_CORPUS();
  openCopy("glazing.mdb");
  trigger("mnuViewSpectrum");
  trigger("mnuViewDetails");
  auto& spectrum = *window.findChild<app::SpectrumDock*>();
  selectRows(0, 1);
  EXPECT_TRUE(QTest::qWaitFor([&] { return spectrum.plot().dataSets.size() == 2; }));
  selectRows(2, 2);
  auto& fields = *window.findChild<app::DetailsTree*>();
  EXPECT_TRUE(QTest::qWaitFor([&] { return fields.text(false).contains("PANE00003.DAT"); }));

  fields.setCurrentItem(fields.topLevelItem(0)->child(0));
  fields.setFocus();
  QApplication::setActiveWindow(&window);
  QTest::keyClick(&fields, Qt::Key_C, Qt::ControlModifier);
  EXPECT_FALSE(isEnabled("mnuEditPaste"));
  EXPECT_THAT(QGuiApplication::clipboard()->text(), Contains("Id\t3"));
  grid().setFocus();
  QTest::keyClick(&grid(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_TRUE(isEnabled("mnuEditPaste"));

  selectNode({"glazing.mdb"});
  EXPECT_TRUE(spectrum.plot().dataSets.empty());
}

TEST_F(TransferWindowTest, ExportsPanesAsTextFilesAndReadsThemAgain) {
  ORV_NEEDS_CORPUS();
  openCopy("glazing.mdb");
  selectRows(0, 1);
  std::filesystem::create_directory(folder / "export");
  QString report;
  dialogs.press("OK").choose({file(folder / "export")}).read(report);
  trigger("mnuFileExport");
  EXPECT_THAT(dialogs.texts().back(), Begins("2 files written to "));
  EXPECT_THAT(report, Begins("Filled in, because a text file needs it:"));
  window.openPaths({file(folder / "export")});
  EXPECT_EQ(rows(), 2);
}

TEST_F(TransferWindowTest, ComputesIntegratedValuesAfterShowingWhatWouldChange) {
  ORV_NEEDS_CORPUS();
  copyFromIgdb(2);
  trigger("mnuEditPaste");
  EXPECT_FALSE(isEnabled("mnuEditIntegrate"));
  selectRows(0, 1);
  const auto visible = [this] {
    const auto rows = session.MainDataSources.Item(2)->ADOConnection()->openRecordset(
        "SELECT transmission_visual_outdoor FROM Pane_integrated_data ORDER BY PaneID");
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
  EXPECT_THAT(shown[1], Begins(QString::number(before, 'f', 4) + " → 0."));
  EXPECT_EQ(shown[2], "Values are stored for 2 of 2 panes and angles.");
  EXPECT_EQ(visible(), before) << "the dialog was closed";

  dialogs.then([&](QWidget& dialog) {
    look(dialog);
    buttonOf(dialog, "Store")->click();
  });
  trigger("mnuEditIntegrate");
  EXPECT_TRUE(dialogs.isDone());
  EXPECT_EQ(QString::number(visible(), 'f', 4), shown[1].section(' ', 2));
  EXPECT_THAT(result().text(), Begins("2 rows of integrated values written by ISO 9050"));
}

TEST_F(TransferWindowTest, ShowsIntegratedValuesAsColumnsOnDemand) {
  ORV_NEEDS_CORPUS();
  copyFromIgdb(6);
  trigger("mnuEditPaste");
  const int plain = columns();
  const auto isFilled = [this] { return !grid().records().isFilling(); };
  selectRows(1, 3);
  trigger("mnuViewStoredValues");
  EXPECT_EQ(columns(), plain + 8);
  ASSERT_TRUE(QTest::qWaitFor(isFilled));
  EXPECT_NEAR(cell(0, column("Visible transmittance front, stored")).toDouble(), 0.8, 0.1);
  EXPECT_EQ(status(), "Values of 6 panes read.");
  trigger("mnuViewComputedValues");
  EXPECT_EQ(columns(), plain + 16);
  EXPECT_EQ(grid().selectedRows().high, 3) << "the selection stays";
  const int stored = column("Visible transmittance front, stored");
  const int computed = column("Visible transmittance front, EN 410");
  filter(computed).setText(">0");
  EXPECT_EQ(rows(), 0) << "nothing is computed yet";
  ASSERT_TRUE(QTest::qWaitFor(isFilled));
  EXPECT_EQ(rows(), 6);
  EXPECT_EQ(status(), "Values of 6 panes read.");
  for (int row = 0; row < rows(); ++row) {
    EXPECT_GT(cell(row, computed).toDouble(), 0.8);
    EXPECT_NEAR(cell(row, stored).toDouble(), 0.8, 0.1);
  }
  emit grid().filterHeader().sectionClicked(computed);
  for (int row = 1; row < rows(); ++row) {
    EXPECT_LE(cell(row - 1, computed).toDouble(), cell(row, computed).toDouble());
  }
  trigger("mnuViewStoredValues");
  EXPECT_EQ(columns(), plain + 8);
  trigger("mnuViewComputedValues");
  EXPECT_EQ(columns(), plain);
  EXPECT_EQ(rows(), 6);

  trigger("mnuViewComputedValues");
  QTest::keyClick(&grid(), Qt::Key_Escape);
  EXPECT_TRUE(isFilled());
  EXPECT_EQ(cell(5, computed), "") << "stopped before it began";
}

}  // namespace orv::test
