// What a record that takes the place of another writes, and what it leaves as it is.
#include "database/Directions.h"
#include "database/SameValues.h"
#include "database/TestDatabase.h"
#include "model/Raised.h"
#include "support/CaseFile.h"

namespace orv::test {
namespace {

using database::OtherAngles;
using database::Replacement;
using store::Value;

class ReplacementTest : public DatabaseTest {
 protected:
  ReplacementTest() {
    database.InsertSupplier("First maker", *dc);  // so that keys of lookups differ
    for (const std::int16_t angle : {37, 60}) database.InsertPane(*paneAt(angle), *dc);
    database.InsertPane(*makePane("other"), *dc);
  }

  /// What the replacement by these panes writes, which begins with the other angles there.
  std::string replace(const std::vector<std::shared_ptr<GlazingData>>& panes,
                      const Replacement& how = {}) {
    std::string others;
    const std::string changes = changesOf([&] {
      const auto result = database.ReplacePane(panes, how, *dc);
      others = result.wasThere ? "" : "new";
      for (const std::int16_t angle : result.otherAngles) others += std::to_string(angle) + ",";
    });
    return others + (changes.empty() ? "" : "; ") + changes;
  }

  void tell(const std::string& changes) { told_ += changes + "\n"; }

  /// Compares all that was told with the file of the test.
  void TearDown() override {
    const std::string name = testing::UnitTest::GetInstance()->current_test_info()->name();
    EXPECT_EQ(told_, readFile(ORV_SOURCE_DIR "/tests/database/replacements/" + name + ".txt"));
  }

  static std::shared_ptr<GlazingData> paneAt(std::int16_t angle) {
    auto pane = fullPane();
    pane->ORV_Angle(angle);
    pane->SubstrateReference()->SpectralData(spectrumOfTwo(302.5F));
    return pane;
  }

 private:
  std::string told_;
};

TEST_F(ReplacementTest, APaneThatIsTheSameWritesNothing) {
  tell(replace({paneAt(37), paneAt(60)}));
  tell(replace({paneAt(37)}));
  tell(replace({paneAt(60)}, {.unbrought = {37}}));
  const auto alike = paneAt(60);
  alike->ORV_CoatingClass("ab");
  alike->supplier("MAKER");
  tell(replace({alike}));
  tell(replace({paneAt(37)}, {.unbrought = {36}}));
  alike->ORV_CoatingClass("cd");
  tell(replace({alike}));
}

TEST_F(ReplacementTest, EachColumnOfAPaneBecomesAnother) {
  const auto pane = paneAt(60);
  GlazingData& p = *pane;
  float f = 0.0078125F;
  const auto next = [&] { return f += 0.0078125F; };
  p.unit(kSI), p.filename("FILE \"ä\".dat"), p.productname("b"), p.supplier("it"), p.Thickness(4);
  p.Conductivity(2), p.ORV_Emissivity_front(0.75), p.ORV_Emissivity_back(0.25), p.TfIR(next());
  p.TbiR(next()), p.single_layer(false), p.use_estimation(true), p.Use_0_30_60(false);
  p.film_outdoor_side(false), p.with_and_without_film(false), p.description("c"), p.Acceptance("*");
  p.ORV_Frozen(false), p.ORV_CoatingClass("xy"), p.Precalc_Rfsol(next()), p.Precalc_RbSol(next());
  p.Precalc_Tfsol(next()), p.Precalc_Tbsol(next()), p.Precalc_Rfvis(next());
  p.Precalc_Rbvis(next()), p.Precalc_Tfvis(next()), p.Precalc_Tbvis(next());
  p.Precalc_Rfuv(next()), p.Precalc_Rbuv(next()), p.Precalc_Tfuv(next()), p.Precalc_Tbuv(next());
  tell(replace({pane}));
  EXPECT_EQ(pane->id(), 1);
  Replacement nothing{.notGiven = {"Pane_spectral_data", "Pane_integrated_data"}};
  for (const auto& column : dc->table("Pane").columns)
    nothing.notGiven.insert("Pane." + column.name);
  const auto other = paneAt(60);
  other->supplier("nobody");
  tell(replace({other}, nothing));
  for (const auto& column : dc->table("Pane_integrated_data").columns) {
    Replacement one = nothing;
    one.notGiven.erase("Pane_integrated_data");
    for (const auto& each : dc->table("Pane_integrated_data").columns) {
      if (each.name != column.name) one.notGiven.insert("Pane_integrated_data." + each.name);
    }
    tell(replace({paneAt(60)}, one));
  }
}

TEST_F(ReplacementTest, ThePointsOfASpectrumArePutTogetherByTheirPlaces) {
  const auto pane = paneAt(60);
  pane->SpectralData()->wl(1, 302.8337F);
  pane->SpectralData()->Tf(0, 0.75F);
  tell(replace({pane}));
  pane->SpectralData()->Allocate(3);
  for (std::int32_t i = 0; i < 4; ++i) {
    pane->SpectralData()->wl(i, 302.5F);
    pane->SpectralData()->Rb(i, 0.125F * static_cast<float>(i));
  }
  pane->SubstrateReference(nullptr);
  tell(replace({pane}));
  tell(replace({paneAt(60)}, {.notGiven = {"Pane_spectral_data.reflection_sub",
                                           "Pane_spectral_data.transmission_outdoor"}}));
  pane->spectral_pane(false);
  tell(replace({pane}, {.angles = {{60, {.hasUnreadSpectrum = true}}}}));
  tell(replace({pane}, {.angles = {{37, {.hasUnreadSpectrum = true}}}}));
}

TEST_F(ReplacementTest, ValuesThatWereComputedFollowTheSpectrum) {
  const auto pane = paneAt(60);
  pane->Precalc_Rfsol(0.5F);
  pane->Precalc_Tfuv(0.75F);
  pane->Precalc_Rbuv(0);
  const Replacement how{
      .angles = {{60, {.computed = {"reflection_solar_outdoor", "reflection_UV_indoor"}}}}};
  tell(replace({pane}, how));
  pane->SpectralData()->Tf(1, 0.5F);
  tell(replace({pane}, how));
  pane->ORV_Angle(61);
  tell(replace({pane}, {.angles = {{61, {.computed = {"reflection_UV_indoor"}}}}}));
}

TEST_F(ReplacementTest, OneOfSeveralDirectionsIsReplaced) {
  for (const std::string place : {"angle=60, direction=1, transmission_outdoor=0.125",
                                  "angle=60, direction=2, transmission_outdoor=0.25",
                                  "angle=37, direction=3, transmission_outdoor=0.5"}) {
    changeTable(*dc, "+Pane_spectral_data PaneID=1, wavelength=302.5, " + place);
  }
  tell(replace({paneAt(60)}));
  tell(replace({paneAt(60)}, {.angles = {{60, {.direction = 2}}}}));
  dc->deleteRows("Pane_spectral_data", "direction = 0 OR angle = 60");
  tell(replace({paneAt(37)}, {.angles = {{37, {.direction = 1}}}}));
  tell(replace({paneAt(60)}, {.angles = {{60, {.direction = 2}}}}));
  using database::directionToUse;
  EXPECT_EQ(directionToUse({}, 1), 0);
  EXPECT_EQ(directionToUse({3}, 3), 0);
  EXPECT_EQ(directionToUse({1, 2}), 1);
  EXPECT_EQ(directionToUse({1, 2}, 2), 2);
  EXPECT_EQ(directionToUse({1, 2}, 3), 1);
  EXPECT_EQ(directionToUse({0, 2}), 2);
  EXPECT_EQ(directionToUse({0, 2, 3}, 3), 3);
}

TEST_F(ReplacementTest, OtherAnglesGoOrStay) {
  tell(replace({paneAt(37)}, {.others = OtherAngles::deleted}));
  const auto fresh = paneAt(0);
  fresh->group("elsewhere");
  fresh->SubstrateReference(nullptr);
  const auto bare = paneAt(5);
  bare->spectral_pane(false);
  tell(replace({fresh, bare}));
  EXPECT_EQ(bare->id(), 3);
  const auto known = paneAt(0);
  known->filename("renamed");
  tell(replace({known}, {.key = 3, .notGiven = {"Pane.supplierID"}}));
  EXPECT_EQ(raisedBy([&] { replace({known}, {.key = 9}); }).description,
            "Pane could not be found!");
}

TEST_F(ReplacementTest, AFrameIsReplacedOrAdded) {
  FrameDataClass frame = fullFrame();
  frame.picture({'3'});
  tell(changesOf([&] { EXPECT_FALSE(database.ReplaceFrame(frame, {}, *dc)); }));
  tell(changesOf([&] { EXPECT_TRUE(database.ReplaceFrame(frame, {}, *dc)); }));
  frame.u_value(2.5), frame.width(80), frame.Info("of steel"), frame.picture({'4'});
  frame.supplier("another"), frame.frametype("");
  const Replacement names{.notGiven = {"Frame.supplierID", "Frame.FrameTypeID", "Frame.width"}};
  tell(changesOf([&] { database.ReplaceFrame(frame, names, *dc); }));
  frame.name("renamed");
  tell(changesOf([&] { database.ReplaceFrame(frame, {.key = 1, .tolerance = 9}, *dc); }));
}

TEST_F(ReplacementTest, AShadingIsReplacedOrAdded) {
  ShadingDataClass shading = fullShading();
  EXPECT_FALSE(database.ReplaceShading(shading, {}, *dc));
  tell(changesOf([&] { EXPECT_TRUE(database.ReplaceShading(shading, {}, *dc)); }));
  for (const auto field : shadingNumbers()) (shading.*field)(0.5 + (shading.*field)());
  for (const auto field : shadingFlags()) (shading.*field)(!(shading.*field)());
  shading.productname("b"), shading.typeID(5), shading.Supplier_dataID(-7), shading.supplier("c");
  shading.integrated({{30, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 0.5}});
  shading.spectrum({{300.1, 0.8, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 1 / 3.0},
                    {2600, 0.8, 0.7, 0.6, 0.5, 0.4, 0.3, 0.2, 1e-7}});
  tell(changesOf([&] {
    database.ReplaceShading(
        shading, {.tolerance = 1, .notGiven = {"Shading.supplierID", "Shading_spectral_data"}},
        *dc);
  }));
  tell(changesOf([&] { database.ReplaceShading(shading, {}, *dc); }));
  shading.name("renamed");
  tell(changesOf([&] { EXPECT_TRUE(database.ReplaceShading(shading, {.key = 1}, *dc)); }));
  EXPECT_EQ(shading.id(), 1);
}

/// "4" is a whole number, "4.0" and "nan" are others, "0.1F" one of single precision.
Value valueIn(const std::string& text) {
  if (text == "True" || text == "False") return text == "True";
  if (text == "Null") return {};
  if (text.starts_with('"')) return text.substr(1, text.size() - 2);
  if (text.starts_with("bytes ")) return store::Bytes(text.begin() + 6, text.end());
  if (text.starts_with("date ")) return store::Date{std::stod(text.substr(5))};
  if (text.ends_with('F')) return std::stof(text);
  return text.find_first_of(".n") == text.npos ? Value(std::stoi(text)) : Value(std::stod(text));
}

TEST(SameValuesTest, AreThoseThatADatabaseHoldsAlike) {
  for (const auto& cells : casesOf("database/same-values.tsv", 4)) {
    SCOPED_TRACE(cells[1] + ": " + cells[2] + ", " + cells[3]);
    database::Likeness likeness{.inSingle = cells[1] == "single", .isCode = cells[1] == "code"};
    if (cells[1].starts_with("to ")) likeness.tolerance = std::stod(cells[1].substr(3));
    if (likeness.isCode) likeness.tolerance = 1;
    const Value a = valueIn(cells[2]), b = valueIn(cells[3]);
    EXPECT_EQ(database::areSameValues(a, b, likeness), cells[0] == "same");
    EXPECT_EQ(database::areSameValues(b, a, likeness), cells[0] == "same");
  }
  using database::areSameNames;
  EXPECT_TRUE(areSameNames("", "Unknown") && areSameNames("unknown", "") &&
              areSameNames("Gro\u00dfe", "grosse"));
  EXPECT_FALSE(areSameNames("a", "b") || areSameNames("", "a") ||
               areSameNames("\u7389", "\u738b") || areSameNames("\U0001F600", "\U0001F601"));
}

}  // namespace
}  // namespace orv::test
