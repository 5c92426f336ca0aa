#include <gmock/gmock.h>

#include <QStringList>

#include "app/docks/Panes.h"
#include "app/docks/spectra/IntegratedValues.h"

namespace orv::app {
namespace {

using optics::Standard;

/// A pane whose curves are flat, so that every mean is known whatever the weights.
std::shared_ptr<GlazingData> flatPane(const std::string& name, float from, float to) {
  constexpr float kStep = 20;
  std::vector<Point> points;
  for (float at = from; at <= to; at += kStep) points.push_back({at, 0.5F, 0.1F, 0.2F});
  return makePane(name, 0, points);
}

class Rows {
 public:
  Rows(const std::vector<std::shared_ptr<const GlazingData>>& panes, Standard standard)
      : rows_(integratedRows(dataSetsOf({panes.begin(), panes.end()}), standard)) {}

  const IntegratedPair& of(const QString& name, std::size_t pane = 0) const {
    static const IntegratedPair none{{"no row"}, {"no row"}};
    for (const auto& row : rows_) {
      if (row.name == name) return row.values[pane];
    }
    return none;
  }
  QStringList names() const {
    QStringList names;
    for (const auto& row : rows_) names << row.name;
    return names;
  }

 private:
  std::vector<IntegratedRow> rows_;
};

TEST(IntegratedValuesTest, TellsStoredValuesFromTheirAbsence) {
  auto marked = makePane("marked", 0, {});
  marked->Precalc_Rfsol(-1);
  const auto bare = makePane("bare", 0, {});
  EXPECT_TRUE(Rows({marked, bare}, Standard::en410).names().isEmpty());

  auto pane = makePane("a", 0, {});
  pane->Precalc_Tfsol(0.75F);
  pane->Precalc_Rfsol(0.0712F);
  pane->Precalc_Tdw(0.4F);
  pane->Precalc_StandardName("ISO 9050");
  const Rows rows({marked, pane, bare}, Standard::en410);
  EXPECT_EQ(rows.names().mid(12), (QStringList{"Damage T, front", "Standard"}));
  EXPECT_EQ(rows.of("Solar T, front", 0).stored.text, "");
  EXPECT_EQ(rows.of("Solar T, front", 1).stored.text, "0.750");
  EXPECT_EQ(rows.of("Solar R, front", 1).stored.text, "0.071");
  EXPECT_EQ(rows.of("Solar T, front", 2).stored.text, "");
  EXPECT_EQ(rows.of("Solar T, front", 1).computed.text, "");
  EXPECT_EQ(rows.of("Standard", 1).stored.text, "ISO 9050");
}

TEST(IntegratedValuesTest, MarksComputedValuesThatDiffer) {
  auto pane = flatPane("a", 300, 2500);
  pane->Precalc_Tfsol(0.502F);   // 0.4 % more
  pane->Precalc_Tbsol(0.504F);   // 0.8 % more
  pane->Precalc_Rfsol(0.1004F);  // 0.4 %
  pane->Precalc_RbSol(0.1F);
  pane->Precalc_Tfvis(0.4973F);  // 0.54 %
  const Rows rows({pane}, Standard::en410);
  EXPECT_EQ(rows.of("Solar T, front").computed.text, "0.500");
  EXPECT_FALSE(rows.of("Solar T, front").computed.differs);
  EXPECT_TRUE(rows.of("Solar T, back").computed.differs);
  EXPECT_FALSE(rows.of("Solar R, front").computed.differs);
  EXPECT_TRUE(rows.of("Visible T, front").computed.differs);
  EXPECT_TRUE(rows.of("UV T, front").computed.differs) << "stored as 0";
  const QString tip = rows.of("Solar R, back").computed.tip;
  EXPECT_TRUE(
      tip.startsWith("EN 410: 0.2\nStored: 0.1, from which it differs by +100.0 %\n"
                     "The spectrum covers 100.0 % of the weight."))
      << tip.toStdString();
}

TEST(IntegratedValuesTest, FollowsTheStandardAndSaysWhyThereIsNoValue) {
  const auto whole = flatPane("whole", 300, 2500);
  const auto visible = flatPane("visible", 380, 780);
  const Rows en({whole, visible}, Standard::en410);
  EXPECT_EQ(en.of("Ra (rendering)").computed.text, "100.0");
  EXPECT_EQ(en.of("Standard").computed.text, "EN 410");
  EXPECT_EQ(en.of("Damage T, back").computed.text, "no row");
  EXPECT_EQ(en.of("Visible T, front", 1).computed.text, "0.500");
  EXPECT_EQ(en.of("Solar T, front", 1).computed.text, "");
  EXPECT_TRUE(en.of("Solar T, front", 1).computed.tip.contains("are missing"));

  const Rows nfrc({whole}, Standard::nfrc300);
  EXPECT_EQ(nfrc.of("Damage R, back").computed.text, "0.200");
  EXPECT_EQ(nfrc.of("Ra (rendering)").computed.text, "no row");
}

/// A grey pane is grey by the observers of all standards.
TEST(IntegratedValuesTest, ShowsColours) {
  for (const auto& [standard, word, name] : optics::kStandardNames) {
    const Rows rows({flatPane("a", 300, 2500)}, standard);
    EXPECT_EQ(rows.of("Colour of T").computed.text, "#bcbcbc") << word;
    EXPECT_EQ(rows.of("Colour of R, front").computed.text, "#595959") << word;
    EXPECT_EQ(rows.of("Colour of R, back").computed.text, "#7c7c7c") << word;
    EXPECT_THAT(*rows.of("Colour of T").computed.colour, testing::ElementsAre(188, 188, 188));
  }
}

}  // namespace
}  // namespace orv::app
