#include <gmock/gmock.h>

#include <QStringList>

#include "app/docks/Panes.h"
#include "app/docks/spectra/IntegratedValues.h"

namespace orv::app {
namespace {

std::shared_ptr<GlazingData> paneWithValues() {
  auto pane = makePane("a", 0, {});
  pane->Precalc_Tfsol(0.75F);
  pane->Precalc_Rfsol(0.0712F);
  pane->Precalc_Rbuv(0.05F);
  return pane;
}

QStringList names(const std::vector<IntegratedRow>& rows) {
  QStringList names;
  for (const auto& row : rows) names << row.name;
  return names;
}

TEST(IntegratedValuesTest, TellsStoredValuesFromTheirAbsence) {
  auto marked = makePane("marked", 0, {});
  marked->Precalc_Rfsol(-1);
  const auto bare = makePane("bare", 0, {});
  EXPECT_TRUE(integratedRows(dataSetsOf({marked, bare})).empty());

  const auto rows = integratedRows(dataSetsOf({marked, paneWithValues(), bare}));
  ASSERT_EQ(rows.size(), 12U);
  EXPECT_EQ(rows[0].name, "Solar T, front");
  EXPECT_THAT(rows[0].values, testing::ElementsAre("", "0.750", ""));
  EXPECT_THAT(rows[2].values, testing::ElementsAre("", "0.071", ""));
  EXPECT_EQ(rows[11].name, "UV R, back");
  EXPECT_THAT(rows[11].values, testing::ElementsAre("", "0.050", ""));
}

TEST(IntegratedValuesTest, ShowsRareValuesWhereARecordHasThem) {
  auto pane = paneWithValues();
  pane->Precalc_Tdw(0.4F);
  pane->Precalc_StandardName("ISO 9050");
  const auto rows = integratedRows(dataSetsOf({pane, paneWithValues()}));
  EXPECT_EQ(names(rows).mid(12), (QStringList{"Damage-weighted T", "Standard"}));
  EXPECT_THAT(rows[13].values, testing::ElementsAre("ISO 9050", ""));
}

}  // namespace
}  // namespace orv::app
