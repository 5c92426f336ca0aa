#include "app/dialogs/GuideWindow.h"

#include <QAction>
#include <QCoreApplication>
#include <QDir>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QSplitter>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "app/Help.h"
#include "app/Text.h"
#include "app/dialogs/GuideBrowser.h"

namespace orv::app {

namespace {

constexpr QSize kSize(1060, 760);
constexpr int kContentsWidth = 250;
constexpr int kLowestLevel = 3;  ///< of the headings that are listed

QToolButton* button(Qt::ArrowType arrow, const QString& text, const QKeySequence& keys) {
  auto* button = new QToolButton;
  button->setArrowType(arrow);
  button->setAutoRaise(true);
  button->setAccessibleName(text);
  button->setShortcut(keys);
  explain(button, QStringLiteral("%1 (%2)").arg(text, keys.toString(QKeySequence::NativeText)));
  return button;
}

}  // namespace

QString guideFolder() {
  const QDir folder(QCoreApplication::applicationDirPath() + "/../share/orv-manager/guide");
  return folder.exists("user-guide.md") ? folder.canonicalPath() : QString();
}

GuideWindow::GuideWindow(QWidget* parent)
    : QWidget(parent, Qt::Window),
      browser_(new GuideBrowser),
      contents_(new QTreeWidget),
      search_(new QLineEdit),
      note_(new QLabel) {
  setObjectName("GuideWindow");
  setWindowTitle(tr("User Guide"));
  note_->setMargin(4);
  note_->hide();
  buildContents();
  auto* splitter = new QSplitter;
  splitter->addWidget(contents_);
  splitter->addWidget(browser_);
  splitter->setStretchFactor(1, 1);
  splitter->setSizes({kContentsWidth, kSize.width() - kContentsWidth});
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(4, 4, 4, 4);
  layout->addWidget(buildBar());
  layout->addWidget(splitter, 1);
  layout->addWidget(note_);
  resize(kSize);
  connect(browser_, &GuideBrowser::pageShown, this, &GuideWindow::listHeadings);
  connect(browser_, &GuideBrowser::notFound, this, [this](const QString& file) {
    note_->setText(tr("%1 is not part of the installed guide.").arg(file));
    note_->show();
  });
}

QWidget* GuideWindow::buildBar() {
  auto* bar = new QWidget;
  auto* back = button(Qt::LeftArrow, tr("Back"), QKeySequence(Qt::ALT | Qt::Key_Left));
  auto* forward = button(Qt::RightArrow, tr("Forward"), QKeySequence(Qt::ALT | Qt::Key_Right));
  back->setEnabled(false);
  forward->setEnabled(false);
  connect(back, &QToolButton::clicked, browser_, &QTextBrowser::backward);
  connect(forward, &QToolButton::clicked, browser_, &QTextBrowser::forward);
  connect(browser_, &QTextBrowser::backwardAvailable, back, &QWidget::setEnabled);
  connect(browser_, &QTextBrowser::forwardAvailable, forward, &QWidget::setEnabled);
  search_->setObjectName("txtGuideSearch");
  search_->setPlaceholderText(tr("Find in this page"));
  search_->setClearButtonEnabled(true);
  search_->setAccessibleName(tr("Find in this page"));
  explain(search_, tr("Enter and F3 find the text further on, Shift+F3 further back"));
  connect(search_, &QLineEdit::returnPressed, this, [this] { find(true); });
  auto* layout = new QHBoxLayout(bar);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(back);
  layout->addWidget(forward);
  layout->addStretch();
  layout->addWidget(search_);
  return bar;
}

void GuideWindow::buildContents() {
  contents_->setHeaderHidden(true);
  contents_->setAccessibleName(tr("Contents"));
  contents_->setWhatsThis(tr("The headings of the page. The one that is chosen is shown."));
  connect(contents_, &QTreeWidget::itemSelectionChanged, this, [this] {
    const auto selected = contents_->selectedItems();
    if (selected.isEmpty()) return;
    QUrl url = browser_->source();
    url.setFragment(selected.front()->data(0, Qt::UserRole).toString());
    browser_->setSource(url);
  });
}

void GuideWindow::open(const QString& anchor) {
  QUrl url = QUrl::fromLocalFile(guideFolder() + "/user-guide.md");
  url.setFragment(anchor);
  browser_->setSource(url);
  show();
  raise();
  activateWindow();
  browser_->setFocus();
}

/// The title of the page is left out, since all of the others would be below it.
void GuideWindow::listHeadings() {
  note_->hide();
  contents_->clear();
  QTreeWidgetItem* section = nullptr;
  for (const GuideBrowser::Heading& heading : browser_->headings()) {
    if (heading.level == 1 || heading.level > kLowestLevel) continue;
    const bool isSection = heading.level == 2 || section == nullptr;
    auto* item = isSection ? new QTreeWidgetItem(contents_) : new QTreeWidgetItem(section);
    if (isSection) section = item;
    item->setText(0, heading.text);
    item->setToolTip(0, toolTipText(heading.text));
    item->setData(0, Qt::UserRole, heading.anchor);
  }
  contents_->expandAll();
}

void GuideWindow::find(bool forward) {
  const bool isFound = browser_->find(search_->text(), forward);
  note_->setText(tr("\"%1\" is nowhere in this page.").arg(search_->text()));
  note_->setVisible(!isFound);
}

void GuideWindow::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Find)) {
    search_->setFocus(Qt::ShortcutFocusReason);
    search_->selectAll();
  } else if (event->matches(QKeySequence::FindNext)) {
    find(true);
  } else if (event->matches(QKeySequence::FindPrevious)) {
    find(false);
  } else if (event->key() == Qt::Key_Escape) {
    close();
  } else {
    QWidget::keyPressEvent(event);
  }
}

}  // namespace orv::app

#include "moc_GuideWindow.cpp"
