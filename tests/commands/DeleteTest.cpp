#include "commands/CommandsTest.h"
#include "commands/DeleteRecords.h"

namespace orv::test {
namespace {

using commands::Answer;
using commands::RecordKind;
using Log = std::vector<std::string>;

const std::string kConfirm =
    "question (ORV): Are you sure you want to remove these records? This action cannot be undone.";

class DeleteTest : public CommandsTest {
 protected:
  void SetUp() override {
    for (const char* name : {"a", "b", "c"}) {
      session.database.InsertPane(*makePane(name), *database_->ADOConnection());
    }
    panes_ = recordSet(database_, RecordKind::panes);
  }

  Node database_ = newDatabase();
  Node panes_;
};

TEST_F(DeleteTest, DeletesAfterAConfirmation) {
  ui.answers = {Answer::yes};
  const auto result = commands::deleteRecords(session, select(panes_, {"1", "3"}), panes_);
  EXPECT_EQ(ui.steps, (std::vector<std::pair<int, int>>{{0, 2}, {1, 2}, {2, 2}}));
  EXPECT_EQ(result.summary(true), "2 records deleted, 0 failed.");
  EXPECT_EQ(ui.log, (Log{kConfirm, "progress: Deleting records...", "status: Opening database...",
                         "status: Deleting 1...", "status: Deleting 3...", "status: Ready",
                         "progress ends"}));
  EXPECT_EQ(commands::recordIdentifiers(*panes_), std::vector<std::string>{"2"});
}

TEST_F(DeleteTest, NothingSelectedNoAndCancelChangeNothing) {
  commands::deleteRecords(session, sources::RecordSelection(), nullptr);
  EXPECT_TRUE(ui.log.empty());
  ui.answers = {Answer::no, Answer::cancel};
  for (int i = 0; i < 2; ++i) {
    EXPECT_TRUE(commands::deleteRecords(session, select(panes_, {"1"}), panes_).cancelled);
  }
  EXPECT_EQ(commands::countRecords(*panes_), 3);
}

}  // namespace
}  // namespace orv::test
