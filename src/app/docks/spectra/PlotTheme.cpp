#include "app/docks/spectra/PlotTheme.h"

#include <algorithm>
#include <array>

namespace orv::app {

namespace {

// The first ones are those of Okabe and Ito, "Color Universal Design" (2008); the others are as far
// from them and from each other as they can be (CIEDE2000: 18 at least; 10 as the colour-blind see
// them), with a contrast of 3 : 1 to the background.
constexpr std::array<QRgb, kMostCurves> kOnLight{0xff0072b2, 0xffd55e00, 0xff009e73, 0xff850275,
                                                 0xff222222, 0xff9383eb, 0xfff9506c, 0xff625a40,
                                                 0xff071de5, 0xff9e0e09, 0xff0a514b, 0xff6e6577};
constexpr std::array<QRgb, kMostCurves> kOnDark{0xff56b4e9, 0xffe69f00, 0xff2cc295, 0xffdf00b3,
                                                0xfff5f5f5, 0xffe96f58, 0xff5fe8f4, 0xff4477d8,
                                                0xffcbd182, 0xff966e75, 0xffb1660d, 0xffcea7bf};

constexpr double kWidth = 1.8;
constexpr double kThinWidth = 1.2;
constexpr double kThickWidth = 2.6;
constexpr double kAreaAlpha = 0.18;

QColor mixed(const QColor& a, const QColor& b, double shareOfB) {
  const auto mix = [&](int x, int y) { return qRound(x + (y - x) * shareOfB); };
  return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

/// Lengths of strokes and gaps, in widths of the pen.
QList<qreal> dashes(SpectralQuantity quantity) {
  switch (quantity) {
    case SpectralQuantity::frontReflectance:
      return {5, 2.5};
    case SpectralQuantity::backReflectance:
      return {1, 2};
    default:
      return {};
  }
}

QPen dashed(const QColor& colour, double width, SpectralQuantity quantity) {
  QPen pen(colour, width);
  pen.setCapStyle(Qt::FlatCap);
  pen.setJoinStyle(Qt::RoundJoin);
  if (const auto pattern = dashes(quantity); !pattern.isEmpty()) pen.setDashPattern(pattern);
  return pen;
}

}  // namespace

PlotTheme PlotTheme::of(const QPalette& palette) {
  PlotTheme theme;
  theme.background = palette.color(QPalette::Active, QPalette::Base);
  theme.text = palette.color(QPalette::Active, QPalette::Text);
  theme.grid = mixed(theme.background, theme.text, 0.14);
  theme.frame = mixed(theme.background, theme.text, 0.45);
  return theme;
}

PlotTheme PlotTheme::paper() {
  QPalette palette;
  palette.setColor(QPalette::Active, QPalette::Base, Qt::white);
  palette.setColor(QPalette::Active, QPalette::Text, Qt::black);
  return of(palette);
}

QColor PlotTheme::hue(int number) const {
  const auto& hues = isDark() ? kOnDark : kOnLight;
  const QColor colour(hues[number % hues.size()]);
  switch ((number / hues.size()) % 3) {
    case 1:
      return mixed(colour, text, 0.4);
    case 2:
      return mixed(colour, background, 0.4);
    default:
      return colour;
  }
}

QColor PlotTheme::colour(const SpectrumDataSet& set, int paneCount) const {
  if (set.isInBand) return frame;
  if (paneCount <= 1) return hue(set.angleIndex);
  return mixed(hue(set.pane), background, std::min(0.22 * set.angleIndex, 0.5));
}

QPen PlotTheme::pen(const SpectrumDataSet& set, int paneCount, SpectralQuantity quantity) const {
  const bool thin = paneCount > 1 && set.angleIndex > 0;
  return dashed(colour(set, paneCount), thin ? kThinWidth : kWidth, quantity);
}

QPen PlotTheme::pen(const ExtraCurve& curve) const {
  if (curve.kind == ExtraCurve::Kind::mean) return dashed(text, kThickWidth, curve.quantity);
  const QColor difference(isDark() ? 0xffff5cc8 : 0xffb0007c);
  return dashed(difference, kWidth, curve.quantity);
}

QBrush PlotTheme::brush(ExtraCurve::Kind kind) const {
  QColor colour = text;
  if (kind == ExtraCurve::Kind::solarWeight) colour = QColor(0xff, 0x9f, 0x00);
  if (kind == ExtraCurve::Kind::visibleWeight) colour = QColor(0x00, 0x9e, 0x73);
  colour.setAlphaF(kAreaAlpha);
  return colour;
}

QPen PlotTheme::sample(SpectralQuantity quantity) const {
  return dashed(text, kWidth, quantity);
}

}  // namespace orv::app
