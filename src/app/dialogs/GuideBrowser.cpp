#include "app/dialogs/GuideBrowser.h"

#include <QFileInfo>
#include <QImageReader>
#include <QSignalBlocker>
#include <QTextBlock>
#include <algorithm>

namespace orv::app {

namespace {

constexpr int kWidestPicture = 720;  ///< pixels at scale 1
constexpr int kPageMargin = 16;

/// What links call a heading.
QString anchorOf(const QString& heading) {
  QString anchor;
  for (const QChar c : heading.toLower()) {
    if (c.isLetterOrNumber() || c == '-' || c == '_') anchor += c;
    if (c == ' ') anchor += '-';
  }
  return anchor;
}

}  // namespace

GuideBrowser::GuideBrowser(QWidget* parent) : QTextBrowser(parent) {
  setOpenExternalLinks(true);
  setAccessibleName(tr("Guide"));
  setWhatsThis(tr("The user guide. Links lead to other places of it."));
  connect(this, &QTextBrowser::sourceChanged, this, [this](const QUrl& url) {
    if (url.toLocalFile() == page_) return;
    page_ = url.toLocalFile();
    nameHeadings();
    emit pageShown();
  });
}

void GuideBrowser::doSetSource(const QUrl& url, QTextDocument::ResourceType type) {
  if (url.isLocalFile() && !QFileInfo::exists(url.toLocalFile())) {
    emit notFound(QFileInfo(url.toLocalFile()).fileName());
    return;
  }
  QTextBrowser::doSetSource(url, type);
  if (!url.hasFragment()) return;
  document()->size();  // lays the whole page out: until then it ends somewhere before the place
  scrollToAnchor(url.fragment());  // which had no name in a new page
}

void GuideBrowser::nameHeadings() {
  headings_.clear();
  // A page that has been changed would be read again for each link within it.
  const QSignalBlocker unnoticed(document());
  document()->setDocumentMargin(kPageMargin);
  for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
    const int level = block.blockFormat().headingLevel();
    if (level == 0) continue;
    const Heading heading{level, block.text(), anchorOf(block.text())};
    QTextCursor cursor(block);
    cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    QTextCharFormat format;
    format.setAnchor(true);
    format.setAnchorNames({heading.anchor});
    cursor.mergeCharFormat(format);
    headings_.push_back(heading);
  }
}

QVariant GuideBrowser::loadResource(int type, const QUrl& name) {
  if (type != QTextDocument::ImageResource) return QTextBrowser::loadResource(type, name);
  QImageReader reader(source().resolved(name).toLocalFile());
  const double scale = devicePixelRatioF();
  const QSize size = reader.size();
  const int width = std::min(size.width(), kWidestPicture);
  if (!size.isValid()) return {};
  QImage image = reader.read().scaledToWidth(qRound(width * scale), Qt::SmoothTransformation);
  image.setDevicePixelRatio(scale);
  return image;
}

bool GuideBrowser::find(const QString& text, bool forward) {
  const auto flags = forward ? QTextDocument::FindFlags() : QTextDocument::FindBackward;
  if (text.isEmpty() || QTextBrowser::find(text, flags)) return !text.isEmpty();
  const QTextCursor before = textCursor();
  moveCursor(forward ? QTextCursor::Start : QTextCursor::End);
  if (QTextBrowser::find(text, flags)) return true;
  setTextCursor(before);
  return false;
}

}  // namespace orv::app

#include "moc_GuideBrowser.cpp"
