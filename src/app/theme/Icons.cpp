#include "app/theme/Icons.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

// Resources of a static library are linked only where something refers to them.
static void useResources() {
  Q_INIT_RESOURCE(icons);
}

namespace orv::app {

namespace {

// The drawings are made of these two colours, which the engine replaces.
constexpr auto kInk = "#2e3436";
constexpr auto kAccent = "#1a6fb0";

QString pathOf(std::string_view name) {
  return QStringLiteral(":/icons/%1.svg").arg(QLatin1String(name.data(), name.size()));
}

QColor inkOf(QIcon::Mode mode) {
  const QPalette palette = QGuiApplication::palette();
  switch (mode) {
    case QIcon::Disabled:
      return palette.color(QPalette::Disabled, QPalette::ButtonText);
    case QIcon::Selected:
      return palette.color(QPalette::Active, QPalette::HighlightedText);
    default:
      return palette.color(QPalette::Active, QPalette::ButtonText);
  }
}

/// Blue that stands out from the ink; where all has one colour (disabled, selected), the ink.
QColor accentOf(QIcon::Mode mode) {
  if (mode == QIcon::Disabled || mode == QIcon::Selected) return inkOf(mode);
  const bool isDark = QGuiApplication::palette().color(QPalette::Button).lightness() < 128;
  return isDark ? QColor(0x6c, 0xb8, 0xf0) : QColor(0x1a, 0x6f, 0xb0);
}

/// Draws a symbol in the colours of the palette.
class SymbolEngine : public QIconEngine {
 public:
  explicit SymbolEngine(QByteArray svg) : svg_(std::move(svg)) {}

  QIconEngine* clone() const override { return new SymbolEngine(svg_); }

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    QByteArray svg = svg_;
    svg.replace(kInk, inkOf(mode).name().toLatin1());
    svg.replace(kAccent, accentOf(mode).name().toLatin1());
    const int side = std::min(rect.width(), rect.height());
    QRect square(0, 0, side, side);
    square.moveCenter(rect.center());
    QSvgRenderer(svg).render(painter, square);
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    const QString key = QStringLiteral("orv-icon-%1-%2x%3-%4-%5")
                            .arg(qHash(svg_))
                            .arg(size.width())
                            .arg(size.height())
                            .arg(inkOf(mode).name(), accentOf(mode).name());
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap)) return pixmap;
    pixmap = QPixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    painter.end();
    QPixmapCache::insert(key, pixmap);
    return pixmap;
  }

 private:
  QByteArray svg_;
};

}  // namespace

QIcon icon(std::string_view name) {
  useResources();
  QFile file(pathOf(name));
  if (!file.open(QIODevice::ReadOnly)) return {};
  return QIcon(new SymbolEngine(file.readAll()));
}

QIcon applicationIcon() {
  useResources();
  return QIcon(pathOf("application"));
}

}  // namespace orv::app
