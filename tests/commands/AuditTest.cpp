// Each rule of an audit finds its fault at its record, and nothing else is said of the good ones.
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

#include "commands/CommandsTest.h"
#include "commands/audit/Audit.h"
#include "commands/audit/SourceRules.h"
#include "model/Raised.h"

namespace orv::test {
namespace {

using commands::RecordKind;
using commands::TextFileKind;
using commands::audit::AuditOptions;
using commands::audit::Finding;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Lines = std::vector<std::string>;

struct Point {
  double nm;
  double T;
  double Rf;
  double Rb;
};
using Points = std::vector<Point>;

/// Smooth curves from 300 to 2500 nm, others for each number.
Points glass(int number, double step = 5) {
  Points points;
  for (double nm = 300; nm <= 2500; nm += step) {
    points.push_back({nm, 0.7 + 0.1 * std::sin(nm / 300 + number),
                      0.08 + 0.02 * std::cos(nm / 250 + number),
                      0.09 + 0.02 * std::cos(nm / 200 + number)});
  }
  return points;
}

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

class AuditTest : public CommandsTest {
 protected:
  std::vector<Finding> audit(const Node& source, const AuditOptions& options = {}) {
    std::vector<Finding> findings;
    result = commands::audit::auditSource(session, source, {}, options,
                                          [&](const Finding& each) { findings.push_back(each); });
    return findings;
  }

  /// "rule identifier", each once.
  static Lines linesOf(const std::vector<Finding>& findings) {
    Lines lines;
    for (const Finding& each : findings) {
      lines.push_back(std::string(each.rule) + ' ' + each.identifier);
    }
    std::ranges::sort(lines);
    lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
    return lines;
  }

  /// "rule angle|field|value|expected|message"
  static std::string wholeOf(const Finding& each) {
    const auto& fault = each.fault;
    return fmt::format("{} {}|{}|{}|{}|{}", each.rule,
                       fault.angle ? std::to_string(*fault.angle) : "", fault.field, fault.value,
                       fault.expected, fault.message);
  }

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

  commands::audit::AuditResult result;
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
      {"jump", bent(315), raised(300, 300, 0.07)},
      {"jump", bent(320), raised(300, 300, 0.07)},
      {"detector-step", raised(860, 9999, 0.0099), raised(860, 9999, 0.01)},
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

/// Panes of a database: "good" from 1 on, with the values that their spectra have.
class AuditDatabaseTest : public AuditTest {
 protected:
  static std::shared_ptr<GlazingData> pane(const std::string& name, int number,
                                           std::int16_t angle = 0) {
    auto pane = makePane(name, angle);
    pane->group("Demonstration");
    pane->ORV_Emissivity_back(0.84);
    std::vector<std::array<float, 5>> points;
    for (const auto& [nm, T, Rf, Rb] : glass(number)) {
      points.push_back({static_cast<float>(nm / 1000), static_cast<float>(T), static_cast<float>(T),
                        static_cast<float>(Rf), static_cast<float>(Rb)});
    }
    pane->SpectralData(spectrumOf(points));
    optics::store(optics::Integrator(optics::Standard::en410).integrate(*pane), *pane);
    return pane;
  }

  void insert(const std::shared_ptr<GlazingData>& each) {
    session.database.InsertPane(*each, *database->ADOConnection());
  }

  void SetUp() override {
    for (int i = 1; i <= 3; ++i) insert(pane("good" + std::to_string(i), i));
    ASSERT_THAT(found(), IsEmpty());
  }

  Lines found() { return linesOf(audit(database)); }

  /// All that is found, each with its record.
  Lines whole(const AuditOptions& options = {}) {
    Lines lines;
    for (const Finding& each : audit(database, options)) {
      lines.push_back(
          fmt::format("{} {} {}: {}", each.set, each.identifier, each.name, wholeOf(each)));
    }
    std::ranges::sort(lines);
    return lines;
  }

  void set(const std::string& table, const std::string& column, const store::Value& value,
           const std::string& where) {
    setAll(dc(), table, column, value, where);
  }
  store::Connection& dc() { return *database->ADOConnection(); }

  Node database = newDatabase();
};

TEST_F(AuditDatabaseTest, FaultsOfRowsAreFoundAtTheirPanes) {
  set("Pane_integrated_data", "transmission_visual_outdoor", 0.1, "PaneID = 1");
  set("Pane", "emission_IR_outdoor", -0.5, "PaneID = 2");
  set("Pane_spectral_data", "reflection_indoor", -0.25, "PaneID = 3 AND wavelength = 500");
  set("Pane_integrated_data", "reflection_solar_indoor", 0.5, "PaneID = 1");
  EXPECT_EQ(
      whole(),
      (Lines{"panes 1 good1: absorptance 0|Tb_sol + Rb_sol|1.194|1 at most|The stored solar "
             "absorptance is -0.1942",
             "panes 1 good1: stored-values 0|Tf_vis|0.1|0.7279|The visible transmittance front is "
             "0.1, but 0.7279 by the spectrum, whatever the standard; 2 values are off",
             "panes 2 good2: emissivity |emissivity_front|-0.5|0 to 1|emissivity_front is -0.5, "
             "which is no fraction",
             "panes 3 good3: range 0|Rb|-0.25|0 to 1|Rb is no fraction at 500 nm, so that the pane "
             "cannot be read"}));
  EXPECT_THAT(linesOf(audit(database, {.without = {"range"}})),
              ElementsAre("absorptance 1", "emissivity 2", "stored-values 1", "unreadable 3"));
}

TEST_F(AuditDatabaseTest, ValuesThatAreNoneAreFound) {
  const auto black = pane("black", 4);
  for (const auto& column : kIntegratedColumns) (black.get()->*column.pane)(0);
  insert(black);
  const auto bright = pane("bright", 5);
  bright->spectral_pane(false);
  bright->SpectralData(nullptr);
  bright->Precalc_Rfsol(0.9F);
  insert(bright);
  EXPECT_EQ(whole(), (Lines{"panes 4 black: missing-values 0|Tf_vis|0|0.659|All integrated values "
                            "are 0, though there is a spectrum",
                            "panes 5 bright: absorptance 0|Tf_sol + Rf_sol|1.647|1 at most|The "
                            "stored solar absorptance is -0.647"}));
}

TEST_F(AuditDatabaseTest, SpectraOfTwoPanesAreToldOnceWithTheirAngles) {
  insert(pane("good1", 1, 60));
  insert(pane("copy", 1));
  insert(pane("copy", 1, 60));
  const auto findings = audit(database);
  ASSERT_THAT(linesOf(findings), ElementsAre("duplicates 4"));
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings.front().fault.message,
            "The spectra are those of good1 (record 1), at 0, 60 degrees");

  // Products tell transmittance from the back, too, by which alone they may differ.
  commands::audit::SourceFacts facts;
  for (const float Tb : {0.5F, 0.5F, 0.7F}) {
    const auto name = std::to_string(facts.records.size());
    facts.spectra.push_back({facts.records.size(), 0, 0, {0.5F, 0.1F, 0.1F, Tb}});
    facts.records.push_back({.kind = RecordKind::panes, .identifier = name, .name = name});
  }
  EXPECT_EQ(commands::audit::duplicates(facts).size(), 1U);
}

TEST_F(AuditDatabaseTest, FlagsAndAnglesThatContradictTheDataAreFound) {
  set("Pane", "spectral_pane", false, "PaneID = 1");
  set("Pane_integrated_data", "angle", 60, "PaneID = 2");
  insert(pane("grazing", 4, 120));
  auto empty = pane("empty", 5);
  empty->SpectralData(nullptr);
  insert(empty);
  EXPECT_EQ(whole(),
            (Lines{"panes 1 good1: flags |spectral_pane|False|True|The pane is said not to be "
                   "spectral, but it has a spectrum",
                   "panes 2 good2: half-angles 0|angle|0||At 0 degrees there is a spectrum, but no "
                   "row of integrated values",
                   "panes 2 good2: half-angles 60|angle|60||At 60 degrees there are integrated "
                   "values, but no spectrum",
                   "panes 4 grazing: angle 120|angle|120|0 to 90|At 120 degrees nothing comes in",
                   "panes 5 empty: flags |spectral_pane|True|False|The pane is said to be "
                   "spectral, but it has no spectrum"}));
}

TEST_F(AuditDatabaseTest, FaultsOfNamesAreFound) {
  set("Pane", "name", " ", "PaneID = 1");
  set("Pane", "name", "GOOD3", "PaneID = 2");
  auto other = pane("other", 4);
  other->group("demonstrations");
  insert(other);
  FrameDataClass frame;
  frame.name("frame");
  frame.group("Demonstration");
  frame.u_value(2);
  frame.width(0.06);
  session.database.InsertFrame(frame, dc());
  EXPECT_EQ(whole(),
            (Lines{"frames 1 frame: unknown-maker |supplier|Unknown||Nobody knows who makes it",
                   "panes 1  : empty-name |name|||The name is empty",
                   "panes 3 good3: same-name |name|good3||The name is that of the record 2, too in "
                   "the group Demonstration",
                   "panes 4 other: similar-groups |group|demonstrations|Demonstration|The group "
                   "\"demonstrations\" is nearly \"Demonstration\", which is there, too"}));
}

TEST_F(AuditDatabaseTest, RowsWithoutTheirLikeAreFound) {
  addRow(dc(), "Groups", {{"GroupName", "Nothing in it"}});
  addRow(dc(), "Shading_spectral_data", {{"Shading_ID", 12}});
  set("Pane_spectral_data", "PaneID", 99, "PaneID = 2 AND wavelength > 2480");
  set("Pane", "supplierID", 77, "PaneID = 3");
  addRow(dc(), "Suppliers", {{"SupplierName", "Nobody"}});
  addRow(dc(), "FrameTypes", {{"FrameTypeName", "Ice"}});
  EXPECT_EQ(
      whole(),
      (Lines{"FrameTypes 1 Ice: unused |FrameTypeName|Ice||No record uses it",
             "Groups 2 Nothing in it: unused |GroupName|Nothing in it||No record uses it",
             "Pane_spectral_data 99 : orphans |PaneID|99||Rows of a pane that is gone: 4",
             "Shading_spectral_data 12 : orphans |Shading_ID|12||Rows of a shading that is gone: 1",
             "Suppliers 2 Nobody: unused |SupplierName|Nobody||No record uses it",
             "panes 3 good3: dangling |supplierID|77||Suppliers has no row 77",
             "panes 3 good3: unknown-maker |supplier|||Nobody knows who makes it"}));

  const auto ofKind = [&](RecordKind kind) {
    std::vector<Finding> some;
    commands::audit::auditSource(session, database, kind, {},
                                 [&](const Finding& each) { some.push_back(each); });
    return linesOf(some);
  };
  EXPECT_THAT(ofKind(RecordKind::panes),
              ElementsAre("dangling 3", "orphans 99", "unknown-maker 3", "unused 2"));
  EXPECT_THAT(ofKind(RecordKind::shadings), ElementsAre("orphans 12", "unused 2"));

  const auto ofRecords = [&](const Lines& identifiers, const char* rule) {
    std::vector<Finding> some;
    commands::audit::auditRecords(
        session, select(recordSet(database, RecordKind::panes), identifiers), {.rules = {rule}},
        [&](const Finding& each) { some.push_back(each); });
    return linesOf(some);
  };
  EXPECT_THAT(ofRecords({"1", "3"}, "dangling"), ElementsAre("dangling 3"));
  EXPECT_THAT(ofRecords({"1", "2"}, "dangling"), IsEmpty());
  EXPECT_NE(raisedBy([&] { ofRecords({"1"}, "orphans"); }).description.find("all records"),
            std::string::npos);
}

TEST_F(AuditDatabaseTest, RecordsFarOutsideTheirGroupAreFound) {
  for (int i = 4; i <= 14; ++i) insert(pane("good" + std::to_string(i), i));
  auto thick = pane("thick", 15);
  thick->Thickness(60);
  insert(thick);
  for (int i = 16; i <= 21; ++i) {
    auto foil = pane("foil" + std::to_string(i), i);
    foil->group("Foils");
    foil->Thickness(i == 19 ? 1.5 : 5);
    insert(foil);
  }
  EXPECT_EQ(whole(), (Lines{"panes 15 thick: outliers |thickness|60 mm|about 5.7 mm|The thickness "
                            "is far from that of the others of the group Demonstration",
                            "panes 19 foil19: outliers |thickness|1.5 mm|about 5 mm|The thickness "
                            "is far from that of the others of the group Foils"}));
}

TEST_F(AuditDatabaseTest, SomeRecordsAreAuditedByThemselves) {
  set("Pane", "emission_IR_outdoor", 1.5, "PaneID > 1");
  addRow(dc(), "Groups", {{"GroupName", "Nothing in it"}});
  std::vector<Finding> findings;
  const auto some = select(recordSet(database, RecordKind::panes), {"1", "3", "8"});
  result = commands::audit::auditRecords(session, some, {},
                                         [&](const Finding& each) { findings.push_back(each); });
  EXPECT_THAT(linesOf(findings), ElementsAre("emissivity 3", "unreadable 8"));
  EXPECT_EQ(result.records, 3);

  int asked = 0;
  ui.cancelWhen = [&] { return ++asked == 2; };
  EXPECT_THAT(found(), ElementsAre("emissivity 2"));
  EXPECT_EQ(result.summary(), "2 records, then cancelled: 1 error, no warnings, no notes.");
}

TEST_F(AuditDatabaseTest, FaultsOfShadingsAndFramesAreFound) {
  using Change = void (*)(ShadingDataClass&);
  const std::pair<const char*, Change> ofShadings[] = {
      {"", [](auto&) {}},
      // On the good side of their bounds.
      {"",
       [](auto& s) {
         s.Sol_refl_slat_surf_ind_BB(0.35), s.Sol_transm_slat_surf(0.01), s.permeability(1);
         s.conduction(0.02), s.transmission_IR_indoor(0.26), s.typeID(4), s.angle(-90);
         s.slat_length(3), s.slat_distance(6), s.slat_curvature(1.5);
         s.integrated({{.angle = 0},
                       {.angle = 90,
                        .reflection_visual_outdoor = 0.5,
                        .transmission_visual_outdoor = 0.51}});
       }},
      {"", [](auto& s) { s.conduction(430), s.slat_distance(50), s.slat_curvature(12.5); }},
      {"", [](auto& s) { s.slat_length(1000); }},
      {"", [](auto& s) { s.slat_distance(0), s.slat_length(0), s.thickness(100); }},
      {"absorptance |Sol_refl_slat_surf_ind|1.05|1 at most|Sol_refl_slat_surf_ind: what is stored "
       "adds up to 1.05",
       [](auto& s) { s.Sol_refl_slat_surf_ind_BB(0.4); }},
      {"absorptance |Vis_refl_slat_surf_outd|1.02|1 at most|Vis_refl_slat_surf_outd: what is "
       "stored adds up to 1.02",
       [](auto& s) { s.Vis_refl_slat_surf_outd(0.5), s.Vis_transm_slat_surf_BB(0.52); }},
      {"absorptance 30|Tb_uv + Rb_uv|1.1|1 at most|Tb_uv + Rb_uv: what is stored adds up to 1.1",
       [](auto& s) {
         s.integrated({{.angle = 30, .reflection_UV_indoor = 0.6, .transmission_UV_indoor = 0.5}});
       }},
      {"absorptance 30|Tf_vis + Rf_vis|1.011|1 at most|Tf_vis + Rf_vis: what is stored adds up to "
       "1.011",
       [](auto& s) {
         s.integrated({{.angle = 30,
                        .reflection_visual_outdoor = 0.5,
                        .transmission_visual_outdoor = 0.511}});
       }},
      {"stored-range 60|Tb_sol|-0.1|0 to 1|Tb_sol is -0.1, which is no fraction",
       [](auto& s) { s.integrated({{.angle = 60, .transmission_solar_indoor = -0.1}}); }},
      {"angle 91|angle|90.5|0 to 90|At 90.5 degrees nothing comes in",
       [](auto& s) { s.integrated({{.angle = 90.5}}); }},
      {"angle -1|angle|-1|0 to 90|At -1 degrees nothing comes in",
       [](auto& s) { s.integrated({{.angle = -1}}); }},
      {"conductivity |conduction|0.019 W/(m·K)|0.02 to 430 W/(m·K)|A conduction of 0.019 W/(m·K) "
       "is none of a shading",
       [](auto& s) { s.conduction(0.019); }},
      {"conductivity |conduction|431 W/(m·K)|0.02 to 430 W/(m·K)|A conduction of 431 W/(m·K) is "
       "none of a shading",
       [](auto& s) { s.conduction(431); }},
      {"emissivity |emission_IR_outdoor|1.2|0 to 1|emission_IR_outdoor is 1.2, which is no "
       "fraction",
       [](auto& s) { s.emission_IR_outdoor(1.2); }},
      {"emissivity |emissivity_slat_surf_ind|1.5|0 to 1|emissivity_slat_surf_ind is 1.5, which is "
       "no fraction",
       [](auto& s) { s.emissivity_slat_surf_ind(1.5); }},
      {"emissivity |emission_IR_indoor|1.02|1 at most|emission_IR_indoor: what is stored adds up "
       "to 1.02",
       [](auto& s) { s.transmission_IR_indoor(0.27); }},
      {"emissivity |emission_IR_outdoor|1.02|1 at most|emission_IR_outdoor: what is stored adds up "
       "to 1.02",
       [](auto& s) { s.transmission_IR_outdoor(0.22); }},
      {"flags |spectral|True|False|The shading is said to be spectral, but it has no spectrum",
       [](auto& s) { s.spectral(true); }},
      {"flags |spectral|False|True|The shading is said not to be spectral, but it has a spectrum",
       [](auto& s) { s.spectrum({{.wavelength = 500}}); }},
      {"flags |homogenious|True|False|The shading is said to be the same all over, but it has "
       "slats",
       [](auto& s) { s.homogenious(true); }},
      {"flags |typeID|5|1 to 4|There is no such type of shadings", [](auto& s) { s.typeID(5); }},
      {"flags |typeID|-1|1 to 4|There is no such type of shadings", [](auto& s) { s.typeID(-1); }},
      {"missing-data |thickness|||There is no thickness", [](auto& s) { s.thickness(0); }},
      {"missing-data |conduction|||There is no conductivity\nmissing-data "
       "|emission_IR_outdoor|||There is no emissivity outdoors\nmissing-data "
       "|emission_IR_indoor|||There is no emissivity indoors",
       [](auto& s) { s.emission_IR_outdoor(0), s.emission_IR_indoor(0), s.conduction(0); }},
      {"openness |permeability|1.1|0 to 1|permeability is 1.1, which is no fraction",
       [](auto& s) { s.permeability(1.1); }},
      {"slats |slat_length|2.9||Slats are not 2.9 mm wide",
       [](auto& s) { s.slat_length(2.9), s.slat_distance(5), s.slat_curvature(1); }},
      {"slats |slat_length|1001||Slats are not 1001 mm wide", [](auto& s) { s.slat_length(1001); }},
      {"slats |slat_length|0||Slats are not 0 mm wide",
       [](auto& s) { s.slat_length(0), s.slat_curvature(0); }},
      {"slats |slat_distance|0||Slats have a distance", [](auto& s) { s.slat_distance(0); }},
      {"slats |slat_distance|50.5||Slats of 25 mm, 50.5 mm apart, cover nothing",
       [](auto& s) { s.slat_distance(50.5); }},
      {"slats |thickness|20||Slats are thinner than their distance",
       [](auto& s) { s.thickness(20); }},
      {"slats |slat_curvature|12.6||The crown of a slat is no higher than half its width",
       [](auto& s) { s.slat_curvature(12.6); }},
      {"slats |slat_curvature|-1||The crown of a slat is no higher than half its width",
       [](auto& s) { s.slat_curvature(-1); }},
      {"slats |angle|-91||Slats turn from -90 to 90 degrees", [](auto& s) { s.angle(-91); }},
      {"slats |angle|91||Slats turn from -90 to 90 degrees", [](auto& s) { s.angle(91); }},
      {"slats |window_slat_distance|-1||A distance is not negative",
       [](auto& s) { s.window_slat_distance(-1); }},
      {"stored-range |Uv_refl_slat_surf_outd|-0.1|0 to 1|Uv_refl_slat_surf_outd is -0.1, which is "
       "no fraction\nstored-range |Uv_refl_slat_surf_ind|-0.1|0 to 1|Uv_refl_slat_surf_ind is "
       "-0.1, which is no fraction",
       [](auto& s) { s.Uv_transm_slat_surf(-0.1); }},
      {"stored-range |Vis_refl_slat_surf_ind|1.001|0 to 1|Vis_refl_slat_surf_ind is 1.001, which "
       "is no fraction",
       [](auto& s) { s.Vis_refl_slat_surf_ind_BB(1.001); }},
      {"thickness |thickness|100.1 mm|0.01 to 100 mm|A thickness of 100.1 mm is none of a shading",
       [](auto& s) { s.slat_distance(0), s.slat_length(0), s.thickness(100.1); }},
      {"thickness |thickness|0.009 mm|0.01 to 100 mm|A thickness of 0.009 mm is none of a shading",
       [](auto& s) { s.slat_distance(0), s.slat_length(0), s.thickness(0.009); }},
  };
  for (const auto& [finding, change] : ofShadings) {
    ShadingDataClass blind;
    blind.name("blind");
    blind.group(fmt::format("Of blind {}", &finding - &ofShadings[0].first));
    blind.supplier("Kestrel Bay");
    blind.typeID(1);
    blind.thickness(0.2);
    blind.conduction(160);
    blind.emission_IR_outdoor(0.8);
    blind.emission_IR_indoor(0.75);
    blind.slat_length(25);
    blind.slat_distance(20);
    blind.slat_curvature(2);
    blind.angle(45);
    blind.Sol_refl_slat_surf_ind(0.65);
    change(blind);
    session.database.InsertShading(blind, dc());
  }
  struct FrameCase {
    const char* finding;
    double uValue;
    double width;
  };
  const FrameCase ofFrames[] = {
      {"", 0.3, 0.005},
      {"", 15, 0.5},
      {"u-value |u_value|0.29 W/(m²·K)|0.3 to 15 W/(m²·K)|A u_value of 0.29 "
       "W/(m²·K) is none of a frame",
       0.29, 0.07},
      {"u-value |u_value|15.1 W/(m²·K)|0.3 to 15 W/(m²·K)|A u_value of 15.1 "
       "W/(m²·K) is none of a frame",
       15.1, 0.08},
      {"width |width|0.0049 m|0.005 to 0.5 m|A width of 0.0049 m is none of a frame", 1.6, 0.0049},
      {"width |width|0.51 m|0.005 to 0.5 m|A width of 0.51 m is none of a frame", 1.5, 0.51},
      {"missing-data |u_value|||There is no U value", 0, 0.06},
      {"missing-data |width|||There is no width", 1.4, 0}};
  for (const FrameCase& each : ofFrames) {
    FrameDataClass frame;
    frame.name(fmt::format("frame {}", &each - ofFrames));
    frame.group("Demonstration");
    frame.supplier("Kestrel Bay");
    frame.u_value(each.uValue);
    frame.width(each.width);
    session.database.InsertFrame(frame, dc());
  }
  std::map<std::string, std::string> findings;
  for (const Finding& each : audit(database, {.without = {"similar-groups", "too-short"}})) {
    std::string& text = findings[each.set + each.identifier];
    text += (text.empty() ? "" : "\n") + wholeOf(each);
  }
  for (std::size_t i = 0; i < std::size(ofShadings); ++i) {
    EXPECT_EQ(findings[fmt::format("shadings{}", i + 1)], ofShadings[i].first) << i;
  }
  for (std::size_t i = 0; i < std::size(ofFrames); ++i) {
    EXPECT_EQ(findings[fmt::format("frames{}", i + 1)], ofFrames[i].finding) << i;
  }
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
