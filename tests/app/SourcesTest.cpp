// Opening and removing data sources, and what is shown of them.
#include <QComboBox>
#include <QDropEvent>
#include <QFile>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QUrl>

#include "app/WindowTest.h"
#include "database/OrvSchema.h"
#include "support/EncodedFile.h"

namespace orv::test {

TEST_F(WindowTest, OpensAnOrvDatabaseAndShowsItsPanes) {
  ORV_NEEDS_CORPUS();
  const std::string path = folder.copyOf(corpusFolder() / "sources/orvdata-3.0.0.mdb");
  QStringList filters;
  dialogs.then([&](QWidget& dialog) {
    const auto* types = dialog.findChild<QComboBox*>("fileTypeCombo");
    for (int i = 0; i < types->count(); ++i) filters << types->itemText(i);
    dynamic_cast<QFileDialog&>(dialog).reject();
  });
  trigger("mnuFileOpenORVDatabase");
  EXPECT_EQ(dialogs.seen().front().title, "Open new data source");
  EXPECT_EQ(filters, QStringList({"ORV database (orvdata.mdb)", "All Files (*.*)"}));
  EXPECT_EQ(tree().topLevelItemCount(), 0);

  dialogs.choose({file(path)});
  trigger("mnuFileOpenORVDatabase");
  ASSERT_EQ(tree().topLevelItemCount(), 1);
  const QTreeWidgetItem* root = tree().topLevelItem(0);
  EXPECT_EQ(root->text(0), "orvdata-3.0.0.mdb");
  ASSERT_EQ(root->childCount(), 3);
  EXPECT_EQ(root->child(2)->text(0), "Shadings");
  EXPECT_EQ(tree().currentItem(), root->child(0));
  EXPECT_TRUE(grid().isVisible());
  EXPECT_GT(rows(), 0);
  EXPECT_EQ(label("lblTitle"), file(path) + " – Panes");
  EXPECT_EQ(label("lblCounts"), QStringLiteral("%1 records").arg(rows()));
  EXPECT_TRUE(isEnabled("mnuFileRemove"));
  EXPECT_TRUE(isEnabled("mnuSortAscending"));
  EXPECT_FALSE(isEnabled("mnuEditCopy"));
}

TEST_F(WindowTest, TellsWhyADatabaseCannotBeOpened) {
  const QString path = QString::fromStdString(folder / "orvdata.mdb");
  QFile(path).open(QIODevice::WriteOnly);
  const char* const commands[] = {"mnuFileOpenORVDatabase", "mnuFileOpenIGDB",
                                  "mnuFileOpenO5UserDatabase"};
  const char* const advice[] = {
      "This may not be a valid ORV database, please check and try again.",
      "This may not be a valid International Glazing Database, please check and try again.",
      "This may not be a valid Optics5 user database, please check and try again."};
  for (int i = 0; i < 3; ++i) {
    dialogs.choose({path}).press("OK");
    trigger(commands[i]);
    EXPECT_EQ(dialogs.seen().back().title, "ORV database manager");
    const QString text = dialogs.seen().back().text;
    EXPECT_TRUE(text.endsWith(QStringLiteral("\n\n") + advice[i])) << text.toStdString();
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
  EXPECT_TRUE(dialogs.texts().back().contains(file(folder / "orvdata.mdb")));
  EXPECT_TRUE(text().contains("replaced by another file")) << text().toStdString();
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
  const QString path = QString::fromStdString(folder / "secret.mdb");
  database::CreateEmptyDatabase(path.toStdString());
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

  dialogs.then(typeKeys("sesame 7")).then(typeKeys("Sesame 7"));
  window.openPaths({path});
  EXPECT_EQ(dialogs.texts().back(),
            "This is not the password of \"secret.mdb\". Please try again:");
  ASSERT_EQ(tree().topLevelItemCount(), 1);
  EXPECT_TRUE(grid().isVisible());

  app::WindowUserInterface anotherUi;
  commands::Session anotherRun(anotherUi);
  app::frmMain again(anotherRun, anotherUi);
  dialogs.choose({path}).then(typeKeys("Sesame 7"));
  again.findChild<QAction*>("mnuFileOpenORVDatabase")->trigger();
  EXPECT_TRUE(dialogs.isDone());
  EXPECT_EQ(dialogs.seen().size(), 5U);
  EXPECT_EQ(again.findChild<app::DataSourceTree*>()->topLevelItemCount(), 1);
}

TEST_F(WindowTest, OpensSeveralTextFilesInTheOrderChosen) {
  for (const char* name : {"a.txt", "b.txt"})
    QFile(QString::fromStdString(folder / name)).open(QIODevice::WriteOnly);
  dialogs.press("OK").choose(
      {QString::fromStdString(folder / "a.txt"), QString::fromStdString(folder / "b.txt")});
  trigger("mnuFileOpenTextFiles");
  ASSERT_EQ(tree().topLevelItemCount(), 1);
  EXPECT_EQ(tree().topLevelItem(0)->childCount(), 2);
  EXPECT_EQ(tree().currentItem()->text(0), "a.txt");
}

TEST_F(WindowTest, AFolderIsShownAsAWholeWithItsFilesFoldedAndCounted) {
  const QString panes = QStringLiteral(ORV_SOURCE_DIR "/examples/panes");
  window.openPaths({panes});
  const auto folderItem = [&] { return tree().topLevelItem(0); };
  EXPECT_EQ(folderItem()->text(0), panes + " (14 files)");
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
  ORV_NEEDS_CORPUS();
  openPanes();
  openCopy("orvdata-2.0.1.mdb");
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
  const QString path = QString::fromStdString(folder / "orvdata.mdb");
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
  ORV_NEEDS_CORPUS();
  const std::string path = folder.copyOf(corpusFolder() / "sources/glazing.mdb");
  QMimeData data;
  data.setUrls(
      {QUrl::fromLocalFile(file(path)), QUrl::fromLocalFile(file(corpusFolder() / "panes"))});
  QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, {});
  QApplication::sendEvent(&window, &enter);
  EXPECT_TRUE(enter.isAccepted());
  QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, {});
  QApplication::sendEvent(&window, &drop);
  EXPECT_TRUE(QTest::qWaitFor([&] { return tree().topLevelItemCount() == 2; }));
}

TEST_F(WindowTest, AFileThatCannotBeOpenedDoesNotKeepOthersOut) {
  const QString good = QString::fromStdString(folder / "good.txt");
  QFile(good).open(QIODevice::WriteOnly);
  const QString bad = QString::fromStdString(folder / "bad.mdb");
  QFile(bad).open(QIODevice::WriteOnly);
  dialogs.press("OK").press("OK");
  window.openPaths({bad, good});
  EXPECT_TRUE(dialogs.isDone());
  EXPECT_TRUE(dialogs.texts().back().endsWith(
      "\n\nOne or more files may not have been added, please check."))
      << dialogs.texts().back().toStdString();
  ASSERT_EQ(tree().topLevelItemCount(), 1);
  EXPECT_EQ(tree().currentItem()->text(0), "good.txt");
}

}  // namespace orv::test
