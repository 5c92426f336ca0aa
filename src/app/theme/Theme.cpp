#include "app/theme/Theme.h"

#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QProxyStyle>
#include <QStyleOption>

#include "app/theme/Icons.h"

namespace orv::app {

namespace {

/// The colours in which the palettes differ.
struct Colours {
  QColor button, window, base, alternateBase, toolTip, highlight, link, text, disabledText,
      placeholder;
};

const Colours kLight{.button = {0xf3, 0xf3, 0xf3},
                     .window = {0xf3, 0xf3, 0xf3},
                     .base = {0xff, 0xff, 0xff},
                     .alternateBase = {0xf5, 0xf7, 0xfa},
                     .toolTip = {0xff, 0xff, 0xe8},
                     .highlight = {0x1a, 0x6f, 0xb0},
                     .link = {0x1a, 0x6f, 0xb0},
                     .text = {0x1b, 0x1e, 0x20},
                     .disabledText = {0x8c, 0x92, 0x96},
                     .placeholder = {0x80, 0x86, 0x8b}};

const Colours kDark{.button = {0x45, 0x4a, 0x4f},
                    .window = {0x38, 0x3c, 0x40},
                    .base = {0x1e, 0x20, 0x23},
                    .alternateBase = {0x26, 0x29, 0x2c},
                    .toolTip = {0x4a, 0x4f, 0x54},
                    .highlight = {0x2f, 0x78, 0xb4},
                    .link = {0x6c, 0xb8, 0xf0},
                    .text = {0xe6, 0xe8, 0xea},
                    .disabledText = {0x8b, 0x91, 0x96},
                    .placeholder = {0x9a, 0xa0, 0xa5}};

QPalette paletteOf(const Colours& colours) {
  QPalette palette(colours.button, colours.window);
  palette.setColor(QPalette::Base, colours.base);
  palette.setColor(QPalette::AlternateBase, colours.alternateBase);
  palette.setColor(QPalette::ToolTipBase, colours.toolTip);
  palette.setColor(QPalette::Highlight, colours.highlight);
  palette.setColor(QPalette::Link, colours.link);
  for (const auto role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
    palette.setColor(role, colours.text);
    palette.setColor(QPalette::Disabled, role, colours.disabledText);
  }
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::PlaceholderText, colours.placeholder);
  return palette;
}

/// The program's symbol for a button that the toolkit makes; the toolkit's own are black in any
/// theme. None for other pictures.
const char* buttonIcon(QStyle::StandardPixmap picture) {
  switch (picture) {
    case QStyle::SP_TitleBarCloseButton:
    case QStyle::SP_LineEditClearButton:
      return "cancel";
    case QStyle::SP_TitleBarNormalButton:
      return "float";
    case QStyle::SP_ToolBarHorizontalExtensionButton:
      return "more";
    default:
      return nullptr;
  }
}

/// The program's picture for a message box; none for other pictures.
const char* boxIcon(QStyle::StandardPixmap picture) {
  switch (picture) {
    case QStyle::SP_MessageBoxInformation:
      return "box-information";
    case QStyle::SP_MessageBoxQuestion:
      return "box-question";
    case QStyle::SP_MessageBoxWarning:
      return "box-warning";
    case QStyle::SP_MessageBoxCritical:
      return "box-critical";
    default:
      return nullptr;
  }
}

/// What the program has otherwise than its style: dialog buttons without pictures, which not all
/// desktops have and none has in the colours of every theme; message boxes with pictures of its
/// own where the desktop has none; a menu's symbol in the colour of the selected entry's text.
class ProgramStyle : public QProxyStyle {
 public:
  using QProxyStyle::QProxyStyle;

  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override {
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
    return QProxyStyle::styleHint(hint, option, widget, data);
  }

  QIcon standardIcon(StandardPixmap picture, const QStyleOption* option,
                     const QWidget* widget) const override {
    if (const char* symbol = buttonIcon(picture)) return icon(symbol);
    const char* box = boxIcon(picture);
    if (box != nullptr && !QIcon::hasThemeIcon("dialog-question")) return icon(box);
    return QProxyStyle::standardIcon(picture, option, widget);
  }

  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override {
    const auto* entry = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (element != CE_MenuItem || entry == nullptr || entry->icon.isNull() ||
        !(entry->state & State_Selected)) {
      QProxyStyle::drawControl(element, option, painter, widget);
      return;
    }
    QStyleOptionMenuItem selected = *entry;
    const int side = pixelMetric(PM_SmallIconSize, option, widget);
    const auto mode = entry->state & State_Enabled ? QIcon::Selected : QIcon::Disabled;
    selected.icon =
        entry->icon.pixmap(QSize(side, side), painter->device()->devicePixelRatio(), mode);
    QProxyStyle::drawControl(element, &selected, painter, widget);
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
    QApplication::setStyle(new ProgramStyle(system.style));
    QApplication::setPalette(system.palette);
    return;
  }
  QApplication::setStyle(new ProgramStyle("Fusion"));
  QApplication::setPalette(theme == Theme::dark ? paletteOf(kDark) : paletteOf(kLight));
}

}  // namespace orv::app
