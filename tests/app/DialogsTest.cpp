// The secondary dialogs.
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QSpinBox>

#include "app/WindowTest.h"
#include "app/dialogs/dlgTextFileOptions.h"
#include "app/dialogs/frmAbout.h"
#include "app/dialogs/frmOptions.h"

namespace orv::test {

using app::dlgTextFileOptions;

class TextFileOptionsTest : public ::testing::Test {
 protected:
  /// Has the user do something to the dialog, and returns its choice.
  std::int16_t chooseBy(const Dialogs::Handler& deed) {
    dialogs.then(deed);
    dlgTextFileOptions dialog;
    return dialog.choose();
  }
  static void click(QWidget& dialog, const char* name) {
    dialog.findChild<QAbstractButton*>(name)->click();
  }

  Dialogs dialogs;
};

TEST_F(TextFileOptionsTest, ReturnsTheOptionThatIsChosen) {
  EXPECT_EQ(chooseBy([](QWidget& dialog) { click(dialog, "OKButton"); }), 1);
  EXPECT_EQ(dialogs.seen().front().title, "Text file type");
  EXPECT_EQ(chooseBy([](QWidget& dialog) {
              buttonOf(dialog, "Spectral shading data")->click();
              click(dialog, "OKButton");
            }),
            2);
  EXPECT_EQ(chooseBy([](QWidget& dialog) { click(dialog, "CancelButton"); }), 0);
  EXPECT_EQ(chooseBy([](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); }), 0);
}

TEST_F(TextFileOptionsTest, TheCloseBoxAsksFirst) {
  for (const char* refusal : {"No", "Cancel"}) {
    const auto choice = chooseBy([&](QWidget& dialog) {
      dialogs.press(refusal);
      EXPECT_FALSE(dialog.close());
      EXPECT_TRUE(dialog.isVisible());
      click(dialog, "OKButton");
    });
    EXPECT_EQ(choice, 1);
  }
  const SeenDialog& question = dialogs.seen().back();
  EXPECT_EQ(question.title, "ORV");
  EXPECT_EQ(question.text,
            "This will cancel the operation. Are you sure you want to close this window without "
            "making a choice?");
  EXPECT_EQ(question.buttons.size(), 3);
  EXPECT_EQ(question.defaultButton, "Cancel");
  EXPECT_EQ(chooseBy([&](QWidget& dialog) {
              dialogs.press("Yes");
              EXPECT_TRUE(dialog.close());
            }),
            0);
}

TEST(AboutTest, TellsTheVersionAndTheSystem) {
  app::frmAbout about;
  EXPECT_EQ(about.findChild<QLabel*>("lblVersion")->text(), "Version " ORV_VERSION);
  Dialogs dialogs;
  QString facts;
  dialogs.then([&](QWidget& dialog) {
    for (const QLabel* label : dialog.findChildren<QLabel*>()) facts += label->text() + '\n';
    dialog.close();
  });
  about.findChild<QAbstractButton*>("cmdSysInfo")->click();
  EXPECT_THAT(facts, Contains(qVersion()));
}

TEST_F(WindowTest, TheOptionsChooseByWhichStandardACopyComputes) {
  app::frmOptions dialog({});
  EXPECT_EQ(dialog.options().integrateBy, optics::Standard::en410);
  auto* standard = dialog.findChild<QComboBox*>("cboStandard");
  standard->setCurrentIndex(standard->findText("ISO 9050"));
  EXPECT_EQ(dialog.options().integrateBy, optics::Standard::iso9050);
  dialog.findChild<QCheckBox*>("chkIntegrate")->setChecked(false);
  EXPECT_FALSE(standard->isEnabled());
  EXPECT_EQ(dialog.options().integrateBy, std::nullopt);
}

TEST_F(WindowTest, TheOptionsChangeTheDigitsAndTheTheme) {
  ORV_NEEDS_CORPUS();
  openPanes();
  openCopy("orvdata-2.0.1.mdb");
  dialogs.then([](QWidget& dialog) {
    dialog.findChild<QSpinBox*>("txtDigits")->setValue(1);
    auto* theme = dialog.findChild<QComboBox*>("cboTheme");
    theme->setCurrentIndex(theme->findText("Dark"));
    dynamic_cast<QDialog&>(dialog).accept();
  });
  trigger("mnuViewOptions");
  QStringList row;
  for (int i = 0; i < columns(); ++i) row << cell(0, i);
  EXPECT_THAT(row, Contains("0.8"));
  EXPECT_LT(QApplication::palette().color(QPalette::Window).lightness(), 100);
}

TEST_F(WindowTest, FileDialogsSuggestNamesAndRememberTheirFolders) {
  window.openPaths({makeRows("a.mdb", 2)});
  QStringList names;
  QStringList folders;
  const auto look = [&](QWidget& dialog) {
    auto& files = dynamic_cast<QFileDialog&>(dialog);
    names << files.findChild<QLineEdit*>("fileNameEdit")->text();
    folders << files.directory().absolutePath();
    files.reject();
  };
  const QString tables = file(folder / "tables");
  QDir().mkdir(tables);
  dialogs.choose({tables + "/mine.csv"}).then(look).then(look);
  trigger("mnuEditSaveTable");
  trigger("mnuEditSaveTable");
  trigger("mnuFileOpenIGDB");
  ASSERT_TRUE(dialogs.isDone());
  EXPECT_EQ(names[0], "a panes.csv");
  EXPECT_EQ(folders[0], tables);
  dialogs.choose({file(folder / "a.mdb")}).then(look);
  trigger("mnuFileOpenORVDatabase");
  trigger("mnuEditSaveTable");
  EXPECT_EQ(folders.back(), tables) << "another kind of dialog has been elsewhere";
}

}  // namespace orv::test
