// The pages of the guide.
#pragma once

#include <QTextBrowser>
#include <vector>

namespace orv::app {

/// Shows a page of Markdown. Links lead to its headings, to other pages, and with a browser to the
/// world outside; pictures are no wider than the page.
class GuideBrowser : public QTextBrowser {
  Q_OBJECT

 public:
  explicit GuideBrowser(QWidget* parent = nullptr);

  struct Heading {
    int level;
    QString text;
    QString anchor;  ///< as links name it: "the-window"
  };
  /// Those of the page that is shown.
  const std::vector<Heading>& headings() const { return headings_; }

  /// Goes to the next place that has a text, and from the end to the beginning; false when there is
  /// none.
  bool find(const QString& text, bool forward);

 signals:
  /// Another page is shown.
  void pageShown();
  /// A link leads to a file that is not there.
  void notFound(const QString& file);

 protected:
  void doSetSource(const QUrl& url, QTextDocument::ResourceType type) override;
  QVariant loadResource(int type, const QUrl& name) override;

 private:
  void nameHeadings();

  QString page_;  ///< the path of the file
  std::vector<Heading> headings_;
};

}  // namespace orv::app
