// What a spectrum's values are, where its points lie and how far they reach.
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "optics/Colour.h"
#include "optics/Integrator.h"
#include "support/FullRecords.h"
#include "support/ReadFile.h"

namespace orv::optics {

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct At {
  double wavelength;
  double Tf, Tb, Rf, Rb;
};

Spectrum spectrum(const std::vector<At>& points) {
  Spectrum result;
  for (const At& at : points) {
    result.wavelengths.push_back(at.wavelength);
    result[Curve::Tf].push_back(at.Tf);
    result[Curve::Tb].push_back(at.Tb);
    result[Curve::Rf].push_back(at.Rf);
    result[Curve::Rb].push_back(at.Rb);
  }
  putInOrder(result);
  return result;
}

Integration integrate(Standard standard, const Spectrum& curves, const Surfaces& surfaces = {}) {
  return Integrator(standard).integrate(curves, surfaces);
}

const char* const kNoEmissivity =
    "no emissivity: neither the spectrum, from 5 to 25 µm, nor the record has it";

/// Points at every step, with one value for each curve.
std::vector<At> even(double first, double last, double step) {
  std::vector<At> points;
  for (double at = first; at <= last; at += step) points.push_back({at, 0.7, 0.6, 0.2, 0.1});
  return points;
}

/// The same lines with points at every 5 nm between the given ones.
std::vector<At> filled(const std::vector<At>& corners) {
  std::vector<At> points{corners.front()};
  for (std::size_t i = 1; i < corners.size(); ++i) {
    const At& a = corners[i - 1];
    const At& b = corners[i];
    for (double at = a.wavelength + 5; at < b.wavelength; at += 5) {
      const double share = (at - a.wavelength) / (b.wavelength - a.wavelength);
      const auto mix = [share](double left, double right) { return left + share * (right - left); };
      points.push_back({at, mix(a.Tf, b.Tf), mix(a.Tb, b.Tb), mix(a.Rf, b.Rf), mix(a.Rb, b.Rb)});
    }
    points.push_back(b);
  }
  return points;
}

/// By hand: a pane that lets through all light up to 450 nm, none from 455 nm on, reflects 0.1 in
/// front, 0.3 behind, and has an emissivity of 0.837 on the back.
///
/// The weights of EN 410 at the table's wavelengths up to 450 nm, beyond which the pane is dark:
///
/// solar    300 to 440 nm: 0.0005 + 0.0069 + 0.0122 + 0.0145 + 0.0177 + 0.0235 + 0.0268 + 0.0294
///          = 0.1315, of 1.0000 (the next is 460 nm)
/// visible  380 to 450 nm: 0 + 0.0005 + 0.003 + 0.0103 + 0.0352 + 0.0948 + 0.2274 + 0.4192
///          = 0.7904, of 99.9999
/// UV       all of it, 1
/// g        absorbed 1 - 0.1315 - 0.1 = 0.7685; indoors 3.6 + 4.4 = 8 W/(m²·K), outdoors 23:
///          0.1315 + 0.7685 * 8/31 = 0.3298226
TEST(Integration, IsTheSumDoneByHand) {
  const auto curves = spectrum(filled({{280, 1, 0.5, 0.1, 0.3},
                                       {450, 1, 0.5, 0.1, 0.3},
                                       {455, 0, 0.5, 0.1, 0.3},
                                       {2500, 0, 0.5, 0.1, 0.3}}));
  const auto result =
      integrate(Standard::en410, curves, {.front = {}, .back = {Coating::bare, 0.837}});
  EXPECT_NEAR(*result["Tf_sol"], 0.1315, 1e-12);
  EXPECT_NEAR(*result["Tb_sol"], 0.5, 1e-12);
  EXPECT_NEAR(*result["Tf_vis"], 0.7904 / 99.9999, 1e-8);
  EXPECT_NEAR(*result["Tf_uv"], 1, 1e-12);
  EXPECT_NEAR(*result["Rf_vis"], 0.1, 1e-12);
  EXPECT_NEAR(*result["Rb_uv"], 0.3, 1e-12);
  EXPECT_NEAR(*result["g"], 0.1315 + 0.7685 * 8 / 31, 1e-12);
}

/// The program's own values of slopes, as they were when it reached all that others publish.
TEST(Integration, OfSlopesStaysAsItIs) {
  auto points =
      filled({{280, 0.1, 0.9, 0.05, 0.1}, {560, 0.8, 0.2, 0.1, 0.3}, {2500, 0.3, 0.5, 0.45, 0.2}});
  for (double at = 5000; at <= 50000; at += 500) {
    points.push_back({at, 0, 0, 0.1 + at / 1e6, 0.8 - at / 1e6});
  }
  const Surfaces sides{.front = {Coating::bare, 0.84}, .back = {Coating::coated, 0.25}};
  std::string text;
  for (const auto& [standard, word, name] : kStandardNames) {
    std::vector<std::string_view> names;
    for (const Value& each : integrate(standard, spectrum(points), sides).values) {
      text += fmt::format("{}: {} {:.6g}\n", name, each.name, each.value.value_or(-1));
      names.push_back(each.name);
    }
    EXPECT_EQ(valueNames(standard), names);
  }
  EXPECT_EQ(text, test::readFile(ORV_SOURCE_DIR "/tests/optics/slopes.txt"));
}

TEST(Integration, TakesPointsInAnyOrderAndUnitAndTellsWhatIsUnusual) {
  auto points = even(300, 2500, 5);
  for (std::size_t i = 0; i < points.size(); ++i) points[i].Tf = 0.2 + 0.001 * double(i);
  const double ordered = *integrate(Standard::nfrc300, spectrum(points))["Tf_sol"];
  std::ranges::reverse(points);
  EXPECT_EQ(*integrate(Standard::nfrc300, spectrum(points))["Tf_sol"], ordered);

  std::vector<std::array<float, 5>> rows;
  for (const At& at : points) rows.push_back({float(at.wavelength / 1000), float(at.Tf)});
  GlazingData inMicrons;
  inMicrons.SpectralData(test::spectrumOf(rows));
  const auto ofRecord = Integrator(Standard::nfrc300).integrate(inMicrons);
  EXPECT_NEAR(*ofRecord["Tf_sol"], ordered, 1e-7);
  // 0.3 µm as a 32-bit float is beyond it.
  EXPECT_EQ(spectrumOf(*inMicrons.SpectralData()).wavelengths.front(), 300);

  points.push_back({500, 0.9, 0.6, 0.2, 1.5});  // beside another of 0.24
  points.push_back({400, std::nan(""), 0, 0, 0});
  std::erase_if(points, [](const At& at) { return at.wavelength > 600 && at.wavelength < 700; });
  const auto odd = integrate(Standard::en410, spectrum(points));
  EXPECT_THAT(odd.remarks, Contains("values outside 0 to 1"));
  EXPECT_THAT(odd.remarks, Contains("points that are no numbers are left out"));
  EXPECT_THAT(odd.remarks, Contains("nothing between 600 and 700 nm"));
  EXPECT_THAT(odd.find("Tf_vis")->remarks, Contains("nothing between 600 and 700 nm"));
  EXPECT_THAT(odd.find("Tf_uv")->remarks, IsEmpty());
}

TEST(Integration, GivesNoValueThatRestsOnTooLittle) {
  EXPECT_TRUE(integrate(Standard::nfrc300, spectrum(even(380, 780, 10)))["L"].has_value());
  const auto short5 = integrate(Standard::en410, spectrum(even(280, 1900, 5)));
  EXPECT_TRUE(short5["Tf_sol"].has_value());  // lacks 5 %
  EXPECT_FALSE(short5["g"]);
  EXPECT_EQ(short5.find("ef")->reason, kNoEmissivity);

  Integrator integrator(Standard::iso9050);
  const auto none = integrator.integrate(GlazingData());
  EXPECT_TRUE(none.lacksSpectrum);
  EXPECT_FALSE(none["Tf_sol"]);
  EXPECT_THAT(none.reasons(), ElementsAre("the pane has no spectrum", kNoEmissivity,
                                          "no g: the emissivity of the back is not known"));
  GlazingData several;
  several.SpectralData(std::make_shared<SpectralData>());
  several.SpectralData()->Allocate(1);
  several.SpectralData()->MixesAngles(true);
  EXPECT_THAT(
      integrator.integrate(several).reasons(),
      ElementsAre("the spectrum is of several angles, which the source does not tell apart"));
  const auto black = spectrum(filled({{280, 0, 0, 0, 0}, {2500, 0, 0, 0, 0}}));
  const auto dark = integrate(Standard::en410, black);
  EXPECT_EQ(*dark["Tf_sol"], 0);
  EXPECT_EQ(dark.find("Ra")->reason, "no Ra: no visible light passes");
  EXPECT_EQ(integrator.integrate(black, {}).find("Tf_spf")->reason,
            "no skin protection value: nothing passes there");
}

TEST(Integration, DoesNotCountWideGapsAsCovered) {
  const auto ends = integrate(Standard::en410, spectrum({{280, 1, 0, 0, 0}, {2600, 0, 0, 0, 0}}));
  EXPECT_THAT(
      ends.reasons(),
      ElementsAre("no solar values: the spectrum covers 0 % of the weight; 300 to 2500 nm "
                  "are missing",
                  "no visible values: the spectrum covers 0 % of the weight; 380 to 780 nm "
                  "are missing",
                  "no ultraviolet values: the spectrum covers 0 % of the weight; 282.5 to 377.5 nm "
                  "are missing",
                  kNoEmissivity, "no g: the emissivity of the back is not known",
                  "no colours: the spectrum covers 0 % of the weight; 380 to 780 nm are missing"));
  EXPECT_TRUE(ends.lacksSpectrum);
  EXPECT_EQ(ends.find("Ra")->reason, ends.find("L")->reason);
  EXPECT_EQ(ends.find("Tf_sol")->covered, 0);
  const auto stated = integrate(Standard::en410, spectrum({{280, 1, 0, 0, 0}, {2600, 0, 0, 0, 0}}),
                                {.front = {}, .back = {Coating::bare, 0.8}});
  EXPECT_EQ(stated.find("g")->reason, stated.find("Tf_sol")->reason);
}

TEST(Integration, HoldsTheValuesOfTheEndsBeyondThem) {
  const auto ends = filled({{320, 0.2, 0.9, 0.1, 0}, {1900, 0.9, 0.1, 0, 0.1}});
  auto held = filled({{280, 0.2, 0.9, 0.1, 0},
                      {320, 0.2, 0.9, 0.1, 0},
                      {1900, 0.9, 0.1, 0, 0.1},
                      {2500, 0.9, 0.1, 0, 0.1}});
  for (const StandardName& standard : kStandardNames) {
    const auto a = integrate(standard.standard, spectrum(ends));
    const auto b = integrate(standard.standard, spectrum(held));
    for (const char* name : {"Tf_sol", "Tb_sol", "Rf_sol", "Rb_sol"}) {
      EXPECT_NEAR(*a[name], *b[name], 1e-12) << standard.name << name;
    }
  }
  EXPECT_THAT(spectrum({{300, 0.2, 0, 0, 0}, {300, 0.4, 1, 0, 0}})[Curve::Tb], ElementsAre(0.5));
  for (At& at : held) at = {at.wavelength, 1e-6, 0, 0, 0};
  EXPECT_NEAR(*integrate(Standard::en410, spectrum(held))["Ra"], 100, 1e-9) << "however dark";
}

TEST(Integration, NamesThreeDoubledWavelengths) {
  auto points = even(300, 2500, 5);
  const auto once = points;
  points.insert(points.end(), once.begin(), once.begin() + 3);
  const std::string three = "2 points at 300 nm, 2 points at 305 nm, 2 points at 310 nm";
  EXPECT_THAT(spectrum(points).remarks, ElementsAre(three + ", of which the mean is taken"));
  points.insert(points.end(), once.begin() + 3, once.begin() + 9);
  EXPECT_THAT(spectrum(points).remarks,
              ElementsAre(three + ", several at 6 more, of which the mean is taken"));
}

/// But for the colours of NFRC 300, which are added up at the spectrum's own wavelengths.
TEST(Integration, OfALineIsTheSameWhereverItsPointsAre) {
  std::vector<At> fine;
  for (double at = 279; at <= 2502; at += 3) fine.push_back({at, at / 2600, 1 - at / 2600, 0, 0.5});
  const auto coarse = filled({{279, 279 / 2600.0, 1 - 279 / 2600.0, 0, 0.5},
                              {2502, 2502 / 2600.0, 1 - 2502 / 2600.0, 0, 0.5}});
  for (const StandardName& standard : kStandardNames) {
    const auto a = integrate(standard.standard, spectrum(fine));
    const auto b = integrate(standard.standard, spectrum(coarse));
    for (const Value& value : a.values) {
      const double tolerance = standard.standard == Standard::nfrc300 ? 0.02 : 1e-8;
      if (!value.value) continue;
      EXPECT_NEAR(*value.value, *b[value.name], tolerance) << standard.name << value.name;
    }
  }
}

TEST(Integration, OfACoarseSpectrumHasColourAllTheSame) {
  // A ramp with a point every 20 nm. The middle of visible light is near 555 nm.
  auto points = filled({{300, 0, 0, 0, 0}, {2500, 1, 0, 0, 0}});
  std::erase_if(points, [](const At& at) { return std::fmod(at.wavelength, 20) != 0; });
  const auto ramp = integrate(Standard::nfrc300, spectrum(points));
  EXPECT_NEAR(*ramp["Y"], 100 * (555 - 300) / 2200.0, 0.5);
  EXPECT_GT(*ramp["b"], 3);  // more of the long waves is yellow
}

/// Infrared from 5 to 40 µm that is the same everywhere, so that normal emissivity is 0.9 in front
/// and 0.2 behind.
TEST(Integration, HasEmissivitiesOfTheInfraredElseOfTheRecord) {
  auto points = even(5000, 40000, 250);
  for (At& at : points) at = {at.wavelength, 0, 0, 0.1, 0.8};
  const Surfaces sides{.front = {Coating::bare, 0.84}, .back = {Coating::coated, 0.25}};
  const auto nfrc = integrate(Standard::nfrc300, spectrum(points), sides);
  // 0.9 (0.1569 + 3.39021 - 4.406238 + 1.8030357) and
  // 0.2 (1.3217 - 0.37532 + 0.186344 - 0.0466792 + 0.00438496)
  EXPECT_NEAR(*nfrc["ef"], 0.9 * 0.9439077, 1e-6);
  EXPECT_NEAR(*nfrc["eb"], 0.2 * 1.09042976, 1e-6);
  const auto en = integrate(Standard::en410, spectrum(points), sides);
  EXPECT_NEAR(*en["ef"], 0.9 * (1.1887 - 0.44703 + 0.198612), 1e-9);
  EXPECT_THAT(en.find("eb")->remarks, IsEmpty());
  const auto turned = integrate(Standard::nfrc300, spectrum(points),
                                {.front = {Coating::coated, {}}, .back = {Coating::bare, {}}});
  EXPECT_NEAR(*turned["ef"], 0.9 * 0.95069156, 1e-6);
  EXPECT_NEAR(*turned["eb"], 0.2 * 0.7124744, 1e-6);
  const auto unknown = integrate(Standard::nfrc300, spectrum(points));
  EXPECT_EQ(*unknown["ef"], *nfrc["ef"]);
  EXPECT_EQ(*unknown["eb"], *nfrc["eb"]);
  EXPECT_THAT(unknown.find("eb")->remarks,
              ElementsAre("whether this side is coated is told by the emissivity, since the record "
                          "does not say"));
  // A tenth of the radiation lies beyond 20.5 µm at 283 K, less at 300 K.
  std::erase_if(points, [](const At& at) { return at.wavelength > 20500; });
  EXPECT_NEAR(*integrate(Standard::nfrc300, spectrum(points), sides)["eb"], *nfrc["eb"], 1e-6);
  EXPECT_EQ(*integrate(Standard::en410, spectrum(points), sides)["eb"], 0.25);
  std::erase_if(points, [](const At& at) { return at.wavelength > 15000; });
  const auto stated = integrate(Standard::nfrc300, spectrum(points), sides);
  EXPECT_EQ(*stated["eb"], 0.25);
  EXPECT_THAT(stated.find("eb")->remarks,
              ElementsAre("stated by the record, since the spectrum does not reach so far"));
  EXPECT_THAT(nfrc.find("eb")->remarks, IsEmpty());
  EXPECT_LT(stated.find("eb")->covered, 0.9);
}

TEST(Integration, IsPutIntoTheRecordButForWhatIsMissing) {
  GlazingData pane;
  pane.Precalc_Rfsol(kNoIntegratedData);
  pane.Precalc_Tfuv(0.3F);
  auto curves = spectrum(even(380, 780, 10));
  EXPECT_EQ(store(integrate(Standard::en410, curves), pane), 4);
  EXPECT_EQ(pane.Precalc_Tfvis(), 0.7F);
  EXPECT_EQ(pane.Precalc_Rbvis(), 0.1F);
  EXPECT_EQ(pane.Precalc_Tfuv(), 0.3F);
  EXPECT_EQ(pane.Precalc_Rfsol(), 0);
  EXPECT_EQ(pane.Precalc_StandardName(), "EN 410");

  EXPECT_FALSE(lacksIntegratedValues(pane, Band::visible));
  EXPECT_TRUE(lacksIntegratedValues(pane, Band::solar));
  // Only what is 0, of a record that has values; else all.
  const auto all = integrate(Standard::iso9050, spectrum(even(280, 2500, 5)));
  EXPECT_EQ(storeMissing(all, pane), 7);
  EXPECT_EQ(pane.Precalc_Tfuv(), 0.3F);
  EXPECT_EQ(pane.Precalc_Rfsol(), 0.2F);
  EXPECT_EQ(pane.Precalc_StandardName(), "EN 410");
  for (const float rfsol : {kNoIntegratedData, 0.0F}) {
    GlazingData empty;
    empty.Precalc_Rfsol(rfsol);
    EXPECT_EQ(storeMissing(all, empty), 12);
    EXPECT_EQ(empty.Precalc_StandardName(), "ISO 9050");
  }
  EXPECT_EQ(storeMissing(integrate(Standard::en410, {}), pane), 0);
}

TEST(Colour, IsThatOfTheCie) {
  // D65 grey of a fifth: L* = 116 cbrt(0.2) - 16; below the bend the line 903.2963 Y.
  EXPECT_NEAR(labOf({19, 20, 21.8}, {95, 100, 109})[0], 51.8372, 1e-4);
  EXPECT_NEAR(labOf({0.475, 0.5, 0.545}, {95, 100, 109})[0], 4.51648, 1e-5);
}

}  // namespace

}  // namespace orv::optics
