#include "app/theme/Theme.h"

#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QProxyStyle>
#include <QStyleOption>
#include <algorithm>
#include <cmath>

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
                     .placeholder = {0x66, 0x6c, 0x71}};

const Colours kDark{.button = {0x45, 0x4a, 0x4f},
                    .window = {0x38, 0x3c, 0x40},
                    .base = {0x1e, 0x20, 0x23},
                    .alternateBase = {0x26, 0x29, 0x2c},
                    .toolTip = {0x4a, 0x4f, 0x54},
                    .highlight = {0x2f, 0x78, 0xb4},
                    .link = {0x6c, 0xb8, 0xf0},
                    .text = {0xe6, 0xe8, 0xea},
                    .disabledText = {0x8b, 0x91, 0x96},
                    .placeholder = {0xb4, 0xba, 0xbf}};

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

/// What the eye makes of a colour, from 0 to 1.
double luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
         0.0722 * linear(colour.blueF());
}

double contrast(const QColor& one, const QColor& other) {
  const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
  return (lighter + 0.05) / (darker + 0.05);
}

QColor mixed(const QColor& colour, const QColor& other, double share) {
  const auto part = [&](double from, double to) { return from + (to - from) * share; };
  return QColor::fromRgbF(static_cast<float>(part(colour.redF(), other.redF())),
                          static_cast<float>(part(colour.greenF(), other.greenF())),
                          static_cast<float>(part(colour.blueF(), other.blueF())));
}

/// The colour as it is, or so much nearer to `strong` that it can be read on both grounds.
QColor readable(const QColor& colour, const QColor& strong, const QColor& ground,
                const QColor& otherGround) {
  constexpr double kLeastContrast = 4.6;
  constexpr double kStep = 0.05;
  // A colour that lets its ground through is seen as the mixture.
  const QColor seen = mixed(ground, colour, colour.alphaF());
  for (double share = 0; share < 1; share += kStep) {
    const QColor result = mixed(seen, strong, share);
    if (std::min(contrast(result, ground), contrast(result, otherGround)) >= kLeastContrast) {
      return result;
    }
  }
  return strong;
}

/// The palette of a desktop, with the colours changed that are too faint.
QPalette readable(QPalette palette) {
  for (const auto group : {QPalette::Active, QPalette::Inactive}) {
    const QColor text = palette.color(group, QPalette::Text);
    const QColor base = palette.color(group, QPalette::Base);
    palette.setColor(group, QPalette::PlaceholderText,
                     readable(palette.color(group, QPalette::PlaceholderText), text, base,
                              palette.color(group, QPalette::Window)));
    const QColor selected = palette.color(group, QPalette::HighlightedText);
    const QColor apart = luminance(selected) > 0.5 ? Qt::black : Qt::white;
    palette.setColor(
        group, QPalette::Highlight,
        readable(palette.color(group, QPalette::Highlight), apart, selected, selected));
  }
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

  /// Fusion gives boxes a frame that is hardly seen on a dark ground.
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (element != PE_IndicatorCheckBox && element != PE_IndicatorRadioButton) return;
    const auto group = option->state & State_Enabled ? QPalette::Active : QPalette::Disabled;
    painter->save();
    painter->setPen(option->palette.color(
        group, group == QPalette::Disabled ? QPalette::Text : QPalette::PlaceholderText));
    painter->setBrush(Qt::NoBrush);
    const QRect frame = option->rect.adjusted(0, 0, -1, -1);
    if (element == PE_IndicatorCheckBox) {
      painter->drawRect(frame);
    } else {
      painter->setRenderHint(QPainter::Antialiasing);
      painter->drawEllipse(QRectF(frame).adjusted(0.5, 0.5, -0.5, -0.5));
    }
    painter->restore();
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
    QApplication::setPalette(readable(system.palette));
    return;
  }
  QApplication::setStyle(new ProgramStyle("Fusion"));
  QApplication::setPalette(theme == Theme::dark ? paletteOf(kDark) : paletteOf(kLight));
}

}  // namespace orv::app
