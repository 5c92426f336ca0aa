#include "app/Theme.h"

#include <QApplication>
#include <QPalette>
#include <QProxyStyle>

namespace orv::app {

namespace {

QPalette lightPalette() {
  QPalette palette(QColor(0xf3, 0xf3, 0xf3), QColor(0xf3, 0xf3, 0xf3));
  palette.setColor(QPalette::Base, Qt::white);
  palette.setColor(QPalette::AlternateBase, QColor(0xf5, 0xf7, 0xfa));
  palette.setColor(QPalette::ToolTipBase, QColor(0xff, 0xff, 0xe8));
  palette.setColor(QPalette::Highlight, QColor(0x1a, 0x6f, 0xb0));
  palette.setColor(QPalette::Link, QColor(0x1a, 0x6f, 0xb0));
  for (const auto role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
    palette.setColor(role, QColor(0x1b, 0x1e, 0x20));
    palette.setColor(QPalette::Disabled, role, QColor(0x8c, 0x92, 0x96));
  }
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::PlaceholderText, QColor(0x80, 0x86, 0x8b));
  return palette;
}

QPalette darkPalette() {
  QPalette palette(QColor(0x35, 0x38, 0x3c), QColor(0x2b, 0x2e, 0x31));
  palette.setColor(QPalette::Base, QColor(0x20, 0x22, 0x25));
  palette.setColor(QPalette::AlternateBase, QColor(0x26, 0x29, 0x2c));
  palette.setColor(QPalette::ToolTipBase, QColor(0x3c, 0x40, 0x44));
  palette.setColor(QPalette::Highlight, QColor(0x2f, 0x78, 0xb4));
  palette.setColor(QPalette::Link, QColor(0x6c, 0xb8, 0xf0));
  for (const auto role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
    palette.setColor(role, QColor(0xe6, 0xe8, 0xea));
    palette.setColor(QPalette::Disabled, role, QColor(0x7d, 0x83, 0x88));
  }
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::PlaceholderText, QColor(0x8a, 0x90, 0x95));
  return palette;
}

/// A style whose dialog buttons have no pictures, which not all desktops have and none has in the
/// colours of every theme.
class PlainButtons : public QProxyStyle {
 public:
  using QProxyStyle::QProxyStyle;

  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override {
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
    return QProxyStyle::styleHint(hint, option, widget, data);
  }
};

/// What the desktop gave the program at its start.
struct Desktop {
  QString style;
  QPalette palette;
};

const Desktop& desktop() {
  static const Desktop atStart{QApplication::style()->name(), QApplication::palette()};
  return atStart;
}

}  // namespace

void applyTheme(Theme theme) {
  const Desktop& system = desktop();
  if (theme == Theme::system) {
    QApplication::setStyle(new PlainButtons(system.style));
    QApplication::setPalette(system.palette);
    return;
  }
  QApplication::setStyle(new PlainButtons("Fusion"));
  QApplication::setPalette(theme == Theme::dark ? darkPalette() : lightPalette());
}

}  // namespace orv::app
