#include "commands/CommandsTest.h"
#include "commands/CopyRecords.h"

namespace orv::test {
namespace {

using commands::IfThere;
using commands::RecordKind;
using commands::TextFileKind;

class PasteTest : public CommandsTest {
 protected:
  commands::PasteResult paste(const sources::RecordSelection& selection, const Node& to) {
    return commands::pasteRecords(session, selection, to);
  }
};

TEST_F(PasteTest, CopyClonesTheSelectionOrSaysThatThereIsNone) {
  EXPECT_FALSE(commands::copyRecords(sources::RecordSelection(), ui).has_value());
  EXPECT_EQ(ui.log.back(),
            "information (ORV database manager): No records selected. Please select one or more "
            "data records first.");
  const auto database = newDatabase();
  sources::RecordSelection current = select(recordSet(database, RecordKind::panes), {"1"});
  const auto pending = commands::copyRecords(current, ui);
  current.SelectedRecordID(1, "2");
  ASSERT_TRUE(pending.has_value());
  EXPECT_EQ(pending->SelectedRecordID(1), "1");
}

TEST_F(PasteTest, ReservedGroupNamesAreTakenWhereThatIsAllowed) {
  const auto database = newDatabase();
  const auto files = texts(TextFileKind::panes, {{"a.txt", paneText()}});
  session.strictGroupNames = false;
  ui.inputs = {"TARVEN"};
  EXPECT_EQ(paste(selectAll(files), database).copied, 1);
}

TEST_F(PasteTest, WithoutAGroupNothingIsCopiedAndWhatIsThereIsNamedOrReplaced) {
  makeFullDatabase(folder / "full.mdb");
  const auto full = opener.openAny(folder / "full.mdb");
  const auto to = newDatabase();
  const auto summary = [&](RecordKind kind, const char* group, std::optional<IfThere> ifThere) {
    ui.inputs = {group};
    const auto records = select(recordSet(full, kind), {"1"});
    return commands::pasteRecords(session, records, to, {.ifThere = ifThere}).summary();
  };
  for (const auto kind : {RecordKind::panes, RecordKind::frames, RecordKind::shadings}) {
    for (const auto ifThere : {std::optional<IfThere>(), std::optional(IfThere::replace)}) {
      EXPECT_EQ(summary(kind, "", ifThere), "0 records copied, then cancelled.");
    }
    EXPECT_EQ(summary(kind, "Demo", IfThere::fail), "1 record copied.");
    EXPECT_EQ(summary(kind, "Demo", IfThere::fail), "0 records copied, 1 failed.");
    EXPECT_NE(messages().back().find("already exists."), std::string::npos) << messages().back();
    ui.existing = IfThere::replace;  // of shadings there may be several
    EXPECT_EQ(summary(kind, "Demo", {}),
              kind == RecordKind::shadings ? "1 record copied." : "0 records copied, 1 replaced.");
  }
}

TEST_F(PasteTest, TheCopyOutlivesItsSourceInTheList) {
  makeGlazingDatabase(folder / "glazing.mdb");
  const auto database = newDatabase();
  sources::RecordSelection pending;
  {
    const auto igdb = opener.openAny(folder / "glazing.mdb");
    pending = select(recordSet(igdb, RecordKind::panes), {"CLEAR.DAT"});
    session.MainDataSources.RemoveDataSource(igdb->key());
  }
  EXPECT_EQ(paste(pending, database).copied, 1);
  EXPECT_TRUE(messages().empty()) << "the IGDB's panes need no group";
  EXPECT_EQ(commands::listRecords(session, recordSet(database, RecordKind::panes))[0].group,
            "IGDB");
}

TEST_F(PasteTest, AUserIsAskedBeforeADatabaseIsChangedThatAccessSeemsToHaveOpen) {
  const auto database = newDatabase();
  const auto files = texts(TextFileKind::panes, {{"a.txt", paneText()}});
  folder.write("new.ldb", "");
  ui.answers = {commands::Answer::no};
  EXPECT_TRUE(paste(selectAll(files), database).refused);
  EXPECT_EQ(database->ADOConnection()->table("Pane").rowCount, 0);
  ASSERT_EQ(ui.log.size(), 1U);
  EXPECT_NE(ui.log[0].find("beside it is \"new.ldb\""), std::string::npos) << ui.log[0];

  ui.answers = {commands::Answer::yes};
  ui.inputs = {"Glass"};
  EXPECT_EQ(paste(selectAll(files), database).copied, 1);
}

}  // namespace
}  // namespace orv::test
