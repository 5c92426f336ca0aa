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

  /// The rules and records that are named where these panes lie beside three good ones.
  Lines found(const std::vector<std::pair<std::string, std::string>>& bad) {
    std::vector<std::pair<std::string, std::string>> files{{"good1.txt", clear(1).text()},
                                                           {"good2.txt", clear(2).text()},
                                                           {"metal.txt", coated().text()}};
    files.insert(files.end(), bad.begin(), bad.end());
    return linesOf(audit(texts(TextFileKind::panes, files)));
  }

  commands::audit::AuditResult result;
};

TEST_F(AuditTest, GoodPanesHaveNoFindings) {
  EXPECT_THAT(found({}), IsEmpty());
  EXPECT_EQ(result.summary(), "3 records: no errors, no warnings, no notes.");
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
    const char* rule;
    std::string text;
  } cases[] = {
      {"unreadable", "no pane"},
      {"units", changed(clear(), 0, 9999, percent).text()},
      {"units", changed(clear(), 0, 9999,
                        [](Point& at) {
                          at = {at.nm, 0, 1.9, 0.9};
                        })
                    .text()},
      {"units", with(clear(), &Draft::unit, "Microns").text()},
      {"units", changed(clear(), 0, 9999, micron).text()},
      {"range",
       changed(clear(), 0, 9999, [](Point& at) { at.T += 0.3, at.Rf = at.Rb = 0; }).text()},
      {"near-range",
       changed(clear(), 0, 9999, [](Point& at) { at.T = 1.009 - at.nm / 1e6, at.Rf = at.Rb = 0; })
           .text()},
      {"energy", changed(clear(), 0, 9999, [](Point& at) { at.Rf += 0.3; }).text()},
      {"jump", changed(clear(), 655, 655, [](Point& at) { at.Rb += 0.1; }).text()},
      {"jump", changed(clear(), 300, 300, [](Point& at) { at.Rf += 0.07; }).text()},
      {"jump", changed(clear(), 2495, 2495, [](Point& at) { at.Rb += 0.04; }).text()},
      {"detector-step", changed(clear(), 860, 9999, [](Point& at) { at.T += 0.03; }).text()},
      {"constant", changed(clear(), 450, 600,
                           [](Point& at) {
                             at = {at.nm, 0.7, 0.1, 0.1};
                           })
                       .text()},
      {"metal-infrared",
       changed(coated(), 1500, 9999,
               [](Point& at) { at.T += (at.nm - 1500) / 1400, at.Rf = at.Rb = 0.1; })
           .text()},
      {"gaps", without(clear(), 601, 619).text()},
      {"coarse", Draft{.points = glass(9, 20)}.text()},
      {"doubled", doubled.text()},
      {"order", unordered.text()},
      {"too-short", without(clear(), 781, 9999).text()},
      {"emissivity", with(clear(), &Draft::front, 1.2).text()},
      {"emissivity-infrared", infrared.text()},
      {"exchanged", with(changed(coated(), 0, 9999, dimmer), &Draft::side, "Front").text()},
      {"uncoated-low-e", with(clear(), &Draft::back, 0.4).text()},
      {"uncoated-low-e", unstated.text()},
      {"thickness", with(clear(), &Draft::thickness, 0.25).text()},
      {"conductivity", with(clear(), &Draft::conductivity, 20.0).text()},
      {"missing-data", with(clear(), &Draft::conductivity, 0.0).text()},
      {"unknown-maker", with(clear(), &Draft::maker, "unknown").text()},
      {"duplicates", clear(1).text()},
      {"duplicates", changed(clear(2), 0, 9999, [](Point& at) { at.T += 5e-5; }).text()},
      {"similar-makers", with(clear(), &Draft::maker, "kestrel-BAY").text()},
      {"similar-makers", with(clear(), &Draft::maker, "Kestrel Báy").text()},
      {"similar-makers", with(clear(), &Draft::maker, "Kestral Bay").text()},
      {"similar-makers", with(clear(), &Draft::maker, "Kesrel Bay").text()},
      {"similar-makers", with(clear(), &Draft::maker, "Kestrell Bay").text()},
  };
  for (const auto& [rule, text] : cases) {
    EXPECT_THAT(found({{"bad.txt", text}}), ElementsAre(std::string(rule) + " bad.txt")) << text;
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
  const Finding& jump = findings.front();
  EXPECT_EQ(jump.set, "panes");
  EXPECT_EQ(jump.name, "bad.txt");
  EXPECT_EQ(jump.fault.angle, std::int16_t{0});
  EXPECT_EQ(jump.fault.field, "Rb");
  EXPECT_EQ(jump.fault.wavelength, 655);
  EXPECT_EQ(jump.fault.message, "Rb jumps and comes back at 655 nm");
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
    const Points points = glass(number);
    auto spectrum = std::make_shared<SpectralData>();
    spectrum->Allocate(static_cast<std::int32_t>(points.size()) - 1);
    for (std::int32_t i = 0; i < spectrum->count(); ++i) {
      const Point& at = points[static_cast<std::size_t>(i)];
      spectrum->wl(i, static_cast<float>(at.nm / 1000));
      spectrum->Tf(i, static_cast<float>(at.T));
      spectrum->Tb(i, static_cast<float>(at.T));
      spectrum->Rf(i, static_cast<float>(at.Rf));
      spectrum->Rb(i, static_cast<float>(at.Rb));
    }
    pane->SpectralData(spectrum);
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

  /// Sets a column of the rows that a condition names.
  void set(const std::string& table, const std::string& column, const store::Value& value,
           const std::string& where) {
    auto rows = dc().openRecordset("SELECT * FROM " + table + " WHERE " + where,
                                   store::CursorType::keyset, store::LockType::optimistic);
    ASSERT_FALSE(rows->eof()) << table << ' ' << where;
    for (; !rows->eof(); rows->moveNext()) {
      rows->setValue(column, value);
      rows->update();
    }
  }
  store::Connection& dc() { return *database->ADOConnection(); }

  Node database = newDatabase();
};

TEST_F(AuditDatabaseTest, FaultsOfRowsAreFoundAtTheirPanes) {
  set("Pane_integrated_data", "transmission_visual_outdoor", 0.1, "PaneID = 1");
  set("Pane", "emission_IR_outdoor", -0.5, "PaneID = 2");
  set("Pane_spectral_data", "reflection_indoor", -0.25, "PaneID = 3 AND wavelength = 500");
  EXPECT_THAT(found(), ElementsAre("emissivity 2", "range 3", "stored-values 1"));
  EXPECT_THAT(linesOf(audit(database, {.without = {"range"}})),
              ElementsAre("emissivity 2", "stored-values 1", "unreadable 3"));
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
  EXPECT_THAT(found(), ElementsAre("absorptance 5", "missing-values 4"));
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
  EXPECT_THAT(found(), ElementsAre("angle 4", "flags 1", "half-angles 2"));
  auto empty = pane("empty", 5);
  empty->SpectralData(nullptr);
  insert(empty);
  EXPECT_THAT(found(), ElementsAre("angle 4", "flags 1", "flags 5", "half-angles 2"));
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
  EXPECT_THAT(found(),
              ElementsAre("empty-name 1", "same-name 3", "similar-groups 4", "unknown-maker 1"));
}

TEST_F(AuditDatabaseTest, RowsWithoutTheirLikeAreFound) {
  addRow(dc(), "Groups", {{"GroupName", "Nothing in it"}});
  addRow(dc(), "Shading_spectral_data", {{"Shading_ID", 12}});
  set("Pane_spectral_data", "PaneID", 99, "PaneID = 2 AND wavelength > 2480");
  set("Pane", "supplierID", 77, "PaneID = 3");
  const auto findings = audit(database);
  EXPECT_THAT(linesOf(findings),
              ElementsAre("dangling 3", "orphans 12", "orphans 99", "unknown-maker 3", "unused 2"));
  const auto orphan = std::ranges::find(findings, "99", &Finding::identifier);
  EXPECT_EQ(orphan->set, "Pane_spectral_data");
  EXPECT_EQ(orphan->fault.message, "Rows of a pane that is gone: 4");

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
  EXPECT_THAT(found(), ElementsAre("outliers 15", "outliers 19"));
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
      {"absorptance", [](auto& s) { s.Sol_refl_slat_surf_ind_BB(0.4); }},
      {"absorptance",
       [](auto& s) {
         s.integrated({{.angle = 30, .reflection_UV_indoor = 0.6, .transmission_UV_indoor = 0.5}});
       }},
      {"angle", [](auto& s) { s.integrated({{.angle = 95}}); }},
      {"conductivity", [](auto& s) { s.conduction(0.001); }},
      {"emissivity", [](auto& s) { s.emissivity_slat_surf_ind(1.5); }},
      {"emissivity", [](auto& s) { s.transmission_IR_indoor(0.3); }},
      {"flags", [](auto& s) { s.spectral(true); }},
      {"flags", [](auto& s) { s.homogenious(true); }},
      {"flags", [](auto& s) { s.typeID(5); }},
      {"missing-data", [](auto& s) { s.emission_IR_outdoor(0); }},
      {"openness", [](auto& s) { s.permeability(5); }},
      {"slats", [](auto& s) { s.slat_length(0.025); }},
      {"slats", [](auto& s) { s.slat_distance(55); }},
      {"slats", [](auto& s) { s.slat_curvature(13); }},
      {"slats", [](auto& s) { s.angle(-91); }},
      {"stored-range", [](auto& s) { s.Uv_transm_slat_surf(-0.1); }},
      {"thickness", [](auto& s) { s.slat_distance(0), s.slat_length(0), s.thickness(110); }},
  };
  Lines expected;
  std::int32_t number = 0;
  for (const auto& [rule, change] : ofShadings) {
    ShadingDataClass blind;
    blind.name(fmt::format("blind {}", ++number));
    blind.group("Demonstration");
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
    if (*rule != '\0') expected.push_back(fmt::format("{} {}", rule, number));
  }
  const std::pair<const char*, std::pair<double, double>> ofFrames[] = {
      {"", {1.4, 0.07}},
      {"u-value", {28, 0.08}},
      {"width", {1.6, 68}},
      {"missing-data", {0, 0.06}}};
  number = 0;
  for (const auto& [rule, values] : ofFrames) {
    FrameDataClass frame;
    frame.name(fmt::format("frame {}", ++number));
    frame.group("Demonstration");
    frame.supplier("Kestrel Bay");
    frame.u_value(values.first);
    frame.width(values.second);
    session.database.InsertFrame(frame, dc());
    if (*rule != '\0') expected.push_back(fmt::format("{} {}", rule, number));
  }
  std::ranges::sort(expected);
  EXPECT_EQ(found(), expected);
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
