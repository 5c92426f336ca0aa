// Opening and removing data sources, and what is shown of them.
#include <QComboBox>
#include <QDropEvent>
#include <QFile>
#include <QFileDialog>
#include <QMimeData>
#include <QUrl>

#include "app/WindowTest.h"
#include "database/OrvSchema.h"
#include "support/EncodedFile.h"

namespace orv::test {

TEST_F(WindowTest, OpensAnOrvDatabaseAndShowsItsPanes) {
  ORV_NEEDS_CORPUS();
  const QString path = file(folder.copyOf(corpusFolder() / "sources/orvdata-3.0.0.mdb"));
  QStringList filters;
  dialogs.then([&](QWidget& dialog) {
    const auto* types = dialog.findChild<QComboBox*>("fileTypeCombo");
    for (int i = 0; i < types->count(); ++i) filters << types->itemText(i);
    dynamic_cast<QFileDialog&>(dialog).reject();
  });
  trigger("mnuFileOpenORVDatabase");
  EXPECT_EQ(filters, QStringList({"ORV database (orvdata.mdb)", "All Files (*.*)"}));
  EXPECT_EQ(tree().topLevelItemCount(), 0);

  dialogs.choose({path});
  trigger("mnuFileOpenORVDatabase");
  ASSERT_EQ(tree().topLevelItemCount(), 1);
  const QTreeWidgetItem* root = tree().topLevelItem(0);
  EXPECT_EQ(root->text(0), "orvdata-3.0.0.mdb");
  ASSERT_EQ(root->childCount(), 3);
  EXPECT_EQ(root->child(2)->text(0), "Shadings");
  EXPECT_EQ(tree().currentItem(), root->child(0));
  EXPECT_TRUE(grid().isVisible());
  EXPECT_EQ(label("lblTitle"), path + " – Panes");
  EXPECT_EQ(counts(), "40 records");
  EXPECT_TRUE(isEnabled("mnuFileRemove") && isEnabled("mnuSortAscending"));
  EXPECT_FALSE(isEnabled("mnuEditCopy"));
}

TEST_F(WindowTest, TellsWhyADatabaseCannotBeOpened) {
  const QString path = writeFile("orvdata.mdb");
  for (const auto& [command, kind] :
       {std::pair{"mnuFileOpenORVDatabase", "ORV database"},
        std::pair{"mnuFileOpenIGDB", "International Glazing Database"},
        std::pair{"mnuFileOpenO5UserDatabase", "Optics5 user database"}}) {
    dialogs.choose({path}).press("OK");
    trigger(command);
    EXPECT_EQ(dialogs.seen().back().title, "ORV database manager");
    EXPECT_THAT(dialogs.seen().back().text, Contains(QStringLiteral("a valid ") + kind));
  }
  EXPECT_EQ(tree().topLevelItemCount(), 0);
}

/// As a synchronising folder does it.
TEST_F(WindowTest, OffersTheFileThatHasTakenThePlaceOfADatabase) {
  const auto makeDatabase = [&](const std::string& name, const std::string& maker) {
    session.database.InsertSupplier(maker, *database::CreateEmptyDatabase(folder / name));
  };
  makeDatabase("orvdata.mdb", "Old");
  makeDatabase("newer.mdb", "New");
  window.openPaths({file(folder / "orvdata.mdb")});
  const auto replace = [&] {
    std::filesystem::rename(folder / "newer.mdb", folder / "orvdata.mdb");
  };
  const auto refresh = [&] {
    trigger("mnuViewRefresh");
    QTest::qWait(50);
  };
  replace();
  dialogs.press("No");
  refresh();
  ASSERT_EQ(dialogs.seen().size(), 1U);
  EXPECT_THAT(dialogs.texts().back(), Contains(file(folder / "orvdata.mdb")));
  EXPECT_THAT(text(), Contains("replaced by another file"));
  refresh();  // asks no more
  EXPECT_EQ(dialogs.seen().size(), 1U);

  makeDatabase("newer.mdb", "Newest");
  window.openPaths({file(folder / "orvdata.mdb")});
  // Its log stands beside the new file.
  session.database.InsertSupplier("Late", *session.MainDataSources.Item(2)->ADOConnection());
  replace();
  dialogs.press("Yes");
  refresh();
  ASSERT_EQ(dialogs.seen().size(), 2U);
  ASSERT_EQ(tree().topLevelItemCount(), 2);
  EXPECT_TRUE(grid().isVisible());
  const auto opened = session.MainDataSources.Item(2)->ADOConnection();
  EXPECT_FALSE(opened->isReplaced());
  const auto suppliers = opened->openRecordset("Suppliers", store::CursorType::static_);
  suppliers->find("SupplierName = 'Newest'");
  EXPECT_FALSE(suppliers->eof());
}

TEST_F(WindowTest, AsksForThePasswordOfADatabaseUntilItIsRight) {
  const QString path = makeRows("secret.mdb", 0);
  setPassword(path.toStdString(), "Sesame 7");
  const auto typeKeys = [](const char* keys) {
    return [keys](QWidget& box) {
      auto* edit = box.findChild<QLineEdit*>();
      EXPECT_EQ(edit->echoMode(), QLineEdit::Password);
      EXPECT_FALSE(edit->whatsThis().isEmpty() || edit->toolTip().isEmpty() ||
                   edit->accessibleName().isEmpty());
      QTest::keyClicks(edit, keys);
      QTest::keyClick(edit, Qt::Key_Return);
    };
  };
  dialogs.press("Cancel");
  window.openPaths({path});
  EXPECT_EQ(dialogs.texts(), QStringList{"\"secret.mdb\" has a database password:"});
  EXPECT_EQ(tree().topLevelItemCount(), 0);

  dialogs.choose({path}).then(typeKeys("sesame 7")).then(typeKeys("Sesame 7"));
  trigger("mnuFileOpenORVDatabase");
  EXPECT_TRUE(dialogs.isDone());
  EXPECT_EQ(dialogs.texts().back(),
            "This is not the password of \"secret.mdb\". Please try again:");
  ASSERT_EQ(tree().topLevelItemCount(), 1);
  EXPECT_TRUE(grid().isVisible());
}

TEST_F(WindowTest, OpensSeveralTextFilesInTheOrderChosen) {
  dialogs.press("OK").choose({writeFile("a.txt"), writeFile("b.txt")});
  trigger("mnuFileOpenTextFiles");
  ASSERT_EQ(tree().topLevelItemCount(), 1);
  EXPECT_EQ(tree().topLevelItem(0)->childCount(), 2);
  EXPECT_EQ(tree().currentItem()->text(0), "a.txt");
}

TEST_F(WindowTest, AFolderIsShownAsAWholeWithItsFilesFoldedAndCounted) {
  openExamples("panes");
  const auto folderItem = [&] { return tree().topLevelItem(0); };
  EXPECT_EQ(folderItem()->text(0), ORV_SOURCE_DIR "/examples/panes (14 files)");
  EXPECT_EQ(tree().currentItem(), folderItem());
  EXPECT_FALSE(folderItem()->isExpanded());
  EXPECT_EQ(rows(), 14);
  tree().setFocus();
  QTest::keyClick(&tree(), Qt::Key_Right);
  QTest::keyClick(&tree(), Qt::Key_Down);
  EXPECT_EQ(tree().currentItem()->text(0), "bronze_quarter_inch.txt");
  EXPECT_TRUE(text().contains("Velmara Bronze"));
  window.openPaths({makeRows("a.mdb", 1)});
  EXPECT_TRUE(folderItem()->isExpanded()) << "as it was left";
  EXPECT_TRUE(tree().topLevelItem(1)->isExpanded());
}

TEST_F(WindowTest, RemovesASourceOnlyWhenToldTo) {
  openExamples("panes");
  window.openPaths({makeRows("a.mdb", 0)});
  dialogs.press("Cancel").press("No").press("Yes");
  trigger("mnuFileRemove");
  trigger("mnuFileRemove");
  EXPECT_EQ(tree().topLevelItemCount(), 2);
  EXPECT_EQ(dialogs.seen().back().buttons.size(), 3);
  trigger("mnuFileRemove");
  EXPECT_EQ(dialogs.texts().back(),
            "Are you sure you want to remove this datasource from the list of available "
            "datasources?");
  ASSERT_EQ(tree().topLevelItemCount(), 1);
  EXPECT_EQ(tree().currentItem(), tree().topLevelItem(0));
  dialogs.press("Yes");
  trigger("mnuFileRemove");
  EXPECT_EQ(text(), "(no data...)");
  EXPECT_FALSE(isEnabled("mnuFileRemove"));
}

TEST_F(WindowTest, MakesAnOrvDatabaseButNeverReplacesAFile) {
  const QString path = file(folder / "orvdata.mdb");
  dialogs.choose({path});
  trigger("mnuFileNewORVDatabase");
  ASSERT_EQ(tree().topLevelItemCount(), 1);
  EXPECT_TRUE(grid().isVisible());
  EXPECT_EQ(rows(), 0);
  const qint64 size = QFile(path).size();
  dialogs.choose({path}).press("OK");
  trigger("mnuFileNewORVDatabase");
  EXPECT_TRUE(dialogs.isDone());
  EXPECT_EQ(QFile(path).size(), size);
  EXPECT_EQ(tree().topLevelItemCount(), 1);
}

TEST_F(WindowTest, OpensFilesThatAreDroppedOnIt) {
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(makeRows("a.mdb", 0)),
                QUrl::fromLocalFile(ORV_SOURCE_DIR "/examples/panes")});
  QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, {});
  QApplication::sendEvent(&window, &enter);
  EXPECT_TRUE(enter.isAccepted());
  QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, {});
  QApplication::sendEvent(&window, &drop);
  EXPECT_TRUE(QTest::qWaitFor([&] { return tree().topLevelItemCount() == 2; }));
}

}  // namespace orv::test
