// Edits of records, and their way back.
#include <random>

#include "commands/CommandsTest.h"
#include "commands/DeleteRecords.h"
#include "commands/IntegrateRecords.h"
#include "commands/RecordDetails.h"
#include "commands/RecordReader.h"
#include "commands/edit/EditHistory.h"
#include "commands/edit/Editor.h"
#include "commands/edit/LookupRecords.h"
#include "database/DatabaseDump.h"
#include "model/Raised.h"
#include "store/Check.h"
#include "support/CaseFile.h"

namespace orv::test {
namespace {

using commands::RecordKind;
using commands::edit::Change;
using commands::edit::EditField;
using commands::edit::Editor;
using commands::edit::EditSet;
using commands::edit::FieldType;
using store::History;
using Lines = std::vector<std::string>;

class EditTest : public CommandsTest {
 protected:
  EditTest() {
    for (const char* name : {"a", "b", "c"}) {
      const auto pane = makePane(name);
      pane->supplier(std::string("Maker ") + name);
      session.database.InsertPane(*pane, dc);
      pane->ORV_Angle(60);
      session.database.InsertPane(*pane, dc);
    }
    auto frame = fullFrame();
    session.database.InsertFrame(frame, dc);
    auto shading = fullShading();
    session.database.InsertShading(shading, dc);
  }

  Editor editor(EditSet set) { return {session, node->ADOConnection(), set}; }

  Change change(const Editor& editor, std::int32_t record, const std::string& field,
                const std::string& text) {
    return editor.change(record, editor.place(field), text);
  }

  /// The fields of the first record, the panes at 60 degrees, as `orv show` has them. A name that
  /// several sections have is told with its section.
  std::map<std::string, std::string> shownFields(EditSet set) {
    if (commands::edit::isLookup(set)) {
      return {{"name", commands::edit::lookupRecords(set, dc).front().name}};
    }
    const auto kind = static_cast<RecordKind>(set);
    const commands::RecordReader reader(session, recordSet(node, kind));
    std::vector<commands::DetailField> fields;
    const auto read = [&](const auto& record, const auto& details) {
      reader.tellGroup("1", *record);
      fields = details(*record);
    };
    kind == RecordKind::panes    ? read(reader.pane("1", 60, 0), commands::paneDetails)
    : kind == RecordKind::frames ? read(reader.frame("1"), commands::frameDetails)
                                 : read(reader.shading("1"), commands::shadingDetails);
    std::map<std::string, std::string> shown;
    for (const auto& field : fields) {
      shown[field.name] = field.value;
      shown[field.section + ": " + field.name] = field.value;
    }
    return shown;
  }

  std::string reasons(const commands::edit::Review& review) {
    std::string all;
    for (const auto& refusal : review.refusals) {
      all += std::to_string(refusal.change) + ": " + refusal.reason + "\n";
    }
    return all;
  }

  Node node = newDatabase();
  store::Connection& dc = *node->ADOConnection();
};

/// A text for a field that it does not hold yet, and that names no other record; of a flag that is
/// `present` the other one.
std::string otherText(const EditField& field, int number, bool present) {
  if (!field.codes.empty()) return "screen";
  switch (field.type) {
    case FieldType::flag:
      return present ? "no" : "yes";
    case FieldType::whole:
      return std::to_string(number);
    case FieldType::number:
      return std::to_string(field.least + (field.most - field.least) * (number % 97 + 1) / 128);
    default:
      return field.name + " " + std::to_string(number);
  }
}

/// "set|name|column|shown column|type|range and unit|longest|marks"
std::string lineOf(EditSet set, const EditField& field) {
  constexpr const char* kTypes[] = {"text", "number", "whole", "flag", "choice"};
  std::string range;
  if (field.least < field.most)
    range = fmt::format("{} to {} [{}]", field.least, field.most, field.unit);
  std::string marks;
  if (field.choices) marks += fmt::format(",of {}", commands::edit::designOf(*field.choices).name);
  if (field.mayBeEmpty) marks += ",may be empty";
  if (field.perAngle) marks += ",at each angle";
  if (field.isCapital) marks += ",capital";
  if (field.isSingle) marks += ",single";
  for (const auto& code : field.codes) marks += fmt::format(",{}={}", code.code, code.text);
  return fmt::format("{}|{}|{}|{}|{}|{}|{}|{}", commands::edit::designOf(set).name, field.name,
                     field.column, field.shownColumn, kTypes[static_cast<int>(field.type)], range,
                     field.longest, marks);
}

TEST_F(EditTest, TheFieldsAreThoseOfTheTable) {
  std::vector<std::vector<std::string>> lines;
  for (const EditSet set : commands::edit::kEditSets) {
    const Editor all = editor(set);
    for (const EditField& field : all.fields()) lines.push_back({lineOf(set, field)});
  }
  EXPECT_EQ(lines, casesOf("commands/edit-fields.txt", 1));
}

TEST_F(EditTest, EveryFieldTakesAValueWhichShowTellsAndUndoTakesBack) {
  for (const EditSet set : commands::edit::kEditSets) {
    const auto before = dumpOf(dc);
    Editor all = editor(set);
    std::vector<Change> changes;
    std::vector<std::string> texts;
    int number = 20;
    for (const EditField& field : all.fields()) {
      commands::edit::FieldPlace place{&field, {}};
      if (field.perAngle) place.angle = all.angles(1).back();
      const bool present = all.value(1, field, place.angle) == store::Value(true);
      changes.push_back(all.change(1, place, otherText(field, ++number, present)));
      texts.push_back(field.codes.empty() ? commands::edit::fieldText(changes.back().after)
                                          : "Screen (3)");
    }
    ASSERT_EQ(reasons(all.save(changes)), "");
    const auto shown = shownFields(set);
    for (std::size_t i = 0; i < changes.size(); ++i) {
      const Change& each = changes[i];
      const std::string name =
          each.angle && set == EditSet::shadings ? each.field + " at 60°" : each.field;
      ASSERT_TRUE(shown.contains(name)) << name;
      EXPECT_EQ(shown.at(name), texts[i]) << name;
      EXPECT_NE(each.before, each.after) << name;
    }
    EXPECT_TRUE(History(dc).undo().conflicts.empty());
    EXPECT_EQ(dumpOf(dc), before) << commands::edit::designOf(set).name;
  }
}

TEST_F(EditTest, ColumnsOfTheListHaveFieldsAndNamesToChooseFrom) {
  const Editor panes = editor(EditSet::panes);
  EXPECT_EQ(panes.fieldOfColumn("groupname")->name, "group");
  EXPECT_EQ(panes.fieldOfColumn("PaneID"), nullptr);
  EXPECT_EQ(panes.fieldOfColumn(""), nullptr) << "values at each angle are in no column";
  const auto lean = remade(node, "acceptance Pane_integrated_data.reflection_UV_indoor");
  EXPECT_EQ(Editor(session, lean->ADOConnection(), EditSet::panes).fields().size() + 2,
            panes.fields().size());
  session.database.InsertGroup("early", dc);
  const Lines names{"Demo", "early", "Shades", "Tarven frames"};
  EXPECT_EQ(panes.choices(*panes.fieldOfColumn("GroupName")), names);
  EXPECT_EQ(panes.choices(*panes.fieldOfColumn("name")), Lines());
}

/// What has been drafted is looked at once more when it is saved.
TEST_F(EditTest, OneWrongValueChangesNothing) {
  const auto before = dumpOf(dc);
  Editor panes = editor(EditSet::panes);
  const Change good = change(panes, 1, "thickness", "4,5");
  EXPECT_EQ(good.after, store::Value(4.5F));
  const auto refusal = [&](const char* name, const store::Value& after) {
    const EditField& field = *panes.place(name).field;
    const auto review = panes.save({good, {2, field.name, {}, panes.value(2, field), after}});
    EXPECT_EQ(dumpOf(dc), before);
    return reasons(review);
  };
  EXPECT_EQ(refusal("name", "a "),  // the database does not look at blanks at the end
            "1: There would be two panes \"a \" in the group \"Demo\" (2 and 1).\n");
  EXPECT_NE(refusal("name", "it's").find("apostrophe"), std::string::npos);
  EXPECT_EQ(refusal("group", "IGDB 3"), "1: IGDB 3 is not a valid group name.\n");
  EXPECT_EQ(refusal("emission_IR_outdoor", 1.5),
            "1: database emissivity front is from 0 to 1, and 1.5 is not.\n");
  EXPECT_EQ(refusal("acceptance", 1.5), "1: acceptance is a text.\n");
  EXPECT_EQ(refusal("frozen", "yes"), "1: frozen is yes or no.\n");
  for (const store::Value& none : {store::Value(), store::Value("4"), store::Value(true)}) {
    EXPECT_EQ(refusal("thickness", none), "1: thickness is a number.\n");
  }
  Change stale = good;
  stale.before = 3.0F;
  EXPECT_EQ(reasons(panes.save({stale, change(panes, 2, "name", "a")})),
            "0: thickness has been changed meanwhile: it is \"5.7\" now, and was \"3\".\n");
  EXPECT_NE(reasons(panes.save({good, good})).find("in the list already"), std::string::npos);
  EXPECT_EQ(dumpOf(dc), before);
  EXPECT_TRUE(panes.draft({{2, panes.place("group"), "DEMO"}}).changes.empty())
      << "names are those that the database has";
  // What another program does meanwhile.
  const Change atAngle = change(panes, 1, "solar transmittance front at 60", "0.5");
  const auto other = opener.openAny(folder / "new.mdb");
  Editor others(session, other->ADOConnection(), EditSet::panes);
  EXPECT_EQ(reasons(others.save({change(others, 1, "thickness", "6")})), "");
  EXPECT_EQ(reasons(panes.save({good})),
            "0: thickness has been changed meanwhile: it is \"6\" now, and was \"5.7\".\n");
  other->ADOConnection()->deleteRows("Pane_integrated_data", "angle = 60");
  EXPECT_EQ(reasons(panes.save({atAngle})), "0: The pane 1 has no values at 60 degrees.\n");
  session.database.DeleteGlazing(1, *other->ADOConnection());
  EXPECT_EQ(reasons(panes.save({good, atAngle})),
            "0: There is no pane 1.\n1: There is no pane 1.\n");
  // Groups that are not there.
  changeTable(dc, "Pane groupID=77");
  EXPECT_EQ(reasons(panes.save({change(panes, 3, "name", "B")})),
            "0: There would be two panes \"B\" in the group \"\" (3 and 2).\n");
  const auto old = remade(node, "2.0.1");
  EXPECT_EQ(raisedBy([&] { Editor(session, old->ADOConnection(), EditSet::panes); }).description,
            "Records are edited in ORV databases of version 3.0.0 only.");
}

TEST_F(EditTest, UndoNeitherDoublesRowsNorLeavesThemAlone) {
  const auto byAnother = [&](const auto& work) {
    History(dc).keep(0);
    work();
    History(dc).keep();
  };
  const auto insert = [&](const std::string& name, std::int16_t angle, const char* supplier) {
    const auto pane = makePane(name, angle);
    pane->supplier(supplier);
    session.database.InsertPane(*pane, dc);
  };
  const auto edit = [&](std::int32_t record, const std::string& field, const std::string& text) {
    Editor panes = editor(EditSet::panes);
    EXPECT_EQ(reasons(panes.save({change(panes, record, field, text)})), "");
  };
  const auto references = commands::edit::historyReferences();
  const auto refusal = [&] {
    const auto before = dumpOf(dc);
    const auto texts = commands::edit::conflictTexts(History(dc).undo(1, references).conflicts);
    EXPECT_EQ(dumpOf(dc), before);
    return texts.empty() ? "none" : texts.front();
  };
  // Rows without a key of their own, changed since, or there again.
  insert("a", 30, "Maker a");
  byAnother([&] { edit(1, "solar transmittance front at 30", "0.5"); });
  EXPECT_EQ(refusal(),
            "Pane_integrated_data: what belongs to PaneID 1 has been deleted or changed since.");
  byAnother([&] { edit(1, "solar transmittance front at 30", "0.13"); });
  EXPECT_TRUE(History(dc).undo(1, references).conflicts.empty());
  byAnother([&] { insert("a", 30, "Maker a"); });
  const auto before = dumpOf(dc);
  EXPECT_TRUE(History(dc).redo(1, references).conflicts.empty());
  EXPECT_EQ(dumpOf(dc), before) << "rows are there twice";
  // A name that others have got, or that is gone, and rows that belong to a record.
  insert("d", 0, "New");
  byAnother([&] { edit(1, "supplier", "New"); });
  EXPECT_EQ(refusal().substr(0, 14), "The supplier 6");
  session.database.DeleteGlazing(2, dc);
  byAnother([&] { commands::edit::deleteLookups(EditSet::suppliers, {2}, dc, ui); });
  EXPECT_EQ(refusal(),
            "The pane 2 \"b\" refers to one of the suppliers that is not there any more.");
  insert("e", 0, "New");
  byAnother([&] { insert("e", 60, "New"); });
  EXPECT_EQ(refusal(), "The pane 5 \"e\" has got other Pane_integrated_data since.");
}

TEST_F(EditTest, ConflictsAreToldAsRecordsOrAsRowsOfThem) {
  using Kind = store::HistoryConflict::Kind;
  const Lines columns{"PaneID", "name", "info"};
  const std::vector<store::Value> wanted{7, "a", std::string(59, 'x') + "éé"};
  const std::vector<store::Value> present{7, "b", store::Bytes(3)};
  const auto conflict = [&](Kind kind, const char* table, const auto& is, const char* other = "") {
    return store::HistoryConflict{table, columns, wanted, is, kind, other};
  };
  const std::vector<store::Value> gone;
  EXPECT_EQ(
      commands::edit::conflictTexts({{.table = "Old"},
                                     conflict(Kind::changed, "PANE", present),
                                     conflict(Kind::changed, "Pane", gone),
                                     conflict(Kind::changed, "Pane", gone),
                                     conflict(Kind::changed, "Pane", std::vector<store::Value>{8}),
                                     conflict(Kind::changed, "Rows", present),
                                     conflict(Kind::isThere, "Pane", present),
                                     conflict(Kind::isThere, "Rows", gone),
                                     conflict(Kind::lacks, "Pane", gone, "Groups"),
                                     conflict(Kind::used, "Pane", gone, "Rows")}),
      (Lines{
          "The table Old is gone, or has other columns now.",
          "The pane 7 \"a\" has been changed since: name is \"b\" now and was \"a\", info is \"3 "
          "bytes\" now and was \"" +
              std::string(59, 'x') + "...\".",
          "The pane 7 \"a\" has been deleted or changed since.",
          "The pane 7 \"a\" has been changed since: PaneID is \"8\" now and was \"7\".",
          "Rows: what belongs to PaneID 7 has been deleted or changed since.",
          "The pane 7 \"a\" is there already.", "Rows: what belongs to PaneID 7 is there already.",
          "The pane 7 \"a\" refers to one of the groups that is not there any more.",
          "The pane 7 \"a\" has got other Rows since."}));
  Lines told;
  for (const auto& each :
       commands::edit::historyDetails({{"Rows", {}, {}, {}},
                                       {"pane", {"PaneID"}, {7, "a"}, {7, "b", 1}},
                                       {"Pane", columns, {}, {8}}})) {
    told.push_back(fmt::format("{}|{}|{}|{}|{}|{}", each.set, each.id, each.name, each.field,
                               each.before, each.after));
  }
  EXPECT_EQ(told, (Lines{"Rows|||||1 row added", "panes|7||?|a|b", "panes|8||||added"}))
      << "of a history that is not whole what there is";
}

/// Changes of all kinds at random, each of which may come to nothing.
class RandomWorks {
 public:
  using Node = CommandsTest::Node;

  RandomWorks(commands::Session& session, RecordingUi& ui, Node to, Node from)
      : session_(session), ui_(ui), to_(std::move(to)), from_(std::move(from)) {}

  void make() {
    ++number_;
    constexpr std::array kWorks{&RandomWorks::remove, &RandomWorks::copy, &RandomWorks::copy,
                                &RandomWorks::merge, &RandomWorks::integrate};
    const std::size_t work = upTo(9);
    try {
      work < kWorks.size() ? (this->*kWorks[work])() : edit();
    } catch (const Error& error) {
      ASSERT_EQ(error.number(), kInvalidCall) << error.what();
    }
  }

 private:
  std::size_t upTo(std::size_t end) { return random_() % end; }

  Node anySet(const Node& of) {
    constexpr std::array kKinds{RecordKind::panes, RecordKind::panes, RecordKind::frames,
                                RecordKind::shadings};
    return commands::recordSetOf(of, kKinds[upTo(kKinds.size())]);
  }

  sources::RecordSelection someOf(const Node& set) {
    auto identifiers = commands::recordIdentifiers(*set);
    std::ranges::shuffle(identifiers, random_);
    identifiers.resize(std::min(identifiers.size(), 1 + upTo(3)));
    return CommandsTest::select(set, identifiers);
  }

  void remove() {
    const auto set = anySet(to_);
    ui_.answers = {commands::Answer::yes};
    commands::deleteRecords(session_, someOf(set), set);
    ui_.answers.clear();
  }

  void copy() {
    ui_.inputs = {"Group " + std::to_string(upTo(3))};
    commands::pasteRecords(session_, someOf(anySet(from_)), to_,
                           {.ifThere = commands::IfThere::replace});
    ui_.inputs.clear();
  }

  void integrate() {
    commands::integrateRecords(session_, someOf(commands::recordSetOf(to_, RecordKind::panes)),
                               {.stores = true}, [](const auto&) {});
  }

  EditSet anyName() { return commands::edit::kEditSets[3 + upTo(3)]; }

  void merge() {
    const EditSet names = anyName();
    const auto all = commands::edit::lookupRecords(names, *to_->ADOConnection());
    if (all.size() < 3) return;
    commands::edit::mergeLookups(names, {all[upTo(all.size())].id}, all[upTo(all.size())].id,
                                 *to_->ADOConnection(), ui_);
  }

  void edit() {
    const bool ofNames = upTo(6) == 0;
    const auto set = anySet(to_);
    Editor editor(session_, to_->ADOConnection(),
                  ofNames ? anyName() : commands::edit::editSetOf(*commands::recordKind(*set)));
    std::vector<commands::edit::TypedValue> values;
    const auto some = someOf(set);
    for (std::int32_t i = 1; i <= some.RecordsCount(); ++i) {
      const std::int32_t record = ofNames ? i : std::stoi(some.SelectedRecordID(i));
      for (int count = 0; count < 3; ++count) {
        const EditField& field = editor.fields()[upTo(editor.fields().size())];
        const auto angles = editor.angles(record);
        commands::edit::FieldPlace place{&field, {}};
        if (field.perAngle && angles.empty()) continue;
        if (field.perAngle) place.angle = angles[upTo(angles.size())];
        values.push_back({record, place, otherText(field, number_ * 10 + count, upTo(2) == 0)});
      }
    }
    editor.save(editor.draft(values).changes);
  }

  commands::Session& session_;
  RecordingUi& ui_;
  Node to_, from_;
  std::mt19937 random_{20261126};
  int number_ = 0;
};

TEST_F(EditTest, RandomChangesAreUndoneInReverseOrderTableByTable) {
  const bool isLong = std::getenv("ORV_LONG_TESTS") != nullptr;
  const auto from = newDatabase("from.mdb");
  for (int i = 0; i < 12; ++i) {
    const auto pane = makePane("pane " + std::to_string(i));
    pane->supplier("Maker " + std::to_string(i % 5));
    pane->description(std::string(static_cast<std::size_t>(i) * 400, 'd'));
    session.database.InsertPane(*pane, *from->ADOConnection());
    if (i % 3 != 0) continue;
    FrameDataClass frame;
    frame.name("frame " + std::to_string(i));
    frame.frametype("Type " + std::to_string(i % 4));
    frame.picture(store::Bytes(static_cast<std::size_t>(i) * 900, 0x5A));
    session.database.InsertFrame(frame, *from->ADOConnection());
    ShadingDataClass shading;
    shading.name("blind " + std::to_string(i));
    shading.spectrum(std::vector<ShadingSpectralPoint>(5));
    session.database.InsertShading(shading, *from->ADOConnection());
  }
  RandomWorks works(session, ui, node, from);
  History history(dc);
  std::vector<DatabaseDump> states{dumpOf(dc)};
  const std::size_t first = history.works().size();
  for (int i = 0; i < (isLong ? 1000 : 60); ++i) {
    works.make();
    const std::size_t count = history.works().size() - first;
    ASSERT_LE(count, states.size());
    if (count == states.size()) {
      states.push_back(dumpOf(dc));
    } else {
      ASSERT_EQ(dumpOf(dc), states.back()) << "a change that the history does not have";
    }
  }
  EXPECT_GT(states.size(), isLong ? 600U : 35U);
  const std::string path = folder / "new.mdb";
  while (states.size() > 1) {
    states.pop_back();
    const auto result = history.undo();
    ASSERT_TRUE(result.conflicts.empty())
        << commands::edit::conflictTexts(result.conflicts).front();
    ASSERT_EQ(dumpOf(dc), states.back()) << result.works.front().title;
    if (states.size() % 8 == 1) {
      const auto report = store::checkFile(path, "");
      ASSERT_TRUE(report.sound()) << report.faults.front().toText();
    }
  }
}

}  // namespace
}  // namespace orv::test
