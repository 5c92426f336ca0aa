// The copying of what differs: it ends, and writes what the list before it tells, and nothing else.
#include <gmock/gmock.h>

#include "commands/CommandsTest.h"
#include "commands/CopyRules.h"
#include "commands/compare/CopyChanges.h"

namespace orv::test {
namespace {

using commands::RecordKind;
using commands::compare::Comparison;
using commands::compare::State;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using Lines = std::vector<std::string>;

class ChangedCopyTest : public CommandsTest {
 protected:
  Comparison compare(const Node& a, const Node& b, commands::compare::CompareOptions options = {}) {
    return commands::compare::compareSources(session, a, b, options);
  }

  /// "KEY OF B|angle|field", for each difference of these states.
  static std::set<std::string> placesOf(const Comparison& comparison,
                                        const std::set<State>& states) {
    std::set<std::string> places;
    for (const auto& each : comparison.differences) {
      const auto& pair = comparison.pairs[each.pair];
      if (!states.contains(pair.state)) continue;
      const std::string id = pair.b.empty() ? pair.name : pair.b.front();
      const std::string field = each.field.substr(0, each.field.find(", direction"));
      places.insert(fmt::format("{} {}|{}|{}", commands::setName(pair.kind), id,
                                each.angle.value_or(0), field));
    }
    return places;
  }

  /// What was written and not told: integrated values may follow a spectrum that was.
  static Lines untold(const std::set<std::string>& written, const std::set<std::string>& told) {
    Lines lines;
    for (const std::string& place : written) {
      const std::string at = place.substr(0, place.rfind('|') + 1);
      const auto isTold = [&](const char* field) { return told.contains(at + field); };
      const bool follows = place.find("ance ") != std::string::npos &&
                           (isTold("T") || isTold("Rf") || isTold("Rb") || isTold("spectrum") ||
                            isTold("wavelengths") || isTold("integrated values"));
      if (!told.contains(place) && !follows) lines.push_back(place);
    }
    return lines;
  }

  Lines linesOf(const Comparison& comparison) const {
    Lines lines;
    for (const auto& each : comparison.differences) {
      const auto& pair = comparison.pairs[each.pair];
      const bool isLeft = pair.state == State::added || pair.isAmbiguous ||
                          pair.name == "no data" ||
                          commands::fateOf(pair.kind, each.field) != commands::Fate::brought;
      if (isLeft) continue;
      // Computed where the source has none.
      if (each.field == "integrated values" && textOf(each.a) == "none") continue;
      lines.push_back(fmt::format("{} {} {} {} {}: {} | {}", nameOf(pair.state),
                                  commands::setName(pair.kind), pair.name, each.angle.value_or(-1),
                                  each.field, textOf(each.a), textOf(each.b)));
    }
    return lines;
  }

  Node copyOf(const Node& b, const std::string& name) {
    std::filesystem::copy_file(folder.path() / b->filename(), folder.path() / name);
    return opener.openAny(folder / name);
  }

  commands::PasteResult copyChanged(const Node& a, const Node& b, const Comparison& told) {
    const auto pairs = commands::compare::copyablePairs(told, group_).pairs;
    return commands::compare::copyPairs(session, a, b, told, pairs, {.group = group_},
                                        [](const auto&) {});
  }

  /// The property: what is written was told, all of it is the same afterwards but for what the
  /// remark names, and a second copy finds nothing.
  void proveCopy(const Node& a, const Node& b) {
    const auto before = copyOf(b, "before" + std::to_string(++copies_) + ".mdb");
    commands::compare::CompareOptions options{.isForCopy = true};
    if (!group_.empty()) options.group = group_;
    const Comparison told = compare(a, b, options);
    ui.answers = {commands::Answer::yes, commands::Answer::yes};  // for unfit substrates
    const auto result = copyChanged(a, b, told);
    EXPECT_EQ(result.failed + result.partly + result.withoutData, 0)
        << ::testing::PrintToString(messages());
    const auto written = compare(before, b, {.match = commands::compare::Match::id});
    written_ += written.count(State::changed);
    EXPECT_THAT(untold(placesOf(written, {State::changed}), placesOf(told, {State::changed})),
                IsEmpty())
        << ::testing::PrintToString(linesOf(told));
    EXPECT_EQ(written.count(State::removed), 0U);
    const Comparison again = compare(a, b, options);
    EXPECT_THAT(commands::compare::copyablePairs(again, group_).pairs, IsEmpty());
    EXPECT_THAT(linesOf(again), IsEmpty()) << "a second copy would copy again";
    const Comparison plain = compare(a, b, {.ignored = left_, .group = options.group});
    EXPECT_THAT(linesOf(plain), IsEmpty());
    EXPECT_EQ(rowsOf(*b->ADOConnection(),
                     "SELECT COUNT(*) FROM Pane_spectral_data WHERE PaneID NOT "
                     "IN (SELECT PaneID FROM Pane)"),
              "0");
  }

  /// Gives one value of each row another: that of another column in each row.
  static void alter(const Node& node, const std::set<std::string>& spared = {}) {
    std::size_t at = 0;
    changeRows(node, [&](store::Recordset& row) {
      const auto isLeft = [&](const std::string& column) {
        return isKept(column) || spared.contains(column);
      };
      do at = (at + 1) % row.fields().size();
      while (isLeft(row.fields()[at].name));
      row.setValue(at, other(row.fields()[at], row.value(at)));
    });
  }

  /// A database with what others have, and a copy does not bring, or not at once.
  Node strange(const std::string& name) {
    const auto node = newDatabase(name);
    auto& dc = *node->ADOConnection();
    const auto insert = [&](const std::string& pane, std::int16_t angle = 0) {
      auto data = makePane(pane, angle);
      data->ORV_CoatingClass("A");
      if (pane == "filmed") withSubstrate(data);
      session.database.InsertPane(*data, dc);
    };
    for (const char* pane : {"filmed", "several", "two ways", "one way", "half read", "unread",
                             "spectrum only", "no data"}) {
      insert(pane);
    }
    insert("several", 30);
    insert("half read", 60);
    for (const char* change :
         {"Pane Ra=97", "Pane coatingcode=low-e where name = 'several'",
          "Pane spectral_pane=False where name = 'unread'",
          "Pane_spectral_data reflection_sub=0.05 where PaneID = 1",
          "Pane_spectral_data direction=2 where PaneID = 4",
          "-Pane_integrated_data PaneID = 5 AND angle = 60",
          "-Pane_integrated_data PaneID IN (7, 8)", "-Pane_spectral_data PaneID = 8"}) {
      changeTable(dc, change);
    }
    for (const int direction : {1, 2}) {
      for (const float wavelength : {400.0F, 500.0F}) {
        changeTable(dc, fmt::format("+Pane_spectral_data PaneID=3, angle=0, direction={}, "
                                    "wavelength={}, transmission_outdoor={}",
                                    direction, wavelength, 0.25 * direction));
      }
    }
    return node;
  }

  std::string group_;
  int copies_ = 0;
  std::size_t written_ = 0;  ///< records that were replaced
  /// What no copy brings.
  Lines left_{"Ra", "R of the substrate", "direction"};
};

TEST_F(ChangedCopyTest, WritesWhatItTellsAndIsDone) {
  const auto a = strange("a.mdb");
  left_.push_back("spectrum");  // some of it is not read, and two directions are one too many
  const auto b = newDatabase("b.mdb");
  proveCopy(a, b);
  EXPECT_THAT(compare(a, b, {.isForCopy = true}).remarks,
              Contains(HasSubstr("R of the substrate (1)")));
  alter(b);
  proveCopy(a, b);
  // Of which columns are of double precision, and other names.
  const auto doubles = changedDatabase("doubles.mdb", [](store::TableInfo& table) {
    for (auto& column : table.columns) {
      if (column.type == store::ColumnType::single) column.type = store::ColumnType::double_;
    }
  });
  proveCopy(b, doubles);
  alter(doubles, {"direction"});
  proveCopy(a, doubles);
  proveCopy(doubles, b);
  EXPECT_GT(written_, 10U);
  const auto same = compare(a, copyOf(a, "same.mdb"), {.isForCopy = true});
  EXPECT_THAT(same.remarks, ::testing::Each(::testing::Not(HasSubstr("spectrum ("))));
}

TEST_F(ChangedCopyTest, IsDoneWhateverTheSourceIs) {
  ORV_NEEDS_CORPUS();
  for (const std::string name :
       {"glazing.mdb", "orvdata-2.0.1.mdb", "orvdata-3.0.0.mdb", "products", "panes"}) {
    SCOPED_TRACE(name);
    const auto source =
        name.ends_with(".mdb") ? foreign(name) : opener.openAny((corpusFolder() / name).string());
    group_ = name == "glazing.mdb" ? "" : "Demo";
    const auto b = newDatabase("copy of " + name + ".mdb");
    proveCopy(source, b);
    alter(b, {"direction"});
    proveCopy(source, b);
  }
}

TEST_F(ChangedCopyTest, FilesOfOnePaneAreCopiedAsOne) {
  group_ = "Demo";
  const auto entries = [](const char* angle) {
    return std::string("{ Record Name: pane }{ Angle of Incidence: ") + angle + " }\n";
  };
  const auto files =
      texts(commands::TextFileKind::panes, {{"a.txt", entries("0") + paneText("First")},
                                            {"b.txt", entries("30") + paneText("Second")},
                                            {"c.txt", paneText("Other")}});
  const auto b = newDatabase("b.mdb");
  const Comparison told = compare(files, b, {.group = group_, .isForCopy = true});
  EXPECT_THAT(
      told.remarks,
      Contains(HasSubstr("a.txt and b.txt are files of one pane and differ in product name")));
  EXPECT_EQ(copyChanged(files, b, told).summary().substr(0, 17), "2 records copied.");
  alter(b, {"direction"});
  const Comparison changed = compare(files, b, {.group = group_, .isForCopy = true});
  EXPECT_EQ(copyChanged(files, b, changed).summary().substr(0, 29),
            "0 records copied, 2 replaced.");
  proveCopy(files, b);
  // What a file does not say is not taken from the record.
  changeTable(*b->ADOConnection(), "Pane coatingcode=L, thickness=9");
  proveCopy(files, b);
  EXPECT_EQ(rowsOf(*b->ADOConnection(), "SELECT coatingcode, thickness FROM Pane"), "L|3 L|3");
}

/// The guide tells of all that is not brought.
TEST(CopyRulesTest, TheGuideNamesWhatIsNotBrought) {
  std::ifstream guide(std::filesystem::path(ORV_SOURCE_DIR) / "docs" / "user-guide.md");
  ASSERT_TRUE(guide);
  std::map<std::string, std::string> told;  // the rest of the row, by what it is about
  bool isHere = false;
  for (std::string line; std::getline(guide, line);) {
    if (line.starts_with("### ")) isHere = line == "### What a copy keeps";
    if (!isHere || !line.starts_with("| ")) continue;
    const std::size_t end = line.find(" | ", 2);
    std::string names = line.substr(2, end - 2) + ", ";
    std::erase(names, '`');
    for (std::size_t at; (at = names.find(", ")) != std::string::npos; names.erase(0, at + 2)) {
      told[names.substr(0, at)] = line.substr(end);
    }
  }
  for (const auto& rule : commands::copyRules()) {
    if (rule.fate == commands::Fate::chosen) continue;
    const char* of = rule.kind == RecordKind::panes    ? ""
                     : rule.kind == RecordKind::frames ? " of a frame"
                                                       : " of a shading";
    const char* word = rule.fate == commands::Fate::stays ? "stays" : "not kept";
    EXPECT_THAT(told[rule.name + of], HasSubstr(word)) << rule.name << of;
  }
}

}  // namespace
}  // namespace orv::test
