// What happens to somebody who works with the window for a day.
#include <unistd.h>

#include <QClipboard>
#include <QDockWidget>
#include <QFile>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QProxyStyle>
#include <QStyleOptionHeader>
#include <map>

#include "app/WindowTest.h"
#include "app/dialogs/ProgressDialog.h"
#include "app/docks/audit/FindingsTree.h"
#include "app/docks/spectra/SpectrumDock.h"
#include "database/TestDatabase.h"
#include "store/jet/file/File.h"

namespace orv::test {

/// Draws as the program does, and notes the arrows of headings.
class ArrowWatch : public QProxyStyle {
 public:
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override {
    const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(option);
    if (element == CE_Header && header) arrows[header->section] = header->sortIndicator;
    QProxyStyle::drawControl(element, option, painter, widget);
  }
  mutable std::map<int, QStyleOptionHeader::SortIndicator> arrows;
};

class DayTest : public WindowTest {
 protected:
  int currentRow() { return grid().currentIndex().row(); }

  void doubleClick(QAbstractItemView& view, const QModelIndex& index) {
    view.scrollTo(index);
    const QPoint place = view.visualRect(index).center();
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, place);
    QTest::qWait(200);  // whatever the first click sets off is done
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, place);
  }
};

TEST_F(DayTest, DocksKeepTheirSizeWhateverTheyHold) {
  resize(433, 433);
  window.openPaths({makeRows("a.mdb", 40)});
  resize(1366, 768);
  clickCell(11, 1);
  trigger("mnuViewSpectrum");
  trigger("mnuViewDetails");
  auto& spectra = find<QDockWidget>("SpectrumDock");
  auto& details = find<QDockWidget>("DetailsDock");
  EXPECT_TRUE(
      QTest::qWaitFor([&] { return std::abs(spectra.height() - window.height() * 42 / 100) < 8; }));
  EXPECT_TRUE(
      QTest::qWaitFor([&] { return std::abs(details.width() - window.width() * 30 / 100) < 8; }));
  const int height = spectra.height();
  const QRect row = grid().visualRect(grid().model()->index(11, 0));
  EXPECT_TRUE(grid().viewport()->rect().contains(row.adjusted(0, 0, -row.width() + 1, 0)));

  const auto* database = tree().topLevelItem(0);
  doubleClick(tree(), tree().indexAt(tree().visualItemRect(database).center()));
  EXPECT_EQ(spectra.height(), height);
  EXPECT_EQ(tree().currentItem()->text(0), "Panes");
  EXPECT_TRUE(database->isExpanded());
  details.close();
  doubleClick(grid(), grid().model()->index(2, 0));
  EXPECT_TRUE(details.isVisible());
}

TEST_F(DayTest, TheSelectionAndThePlaceStay) {
  resize(900, 500);
  window.openPaths({makeRows("a.mdb", 300), makeRows("b.mdb", 9)});
  selectNode({"a.mdb", "Panes"});
  grid().selectRows({120, 122});
  const int place = grid().rowViewportPosition(120);
  trigger("mnuViewRefresh");
  EXPECT_EQ(counts(), "300 records, 3 selected");
  EXPECT_EQ(grid().rowViewportPosition(120), place);
  QTest::keyClicks(&filter(1), "pane012");
  EXPECT_EQ(counts(), "10 of 300 records, 3 selected");

  // Two clicks that follow each other soon.
  auto& header = grid().filterHeader();
  const QPoint heading(header.sectionViewportPosition(0) + 20, 5);
  QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, heading);
  QTest::mouseDClick(header.viewport(), Qt::LeftButton, {}, heading);
  EXPECT_EQ(header.sortIndicatorOrder(), Qt::DescendingOrder);
  ArrowWatch style;
  header.setStyle(&style);
  header.grab();
  EXPECT_EQ(style.arrows[0], QStyleOptionHeader::SortDown) << "it goes down as the values do";
  QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, heading);
  header.grab();
  EXPECT_EQ(style.arrows[0], QStyleOptionHeader::SortUp);
  EXPECT_EQ(style.arrows[1], QStyleOptionHeader::None);
  header.setStyle(nullptr);
  QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, heading);
  EXPECT_EQ(cell(grid().selectedRows().low, 1), "PANE0122.DAT");
  EXPECT_EQ(grid().selectedRows().count(), 3);

  // To and fro.
  selectNode({"b.mdb", "Panes"});
  EXPECT_EQ(counts(), "9 records");
  selectNode({"a.mdb", "Panes"});
  EXPECT_EQ(counts(), "10 of 300 records");
  EXPECT_EQ(cell(currentRow(), 1), "PANE0120.DAT");
  EXPECT_EQ(cell(0, 1), "PANE0129.DAT");
  header.setSectionHidden(1, true);
  EXPECT_EQ(counts(), "300 records") << "a hidden column does not filter";
}

TEST_F(DayTest, ADeletionAsksWhereItIsMeantAndGoesOnBehind) {
  resize(1000, 700);
  window.openPaths({makeRows("a.mdb", 30)});
  trigger("mnuToolsAudit");
  clickCell(4, 1);
  clickCell(6, 1, Qt::ShiftModifier);
  find<app::FindingsTree>("FindingsTree").setFocus();
  press(Qt::Key_Delete);
  press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_TRUE(dialogs.seen().empty());
  EXPECT_TRUE(QGuiApplication::clipboard()->text().startsWith("Severity\t"));
  EXPECT_FALSE(isEnabled("mnuEditPaste")) << "no records are copied from there";

  grid().setFocus();
  dialogs.then([&](QWidget& box) {
    const QString names = dynamic_cast<QMessageBox&>(box).informativeText();
    EXPECT_EQ(names, "3 records: PANE0004.DAT, PANE0005.DAT, PANE0006.DAT");
    QTest::keyClick(&box, Qt::Key_Escape);
  });
  press(Qt::Key_Delete);
  EXPECT_EQ(dialogs.texts()[0],
            "Are you sure you want to remove these records? This action cannot be undone.");
  EXPECT_EQ(counts(), "30 records, 3 selected");
  dialogs.press("Yes");
  press(Qt::Key_Delete);
  EXPECT_EQ(counts(), "27 records") << dialogs.told();
  press(Qt::Key_Down);
  EXPECT_EQ(cell(currentRow(), 1), "PANE0008.DAT") << "the row after the one that followed";
  press(Qt::Key_End, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(counts(), "27 records, 22 selected");
  grid().scrollToTop();
  const QPoint beside(grid().viewport()->width() - 3, grid().rowViewportPosition(0) + 3);
  QTest::mouseClick(grid().viewport(), Qt::LeftButton, {}, beside);
  EXPECT_EQ(grid().selectedRows().low, 0);
}

TEST_F(DayTest, ChangesByOthersAreSeen) {
  resize(1000, 700);
  const QString path = makeRows("a.mdb", 12);
  window.openPaths({path});
  trigger("mnuViewDetails");
  clickCell(3, 1);
  session.database.DeleteGlazing(4, *session.MainDataSources.Item(1)->ADOConnection());
  clickCell(2, 1);
  clickCell(3, 1);
  EXPECT_TRUE(QTest::qWaitFor([&] { return rows() == 11; })) << "read again by itself";
  EXPECT_EQ(currentRow(), 3);
  ASSERT_TRUE(QFile::remove(path));
  EXPECT_TRUE(QTest::qWaitFor([&] { return text().contains("deleted or moved"); }));
  EXPECT_EQ(find<QPlainTextEdit>("DataSourceTextBox").lineWrapMode(), QPlainTextEdit::WidgetWidth);
}

TEST_F(DayTest, AFileThatMayNotBeWrittenIsRefusedAtOnce) {
  std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
  const QString path = makeRows("a.mdb", 3);
  QFile::setPermissions(path,
                        QFileDevice::ReadOwner | QFileDevice::ReadGroup | QFileDevice::ReadOther);
  const bool isRoot = geteuid() == 0;
  constexpr uid_t kNobody = 65534;
  ASSERT_TRUE(!isRoot || seteuid(kNobody) == 0);
  window.openPaths({path});
  ASSERT_TRUE(!isRoot || seteuid(0) == 0);
  ASSERT_EQ(tree().topLevelItemCount(), 1) << dialogs.told();
  EXPECT_EQ(tree().topLevelItem(0)->text(0), "a.mdb (read only)");
  EXPECT_THAT(label("lblTitle"), Contains(" (read only)"));
  clickCell(0, 1);
  trigger("mnuEditDelete");
  ASSERT_EQ(dialogs.seen().size(), 1U);
  EXPECT_THAT(dialogs.texts()[0], Contains("the file is read-only"));
  EXPECT_EQ(grid().selectedRows().count(), 1);

  window.openPaths({makeRows("other.mdb", 2)});
  clickCell(0, 1);
  clickCell(1, 1, Qt::ShiftModifier);
  press(Qt::Key_C, Qt::ControlModifier);
  selectNode({"a.mdb (read only)", "Panes"});
  grid().setFocus();
  press(Qt::Key_V, Qt::ControlModifier);
  ASSERT_EQ(dialogs.seen().size(), 2U) << "once, and not for each record";
  EXPECT_THAT(dialogs.texts()[1], Contains("the file is read-only"));
  EXPECT_EQ(rows(), 3);
}

TEST_F(DayTest, ALockedFileIsWaitedForWithAWindowThatCanEndIt) {
  const QString path = makeRows("a.mdb", 5);
  window.openPaths({path});
  using store::jet::FileSystem;
  const auto other = FileSystem::system().open(path.toStdString(), FileSystem::Open::existing);
  ASSERT_TRUE(other->tryLock(store::jet::LockKind::writer, true));
  QTimer impatience;
  QString waiting;
  QObject::connect(&impatience, &QTimer::timeout, [&] {
    auto* display = window.findChild<app::ProgressDialog*>();
    if (display == nullptr) return;
    const QString text = display->findChild<QLabel*>("lblProgressStatus")->text();
    if (!text.startsWith("Waiting: ")) return;
    waiting = text;
    QTest::keyClick(display, Qt::Key_Escape);
  });
  impatience.start(20);
  clickCell(1, 1);
  dialogs.press("Yes").press(Qt::Key_A, Qt::AltModifier);  // Abort
  trigger("mnuEditDelete");
  EXPECT_FALSE(waiting.isEmpty());
  EXPECT_EQ(rows(), 5);
  EXPECT_TRUE(dialogs.isDone());
}

TEST_F(DayTest, FilesAreNotReplacedUnaskedAndFailuresComeTogether) {
  QString list;
  dialogs.read(list);
  window.openPaths({writeFile("one.mdb", "no database"), makeRows("a.mdb", 2),
                    writeFile("two.mdb", "no database")});
  EXPECT_EQ(dialogs.seen().size(), 1U);
  EXPECT_TRUE(list.contains("one.mdb") && list.contains("two.mdb")) << list.toStdString();
  EXPECT_EQ(tree().topLevelItemCount(), 1) << "the one between them is opened";

  writeFile("taken.png", "mine");
  const auto refuse = [](QWidget& question) {
    QTimer::singleShot(0, question.parentWidget(), &QWidget::close);
    dynamic_cast<QMessageBox&>(question).button(QMessageBox::No)->click();
  };
  dialogs.choose({file(folder / "taken")}).then(refuse);
  find<app::SpectrumDock>("SpectrumDock").saveAs();
  EXPECT_TRUE(dialogs.isDone());
  EXPECT_EQ(readFile(folder / "taken.png"), "mine");
}

}  // namespace orv::test
