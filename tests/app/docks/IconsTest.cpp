#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QPalette>

#include "app/theme/Icons.h"

namespace orv::app {
namespace {

QImage drawn(const QIcon& icon) {
  return icon.pixmap(16, 16).toImage().convertToFormat(QImage::Format_ARGB32);
}

/// Whether any pixel is solid and about as light as this.
bool hasPixel(const QImage& image, bool (*matches)(const QColor&)) {
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const QColor pixel = image.pixelColor(x, y);
      if (pixel.alpha() > 200 && matches(pixel)) return true;
    }
  }
  return false;
}

TEST(IconsTest, DrawsEverySymbol) {
  icon("open");
  const auto files = QDir(":/icons").entryList();
  ASSERT_GT(files.size(), 20);
  for (const QString& file : files) {
    const QIcon symbol = icon(file.chopped(4).toStdString());
    EXPECT_TRUE(hasPixel(drawn(symbol), [](const QColor&) { return true; })) << file.toStdString();
  }
  EXPECT_TRUE(icon("no such icon").isNull());
  EXPECT_FALSE(applicationIcon().isNull());
}

TEST(IconsTest, FollowsThePalette) {
  const QPalette before = QApplication::palette();
  const QIcon symbol = icon("cancel");
  QPalette dark(QColor(0x30, 0x30, 0x30), QColor(0x20, 0x20, 0x20));
  dark.setColor(QPalette::ButtonText, Qt::white);
  QApplication::setPalette(dark);
  EXPECT_TRUE(hasPixel(drawn(symbol), [](const QColor& c) { return c.lightness() > 230; }));
  QPalette light(QColor(0xf0, 0xf0, 0xf0), QColor(0xf0, 0xf0, 0xf0));
  light.setColor(QPalette::ButtonText, Qt::black);
  QApplication::setPalette(light);
  EXPECT_TRUE(hasPixel(drawn(symbol), [](const QColor& c) { return c.lightness() < 30; }));
  EXPECT_FALSE(hasPixel(drawn(symbol), [](const QColor& c) { return c.lightness() > 230; }));
  QApplication::setPalette(before);
}

}  // namespace
}  // namespace orv::app
