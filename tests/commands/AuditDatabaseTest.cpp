// Audits of databases: rules over rows, names and the records beside each other.
#include <gmock/gmock.h>

#include "commands/AuditFixture.h"
#include "support/CaseFile.h"

namespace orv::test {
namespace {

using commands::RecordKind;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class AuditDatabaseTest : public AuditFixture {
 protected:
  AuditDatabaseTest() { begin(); }

  /// A new database of the panes good1, good2 and good3.
  void begin() {
    database = newDatabase(std::to_string(++databases) + ".mdb");
    for (int i = 1; i <= 3; ++i) insert("good" + std::to_string(i), i);
  }

  store::Connection& dc() { return *database->ADOConnection(); }

  /// A pane with the values that its spectrum has.
  void insert(const std::string& name, int number, std::int16_t angle = 0) {
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
    session.database.InsertPane(*pane, dc());
  }

  /// Changes the database, as `changeTable` does, and besides:
  ///
  ///   pane NAME NUMBER ANGLE         a pane more, of the curves of this number
  ///   panes NAME FIRST LAST NUMBER   several, each of its own curves or all of those of a number
  ///   infrared PANE                  points from 3 to 25 µm
  ///   made without NAME NAME         no tables and columns of these names; "2.0.1": what that has
  void change(const std::string& statement) {
    std::istringstream words(statement);
    std::string what, name;
    int first = 0, last = 0, number = 0;
    words >> what;
    const std::string rest = statement.substr(what.size() + 1);
    if (what == "pane") {
      words >> name >> first >> last;
      insert(name, first, static_cast<std::int16_t>(last));
    } else if (what == "panes") {
      words >> name >> first >> last >> number;
      for (int i = first; i <= last; ++i) {
        insert(name + std::to_string(i), number != 0 ? number : i);
      }
    } else if (what == "infrared") {
      for (int nm = 3000; nm <= 25000; nm += 500) {
        changeTable(dc(), fmt::format("+Pane_spectral_data PaneID={}, angle=0, wavelength={}, "
                                      "reflection_outdoor=0.1, reflection_indoor=0.3",
                                      rest, nm));
      }
    } else if (what == "made") {
      database = remade(database, rest.substr(8));
    } else {
      changeTable(dc(), statement);
    }
  }

  /// What is found in a new database after these changes; "only RULE" and "of RECORDS" say what is
  /// asked for.
  Lines foundAfter(const Lines& changes) {
    begin();
    AuditOptions options;
    std::optional<RecordKind> kind;
    for (const std::string& statement : changes) {
      if (statement.starts_with("only ")) {
        options.rules = {statement.substr(5)};
      } else if (statement.starts_with("of ")) {
        kind = statement == "of panes"    ? RecordKind::panes
               : statement == "of frames" ? RecordKind::frames
                                          : RecordKind::shadings;
      } else {
        change(statement);
      }
    }
    return whole(audit(database, options, kind));
  }

  Node database;
  int databases = 0;
};

TEST_F(AuditDatabaseTest, EachFaultIsFoundByItsRuleOnly) {
  EXPECT_THAT(audit(database), IsEmpty());
  const std::string expected = readFile(ORV_SOURCE_DIR "/tests/commands/audited-databases.txt");
  EXPECT_EQ(retold(expected, [&](const Lines& changes) { return foundAfter(changes); }), expected);
}

TEST_F(AuditDatabaseTest, SomeRecordsAreAuditedByThemselves) {
  change("Pane emission_IR_outdoor=1.5, supplierID=77 where PaneID > 1");
  change("+Groups GroupName=Nothing in it");
  std::vector<Finding> findings;
  const auto some = select(recordSet(database, RecordKind::panes), {"1", "3", "8"});
  result = commands::audit::auditRecords(session, some, {},
                                         [&](const Finding& each) { findings.push_back(each); });
  EXPECT_THAT(linesOf(findings),
              ElementsAre("dangling 3", "emissivity 3", "unknown-maker 3", "unreadable 8"));
  EXPECT_EQ(result.records, 3);
  findings.clear();
  change("Pane_spectral_data reflection_indoor=-0.5 where PaneID = 3");  // which nobody looks at
  commands::audit::auditRecords(session, some, {.rules = {"dangling"}},
                                [&](const Finding& each) { findings.push_back(each); });
  EXPECT_THAT(linesOf(findings), ElementsAre("dangling 3"));

  int asked = 0;
  ui.cancelWhen = [&] { return ++asked == 2; };
  EXPECT_THAT(linesOf(audit(database, {.rules = {"emissivity", "unused"}})),
              ElementsAre("emissivity 2"));
  EXPECT_EQ(result.summary(), "2 records, then cancelled: 1 error, no warnings, no notes.");
}

/// A blind of its own for each line: values of it, and rows of its data.
TEST_F(AuditDatabaseTest, FaultsOfShadingsAreFound) {
  const auto cases = casesOf("commands/shading-faults.tsv", 2);
  for (int id = 1; const auto& cells : cases) {
    ShadingDataClass blind;
    blind.name("blind");
    blind.group(fmt::format("Of blind {}", id));
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
    std::istringstream statements(cells[0]);
    for (std::string each; std::getline(statements >> std::ws, each, ';');) {
      change(each.starts_with('+') ? fmt::format("{}, Shading_id={}", each, id)
                                   : fmt::format("Shading {} where Shading_id = {}", each, id));
    }
    ++id;
  }
  std::map<std::string, std::string> findings;
  for (const Finding& each : audit(database, {.without = {"similar-groups", "too-short"}})) {
    std::string& text = findings[each.set + each.identifier];
    text += (text.empty() ? "" : "\n") + faultOf(each);
  }
  for (std::size_t i = 0; i < cases.size(); ++i) {
    EXPECT_EQ(findings[fmt::format("shadings{}", i + 1)], cases[i][1]) << cases[i][0];
  }
}

}  // namespace
}  // namespace orv::test
