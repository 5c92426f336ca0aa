// Whether everybody can read the windows, in the colours of each theme.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QImage>
#include <QListWidget>
#include <cmath>

#include "app/theme/Theme.h"

namespace orv::app {
namespace {

/// The contrast of two colours, from 1 to 21, as the guidelines for accessible contents have it.
double contrast(const QColor& a, const QColor& b) {
  const auto light = [](const QColor& colour) {
    const std::pair<double, double> parts[] = {
        {colour.redF(), 0.2126}, {colour.greenF(), 0.7152}, {colour.blueF(), 0.0722}};
    double sum = 0;
    for (const auto& [part, weight] : parts) {
      sum += weight * (part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4));
    }
    return sum + 0.05;
  };
  return std::max(light(a), light(b)) / std::min(light(a), light(b));
}

using Role = QPalette::ColorRole;

/// What is read on what.
constexpr std::pair<Role, Role> kPairs[] = {{Role::Text, Role::Base},
                                            {Role::Text, Role::AlternateBase},
                                            {Role::WindowText, Role::Window},
                                            {Role::ButtonText, Role::Button},
                                            {Role::ToolTipText, Role::ToolTipBase},
                                            {Role::PlaceholderText, Role::Base},
                                            {Role::PlaceholderText, Role::Window},
                                            {Role::HighlightedText, Role::Highlight}};

TEST(ThemeTest, TextsAndBoxesStandOutFromTheirGround) {
  applyTheme(Theme::system);
  const QPalette before = QApplication::palette();
  for (const Theme theme : {Theme::light, Theme::dark, Theme::system}) {
    SCOPED_TRACE(static_cast<int>(theme));
    applyTheme(theme);
    const QPalette palette = QApplication::palette();
    for (const auto& [text, ground] : kPairs) {
      for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        EXPECT_GE(contrast(palette.color(group, text), palette.color(group, ground)), 4.5)
            << text << " on " << ground << " in group " << group;
      }
    }
    QListWidget list;
    auto* item = new QListWidgetItem(QString(), &list);
    item->setCheckState(Qt::Unchecked);
    QCheckBox box;
    for (QWidget* widget : {static_cast<QWidget*>(&list), static_cast<QWidget*>(&box)}) {
      widget->resize(80, 40);
      const QImage image = widget->grab().toImage();
      const QColor ground = palette.color(widget == &list ? Role::Base : Role::Window);
      double most = 1;
      // Within the frame of the list.
      for (int x = 4; x < 22; ++x) {
        for (int y = 4; y < 36; ++y) {
          most = std::max(most, contrast(image.pixelColor(x, y), ground));
        }
      }
      EXPECT_GE(most, 3) << widget->metaObject()->className();
    }
  }
  EXPECT_EQ(QApplication::palette(), before) << "as the desktop has it, after dark";
}

}  // namespace
}  // namespace orv::app
