#include <gmock/gmock.h>

#include <QImage>

#include "app/docks/Panes.h"
#include "app/docks/spectra/SpectrumCsv.h"
#include "app/docks/spectra/SpectrumFigure.h"
#include "support/ReadFile.h"
#include "support/TemporaryFolder.h"

namespace orv::app {
namespace {

SpectrumPlot plotOfTwo() {
  SpectrumPlot plot;
  plot.setRecords(
      {makePane("clear, 3 mm", 0, {{300, 0.1F, 0.05F, 0.06F}, {500, 0.9F, 0.08F, 0.09F}}),
       makePane("coated", 60, {{500, 0.5F, 0.25F, 0.3F}, {2500, 0.2F, 0.7F, 0.6F}}),
       makePane("bare", 0, {})});
  return plot;
}

TEST(SpectrumExportTest, WritesWhatIsShownInTheUnitThatIsShown) {
  EXPECT_EQ(spectraAsText(plotOfTwo()),
            "Wavelength (nm),\"clear, 3 mm T\",\"clear, 3 mm Rf\",\"clear, 3 mm Rb\","
            "\"coated, 60° T\",\"coated, 60° Rf\",\"coated, 60° Rb\"\r\n"
            "300,0.1,0.05,0.06,,,\r\n"
            "500,0.9,0.08,0.09,0.5,0.25,0.3\r\n"
            "2500,,,,0.2,0.7,0.6\r\n");
  SpectrumPlot plot = plotOfTwo();
  plot.scale.unit = kMicrons;
  plot.hidden[0] = true;
  plot.quantities[1] = false;
  EXPECT_EQ(spectraAsText(plot, u'\t'),
            "Wavelength (µm)\tcoated, 60° T\tcoated, 60° Rb\r\n"
            "0.5\t0.5\t0.3\r\n"
            "2.5\t0.2\t0.6\r\n");
}

/// Pixels of about this colour.
int count(const QImage& image, const QColor& colour) {
  int found = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const QColor pixel = image.pixelColor(x, y);
      const int distance = std::abs(pixel.red() - colour.red()) +
                           std::abs(pixel.green() - colour.green()) +
                           std::abs(pixel.blue() - colour.blue());
      if (distance < 12) ++found;
    }
  }
  return found;
}

TEST(SpectrumExportTest, SavesPicturesAndTables) {
  const test::TemporaryFolder folder;
  const auto file = [&](const char* name) { return QString::fromStdString(folder / name); };
  const SpectrumPlot plot = plotOfTwo();
  const SpectrumFigure figure(plot);
  QString reason;
  ASSERT_TRUE(figure.savePng(file("a.png"), reason)) << reason.toStdString();
  ASSERT_TRUE(figure.saveSvg(file("a.svg"), reason)) << reason.toStdString();
  ASSERT_TRUE(figure.saveCsv(file("a.csv"), reason)) << reason.toStdString();

  const QImage image(file("a.png"));
  EXPECT_EQ(image.pixelColor(1, 1), QColor(Qt::white));
  EXPECT_GT(count(image, QColor(0x00, 0x72, 0xb2)), 500) << "the curves of the first pane";
  EXPECT_GT(count(image, QColor(0xd5, 0x5e, 0x00)), 500) << "the curves of the second pane";

  const std::string drawing = test::readFile(folder / "a.svg");
  for (const char* text : {"<svg", "#0072b2", "Wavelength (nm)", "Transmittance, reflectance",
                           "clear, 3 mm", "1000", "0.5"}) {
    EXPECT_THAT(drawing, testing::HasSubstr(text));
  }
  EXPECT_EQ(test::readFile(folder / "a.csv"), spectraAsText(plot).toStdString());
  EXPECT_FALSE(figure.saveCsv("/no such folder/a.csv", reason));
  EXPECT_FALSE(reason.isEmpty());
}

}  // namespace
}  // namespace orv::app
