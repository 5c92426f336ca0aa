// The guide, and the list of keys.
#include <QTextBlock>
#include <QTreeWidgetItemIterator>

#include "app/WindowTest.h"
#include "app/dialogs/GuideBrowser.h"
#include "app/dialogs/GuideWindow.h"

namespace orv::test {

TEST_F(WindowTest, F1OpensTheGuideAndItsLinksLeadOn) {
  window.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  QTest::keyClick(&tree(), Qt::Key_F1);
  app::GuideWindow* guide = nullptr;
  for (QWidget* each : QApplication::topLevelWidgets()) {
    if (auto* found = qobject_cast<app::GuideWindow*>(each)) guide = found;
  }
  ASSERT_TRUE(guide != nullptr && guide->isVisible());
  auto* browser = guide->findChild<app::GuideBrowser*>();
  const auto top = [&] { return browser->cursorForPosition({30, 6}).block().text(); };
  ASSERT_TRUE(QTest::qWaitFor([&] { return top() == "The window"; })) << top().toStdString();

  // Every link of every page leads to a heading that is there, or to another page.
  int links = 0;
  for (const char* page : {"user-guide.md", "text-files.md", "product-files.md", "reliability.md",
                           "integrated-values.md", "access-format.md"}) {
    browser->setSource(QUrl::fromLocalFile(app::guideFolder() + '/' + page));
    QStringList anchors;
    for (const auto& heading : browser->headings()) anchors << heading.anchor;
    EXPECT_GT(anchors.size(), 3) << page;
    for (QTextBlock block = browser->document()->begin(); block.isValid(); block = block.next()) {
      for (auto piece = block.begin(); !piece.atEnd(); ++piece) {
        const QString link = piece.fragment().charFormat().anchorHref();
        if (!link.startsWith('#')) continue;
        ++links;
        EXPECT_TRUE(anchors.contains(link.mid(1))) << page << ": " << link.toStdString();
      }
    }
  }
  EXPECT_GT(links, 15);

  auto* contents = guide->findChild<QTreeWidget*>();
  browser->setSource(QUrl::fromLocalFile(app::guideFolder() + "/user-guide.md"));
  const auto found = contents->findItems("Copying records", Qt::MatchExactly | Qt::MatchRecursive);
  ASSERT_EQ(found.size(), 1);
  contents->setFocus();
  clickItem(*contents, found.front());
  EXPECT_TRUE(QTest::qWaitFor([&] { return top() == "Copying records"; })) << top().toStdString();
  auto* search = guide->findChild<QLineEdit*>("txtGuideSearch");
  QTest::keyClicks(search, "TARVEN");
  QTest::keyClick(search, Qt::Key_Return);
  EXPECT_EQ(browser->textCursor().selectedText(), "TARVEN");
  QTest::keyClick(browser, Qt::Key_Escape);
  EXPECT_FALSE(guide->isVisible());
}

TEST_F(WindowTest, TheListOfKeysIsThatOfTheActions) {
  action("mnuViewRefresh").setShortcut(QKeySequence("Ctrl+Alt+7"));
  QMap<QString, QString> keys;
  dialogs.then([&](QWidget& dialog) {
    auto* list = dialog.findChild<QTreeWidget*>("lstKeys");
    for (QTreeWidgetItemIterator each(list); *each != nullptr; ++each) {
      if ((*each)->parent()) keys[(*each)->text(0)] = (*each)->text(1);
    }
    dialog.close();
  });
  trigger("mnuHelpKeys");
  EXPECT_EQ(keys["Refresh"], "Ctrl+Alt+7");
  for (const QAction* each : window.findChildren<QAction*>()) {
    if (each->shortcut().isEmpty()) continue;
    const QString text = QString(each->text()).remove('&').remove("...").remove(QChar(0x2026));
    EXPECT_TRUE(keys.contains(text)) << text.toStdString();
  }
}

}  // namespace orv::test
