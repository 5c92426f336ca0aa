// Editing records in the grid, as one types.
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDockWidget>
#include <QPushButton>
#include <QToolButton>
#include <functional>

#include "app/WindowTest.h"
#include "commands/edit/Editor.h"

namespace orv::test {

using commands::edit::Editor;
using commands::edit::EditSet;

class EditingTest : public WindowTest {
 protected:
  enum Column { kId, kName, kProduct, kGroup, kSupplier, kThickness };

  void SetUp() override {
    ORV_NEEDS_CORPUS();
    resize(1100, 700);
    path = openCopy("orvdata-3.0.0.mdb").toStdString();
  }

  /// Selects rows, and puts the cursor into a column of the first.
  void choose(int low, int high, int column) {
    grid().selectRows({low, high});
    grid().selectionModel()->setCurrentIndex(grid().model()->index(low, column),
                                             QItemSelectionModel::NoUpdate);
  }
  /// Types into a field of one row.
  void enter(int row, int column, const QString& text) {
    choose(row, row, column);
    type(text);
    press(Qt::Key_Return);
  }
  QWidget* editor() {
    for (auto* each : grid().viewport()->findChildren<QWidget*>("CellEditor")) {
      if (each->isVisible()) return each;
    }
    return nullptr;
  }
  void press(Qt::Key key) { QTest::keyClick(editor() ? editor() : &grid(), key); }
  /// Each key goes to what has the keyboard then.
  void type(const QString& text) {
    for (const QChar c : text) {
      QWidget* target = editor() ? editor() : &grid();
      QTest::sendKeyEvent(QTest::Click, target, Qt::Key_unknown, QString(c), Qt::NoModifier);
    }
  }
  /// An empty text where the reason is not to be seen.
  QString refusal() {
    auto& shown = find<QLabel>("lblCellRefusal");
    return shown.isVisible() ? shown.text() : QString();
  }

  /// What the file holds, read past the window.
  std::string stored(std::int32_t record, const std::string& field, EditSet set = EditSet::panes) {
    const Editor reader(session, store::Connection::openFile(path), set);
    return commands::edit::fieldText(reader.value(record, *reader.place(field).field));
  }
  void changeOutside(std::int32_t record, const std::string& field, const std::string& text) {
    Editor other(session, store::Connection::openFile(path), EditSet::panes);
    ASSERT_TRUE(other.save({other.change(record, other.place(field), text)}).isFine());
  }

  QStringList lines(const QTreeWidget& list, int columns = 5) {
    QStringList lines;
    for (int i = 0; i < list.topLevelItemCount(); ++i) {
      QStringList cells;
      for (int column = 0; column < columns; ++column) cells << list.topLevelItem(i)->text(column);
      lines << cells.join('|');
    }
    return lines;
  }
  QStringList changes() { return lines(find<QTreeWidget>("ChangesList")); }

  std::string path;
};

TEST_F(EditingTest, WhatIsTypedGoesToAllSelectedRowsAndIsSavedAtOnce) {
  const QString before = cell(1, kThickness);
  choose(1, 3, kThickness);
  type("5,25");  // the first key opens the editor
  press(Qt::Key_Return);
  EXPECT_EQ(editor(), nullptr);
  for (int row = 1; row <= 3; ++row) EXPECT_EQ(cell(row, kThickness), "5.25");
  EXPECT_NE(cell(4, kThickness), "5.25");
  EXPECT_EQ(stored(2, "thickness"), before.toStdString());
  EXPECT_TRUE(find<QDockWidget>("ChangesDock").isVisible());
  EXPECT_EQ(changes().size(), 3);
  EXPECT_EQ(changes().value(0), "pane02.txt (2)|thickness|" + before + "|5.25|");

  choose(0, 0, kSupplier);
  press(Qt::Key_F2);
  EXPECT_GE(dynamic_cast<QComboBox&>(*editor()).findText("Café Verre"), 0);
  type("Neue Gläser");
  press(Qt::Key_Return);
  choose(0, 0, kProduct);
  press(Qt::Key_Return);
  type("forgotten");
  press(Qt::Key_Escape);
  EXPECT_EQ(changes().size(), 4);

  trigger("mnuEditUndo");
  trigger("mnuEditUndo");
  EXPECT_TRUE(changes().isEmpty());
  EXPECT_EQ(cell(1, kThickness), before);
  EXPECT_FALSE(isEnabled("mnuFileSave"));
  trigger("mnuEditRedo");
  trigger("mnuEditRedo");
  trigger("mnuFileSave");
  EXPECT_EQ(status(), "4 fields of 4 records saved.");
  EXPECT_TRUE(changes().isEmpty());
  EXPECT_EQ(cell(2, kThickness), "5.25");
  EXPECT_EQ(stored(3, "thickness"), "5.25");
  EXPECT_EQ(stored(1, "supplier"), "Neue Gläser");
  EXPECT_NE(stored(1, "product name"), "forgotten");

  find<QToolButton>("btnUndo").click();
  EXPECT_EQ(status(), "Taken back: Edit 4 values of 4 panes.");
  EXPECT_EQ(stored(2, "thickness"), before.toStdString());
  EXPECT_EQ(cell(1, kThickness), before);
  trigger("mnuEditRedo");
  EXPECT_EQ(stored(2, "thickness"), "5.25");
  EXPECT_TRUE(dialogs.seen().empty());
}

TEST_F(EditingTest, AWrongValueKeepsItsEditorOpenWithTheReason) {
  clickCell(4, kThickness);
  press(Qt::Key_F2);
  type("4000");
  press(Qt::Key_Return);
  ASSERT_NE(editor(), nullptr);
  EXPECT_EQ(refusal(), "pane 5: thickness is from 0 to 1000 mm, and 4000 is not.");
  auto& header = grid().filterHeader();
  const std::function<void()> ways[] = {
      [&] { press(Qt::Key_Tab); },
      [&] { press(Qt::Key_Down); },
      [&] { press(Qt::Key_PageUp); },
      [&] { clickCell(6, kName); },
      [&] { QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, QPoint(60, 5)); },
      [&] { QTest::mouseClick(&filter(1), Qt::LeftButton); },
      [&] { tree().setCurrentItem(tree().topLevelItem(0)->child(1)); },
      [&] { trigger("mnuViewRefresh"); },
  };
  for (std::size_t way = 0; way < std::size(ways); ++way) {
    ways[way]();
    QTest::qWait(1);
    ASSERT_NE(editor(), nullptr) << "it stays whichever way somebody goes: " << way;
    EXPECT_TRUE(editor()->hasFocus() && grid().currentIndex().row() == 4) << way;
    EXPECT_NE(refusal(), "") << way;
  }
  type("4");
  EXPECT_EQ(refusal(), "") << "typing goes on";
  press(Qt::Key_Escape);
  EXPECT_EQ(editor(), nullptr);
  EXPECT_TRUE(changes().isEmpty());

  choose(4, 4, kName);
  type(cell(4, kName) + "x'");
  press(Qt::Key_Tab);
  EXPECT_NE(refusal(), "") << "names have no apostrophes";
  press(Qt::Key_Backspace);
  press(Qt::Key_Return);
  EXPECT_EQ(cell(4, kName), "pane05.txtx");

  choose(4, 4, kId);
  press(Qt::Key_F2);
  EXPECT_EQ(editor(), nullptr);
  EXPECT_EQ(status(), "The column Pane ID cannot be edited.");
  openCopy("glazing.mdb");
  choose(0, 0, kProduct);
  press(Qt::Key_F2);
  EXPECT_EQ(editor(), nullptr);
  EXPECT_THAT(status(), Contains("read only"));
  selectNode({"orvdata-3.0.0.mdb", "Panes"});
  EXPECT_EQ(changes().size(), 1) << "changes wait for the user to come back";
}

TEST_F(EditingTest, AReplacementIsShownBeforeItIsMade) {
  choose(0, 0, kProduct);
  const auto typeInto = [](QWidget& dialog, const char* name, const QString& text) {
    auto* edit = dialog.findChild<QLineEdit*>(name);
    QTest::keyClick(edit, Qt::Key_A, Qt::ControlModifier);
    for (const QChar c : text) {
      QTest::sendKeyEvent(QTest::Click, edit, Qt::Key_unknown, QString(c), Qt::NoModifier);
    }
  };
  dialogs.then([&](QWidget& dialog) {
    auto* list = dialog.findChild<QTreeWidget*>();
    const auto shown = [&] { return lines(*list); };
    auto* column = dialog.findChild<QComboBox*>("cboReplaceColumn");
    auto* make = dialog.findChild<QPushButton*>("cmdMakeChanges");
    EXPECT_FALSE(make->isEnabled());
    EXPECT_EQ(column->currentText(), "Product name");
    EXPECT_EQ(column->findText("Pane ID"), -1);
    typeInto(dialog, "txtReplaceFind", "PANE 1");
    typeInto(dialog, "txtReplaceBy", "Scheibe 1");
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown().size() == 11; }));
    EXPECT_EQ(shown()[1], "pane10.txt|product name|Café pane 10|Café Scheibe 10|");
    dialog.findChild<QCheckBox*>("chkReplaceCase")->click();
    EXPECT_TRUE(shown().isEmpty());
    dialog.findChild<QCheckBox*>("chkReplaceCase")->click();
    typeInto(dialog, "txtReplaceFind", "café pane 1");
    dialog.findChild<QCheckBox*>("chkReplaceWhole")->click();
    EXPECT_EQ(shown(), QStringList("pane01.txt|product name|Café pane 1|Scheibe 1|"));

    // A name that is there already stays as it is, and so does what is not ticked.
    column->setCurrentIndex(column->findText("Name"));
    dialog.findChild<QCheckBox*>("chkReplaceWhole")->click();
    typeInto(dialog, "txtReplaceFind", "pane0");
    typeInto(dialog, "txtReplaceBy", "pane2");
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown().size() == 9; }));
    EXPECT_THAT(list->topLevelItem(1)->text(4), Begins("There would be two panes"));
    typeInto(dialog, "txtReplaceBy", "glass");
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown()[1].contains("|glass2.txt|"); }));
    EXPECT_EQ(make->text(), "&Replace 9");
    typeInto(dialog, "txtReplaceBy", "glas");
    QTest::keyClick(&dialog, Qt::Key_Return);
    EXPECT_TRUE(dialog.isVisible() && shown()[1].contains("|glas2.txt|"))
        << "what is made has been seen";
    typeInto(dialog, "txtReplaceBy", "glass");
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown()[1].contains("|glass2.txt|"); }));
    list->topLevelItem(2)->setCheckState(0, Qt::Unchecked);
    QTest::keyClick(&dialog, Qt::Key_Return);
  });
  trigger("mnuEditReplace");
  EXPECT_TRUE(dialogs.isDone());
  EXPECT_EQ(status(), "8 fields changed, not saved yet.");
  EXPECT_EQ(cell(1, kName), "glass2.txt");
  EXPECT_EQ(cell(2, kName), "pane03.txt");
  trigger("mnuEditUndo");
  EXPECT_TRUE(changes().isEmpty()) << "one step";
}

TEST_F(EditingTest, ABlockOfASpreadsheetIsPastedFromTheCurrentFieldOn) {
  const auto paste = [&](const QString& text) {
    QGuiApplication::clipboard()->setText(text);
    const std::size_t before = dialogs.seen().size();
    trigger("mnuEditPasteText");
    return dialogs.seen().size() == before ? QString() : dialogs.texts().back();
  };
  choose(1, 3, kThickness);
  EXPECT_EQ(paste("7,5\n"), "");
  for (int row = 1; row <= 3; ++row) EXPECT_EQ(cell(row, kThickness), "7.5");
  trigger("mnuEditUndo");

  // Quoted cells, an empty one, one that is not changed, a heading, and a column that is hidden.
  choose(2, 2, kName);
  grid().setColumnHidden(kGroup, true);
  EXPECT_EQ(paste("Name\tProduct name\tSupplier\r\n"
                  "new.txt\t\"a \"\"b\"\"\"\tNeue\r\n"
                  "pane04.txt\t\tUnknown\r\n"),
            "");
  EXPECT_EQ(changes(), (QStringList{"pane03.txt (3)|name|pane03.txt|new.txt|",
                                    "pane03.txt (3)|product name|Café pane 3|a \"b\"|",
                                    "pane03.txt (3)|supplier|Sächsische Gläser|Neue|",
                                    "pane04.txt (4)|product name|Café pane 4||"}));
  EXPECT_THAT(status(), Contains("left alone: Group."));
  trigger("mnuEditUndo");
  EXPECT_TRUE(changes().isEmpty()) << "one step";

  // What does not fit is refused with its place, and nothing is changed.
  choose(38, 38, kName);
  EXPECT_EQ(paste("a\nb\nc"),
            "Nothing is pasted. The text has 3 rows, but from row 39 (pane39.txt) "
            "on there are only 2.");
  choose(38, 38, kId);
  EXPECT_EQ(paste("39\tpane39.txt\n7\tx"),
            "Nothing is pasted. Row 40 (pane40.txt): the column Pane ID cannot be edited, and the "
            "text would make \"7\" of \"40\".");
  choose(3, 3, grid().visibleColumns().constLast());
  EXPECT_THAT(paste("a\tb"), Contains("The text has 2 columns, but from the column "));
  EXPECT_TRUE(changes().isEmpty());

  // A value that its field refuses is shown among the others, which may be pasted.
  QStringList plan;
  dialogs.then([&](QWidget& dialog) {
    plan = lines(*dialog.findChild<QTreeWidget*>());
    QTest::keyClick(&dialog, Qt::Key_Return);
  });
  choose(0, 0, kThickness);
  paste("8\nthick\n9");
  EXPECT_EQ(plan, (QStringList{"pane01.txt|thickness|5|8|",
                               "pane02.txt|thickness|6|thick|thickness is a number, and \"thick\" "
                               "is none.",
                               "pane03.txt|thickness|4|9|"}));
  EXPECT_EQ(cell(0, kThickness) + cell(1, kThickness) + cell(2, kThickness), "869");

  openCopy("glazing.mdb");
  choose(0, 0, 1);
  EXPECT_EQ(paste("x"), "");
  EXPECT_THAT(status(), Contains("read only"));
}

TEST_F(EditingTest, ChangesOfOthersAreShownBeforeSaving) {
  choose(0, 1, kProduct);
  type("mine");
  press(Qt::Key_Return);
  changeOutside(2, "product name", "theirs");
  trigger("mnuViewRefresh");
  EXPECT_THAT(changes()[1], Contains("it is \"theirs\" now, and was \"Café pane 2\"."));

  QStringList conflicts;
  dialogs.then([&](QWidget& dialog) {
    conflicts = lines(*dialog.findChild<QTreeWidget*>("lstConflicts"));
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
  trigger("mnuFileSave");
  EXPECT_EQ(conflicts, QStringList("pane02.txt|product name|Café pane 2|theirs|mine"));
  EXPECT_EQ(stored(1, "product name"), "Café pane 1") << "nothing is saved";
  EXPECT_EQ(changes().size(), 2);

  dialogs.press("Keep Theirs");
  trigger("mnuFileSave");
  EXPECT_EQ(stored(1, "product name"), "mine");
  EXPECT_EQ(stored(2, "product name"), "theirs");

  choose(0, 1, kProduct);
  type("unseen");
  changeOutside(2, "product name", "theirs now");
  press(Qt::Key_Return);
  EXPECT_EQ(refusal(),
            "It is \"theirs now\" in the database now. Read the records again first (F5). Escape "
            "leaves this field.");
  EXPECT_TRUE(changes().isEmpty());
  press(Qt::Key_Escape);
  trigger("mnuViewRefresh");

  enter(1, kProduct, "again");
  changeOutside(2, "product name", "theirs again");
  dialogs.press("Save Mine");
  trigger("mnuFileSave");
  EXPECT_EQ(stored(2, "product name"), "again");
  EXPECT_TRUE(dialogs.isDone());

  changeOutside(3, "product name", "of others");
  enter(3, kProduct, "mine above");
  trigger("mnuFileSave");
  trigger("mnuEditUndo");
  EXPECT_NE(stored(4, "product name"), "mine above");
  dialogs.press("No");
  trigger("mnuEditUndo");
  EXPECT_THAT(dialogs.texts().back(), Contains("was not done in this window"));
  EXPECT_EQ(stored(3, "product name"), "of others");
}

TEST_F(EditingTest, NamesAreRenamedMergedAndDeleted) {
  trigger("mnuViewLookups");
  auto& set = find<QComboBox>("cboLookups");
  auto& list = find<QTreeWidget>("LookupsList");
  set.setCurrentIndex(set.findText("Suppliers"));
  const auto select = [&](const QStringList& names) {
    list.clearSelection();
    for (const QString& name : names) {
      list.findItems(name, Qt::MatchExactly).value(0)->setSelected(true);
    }
  };
  const auto names = [&] { return lines(list, 4); };
  const QStringList before{"Café Verre|10|2|0", "Glas & Co|10|2|3", "Sächsische Gläser|10|1|0",
                           "Unknown|10|1|0"};
  EXPECT_EQ(names(), before);
  EXPECT_FALSE(isEnabled("mnuLookupRename"));
  select({"Glas & Co"});
  EXPECT_FALSE(isEnabled("mnuLookupDelete"));
  dialogs.type("Unknown");
  trigger("mnuLookupRename");
  EXPECT_THAT(dialogs.texts().back(), Contains("Merge the two instead."));
  EXPECT_EQ(names(), before);
  dialogs.type("Glas GmbH");
  trigger("mnuLookupRename");
  EXPECT_EQ(cell(0, kSupplier), "Glas GmbH") << "the grid follows";

  select({"Café Verre", "Unknown"});
  dialogs.then([](QWidget& dialog) {
    dialog.findChild<QComboBox*>()->setCurrentText("Café Verre");
    QTest::keyClick(&dialog, Qt::Key_Return);
  });
  trigger("mnuLookupMerge");
  const QStringList merged{"Café Verre|20|3|0", "Glas GmbH|10|2|3", "Sächsische Gläser|10|1|0"};
  EXPECT_EQ(names(), merged);
  EXPECT_EQ(status(), "1 name merged into Café Verre.");
  trigger("mnuEditUndo");
  EXPECT_EQ(names().size(), 4);
  trigger("mnuEditUndo");
  EXPECT_EQ(names(), before);

  changeOutside(1, "supplier", "Former maker");
  changeOutside(1, "supplier", "Glas & Co");
  trigger("mnuViewRefresh");
  EXPECT_EQ(names().size(), 5);
  select({"Former maker"});
  trigger("mnuLookupDelete");
  EXPECT_EQ(names(), before);
}

TEST_F(EditingTest, NothingIsLostWithoutAQuestionAndADeletionIsTakenBack) {
  enter(2, kProduct, "kept");
  dialogs.press("Cancel");
  window.close();
  EXPECT_TRUE(window.isVisible());
  dialogs.press("Save").press("Yes");
  selectRows(5, 6);
  trigger("mnuEditDelete");
  EXPECT_EQ(stored(3, "product name"), "kept");
  EXPECT_EQ(rows(), 38);
  auto& undo = find<QToolButton>("btnUndo");
  ASSERT_TRUE(undo.isVisible());
  EXPECT_EQ(undo.toolTip(), "Take back: Delete 2 panes");
  undo.click();
  EXPECT_EQ(rows(), 40);
  EXPECT_EQ(stored(6, "name"), "pane06.txt");

  enter(2, kProduct, "dropped");
  dialogs.press("Discard").press("Yes");
  trigger("mnuFileRemove");
  EXPECT_EQ(stored(3, "product name"), "kept");
  EXPECT_TRUE(dialogs.isDone());
}

}  // namespace orv::test
