// Each rule of an audit finds its fault at its record, and nothing else is said of the good ones.
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

#include "commands/AuditFixture.h"
#include "model/Raised.h"

namespace orv::test {
namespace {

using commands::RecordKind;
using commands::TextFileKind;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Lets less and less through beyond the visible, and throws it back.
Points metal() {
  Points points;
  for (double nm = 300; nm <= 2500; nm += 5) {
    const double T = 0.8 / (1 + std::pow(nm / 1200, 4));
    points.push_back({nm, T, 0.85 - T, 0.9 - T});
  }
  return points;
}

/// A pane file.
struct Draft {
  Points points;
  std::string type = "Monolithic";
  std::string side = "Neither";
  std::string maker = "Kestrel Bay";
  double thickness = 4;
  double conductivity = 1;
  double front = 0.84;
  double back = 0.84;
  std::string unit = "Nanometers";

  std::string text() const {
    std::string text = fmt::format(
        "SI {} {} {}\nTIR=0\nEmis= {} {}\n{{ Manufacturer: {} }}\n{{ Type: {} }}\n"
        "{{ Coated Side: {} }}\n",
        unit, thickness, conductivity, front, back, maker, type, side);
    for (const Point& at : points) text += fmt::format("{} {} {} {}\n", at.nm, at.T, at.Rf, at.Rb);
    return text;
  }
};

Draft clear(int number = 9) {
  return {.points = glass(number)};
}
Draft coated() {
  return {.points = metal(), .type = "Coated", .side = "Back", .back = 0.05};
}

/// Where the change applies from `first` to `last`, in nm.
template <class Change>
Draft changed(Draft draft, double first, double last, Change change) {
  for (Point& at : draft.points) {
    if (at.nm >= first && at.nm <= last) change(at);
  }
  return draft;
}

Draft without(Draft draft, double first, double last) {
  std::erase_if(draft.points, [&](const Point& at) { return at.nm >= first && at.nm <= last; });
  return draft;
}

template <class Member, class Value>
Draft with(Draft draft, Member member, Value value) {
  draft.*member = value;
  return draft;
}

class AuditTest : public AuditFixture {
 protected:
  using Files = std::vector<std::pair<std::string, std::string>>;

  /// What is found where these panes lie beside three good ones.
  std::vector<Finding> findingsOf(const Files& bad) {
    Files files{{"good1.txt", clear(1).text()},
                {"good2.txt", clear(2).text()},
                {"metal.txt", coated().text()}};
    files.insert(files.end(), bad.begin(), bad.end());
    return audit(texts(TextFileKind::panes, files));
  }
  Lines found(const Files& bad) { return linesOf(findingsOf(bad)); }

  /// Whether a rule finds a fault of a pane that lies by itself.
  bool finds(const char* rule, const Draft& draft) {
    return !audit(texts(TextFileKind::panes, {{"a.txt", draft.text()}}), {.rules = {rule}}).empty();
  }
};

TEST_F(AuditTest, GoodPanesHaveNoFindings) {
  EXPECT_THAT(found({}), IsEmpty());
  EXPECT_EQ(result.summary(), "3 records: no errors, no warnings, no notes.");
  EXPECT_EQ(ui.log, (Lines{"progress: Auditing records...", "status: Auditing good1.txt...",
                           "status: Auditing good2.txt...", "status: Auditing metal.txt...",
                           "status: Ready", "progress ends"}));
  EXPECT_EQ(ui.steps.back(), std::pair(3, 3));
}

TEST_F(AuditTest, EachFaultOfAPaneIsFoundByItsRuleOnly) {
  const auto percent = [](Point& at) { at = {at.nm, 100 * at.T, 100 * at.Rf, 100 * at.Rb}; };
  const auto micron = [](Point& at) { at.nm /= 1000; };
  const auto dimmer = [](Point& at) { at.T *= 0.9; };
  Draft unordered = clear();
  std::swap(unordered.points[20], unordered.points[40]);
  Draft doubled = clear();
  doubled.points.insert(doubled.points.begin() + 50, doubled.points[50]);
  Draft infrared = with(with(clear(), &Draft::type, "Coated"), &Draft::side, "Both");
  for (double nm = 3000; nm <= 25000; nm += 500) infrared.points.push_back({nm, 0, 0.1, 0.1});
  infrared.front = infrared.back = 0.5;
  Draft unstated = clear();
  for (double nm = 2700; nm <= 50000; nm += 100) unstated.points.push_back({nm, 0, 0.1, 0.6});
  unstated.front = unstated.back = 0;
  const struct {
    const char* finding;
    std::string text;
  } cases[] = {
      {"unreadable ||||Invalid unit\nbad.txt, line 1, column 1: 'no'. A pane file begins with SI "
       "or IP, Microns or Nanometers, the thickness and the conductivity: SI Microns 4.0 1.0.",
       "no pane"},
      {"units 0|Tf, Rf, Rb|80|fractions|Values are percent where fractions belong",
       changed(clear(), 0, 9999, percent).text()},
      {"units 0|Tf, Rf, Rb|1.9|fractions|Values are percent where fractions belong",
       changed(clear(), 0, 9999,
               [](Point& at) {
                 at = {at.nm, 0, 1.9, 0.9};
               })
           .text()},
      {"units 0|wavelength|2500 µm|100 µm at most|Wavelengths are as long as if nanometres were "
       "taken for microns",
       with(clear(), &Draft::unit, "Microns").text()},
      {"units 0|wavelength|0.3 nm|50 nm at least|Wavelengths are as short as if microns were taken "
       "for nanometres",
       changed(clear(), 0, 9999, micron).text()},
      {"range 0|Tf|1.1|0 to 1|Tf is no fraction at 1540 nm, and at 176 more wavelengths",
       changed(clear(), 0, 9999, [](Point& at) { at.T += 0.3, at.Rf = at.Rb = 0; }).text()},
      {"near-range 0|Tf|1.009|0 to 1|Tf is just outside of 0 to 1 at 300 nm, and at 440 more "
       "wavelengths",
       changed(clear(), 0, 9999, [](Point& at) { at.T = 1.009 - at.nm / 1e6, at.Rf = at.Rb = 0; })
           .text()},
      {"energy 0|Tf + Rf|1.164|1 at most|Transmittance and reflectance add up to more than 1 at "
       "1490 nm, and at 317 more wavelengths",
       changed(clear(), 0, 9999, [](Point& at) { at.Rf += 0.3; }).text()},
      {"jump 0|Rb|0.2092||Rb jumps and comes back at 655 nm",
       changed(clear(), 655, 655, [](Point& at) { at.Rb += 0.1; }).text()},
      {"jump 0|Rf|0.1357||Rf jumps and comes back at 300 nm",
       changed(clear(), 300, 300, [](Point& at) { at.Rf += 0.07; }).text()},
      {"jump 0|Rb|0.1126||Rb jumps and comes back at 2495 nm",
       changed(clear(), 2495, 2495, [](Point& at) { at.Rb += 0.04; }).text()},
      {"detector-step 0|Tf|0.03127|no step|Tf goes on at another level at 860 nm, as where a "
       "spectrometer changes its detector",
       changed(clear(), 860, 9999, [](Point& at) { at.T += 0.03; }).text()},
      {"constant 0|Tf, Rf, Rb|0.7||All curves stand still from 450 nm to 600 nm",
       changed(clear(), 450, 600,
               [](Point& at) {
                 at = {at.nm, 0.7, 0.1, 0.1};
               })
           .text()},
      {"metal-infrared 0|Tf|0.5977|0.4354 at most|With an emissivity of 0.05 transmittance falls "
       "in the infrared, but it is 0.4354 from 1000 to 1300 nm and 0.5977 from 2000 to 2500 nm",
       changed(coated(), 1500, 9999,
               [](Point& at) { at.T += (at.nm - 1500) / 1400, at.Rf = at.Rb = 0.1; })
           .text()},
      {"gaps 0|wavelength|20 nm||Points are missing: nothing between 600 and 620 nm",
       without(clear(), 601, 619).text()},
      {"coarse 0|wavelength|20 nm||The steps are wide: nothing between 300 and 320 nm, 320 and 340 "
       "nm, 340 and 360 nm, and in 26 more gaps",
       Draft{.points = glass(9, 20)}.text()},
      {"doubled 0|wavelength|550 nm|one point at a wavelength|There are several points at 550 nm",
       doubled.text()},
      {"order 0|wavelength|405 nm|more than 500 nm|Wavelengths are in no order", unordered.text()},
      {"too-short 0|wavelength|300 nm to 780 nm|90 % of the weight|There are no solar values: the "
       "spectrum covers 60.4 % of the weight; 780 to 2500 nm are missing",
       without(clear(), 781, 9999).text()},
      {"emissivity |emissivity_front|1.2|0 to 1|emissivity_front is 1.2, which is no fraction",
       with(clear(), &Draft::front, 1.2).text()},
      {"emissivity-infrared 0|emissivity_front|0.5|0.8463|The emissivity of the front is 0.5, but "
       "0.8463 by the spectrum beyond 5 µm\nemissivity-infrared 0|emissivity_back|0.5|0.8463|The "
       "emissivity of the back is 0.5, but 0.8463 by the spectrum beyond 5 µm",
       infrared.text()},
      {"exchanged |emissivity_front|0.84|0.05|The coating is said to be on the front, but it is "
       "the back that has a low emissivity",
       with(changed(coated(), 0, 9999, dimmer), &Draft::side, "Front").text()},
      {"exchanged |emissivity_back|0.84|0.05|The coating is said to be on the back, but it is the "
       "front that has a low emissivity",
       with(with(changed(coated(), 0, 9999, dimmer), &Draft::front, 0.05), &Draft::back, 0.84)
           .text()},
      {"uncoated-low-e |emissivity_back|0.4|0.7 at least|The back has no coating, but an "
       "emissivity of 0.4",
       with(clear(), &Draft::back, 0.4).text()},
      {"uncoated-low-e |emissivity_back|0.3806|0.7 at least|The back has no coating, but an "
       "emissivity of 0.3806",
       unstated.text()},
      {"thickness |thickness|0.25 mm|0.3 to 100 mm|A thickness of 0.25 mm is none of glass",
       with(clear(), &Draft::thickness, 0.25).text()},
      {"conductivity |conductivity|20 W/(m·K)|0.1 to 2 W/(m·K)|A conductivity of 20 W/(m·K) is "
       "none of glass",
       with(clear(), &Draft::conductivity, 20.0).text()},
      {"missing-data |conductivity|||There is no conductivity",
       with(clear(), &Draft::conductivity, 0.0).text()},
      {"unknown-maker |supplier|unknown||Nobody knows who makes it",
       with(clear(), &Draft::maker, "unknown").text()},
      {"duplicates 0|spectrum|good1.txt||The spectrum is that of good1.txt (record good1.txt)",
       clear(1).text()},
      {"duplicates 0|spectrum|good2.txt||The spectrum is, within 0.0001, that of good2.txt (record "
       "good2.txt)",
       changed(clear(2), 0, 9999, [](Point& at) { at.T += 1e-4; }).text()},
      {"duplicates 0|spectrum|good2.txt||The spectrum is, within 5e-05, that of good2.txt (record "
       "good2.txt)",
       changed(clear(2), 0, 9999, [](Point& at) { at.T += 5e-5; }).text()},
  };
  const auto expectFinding = [&](const std::string& finding, const std::string& text) {
    Lines whole;
    for (const Finding& each : findingsOf({{"bad.txt", text}})) whole.push_back(wholeOf(each));
    EXPECT_EQ(fmt::format("{}", fmt::join(whole, "\n")), finding);
  };
  for (const auto& [finding, text] : cases) expectFinding(finding, text);
  for (const char* maker :
       {"kestrel-BAY", "Kestrel Báy", "Kestral Bay", "Kesrel Bay", "Kestrép Bay", "Kestrell Bay"}) {
    expectFinding(fmt::format("similar-makers |supplier|{0}|Kestrel Bay|The supplier \"{0}\" is "
                              "nearly \"Kestrel Bay\", which is there, too",
                              maker),
                  with(clear(), &Draft::maker, maker).text());
  }
}

/// Curves that rise evenly.
Draft ramp(double step = 5) {
  Draft draft;
  for (double nm = 300; nm <= 2500; nm += step) {
    draft.points.push_back({nm, 0.5 + nm / 1e5, 0.1 + nm / 1e5, 0.2 + nm / 1e5});
  }
  return draft;
}

Draft raised(double first, double last, double by) {
  return changed(ramp(), first, last, [by](Point& at) { at.T += by; });
}

Draft even(double first, double last, double T, double Rf, double step = 5) {
  return changed(ramp(step), first, last, [&](Point& at) { at = {at.nm, T, Rf, 0.1}; });
}

Draft behindMetal(double emissivity, double rise) {
  return changed(with(ramp(), &Draft::back, emissivity), 1000, 9999,
                 [&](Point& at) { at.T = at.nm < 1500 ? 0.5 : 0.5 + rise; });
}

Draft thick(const char* type, double thickness) {
  return with(with(ramp(), &Draft::type, type), &Draft::thickness, thickness);
}

Draft onFront(double front, double back) {
  Draft draft = with(with(ramp(), &Draft::type, "Coated"), &Draft::side, "Front");
  draft.front = front;
  draft.back = back;
  return draft;
}

Draft extended(double nm) {
  Draft draft = ramp();
  draft.points.insert(nm < 300 ? draft.points.begin() : draft.points.end(), {nm, 0.5, 0.1, 0.1});
  return draft;
}

Draft spiked(double step) {
  Draft draft = ramp(step);
  draft.points[10].T += 0.1;
  return draft;
}

/// A few points, the last of which is far off.
Draft raisedEnd(std::size_t count, double step) {
  Draft draft = ramp(step);
  draft.points.resize(count);
  draft.points.back().T += 0.1;
  return draft;
}

/// The first point is far off, but so is the curve behind it.
Draft bent(double nm) {
  return changed(raised(300, 300, 0.07), nm, 9999, [](Point& at) { at.T += 0.018; });
}

Draft moved(double to) {
  return changed(ramp(), 605, 605, [to](Point& at) { at.nm = to; });
}

/// With other steps to 400 nm, to 1000 nm, and beyond.
Draft stepped(double first, double second, double third) {
  Draft draft = without(ramp(), 300, 9999);
  for (double nm = 300; nm <= 2500; nm += nm < 400 ? first : nm < 1000 ? second : third) {
    draft.points.push_back({nm, 0.5 + nm / 1e5, 0.1, 0.1});
  }
  return draft;
}

TEST_F(AuditTest, AFaultBeginsBeyondItsBound) {
  const auto conducting = [](double value) { return with(ramp(), &Draft::conductivity, value); };
  const auto emitting = [](double value) { return with(ramp(), &Draft::back, value); };
  const struct {
    const char* rule;
    Draft good;
    Draft bad;
  } cases[] = {
      {"jump", raised(655, 655, 0.0199), raised(655, 655, 0.0201)},
      {"jump", raised(310, 310, -0.0199), raised(310, 310, -0.0201)},
      {"jump", raised(305, 305, 0.0199), raised(305, 305, 0.0201)},
      {"jump", raised(2495, 2495, 0.0199), raised(2495, 2495, 0.0201)},
      {"jump", raised(2490, 2490, 0.0199), raised(2490, 2490, 0.0201)},
      {"jump", raised(300, 300, 0.0499), raised(300, 300, 0.0501)},
      {"jump", raised(2500, 2500, -0.0499), raised(2500, 2500, -0.0501)},
      {"jump", spiked(100.5), spiked(100)},
      {"jump", raisedEnd(5, 101), raisedEnd(5, 100)},
      {"jump", raisedEnd(4, 50), raisedEnd(5, 50)},
      {"jump", bent(315), raised(300, 300, 0.07)},
      {"jump", bent(320), raised(300, 300, 0.07)},
      {"detector-step", raised(860, 9999, 0.0099), raised(860, 9999, 0.01)},
      {"detector-step", changed(raised(860, 9999, 0.02), 865, 865, [](Point& at) { at.nm += 0.1; }),
       raised(860, 9999, 0.02)},
      {"detector-step", raised(700, 9999, 0.02), raised(705, 9999, 0.02)},
      {"detector-step", raised(1110, 9999, 0.02), raised(1105, 9999, 0.02)},
      {"constant", even(450, 545, 0.5, 0.1), even(450, 550, 0.5, 0.1)},
      {"constant", even(450, 550, 0.5, 0.1, 12.5), even(450, 562.5, 0.5, 0.1, 12.5)},
      {"constant", even(450, 600, 0, 0.1), even(300, 400, 0.5, 0.1)},
      {"energy", even(300, 9999, 0.9, 0.1099), even(300, 9999, 0.9, 0.1101)},
      {"energy", even(300, 9999, 1.0101, 0), even(655, 655, 0.5, 0.5101)},
      {"range", even(300, 9999, 1.0099, 0), even(300, 9999, 1.0101, 0)},
      {"near-range", even(300, 9999, 1.0000005, 0), even(300, 9999, 1.000002, 0)},
      {"near-range", even(300, 9999, 1.0101, 0), even(300, 9999, 1.0099, 0)},
      {"units", even(300, 9999, 1.19, 0), even(300, 9999, 1.21, 0)},
      {"units", even(300, 1395, 1.21, 0), even(300, 1400, 1.21, 0)},
      {"units", extended(100'000), extended(100'001)},
      {"units", extended(50), extended(49.9)},
      {"gaps", moved(607.4), moved(607.6)},
      {"coarse", stepped(5, 10, 50), stepped(6.25, 10, 50)},
      {"coarse", stepped(5, 10, 50), stepped(5, 12, 50)},
      {"coarse", stepped(5, 10, 50), stepped(5, 10, 60)},
      {"too-short", without(ramp(), 751, 759), without(ramp(), 651, 9999)},
      {"order", without(ramp(), 301, 9999),
       [] {
         Draft draft = ramp();
         std::swap(draft.points[0], draft.points[1]);
         return draft;
       }()},
      {"metal-infrared", behindMetal(0.3, 0.0199), behindMetal(0.3, 0.0201)},
      {"metal-infrared", behindMetal(0.31, 0.3), behindMetal(0.3, 0.3)},
      {"metal-infrared", without(behindMetal(0.3, 0.3), 1000, 1300), behindMetal(0.3, 0.3)},
      {"thickness", thick("Monolithic", 0.3), thick("Monolithic", 0.29)},
      {"thickness", thick("Monolithic", 100), thick("Monolithic", 100.1)},
      {"thickness", thick("Film", 0.01), thick("Film", 0.009)},
      {"thickness", thick("Film", 10), thick("Film", 10.1)},
      {"thickness", thick("Interlayer", 10), thick("Interlayer", 10.1)},
      {"thickness", thick("Unknown", 0.01), thick("Unknown", 0.009)},
      {"thickness", thick("Unknown", 100), thick("Unknown", 100.1)},
      {"conductivity", conducting(0.1), conducting(0.09)},
      {"conductivity", conducting(2), conducting(2.1)},
      {"uncoated-low-e", emitting(0.7), emitting(0.69)},
      {"uncoated-low-e", with(ramp(), &Draft::front, 0.7), with(ramp(), &Draft::front, 0.4)},
      {"emissivity", emitting(1), emitting(1.001)},
      {"exchanged", onFront(0.84, 0.5), onFront(0.84, 0.49)},
      {"exchanged", onFront(0.69, 0.1), onFront(0.7, 0.1)},
  };
  for (const auto& [rule, good, bad] : cases) {
    EXPECT_FALSE(finds(rule, good)) << rule << good.text();
    EXPECT_TRUE(finds(rule, bad)) << rule << bad.text();
  }
}

TEST_F(AuditTest, WhatOnlyLooksLikeAFaultIsLeftAlone) {
  Draft falling = clear(4);
  std::ranges::reverse(falling.points);
  const double noise = 4e-4;
  const Draft noisy =
      changed(clear(5), 0, 9999, [&](Point& at) { at.T += noise * std::sin(at.nm * at.nm); });
  Draft infraredApart = without(clear(8), 2451, 9999);
  for (double nm = 5000; nm <= 50000; nm += 500) infraredApart.points.push_back({nm, 0, 0.1, 0.1});
  EXPECT_THAT(
      found({{"falling.txt", falling.text()},
             {"apart-infrared.txt", infraredApart.text()},
             {"noisy.txt", noisy.text()},
             {"apart.txt", changed(clear(1), 0, 9999, [](Point& at) { at.T += 2e-4; }).text()},
             {"serial.txt", with(clear(6), &Draft::maker, "Kestrel Bay 2").text()},
             {"letter.txt", with(clear(7), &Draft::maker, "Kestrel Bay B").text()}}),
      IsEmpty());
}

TEST_F(AuditTest, AProductOfAShadingIsNoFault) {
  std::filesystem::create_directory(folder.path() / "products");
  folder.write("products/blind.json", R"({"type": "SHADING", "name": "Blind"})");
  folder.write("products/none.json", R"({"type": "GLAZING", "name": "None"})");
  EXPECT_THAT(linesOf(audit(opener.openAny((folder.path() / "products").string()))),
              ElementsAre("not-read blind.json", "unreadable none.json"));
}

TEST_F(AuditTest, OneSlippedDecimalIsFoundAtItsPlace) {
  const auto slipped = changed(clear(), 655, 655, [](Point& at) { at.T *= 10; });
  EXPECT_THAT(found({{"bad.txt", slipped.text()}}), ElementsAre("jump bad.txt", "range bad.txt"));
}

TEST_F(AuditTest, NamesThatOneLetterTellsApartAreNoSlips) {
  const char* const makers[] = {
      "Series I",    "Series II",    "Series III",  "Series VIII", "Series VII",  "Pilken UK",
      "Pilken US",   "Guardi LU",    "Guardi LE",   "Glas A West", "Glas B West", "Float 3.2 mm",
      "Float 32 mm", "Float 3,2 cm", "Float 32 cm", "Ferna Low-E", "Ferna Low-E+"};
  std::vector<std::pair<std::string, std::string>> files;
  for (int number = 11; const char* maker : makers) {
    files.emplace_back(fmt::format("{}.txt", number),
                       with(clear(number), &Draft::maker, maker).text());
    ++number;
  }
  EXPECT_THAT(found(files), IsEmpty());
  EXPECT_THAT(
      found({{"1", with(clear(11), &Draft::maker, "Glas 7 West").text()},
             {"2", with(clear(12), &Draft::maker, "Glas7 West").text()},
             {"3", with(clear(13), &Draft::maker, "Glas.7 West").text()},
             {"4", with(clear(14), &Draft::maker, "Glas 7 Wust").text()},
             {"5", with(clear(15), &Draft::maker, "Glas 7 Wes").text()}}),
      ElementsAre("similar-makers 1", "similar-makers 2", "similar-makers 3", "similar-makers 4"));
}

TEST_F(AuditTest, SpectraOfAFewPointsAreNoDuplicates) {
  const auto text = [](std::size_t count) { return raisedEnd(count, 20).text(); };
  EXPECT_THAT(
      linesOf(audit(texts(TextFileKind::panes,
                          {{"4a", text(4)}, {"4b", text(4)}, {"5a", text(5)}, {"5b", text(5)}}),
                    {.rules = {"duplicates"}})),
      ElementsAre("duplicates 5b"));
}

TEST_F(AuditTest, SpectraOfShadingsAreLookedAtToo) {
  const auto screen = [](double scattered) {
    std::string text =
        "{ Product Name: Screen }\n{ Manufacturer: Maker }\n{ Units: Nanometers }\n"
        "{ Thickness: 0.5 }\n{ Conductivity: 0.2 }\n{ Emissivity front: 0.8 }\n"
        "{ Emissivity back: 0.9 }\n";
    for (int nm = 300; nm <= 2500; nm += 5) {
      text += fmt::format("{} 0.1 0.1 0.05 0.05 {} 0.2 0.3 0.3\n", nm, scattered + nm / 1e5);
    }
    return text;
  };
  const auto findings =
      audit(texts(TextFileKind::shadings, {{"bad.txt", screen(0.75)}, {"good.txt", screen(0.25)}}));
  EXPECT_THAT(linesOf(findings), ElementsAre("absorptance bad.txt", "energy bad.txt"));
  EXPECT_EQ(findings.front().set, "shadings");
}

TEST_F(AuditTest, AFindingTellsThePlace) {
  const auto bad = changed(clear(), 655, 655, [](Point& at) { at.Rb += 0.1; });
  const auto findings = audit(texts(TextFileKind::panes, {{"bad.txt", bad.text()}}));
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings.front().set + ' ' + findings.front().name, "panes bad.txt");
  EXPECT_EQ(findings.front().fault.wavelength, 655);
  EXPECT_EQ(result.summary(), "1 record: no errors, 1 warning, no notes.");
}

TEST_F(AuditTest, RulesAreChosenByNameAndSeverity) {
  Draft bad = without(with(clear(), &Draft::maker, ""), 601, 619);
  bad.front = 1.2;
  const auto node = texts(TextFileKind::panes, {{"bad.txt", bad.text()}});
  const auto rulesOf = [&](const AuditOptions& options) { return linesOf(audit(node, options)); };
  EXPECT_THAT(rulesOf({}),
              ElementsAre("emissivity bad.txt", "gaps bad.txt", "unknown-maker bad.txt"));
  EXPECT_THAT(rulesOf({.rules = {"gaps", "jump"}}), ElementsAre("gaps bad.txt"));
  EXPECT_THAT(rulesOf({.without = {"gaps", "emissivity"}}), ElementsAre("unknown-maker bad.txt"));
  EXPECT_THAT(rulesOf({.least = commands::audit::Severity::error}),
              ElementsAre("emissivity bad.txt"));
  const auto refusal = [&](const AuditOptions& options) {
    return raisedBy([&] { audit(node, options); }).description;
  };
  EXPECT_NE(refusal({.rules = {"gap"}}).find("gaps"), std::string::npos);
  EXPECT_NE(refusal({.rules = {"orphans"}}).find("databases"), std::string::npos);
  EXPECT_NE(
      refusal({.rules = {"constant"}, .least = commands::audit::Severity::error}).find("notes"),
      std::string::npos);
}

TEST_F(AuditTest, ASpectrumOfSeveralAnglesIsOnlyNoted) {
  ORV_NEEDS_CORPUS();
  const auto path = folder.path() / "old.mdb";
  std::filesystem::copy_file(corpusFolder() / "sources" / "orvdata-2.0.1.mdb", path);
  auto lines = linesOf(audit(opener.openAny(path.string())));
  std::erase_if(lines, [](const std::string& line) { return !line.ends_with(" 5"); });
  EXPECT_THAT(lines, ElementsAre("mixed-angles 5"));
}

/// Published measurements have few findings.
TEST_F(AuditTest, MeasuredPanesAndTheExamplesAreGood) {
  ORV_NEEDS_CORPUS();
  EXPECT_THAT(linesOf(audit(opener.openAny((corpusFolder() / "panes").string()))),
              ElementsAre("detector-step CLEAR5.LOF"));
  audit(opener.openAny((corpusFolder() / "products").string()), {.without = {"unreadable"}});
  EXPECT_EQ(result.summary(), "9 records: no errors, 2 warnings, 2 notes.");
}

}  // namespace
}  // namespace orv::test
