// The Database menu: whole files compacted and repaired.
#include <QCheckBox>
#include <QFileInfo>
#include <QPushButton>
#include <QRadioButton>
#include <fstream>

#include "app/WindowTest.h"
#include "app/dialogs/ProgressDialog.h"
#include "app/docks/audit/FindingsTree.h"
#include "store/Check.h"
#include "store/Connection.h"
#include "support/EncodedFile.h"

namespace orv::test {

namespace {

void click(QAbstractButton* button) {
  QTest::mouseClick(button, Qt::LeftButton, {}, {8, button->height() / 2});
}

void compactIntoNewFile(QWidget& dialog) {
  for (auto* each : dialog.findChildren<QRadioButton*>()) {
    if (!each->isChecked()) return each->click();
  }
}

QLineEdit& line(QWidget& dialog, const char* name) {
  return *dialog.findChild<QLineEdit*>(name);
}

/// Overwrites the beginning of the last page of rows.
void damage(const QString& path) {
  constexpr std::streamoff kPage = 4096;
  std::fstream file(path.toStdString(), std::ios::binary | std::ios::in | std::ios::out);
  file.seekg(0, std::ios::end);
  const std::streamoff pages = file.tellg() / kPage;
  for (std::streamoff page = pages - 1; page > 0; --page) {
    file.seekg(page * kPage);
    if (file.get() != 1) continue;
    file.seekp(page * kPage + 14);  // where the rows begin
    file.write("\xff\x7f\xff\x7f", 4);
    return;
  }
}

/// Presses Cancel as soon as the progress of a work is shown.
class Impatience : public QObject {
 public:
  Impatience() { qApp->installEventFilter(this); }

 protected:
  bool eventFilter(QObject* object, QEvent* event) override {
    auto* dialog = qobject_cast<app::ProgressDialog*>(object);
    if (dialog != nullptr && event->type() == QEvent::Show) {
      dialog->findChild<QPushButton*>()->click();
    }
    return false;
  }
};

}  // namespace

TEST_F(WindowTest, CompactsTheShownDatabaseInItsPlace) {
  ORV_NEEDS_CORPUS();
  EXPECT_FALSE(isEnabled("mnuDatabaseCompact"));
  const QString path = openCopy("orvdata-3.0.0.mdb");
  const qint64 before = QFileInfo(path).size();
  const int rowsBefore = rows();
  copyRows(0, 0);
  trigger("mnuToolsAudit");
  dialogs.then([&](QWidget& dialog) {
    EXPECT_FALSE(line(dialog, "compactTarget").isEnabled());
    EXPECT_TRUE(dialog.findChild<QCheckBox*>()->isChecked());
    click(buttonOf(dialog, "Compact"));
  });
  dialogs.press("OK");
  trigger("mnuDatabaseCompact");
  ASSERT_TRUE(dialogs.isDone());
  EXPECT_LT(QFileInfo(path).size(), before);
  EXPECT_EQ(QFileInfo(path + ".bak").size(), before);
  EXPECT_THAT(dialogs.texts()[1], Contains("kB to"));
  EXPECT_THAT(dialogs.texts()[1], Contains(path + ".bak"));
  // The new file is shown in place of the old one, without a question, and can be read.
  EXPECT_EQ(dialogs.seen().size(), 2u);
  EXPECT_EQ(session.MainDataSources.count(), 1);
  trigger("mnuViewRefresh");
  EXPECT_EQ(rows(), rowsBefore);
  // What was copied and audited before belongs to it.
  trigger("mnuEditPaste");
  EXPECT_THAT(dialogs.texts().back(), Contains("Source and destination are the same."));
  auto& findings = find<app::FindingsTree>("FindingsTree");
  emit findings.itemActivated(findings.topLevelItem(0)->child(0), 0);
  EXPECT_FALSE(status().contains("not open any more"));
}

TEST_F(WindowTest, CompactionAsksForAPasswordAndProposesAFreeName) {
  const QString path = makeRows("secret.mdb", 2);
  setPassword(path.toStdString(), "Sesame 7");
  dialogs.type("Sesame 7");
  window.openPaths({path});
  session.password.clear();
  writeFile("secret-compacted.mdb", "taken");
  dialogs.then([&](QWidget& dialog) {
    compactIntoNewFile(dialog);
    EXPECT_EQ(line(dialog, "compactTarget").text(), file(folder / "secret-compacted-2.mdb"));
    click(buttonOf(dialog, "Compact"));
  });
  dialogs.type("wrong").type("Sesame 7").press("OK");
  trigger("mnuDatabaseCompact");
  EXPECT_TRUE(dialogs.isDone()) << dialogs.told();
  EXPECT_TRUE(store::checkFile(folder / "secret-compacted-2.mdb", "Sesame 7").sound());
}

TEST_F(WindowTest, CompactsIntoANewFileUnlessItIsCancelledOrCannot) {
  ORV_NEEDS_CORPUS();
  openCopy("glazing.mdb");
  const QString target = file(folder / "smaller.mdb");
  dialogs.then([&](QWidget& dialog) {
    compactIntoNewFile(dialog);
    EXPECT_EQ(line(dialog, "compactTarget").text(), file(folder / "glazing-compacted.mdb"));
    line(dialog, "compactTarget").clear();
    EXPECT_FALSE(buttonOf(dialog, "Compact")->isEnabled());
    QTest::keyClicks(&line(dialog, "compactTarget"), target);
    click(buttonOf(dialog, "Compact"));
  });
  dialogs.press("OK");
  trigger("mnuDatabaseCompact");
  EXPECT_TRUE(store::checkFile(target.toStdString(), "tekzil").sound());
  EXPECT_EQ(session.MainDataSources.count(), 2);

  // Once more, now with a file in the way.
  dialogs.then([&](QWidget& dialog) {
    compactIntoNewFile(dialog);
    line(dialog, "compactTarget").setText(target);
    click(buttonOf(dialog, "Compact"));
  });
  dialogs.press("OK");
  trigger("mnuDatabaseCompact");
  EXPECT_THAT(dialogs.texts().back(), Contains("exists already"));
  EXPECT_EQ(session.MainDataSources.count(), 2);

  const Impatience impatience;
  dialogs.press("Compact");
  trigger("mnuDatabaseCompact");
  EXPECT_EQ(dialogs.seen().size(), 5u) << dialogs.told();
  EXPECT_THAT(status(), Contains("cancelled"));
  EXPECT_FALSE(QFileInfo::exists(target + ".bak"));
}

TEST_F(WindowTest, RepairsADamagedDatabaseAndTellsWhatIsLost) {
  ORV_NEEDS_CORPUS();
  const auto path = file(folder.copyOf(corpusFolder() / "sources" / "orvdata-3.0.0.mdb"));
  damage(path);
  window.openPaths({path});
  const QString target = file(folder / "orvdata-3.0.0-repaired.mdb");
  dialogs.press("Compact").press("Yes").then([&](QWidget& dialog) {
    EXPECT_EQ(line(dialog, "compactDamaged").text(), path);
    EXPECT_EQ(line(dialog, "compactTarget").text(), target);
    QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
  });
  QString report;
  dialogs.read(report);
  trigger("mnuDatabaseCompact");
  ASSERT_TRUE(dialogs.isDone());
  EXPECT_THAT(dialogs.texts()[1], Contains("is damaged"));
  EXPECT_THAT(report, Contains("lost"));
  EXPECT_TRUE(store::checkFile(target.toStdString(), "").sound());
  EXPECT_EQ(session.MainDataSources.count(), 2);
}

TEST_F(WindowTest, OffersARepairWhereRecordsCannotBeRead) {
  ORV_NEEDS_CORPUS();
  const QString path = openCopy("orvdata-3.0.0.mdb");
  auto& offer = find<QPushButton>("cmdRepair");
  EXPECT_FALSE(offer.isVisible());
  {
    // The definition of the table of panes is gone.
    std::fstream stream(path.toStdString(), std::ios::binary | std::ios::in | std::ios::out);
    const auto database = store::Connection::openFile(path.toStdString());
    const auto page =
        database->openRecordset("SELECT Id FROM MSysObjects WHERE Name = 'Pane' AND Type = 1");
    stream.seekp(4096 * page->value("Id").toLong());
    stream.write(std::string(4096, '\xee').data(), 4096);
  }
  trigger("mnuViewRefresh");
  ASSERT_TRUE(offer.isVisible());
  dialogs.press("Cancel");
  click(&offer);
  ASSERT_EQ(dialogs.seen().size(), 1u);
  EXPECT_EQ(dialogs.seen()[0].title, "Repair Database");
}

}  // namespace orv::test
