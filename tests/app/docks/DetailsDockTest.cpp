#include <gtest/gtest.h>

#include <QApplication>
#include <QBuffer>
#include <QClipboard>
#include <QComboBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include "app/docks/Panes.h"
#include "app/docks/details/DetailsDock.h"
#include "app/docks/details/DetailsTree.h"
#include "app/docks/details/PictureView.h"
#include "app/docks/details/SlatDrawing.h"

namespace orv::app {
namespace {

class DetailsDockTest : public testing::Test {
 protected:
  DetailsDockTest() {
    dock_.resize(360, 600);
    dock_.show();
    tree_ = dock_.findChild<DetailsTree*>();
    picture_ = dock_.findChild<PictureView*>();
    slats_ = dock_.findChild<SlatDrawing*>();
  }

  /// The line of the field, or nothing.
  QString line(const QString& name) const {
    for (const QString& line : tree_->text(false).split('\n')) {
      if (line.startsWith(name + '\t')) return line;
    }
    return {};
  }

  QString emptyText() const {
    const auto* label = dock_.findChild<QLabel*>("detailsEmptyText");
    return label->isVisible() ? label->text() : QString();
  }

  DetailsDock dock_;
  DetailsTree* tree_;
  PictureView* picture_;
  SlatDrawing* slats_;
};

TEST_F(DetailsDockTest, IsEmptyWithoutARecord) {
  EXPECT_EQ(emptyText(), "Select a record to see its fields here.");
  dock_.showPane({makePane("a", 0, {})});
  EXPECT_EQ(emptyText(), "");
  dock_.showPane({});
  EXPECT_EQ(emptyText(), "Select a record to see its fields here.");
  dock_.showText("This record was not found in its data source.");
  EXPECT_EQ(emptyText(), "This record was not found in its data source.");
}

TEST_F(DetailsDockTest, KeepsTheAngleFromPaneToPane) {
  auto* angle = dock_.findChild<QComboBox*>();
  dock_.showPane({makePane("a", 0, {}), makePane("a", 60, {})});
  EXPECT_TRUE(angle->isVisible());
  angle->setCurrentIndex(1);
  emit angle->activated(1);
  EXPECT_EQ(line("Angle of incidence"), "Angle of incidence\t60\t°");
  dock_.showPane({makePane("b", 0, {}), makePane("b", 30, {}), makePane("b", 60, {})});
  EXPECT_EQ(line("Angle of incidence"), "Angle of incidence\t60\t°");
  dock_.showPane({makePane("c", 0, {})});
  EXPECT_EQ(line("Angle of incidence"), "Angle of incidence\t0\t°");
  EXPECT_FALSE(angle->isVisible());
}

TEST_F(DetailsDockTest, SearchesNamesAndValuesAndCopiesWhatIsSelected) {
  auto pane = makePane("a", 0, {});
  pane->supplier("Emissary Glass");
  dock_.showPane({pane});
  dock_.findChild<QLineEdit*>()->setText("EMISS");
  EXPECT_TRUE(tree_->text(false).startsWith(
      "Field\tValue\tUnit\nSupplier\tEmissary Glass\t\nEmissivity front\t"));
  EXPECT_EQ(line("Thickness"), "");
  tree_->topLevelItem(0)->child(3)->setSelected(true);
  QTest::keySequence(tree_, QKeySequence::Copy);
  EXPECT_EQ(QApplication::clipboard()->text(), "Field\tValue\tUnit\nSupplier\tEmissary Glass\t\n");
}

TEST_F(DetailsDockTest, ShowsTheFramesPictureOrSaysThatItCannot) {
  QByteArray png;
  QBuffer buffer(&png);
  buffer.open(QIODevice::WriteOnly);
  QImage image(20, 10, QImage::Format_RGB32);
  image.fill(Qt::red);
  image.save(&buffer, "PNG");
  auto frame = std::make_shared<FrameDataClass>();
  frame->picture({png.begin(), png.end()});
  dock_.showFrame(frame);
  EXPECT_TRUE(picture_->isVisible());
  EXPECT_TRUE(picture_->caption().startsWith("PNG, 20 × 10 pixels, "));
  EXPECT_EQ(picture_->grab().toImage().pixelColor(picture_->rect().center() - QPoint(0, 10)),
            QColor(Qt::red));
  frame->picture(std::vector<std::uint8_t>(2048, 7));
  dock_.showFrame(frame);
  EXPECT_EQ(picture_->caption(), "Picture of 2.00 KiB: it cannot be shown");
  frame->picture({});
  dock_.showFrame(frame);
  EXPECT_EQ(picture_->caption(), "No picture");
  dock_.showPane({makePane("a", 0, {})});
  EXPECT_FALSE(picture_->isVisible());
}

TEST_F(DetailsDockTest, DrawsSlatsThatHaveDimensions) {
  auto shading = std::make_shared<ShadingDataClass>();
  shading->Sol_refl_slat_surf_outd(0.5);
  dock_.showShading(shading);
  EXPECT_FALSE(slats_->isVisible());
  EXPECT_EQ(line("Solar reflectance outdoor"), "Solar reflectance outdoor\t0.5\t");
  shading->slat_length(80);
  shading->slat_distance(72);
  shading->angle(45);
  dock_.showShading(shading);
  EXPECT_TRUE(slats_->isVisible());
  EXPECT_EQ(slats_->accessibleDescription(), "Slats 80 mm wide, 72 mm apart, at 45°");
  EXPECT_EQ(line("Slat distance"), "Slat distance\t72\tmm");
  dock_.showPane({makePane("a", 0, {})});
  EXPECT_FALSE(slats_->isVisible());
}

}  // namespace
}  // namespace orv::app
