// Audits of databases: rules over rows, names and the records beside each other.
#include <gmock/gmock.h>

#include <algorithm>

#include "commands/AuditFixture.h"
#include "commands/audit/SourceRules.h"
#include "model/Raised.h"
#include "support/CaseFile.h"

namespace orv::test {
namespace {

using commands::RecordKind;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Panes of a database: "good" from 1 on, with the values that their spectra have.
class AuditDatabaseTest : public AuditFixture {
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

  /// Gives a shading columns ("angle=45"), and rows of integrated and of spectral data.
  void changeShading(std::int32_t id, const std::string& changes) {
    std::istringstream words(changes);
    std::vector<std::pair<std::string, FieldValues>> rows;
    for (std::string word; words >> word;) {
      const auto sign = word.find('=');
      if (sign == std::string::npos) {
        rows.push_back(
            word == "spectral"
                ? std::pair("Shading_spectral_data", FieldValues{{"Shading_ID", id}})
                : std::pair("Shading_integrated_data_temp", FieldValues{{"Shading_id", id}}));
        continue;
      }
      const std::string text = word.substr(sign + 1);
      const store::Value value =
          text == "True" ? store::Value(true) : store::Value(std::stod(text));
      if (rows.empty()) {
        set("Shading", word.substr(0, sign), value, fmt::format("Shading_id = {}", id));
      } else {
        rows.back().second.emplace_back(word.substr(0, sign), value);
      }
    }
    for (const auto& [table, values] : rows) addRow(dc(), table, values);
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

TEST_F(AuditDatabaseTest, AnEmissivityIsHeldAgainstTheInfrared) {
  const auto warm = pane("warm", 4);
  std::vector<std::array<float, 5>> points;
  for (const auto& [nm, T, Rf, Rb] : glass(4)) {
    points.push_back({static_cast<float>(nm / 1000), static_cast<float>(T), static_cast<float>(T),
                      static_cast<float>(Rf), static_cast<float>(Rb)});
  }
  for (float micron = 3; micron <= 25; micron += 0.5F) points.push_back({micron, 0, 0, 0.1F, 0.3F});
  warm->SpectralData(spectrumOf(points));
  warm->ORV_Emissivity_front(0.5);
  warm->ORV_Emissivity_back(0.25);
  insert(warm);
  EXPECT_EQ(whole({.rules = {"emissivity-infrared"}}),
            (Lines{"panes 4 warm: emissivity-infrared 0|emissivity_back|0.25|0.6632|The emissivity "
                   "of the back is 0.25, but 0.6632 by the spectrum beyond 5 µm",
                   "panes 4 warm: emissivity-infrared 0|emissivity_front|0.5|0.8463|The emissivity "
                   "of the front is 0.5, but 0.8463 by the spectrum beyond 5 µm"}));
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
  set("Pane", "groupID", 0, "PaneID > 1");
  EXPECT_EQ(whole({.rules = {"same-name"}}),
            (Lines{"panes 3 good3: same-name |name|good3||The name is that of the record 2, too"}));
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
    if (i == 21) continue;
    foil->group("Few");
    insert(foil);
  }
  for (const auto& [group, count] : {std::pair("Clear", 12), std::pair("Eleven", 11)}) {
    for (int number = 0; number < count; ++number) {
      const auto clear = pane(fmt::format("{} {}", group, number), 1);
      clear->group(group);
      for (int at = 0; at < clear->SpectralData()->count() && number == 0; ++at) {
        clear->SpectralData()->Tf(at, 0.125F);
      }
      insert(clear);
    }
  }
  EXPECT_EQ(
      whole({.rules = {"outliers"}}),
      (Lines{"panes 15 thick: outliers |thickness|60 mm|about 5.7 mm|The thickness is far "
             "from that of the others of the group Demonstration",
             "panes 22 foil19: outliers |thickness|1.5 mm|about 5 mm|The thickness is far "
             "from that of the others of the group Foils",
             "panes 27 Clear 0: outliers |Tf_vis|0.125|about 0.7279|The Tf_vis is far from that "
             "of the others of the group Clear"}));
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
  const auto ofShadings = casesOf("commands/shading-faults.tsv", 2);
  for (std::size_t i = 0; i < ofShadings.size(); ++i) {
    ShadingDataClass blind;
    blind.name("blind");
    blind.group(fmt::format("Of blind {}", i));
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
    session.database.InsertShading(blind, dc());
    changeShading(blind.id(), ofShadings[i][0]);
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
  for (std::size_t i = 0; i < ofShadings.size(); ++i) {
    EXPECT_EQ(findings[fmt::format("shadings{}", i + 1)], ofShadings[i][1]) << ofShadings[i][0];
  }
  for (std::size_t i = 0; i < std::size(ofFrames); ++i) {
    EXPECT_EQ(findings[fmt::format("frames{}", i + 1)], ofFrames[i].finding) << i;
  }
}

}  // namespace
}  // namespace orv::test
