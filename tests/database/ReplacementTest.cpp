// What a record that takes the place of another writes, and what it leaves as it is.
#include "database/Directions.h"
#include "database/SameValues.h"
#include "database/TestDatabase.h"
#include "model/Raised.h"
#include "support/FullRecords.h"

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

  static std::shared_ptr<GlazingData> paneAt(std::int16_t angle) {
    auto pane = fullPane();
    pane->ORV_Angle(angle);
    pane->SubstrateReference()->SpectralData(spectrumOfTwo(302.5F));
    return pane;
  }
};

TEST_F(ReplacementTest, APaneThatIsTheSameWritesNothing) {
  EXPECT_EQ(replace({paneAt(37), paneAt(60)}), "");
  EXPECT_EQ(replace({paneAt(37)}), "60,");
  EXPECT_EQ(replace({paneAt(60)}, {.unbrought = {37}}), "");
  const auto alike = paneAt(60);
  alike->ORV_CoatingClass("ab");
  alike->supplier("MAKER");
  EXPECT_EQ(replace({alike}), "37,");
  EXPECT_EQ(replace({paneAt(37)}, {.unbrought = {36}}), "60,");
  alike->ORV_CoatingClass("cd");
  EXPECT_EQ(replace({alike}), "37,; Pane coatingcode AB>CD");
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
  EXPECT_EQ(
      replace({pane}),
      R"(37,; Suppliers + 3|it; Pane name file "ä".dat>FILE "ä".dat product_name product>b supplierID 2>3 thickness 1.9176999>4 conduction 0.15316693>2 emission_IR_outdoor 0.9876543210987>0.75 emission_IR_indoor 0.123456789012345>0.25 transmission_IR_outdoor 0.10149999>0.015625 transmission_IR_indoor 0.114499986>0.0234375 single_layer True>False use_estimation False>True 0_30_60 True>False film_outdoor_side True>False with_and_without_film True>False info {text}
of two>c freeze True>False coatingcode AB>XY acceptance #>*; Pane_integrated_data reflection_solar_outdoor 0.19249997>0.03125 reflection_solar_indoor 0.20549996>0.0390625 transmission_solar_outdoor 0.16649997>0.046875 transmission_solar_indoor 0.17949997>0.0546875 reflection_visual_outdoor 0.24449995>0.0625 reflection_visual_indoor 0.25749996>0.0703125 transmission_visual_outdoor 0.21849996>0.078125 transmission_visual_indoor 0.23149996>0.0859375 reflection_UV_outdoor 0.4265001>0.09375 reflection_UV_indoor 0.43950012>0.1015625 transmission_UV_outdoor 0.4005001>0.109375 transmission_UV_indoor 0.4135001>0.1171875)");
  EXPECT_EQ(pane->id(), 1);
  Replacement nothing{.notGiven = {"Pane_spectral_data", "Pane_integrated_data"}};
  for (const auto& column : dc->table("Pane").columns)
    nothing.notGiven.insert("Pane." + column.name);
  const auto other = paneAt(60);
  other->supplier("nobody");
  EXPECT_EQ(replace({other}, nothing), "37,");
  for (const auto& column : dc->table("Pane_integrated_data").columns) {
    Replacement one = nothing;
    one.notGiven.erase("Pane_integrated_data");
    for (const auto& each : dc->table("Pane_integrated_data").columns) {
      if (each.name != column.name) one.notGiven.insert("Pane_integrated_data." + each.name);
    }
    const std::string written = replace({paneAt(60)}, one);
    EXPECT_EQ(written.find(column.name) != std::string::npos,
              column.name[0] == 't' || column.name[0] == 'r')
        << written;
  }
}

TEST_F(ReplacementTest, ThePointsOfASpectrumArePutTogetherByTheirPlaces) {
  const auto pane = paneAt(60);
  pane->SpectralData()->wl(1, 302.8337F);
  pane->SpectralData()->Tf(0, 0.75F);
  EXPECT_EQ(
      replace({pane}),
      R"(37,; Pane_spectral_data transmission_outdoor 0.1>0.75; Pane_spectral_data - 1|60|0|302.83334|0.43333334|0.6333333|0.33333334|0.43333334|0.6333333; Pane_spectral_data + 1|60|0|302.8337|0.43333334|0.6333333|0.33333334|0.43333334|0.6333333)");
  pane->SpectralData()->Allocate(3);
  for (std::int32_t i = 0; i < 4; ++i) {
    pane->SpectralData()->wl(i, 302.5F);
    pane->SpectralData()->Rb(i, 0.125F * static_cast<float>(i));
  }
  pane->SubstrateReference(nullptr);
  EXPECT_EQ(
      replace({pane}),
      R"(37,; Pane_spectral_data transmission_outdoor 0.75>0 reflection_outdoor 0.3>0 reflection_indoor 1e-08>0; Pane_spectral_data - 1|60|0|302.8337|0.43333334|0.6333333|0.33333334|0.43333334|0.6333333; Pane_spectral_data + 1|60|0|302.5|0|0|0.125|Null|Null; Pane_spectral_data + 1|60|0|302.5|0|0|0.25|Null|Null; Pane_spectral_data + 1|60|0|302.5|0|0|0.375|Null|Null)");
  EXPECT_EQ(
      replace({paneAt(60)}, {.notGiven = {"Pane_spectral_data.reflection_sub",
                                          "Pane_spectral_data.transmission_outdoor"}}),
      R"(37,; Pane_spectral_data reflection_outdoor 0>0.3 reflection_indoor 0>1e-08; Pane_spectral_data - 1|60|0|302.5|0|0|0.125|Null|Null; Pane_spectral_data - 1|60|0|302.5|0|0|0.25|Null|Null; Pane_spectral_data - 1|60|0|302.5|0|0|0.375|Null|Null; Pane_spectral_data + 1|60|0|302.83334|Null|0.6333333|0.33333334|0.43333334|Null)");
  pane->spectral_pane(false);
  EXPECT_EQ(replace({pane}, {.angles = {{60, {.hasUnreadSpectrum = true}}}}),
            R"(37,; Pane spectral_pane True>False)");
  EXPECT_EQ(
      replace({pane}, {.angles = {{37, {.hasUnreadSpectrum = true}}}}),
      R"(37,; Pane_spectral_data - 1|60|0|302.5|0|0.3|1e-08|0.1|0.3; Pane_spectral_data - 1|60|0|302.83334|Null|0.6333333|0.33333334|0.43333334|Null)");
}

TEST_F(ReplacementTest, ValuesThatWereComputedFollowTheSpectrum) {
  const auto pane = paneAt(60);
  pane->Precalc_Rfsol(0.5F);
  pane->Precalc_Tfuv(0.75F);
  pane->Precalc_Rbuv(0);
  const Replacement how{
      .angles = {{60, {.computed = {"reflection_solar_outdoor", "reflection_UV_indoor"}}}}};
  EXPECT_EQ(replace({pane}, how),
            R"(37,; Pane_integrated_data transmission_UV_outdoor 0.4005001>0.75)");
  pane->SpectralData()->Tf(1, 0.5F);
  EXPECT_EQ(
      replace({pane}, how),
      R"(37,; Pane_spectral_data transmission_outdoor 0.43333334>0.5; Pane_integrated_data reflection_solar_outdoor 0.19249997>0.5)");
  pane->ORV_Angle(61);
  EXPECT_EQ(
      replace({pane}, {.angles = {{61, {.computed = {"reflection_UV_indoor"}}}}}),
      R"(37,60,; Pane_spectral_data + 1|61|0|302.5|0.1|0.3|1e-08|0.1|0.3; Pane_spectral_data + 1|61|0|302.83334|0.5|0.6333333|0.33333334|0.43333334|0.6333333; Pane_integrated_data + 1|61|0.5|0.20549996|0.16649997|0.17949997|0.24449995|0.25749996|0.21849996|0.23149996|0.4265001|0|0.75|0.4135001)");
}

TEST_F(ReplacementTest, OneOfSeveralDirectionsIsReplaced) {
  const auto add = [&](int angle, int direction, double transmission) {
    addRow("Pane_spectral_data", {{"PaneID", 1},
                                  {"angle", angle},
                                  {"direction", direction},
                                  {"wavelength", 302.5},
                                  {"transmission_outdoor", transmission}});
  };
  add(60, 1, 0.125);
  add(60, 2, 0.25);
  add(37, 3, 0.5);
  EXPECT_EQ(
      replace({paneAt(60)}),
      R"(37,; Pane_spectral_data transmission_outdoor 0.125>0.1 reflection_outdoor Null>0.3 reflection_indoor Null>1e-08 transmission_sub Null>0.1 reflection_sub Null>0.3; Pane_spectral_data + 1|60|1|302.83334|0.43333334|0.6333333|0.33333334|0.43333334|0.6333333)");
  EXPECT_EQ(
      replace({paneAt(60)}, {.angles = {{60, {.direction = 2}}}}),
      R"(37,; Pane_spectral_data transmission_outdoor 0.25>0.1 reflection_outdoor Null>0.3 reflection_indoor Null>1e-08 transmission_sub Null>0.1 reflection_sub Null>0.3; Pane_spectral_data + 1|60|2|302.83334|0.43333334|0.6333333|0.33333334|0.43333334|0.6333333)");
  dc->deleteRows("Pane_spectral_data", "direction = 0 OR angle = 60");
  EXPECT_EQ(
      replace({paneAt(37)}, {.angles = {{37, {.direction = 1}}}}),
      R"(60,; Pane_spectral_data transmission_outdoor 0.5>0.1 reflection_outdoor Null>0.3 reflection_indoor Null>1e-08 transmission_sub Null>0.1 reflection_sub Null>0.3; Pane_spectral_data + 1|37|3|302.83334|0.43333334|0.6333333|0.33333334|0.43333334|0.6333333)");
  EXPECT_EQ(
      replace({paneAt(60)}, {.angles = {{60, {.direction = 2}}}}),
      R"(37,; Pane_spectral_data + 1|60|0|302.5|0.1|0.3|1e-08|0.1|0.3; Pane_spectral_data + 1|60|0|302.83334|0.43333334|0.6333333|0.33333334|0.43333334|0.6333333)");
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
  EXPECT_EQ(
      replace({paneAt(37)}, {.others = OtherAngles::deleted}),
      R"(60,; Pane_integrated_data - 1|60|0.19249997|0.20549996|0.16649997|0.17949997|0.24449995|0.25749996|0.21849996|0.23149996|0.4265001|0.43950012|0.4005001|0.4135001; Pane_spectral_data - 1|60|0|302.5|0.1|0.3|1e-08|0.1|0.3; Pane_spectral_data - 1|60|0|302.83334|0.43333334|0.6333333|0.33333334|0.43333334|0.6333333)");
  const auto fresh = paneAt(0);
  fresh->group("elsewhere");
  fresh->SubstrateReference(nullptr);
  const auto bare = paneAt(5);
  bare->spectral_pane(false);
  EXPECT_EQ(
      replace({fresh, bare}),
      R"(new; Groups + 3|elsewhere; Pane + 3|file "ä".dat|product|2|3|1.9176999|0.15316693|0.9876543210987|0.123456789012345|0.10149999|0.114499986|True|False|True|True|True|True|0|{text}
of two|True|AB|#; Pane_integrated_data + 3|0|0.19249997|0.20549996|0.16649997|0.17949997|0.24449995|0.25749996|0.21849996|0.23149996|0.4265001|0.43950012|0.4005001|0.4135001; Pane_spectral_data + 3|0|0|302.5|0.1|0.3|1e-08|0|0; Pane_spectral_data + 3|0|0|302.83334|0.43333334|0.6333333|0.33333334|0|0; Pane_integrated_data + 3|5|0.19249997|0.20549996|0.16649997|0.17949997|0.24449995|0.25749996|0.21849996|0.23149996|0.4265001|0.43950012|0.4005001|0.4135001)");
  EXPECT_EQ(bare->id(), 3);
  const auto known = paneAt(0);
  known->filename("renamed");
  EXPECT_EQ(
      replace({known}, {.key = 3, .notGiven = {"Pane.supplierID"}}),
      R"(5,; Pane name file "ä".dat>renamed; Pane_spectral_data transmission_sub 0>0.1 reflection_sub 0>0.3; Pane_spectral_data transmission_sub 0>0.43333334 reflection_sub 0>0.6333333)");
  EXPECT_EQ(raisedBy([&] { replace({known}, {.key = 9}); }).description,
            "Pane could not be found!");
}

TEST_F(ReplacementTest, AFrameIsReplacedOrAdded) {
  FrameDataClass frame = fullFrame();
  frame.picture({'3'});
  EXPECT_EQ(
      changesOf([&] { EXPECT_FALSE(database.ReplaceFrame(frame, {}, *dc)); }),
      R"(Suppliers + 3|Frame maker; Groups + 3|Tarven frames; FrameTypes + 1|Wood; Frame + 1|frame|Null|3|3|1.3|1|3|70|of oak)");
  EXPECT_EQ(changesOf([&] { EXPECT_TRUE(database.ReplaceFrame(frame, {}, *dc)); }), "");
  frame.u_value(2.5), frame.width(80), frame.Info("of steel"), frame.picture({'4'});
  frame.supplier("another"), frame.frametype("");
  const Replacement names{.notGiven = {"Frame.supplierID", "Frame.FrameTypeID", "Frame.width"}};
  EXPECT_EQ(changesOf([&] { database.ReplaceFrame(frame, names, *dc); }),
            R"(Frame u_value 1.3>2.5 picture 3>4 Info of oak>of steel)");
  frame.name("renamed");
  EXPECT_EQ(
      changesOf([&] { database.ReplaceFrame(frame, {.key = 1, .tolerance = 9}, *dc); }),
      R"(Suppliers + 4|another; FrameTypes + 2|Unknown; Frame name frame>renamed supplierID 3>4 FrameTypeID 1>2 width 70>80)");
}

TEST_F(ReplacementTest, AShadingIsReplacedOrAdded) {
  ShadingDataClass shading = fullShading();
  EXPECT_FALSE(database.ReplaceShading(shading, {}, *dc));
  EXPECT_EQ(changesOf([&] { EXPECT_TRUE(database.ReplaceShading(shading, {}, *dc)); }), "");
  for (const auto& [column, field] : shadingNumbers()) (shading.*field)(0.5 + (shading.*field)());
  for (const auto& [column, field] : shadingFlags()) (shading.*field)(!(shading.*field)());
  shading.productname("b"), shading.typeID(5), shading.Supplier_dataID(-7), shading.supplier("c");
  shading.integrated({{30, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 0.5}});
  shading.spectrum({{300.1, 0.8, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 1 / 3.0},
                    {2600, 0.8, 0.7, 0.6, 0.5, 0.4, 0.3, 0.2, 1e-7}});
  EXPECT_EQ(
      changesOf([&] {
        database.ReplaceShading(
            shading, {.tolerance = 1, .notGiven = {"Shading.supplierID", "Shading_spectral_data"}},
            *dc);
      }),
      R"(Shading typeID 4>5 productname the ® productname>b measured True>False single_layer False>True spectral True>False horizontal False>True vertical True>False homogenious False>True 3D True>False Supplier_dataID -8>-7 freeze False>True; Shading_integrated_data_temp - 1|60|12|11|10|9|8|7|6|5|4|3|2|0.25)");
  EXPECT_EQ(
      changesOf([&] { database.ReplaceShading(shading, {}, *dc); }),
      R"(Suppliers + 4|c; Shading thickness 0.14285714285714285>0.6428571428571428 conduction 0.2857142857142857>0.7857142857142857 emission_IR_outdoor 0.42857142857142855>0.9285714285714286 emission_IR_indoor 0.5714285714285714>1.0714285714285714 transmission_IR_outdoor 0.7142857142857143>1.2142857142857144 transmission_IR_indoor 0.8571428571428571>1.3571428571428572 emissivity_slat_surf_outd 1>1.5 emissivity_slat_surf_ind 1.1428571428571428>1.6428571428571428 transmissivity_slat_surf 1.2857142857142858>1.7857142857142858 permeability 1.4285714285714286>1.9285714285714286 supplierID 3>4 window_slat_distance 1.5714285714285714>2.071428571428571 slat_curvature 1.7142857142857142>2.2142857142857144 slat_length 1.8571428571428572>2.357142857142857 slat_distance 2>2.5 angle 2.142857142857143>2.642857142857143 Sol_refl_slat_surf_outd 2.2857142857142856>2.7857142857142856 Sol_refl_slat_surf_ind 2.4285714285714284>2.9285714285714284 Sol_transm_slat_surf 2.5714285714285716>3.0714285714285716 Vis_refl_slat_surf_outd 2.7142857142857144>3.2142857142857144 Vis_refl_slat_surf_ind 2.857142857142857>3.357142857142857 Vis_transm_slat_surf 3>3.5 Uv_refl_slat_surf_outd 3.142857142857143>3.642857142857143 Uv_refl_slat_surf_ind 3.2857142857142856>3.7857142857142856 Uv_transm_slat_surf 3.4285714285714284>3.9285714285714284 Sol_refl_slat_surf_outd_BB 3.5714285714285716>4.071428571428571 Sol_refl_slat_surf_ind_BB 3.7142857142857144>4.214285714285714 Sol_transm_slat_surf_BB 3.857142857142857>4.357142857142858 Vis_refl_slat_surf_outd_BB 4>4.5 Vis_refl_slat_surf_ind_BB 4.142857142857143>4.642857142857143 Vis_transm_slat_surf_BB 4.285714285714286>4.785714285714286 Uv_refl_slat_surf_outd_BB 4.428571428571429>4.928571428571429 Uv_refl_slat_surf_ind_BB 4.571428571428571>5.071428571428571 Uv_transm_slat_surf_BB 4.714285714285714>5.214285714285714; Shading_integrated_data_temp transmission_UV_indoor 0.3333333333333333>0.5; Shading_spectral_data T_out_BB 0.1>0.8; Shading_spectral_data - 1|2500|0.8|0.7|0.6|0.5|0.4|0.3|0.2|1e-07; Shading_spectral_data + 1|2600|0.8|0.7|0.6|0.5|0.4|0.3|0.2|1e-07)");
  shading.name("renamed");
  EXPECT_EQ(changesOf([&] { EXPECT_TRUE(database.ReplaceShading(shading, {.key = 1}, *dc)); }),
            R"(Shading name the ® name>renamed)");
  EXPECT_EQ(shading.id(), 1);
}

TEST(SameValuesTest, AreThoseThatADatabaseHoldsAlike) {
  const double nan = std::nan("");
  const store::Bytes bytes{'a', 'b'}, none;
  const store::Date day{2}, next{3};
  using Pairs = std::vector<std::pair<Value, Value>>;
  const auto expect = [](bool same, const database::Likeness& likeness, const Pairs& pairs) {
    for (std::size_t i = 0; i < pairs.size(); ++i) {
      const auto& [a, b] = pairs[i];
      EXPECT_EQ(database::areSameValues(a, b, likeness), same) << i << " as " << same;
      EXPECT_EQ(database::areSameValues(b, a, likeness), same) << i << " as " << same;
    }
  };
  expect(true, {},
         Pairs{{1, 1.0},
               {{}, 0},
               {{}, ""},
               {{}, false},
               {true, 1},
               {"1", 1},
               {nan, nan},
               {0.1, 0.1F},
               {bytes, "ab"},
               {none, {}},
               {"a", "a"},
               {day, "1900-01-01"}});
  expect(false, {},
         Pairs{{1, 2},
               {{}, 1},
               {{}, true},
               {true, -1},
               {false, ""},
               {"a", "A"},
               {nan, 1.0},
               {0.1, 0.1 + 1e-10},
               {bytes, "ac"},
               {bytes, {}}});
  expect(true, {.inSingle = true}, {{0.1, 0.1 + 1e-10}});
  expect(true, {.tolerance = 0.25}, {{1.0, 1.25}, {1.0, 1.2500001}, {-1, -1.25}});
  expect(false, {.tolerance = 0.25}, {{1.0, 1.2500003}, {true, false}, {nan, 1.0}, {false, 0.1}});
  expect(true, {.tolerance = 1}, {{4, 5}});
  expect(false, {.tolerance = 1}, {{day, next}, {true, false}, {false, 1}});
  expect(false, {.tolerance = 1, .isCode = true}, {{4, 5}});
  using database::areSameNames;
  EXPECT_TRUE(areSameNames("", "Unknown") && areSameNames("unknown", "") &&
              areSameNames("Gro\u00dfe", "grosse"));
  EXPECT_FALSE(areSameNames("a", "b") || areSameNames("", "a"));
}

}  // namespace
}  // namespace orv::test
