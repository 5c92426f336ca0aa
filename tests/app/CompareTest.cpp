// Two sources compared in the window: the list, the way to both records, and the copy.
#include <QClipboard>
#include <QComboBox>
#include <QDockWidget>

#include "app/WindowTest.h"
#include "app/dialogs/CompareDialog.h"
#include "app/docks/compare/DifferencesTree.h"
#include "app/docks/spectra/SpectrumDock.h"
#include "database/TestDatabase.h"

namespace orv::test {
namespace {

class CompareWindowTest : public WindowTest {
 protected:
  /// Two databases, of which the second lacks a pane, has one more and another curve and thickness.
  void openTwo() {
    for (const std::string name : {"left.mdb", "right.mdb"}) {
      const auto connection = database::CreateEmptyDatabase(folder / name);
      const bool isRight = name == "right.mdb";
      for (const char* pane : {isRight ? "new" : "gone", "same", "changed"}) {
        const auto data = makePane(pane);
        if (isRight && data->filename() == "changed") {
          data->Thickness(4);
          data->SpectralData()->Rf(2, 0.5F);
        }
        session.database.InsertPane(*data, *connection);
      }
      connection->close();
      window.openPaths({file(folder / name)});
    }
    selectNode({"left.mdb", "Panes"});
    clickItem(tree(), tree().currentItem());
    clickItem(tree(), tree().topLevelItem(1)->child(0), Qt::LeftButton, Qt::ControlModifier);
  }

  app::DifferencesTree& differences() { return find<app::DifferencesTree>("DifferencesTree"); }

  void compare() {
    dialogs.press("Compare");
    trigger("mnuToolsCompare");
  }

  QStringList shown() {
    QStringList lines;
    for (int i = 0; i < differences().topLevelItemCount(); ++i) {
      const auto* record = differences().topLevelItem(i);
      lines << record->text(0);
      for (int k = 0; k < record->childCount(); ++k) lines << "  " + record->child(k)->text(0);
    }
    return lines;
  }

  void click(const QTreeWidgetItem* item) { clickItem(differences(), item); }
};

TEST_F(CompareWindowTest, ADifferenceLeadsToBothRecordsAndTheirCurves) {
  EXPECT_FALSE(isEnabled("mnuToolsCompare"));
  openTwo();
  EXPECT_FALSE(find<QDockWidget>("CompareDock").isVisible());
  compare();
  EXPECT_TRUE(dialogs.isDone());
  EXPECT_TRUE(find<QDockWidget>("CompareDock").isVisible());
  const QStringList all{"− new", "≠ changed", "  thickness", "  Rf", "+ gone"};
  EXPECT_EQ(shown(), all);
  EXPECT_EQ(
      label("lblCompare"),
      "right.mdb and left.mdb: 1 record is the same, 1 added, 1 removed, 1 changed. 3 shown.");

  auto& spectra = find<app::SpectrumDock>("SpectrumDock");
  if (!spectra.isVisible()) trigger("mnuViewSpectrum");
  click(differences().topLevelItem(1)->child(1));
  EXPECT_EQ(cell(grid().selectedRows().low, 1), "changed");
  ASSERT_TRUE(QTest::qWaitFor([&] { return spectra.plot().dataSets.size() == 2; }));
  EXPECT_EQ(spectra.plot().dataSets[0].name, "left: changed");
  EXPECT_EQ(spectra.plot().dataSets[1].name, "right: changed");
  EXPECT_TRUE(spectra.plot().showsDifference);
  ASSERT_TRUE(QTest::qWaitFor([&] { return spectra.pointedWavelength().has_value(); }));
  EXPECT_NEAR(spectra.pointedWavelength().value_or(0), 0.5, 0.005);
  click(differences().topLevelItem(2));
  ASSERT_TRUE(QTest::qWaitFor([&] { return spectra.plot().dataSets.size() == 1; }));
  EXPECT_EQ(spectra.plot().dataSets[0].name, "right: gone");
  EXPECT_EQ(cell(grid().selectedRows().low, 1), "gone");

  find<QComboBox>("cboState").setCurrentIndex(3);
  EXPECT_EQ(shown(), all.mid(1, 3));
  find<QComboBox>("cboField").setCurrentText("Rf");
  EXPECT_EQ(shown(), (QStringList{"≠ changed", "  Rf"}));
  trigger("mnuCompareCopy");
  EXPECT_EQ(QGuiApplication::clipboard()->text().section('\n', 1).toStdString(),
            "changed\tchanged\tRf\t0.5 at 500 nm\t0.120000005 at 500 nm (-0.38)\t0\tpanes\t3\t3");
}

TEST_F(CompareWindowTest, SourcesOfOneNameAreToldByTheirFolders) {
  for (const std::string place : {"here", "there"}) {
    std::filesystem::create_directory(folder / place);
    database::CreateEmptyDatabase(folder / (place + "/a.mdb"))->close();
    window.openPaths({file(folder / (place + "/a.mdb"))});
  }
  window.openPaths({makeRows("b.mdb", 1)});
  const auto& sources = session.MainDataSources;
  EXPECT_EQ(app::sourceName(sources, *sources.Item(2)).toStdString(),
            "a.mdb (" + folder / "there/a.mdb" + ")");
  EXPECT_EQ(app::sourceName(sources, *sources.Item(3)->DataSources().Item(1)), "b.mdb, Panes");
}

TEST_F(CompareWindowTest, TickedRecordsAreCopiedToTheRight) {
  openTwo();
  compare();
  EXPECT_FALSE(isEnabled("mnuCompareCopyRight"));
  trigger("mnuCompareTickAll");
  EXPECT_EQ(action("mnuCompareCopyRight").text(), "Copy 2 to the &Right");
  trigger("mnuCompareTickAll");
  EXPECT_FALSE(isEnabled("mnuCompareCopyRight"));
  differences().topLevelItem(1)->setCheckState(0, Qt::Checked);

  // What is changed on the right side and not saved is asked about first.
  selectNode({"left.mdb", "Panes"});
  QGuiApplication::clipboard()->setText("mine");
  grid().setCurrentIndex(grid().model()->index(0, 2));
  trigger("mnuEditPasteText");
  EXPECT_EQ(status(), "1 field changed, not saved yet.");
  dialogs.press("Cancel");
  trigger("mnuCompareCopyRight");
  EXPECT_THAT(dialogs.texts().back(), Begins("1 field of 1 record of "));
  EXPECT_EQ(shown().size(), 5);
  changeTable(*store::Connection::openFile(folder / "left.mdb"),
              "Pane thickness=7 where name = 'changed'");
  dialogs.press("Discard").press("OK");
  trigger("mnuCompareCopyRight");
  EXPECT_THAT(dialogs.texts().back(), Begins("Nothing is copied: records have changed since"));
  EXPECT_TRUE(shown().contains("  thickness"));
  differences().topLevelItem(1)->setCheckState(0, Qt::Checked);
  trigger("mnuCompareCopyRight");
  EXPECT_TRUE(dialogs.isDone()) << dialogs.told();
  EXPECT_EQ(shown(), (QStringList{"− new", "+ gone"}));
  EXPECT_THAT(label("lblCompare"), Begins("right.mdb and left.mdb: "));
  // What was discarded, what was typed, and then the copy.
  for (int i = 0; i < 3; ++i) trigger("mnuEditUndo");
  EXPECT_THAT(label("lblCompare"), Begins("Records have changed since: compare again."));
  EXPECT_EQ(rows(), 3);
  dialogs.press("Yes");
  trigger("mnuFileRemove");
  click(differences().topLevelItem(0));
  EXPECT_EQ(status(), "A source that was compared is not open any more.");
}

}  // namespace
}  // namespace orv::test
