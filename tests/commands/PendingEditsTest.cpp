// Changes that are collected, taken back and made again before they are saved.
#include <random>

#include "commands/CommandsTest.h"
#include "commands/edit/PendingEdits.h"
#include "model/Raised.h"

namespace orv::test {
namespace {

using commands::edit::PendingEdits;
using commands::edit::TypedValue;
using store::Value;

class PendingEditsTest : public CommandsTest {
 protected:
  using Fields = std::map<std::pair<std::int32_t, std::string>, std::string>;

  PendingEditsTest() {
    for (const char* name : {"a", "b", "c", "d"}) session.database.InsertPane(*makePane(name), dc);
  }

  TypedValue typed(std::int32_t record, const char* field, const std::string& text) {
    return {record, editor.place(field), text};
  }

  Fields stored() {
    Fields fields;
    for (std::int32_t record = 1; record <= 4; ++record) {
      for (const char* field : kFields) {
        fields[{record, field}] =
            commands::edit::fieldText(editor.value(record, *editor.place(field).field));
      }
    }
    return fields;
  }
  /// As it would be with the changes that are pending.
  Fields shown() {
    Fields fields = stored();
    for (const auto& change : pending.changes()) {
      EXPECT_EQ(commands::edit::fieldText(change.before), (fields[{change.record, change.field}]));
      EXPECT_NE(change.before, change.after);
      fields[{change.record, change.field}] = commands::edit::fieldText(change.after);
    }
    return fields;
  }

  static constexpr const char* kFields[] = {"thickness", "product name", "supplier", "frozen"};
  Node node = newDatabase();
  store::Connection& dc = *node->ADOConnection();
  commands::edit::Editor editor{session, node->ADOConnection(), commands::edit::EditSet::panes};
  PendingEdits pending{editor};
};

TEST_F(PendingEditsTest, RandomStepsGoBackAndForth) {
  std::mt19937 random(20261126);
  const auto below = [&](int bound) { return static_cast<int>(random() % bound); };
  const std::vector<std::vector<std::string>> texts{
      {"3", "4,5", "5.75"}, {"", "Clear", "Grey é"}, {"Alder", "Birch"}, {"yes", "no"}};
  std::vector<Fields> states{shown()};
  std::size_t at = 0;
  for (int step = 0; step < 300; ++step) {
    const int what = below(10);
    if (what < 5) {
      const int field = below(4);
      const std::string& text = texts[field][below(static_cast<int>(texts[field].size()))];
      std::vector<TypedValue> values;
      const int first = below(4);
      const int last = first + below(3);
      for (int i = first; i <= last; ++i) values.push_back(typed(1 + i % 4, kFields[field], text));
      if (pending.type(values) == 0) continue;
    } else if (what == 5 && !pending.isEmpty()) {
      pending.drop({pending.changes()[below(static_cast<int>(pending.changes().size()))]});
    } else if (what < 8) {
      ASSERT_EQ(pending.canUndo(), at > 0);
      if (at > 0) pending.undo();
      if (at > 0) --at;
      ASSERT_EQ(shown(), states[at]);
      continue;
    } else if (what == 8) {
      ASSERT_EQ(pending.canRedo(), at + 1 < states.size());
      if (at + 1 < states.size()) pending.redo();
      if (at + 1 < states.size()) ++at;
      ASSERT_EQ(shown(), states[at]);
      continue;
    } else {
      const Fields wanted = shown();
      ASSERT_TRUE(pending.save().isFine());
      EXPECT_TRUE(pending.isEmpty());
      ASSERT_EQ(stored(), wanted);
      states.clear();
      at = static_cast<std::size_t>(-1);
    }
    states.resize(++at);
    states.push_back(shown());
  }
}

TEST_F(PendingEditsTest, WrongValuesAreNotTakenAndThoseOfOthersAreTold) {
  pending.type({typed(1, "thickness", "7")});
  const auto before = pending.changes();
  EXPECT_EQ(raisedBy([&] {
              pending.type({typed(2, "thickness", "8"), typed(3, "thickness", "4000")});
            }).description,
            "pane 3: thickness is from 0 to 1000 mm, and 4000 is not.");
  EXPECT_NE(raisedBy([&] { pending.type({typed(1, "name", "b")}); }).description.find("\"b\""),
            std::string::npos);
  EXPECT_EQ(pending.changes(), before);
  EXPECT_EQ(raisedBy([&] {
              pending.type({typed(1, "thickness", "x"), typed(1, "frozen", "z"),
                            typed(2, "supplier", " "), typed(3, "thickness", "1e5"),
                            typed(9, "thickness", "1")});
            }).description,
            "pane 1: thickness is a number, and \"x\" is none.\npane 1: frozen is yes or no, and "
            "\"z\" is neither.\npane 2: supplier cannot be empty.\n... and 2 more.");
  const TypedValue wrong = typed(1, "frozen", "z");
  EXPECT_EQ(raisedBy([&] {
              pending.type({wrong, wrong, wrong});
            }).description.find("more"),
            std::string::npos);

  pending.type({typed(2, "product name", "mine"), typed(3, "product name", "mine")});
  ASSERT_TRUE(editor.save({editor.change(1, editor.place("thickness"), "6")}).isFine());
  ASSERT_TRUE(editor.save({editor.change(2, editor.place("product name"), "theirs")}).isFine());
  pending.lookAgain();
  ASSERT_EQ(pending.review().refusals.size(), 2U);
  EXPECT_EQ(pending.review().refusals[0].present, Value(6.0F));
  EXPECT_EQ(pending.review().refusals[1].present, Value("theirs"));
  EXPECT_FALSE(pending.save().isFine());
  EXPECT_NE(stored()[std::pair(3, "product name")], "mine");
  EXPECT_EQ(pending.type({typed(1, "thickness", "7.5")}), 1U) << "what is told is not refused";
  pending.undo();

  pending.leaveToOthers();
  ASSERT_EQ(pending.changes().size(), 1U);
  pending.undo();
  pending.overrideOthers();
  ASSERT_TRUE(pending.save().isFine());
  EXPECT_EQ(stored()[std::pair(1, "thickness")], "7");
  EXPECT_EQ(stored()[std::pair(2, "product name")], "mine");

  // What cannot be saved any more is in the way of nothing that is typed elsewhere.
  pending.type({typed(4, "thickness", "5")});
  session.database.DeleteGlazing(4, dc);
  EXPECT_EQ(pending.type({typed(3, "thickness", "2"), typed(1, "thickness", "2")}), 2U);
  pending.overrideOthers();
  pending.leaveToOthers();
  EXPECT_EQ(pending.review().refusals.size(), 1U) << "nobody has another value of it";
  EXPECT_FALSE(pending.save().isFine());
  EXPECT_EQ(pending.name(4) + pending.name(9), "d");
  EXPECT_EQ(*pending.find(4, "thickness"), Value(5.0F));
  EXPECT_EQ(pending.find(4, "thickness", std::int16_t{0}), nullptr);
  pending.drop({pending.changes().back()});
  EXPECT_TRUE(pending.save().isFine());
  EXPECT_TRUE(pending.review().refusals.empty());
  pending.drop({editor.change(1, editor.place("thickness"), "9")});  // which is none of them
  EXPECT_FALSE(pending.canUndo());

  // What others have made the same is no change any more.
  pending.type({typed(1, "thickness", "8")});
  ASSERT_TRUE(editor.save({editor.change(1, editor.place("thickness"), "8")}).isFine());
  pending.lookAgain();
  pending.overrideOthers();
  EXPECT_TRUE(pending.isEmpty());
}

}  // namespace
}  // namespace orv::test
