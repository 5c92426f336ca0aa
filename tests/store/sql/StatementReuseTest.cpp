// Statements that differ in their values only, run by one that is kept.
#include <gtest/gtest.h>

#include <fstream>
#include <map>

#include "model/Raised.h"
#include "store/Connection.h"
#include "store/TableDesign.h"
#include "store/sql/SqlEngine.h"
#include "store/sql/syntax/StatementShape.h"
#include "support/CaseFile.h"
#include "support/TemporaryFolder.h"

namespace orv::store::sql {
namespace {

/// A table of panes and an engine, which carry out the lines of reuse.txt.
class StatementReuse {
 public:
  /// Panes of the groups 1 to 3 in turn, each a day after the one before.
  void add(int count) {
    const auto rows = connection_->openRecordset("Pane", CursorType::static_,
                                                 LockType::batchOptimistic, SourceKind::table);
    for (const int end = last_ + count; last_ < end; ++last_) {
      rows->addNew();
      rows->setValue("id", last_ + 1);
      rows->setValue("grp", last_ % 3 + 1);
      rows->setValue("name", "pane " + std::to_string(last_ + 1));
      rows->setValue("made", Date{43831.0 + last_});
    }
    rows->updateBatch();
  }
  /// The first values of the rows that are left, and how many rows were visited for them.
  std::string rest(SqlCursor& cursor, std::uint64_t visited) {
    std::string ids;
    while (cursor.step()) ids += cursor.value(0).toText() + " ";
    return ids + "of " + std::to_string(engine_->rowsRead() - visited);
  }
  /// Gives the saved query another condition, as another program does.
  void changeQuery(const std::string& condition) {
    const auto parts =
        connection_->openRecordset("SELECT * FROM MSysQueries WHERE Expression Like 'id =*'",
                                   CursorType::keyset, LockType::optimistic);
    parts->setValue("Expression", condition);
    parts->update();
  }
  std::string run(const std::string& verb, const std::string& argument) {
    const std::uint64_t visited = engine_->rowsRead();
    if (verb == "add") return add(std::stoi(argument)), "";
    if (verb == "index") {
      return connection_->createIndex("Pane", {.name = argument, .columns = {{"grp"}, {"id"}}}), "";
    }
    if (verb == "condition") return changeQuery(argument), "";
    if (verb == "where")
      return rest(*engine_->open("SELECT * FROM Pane WHERE " + argument), visited);
    if (verb == "select") return rest(*engine_->open("SELECT " + argument), visited);
    if (verb == "begin") {
      under_ = engine_->open("SELECT * FROM Pane WHERE " + argument);
      return under_->step() ? under_->value(0).toText() : "none";
    }
    return rest(*under_, visited);
  }

 private:
  const test::TemporaryFolder folder_;
  const std::shared_ptr<Connection> connection_ =
      Connection::create(folder_ / "panes.mdb", [](Connection& made) {
        made.createTable(
            test::design("Pane", "id longInteger, grp longInteger, name text 20, made dateTime"));
        made.createQuery(
            {.name = "Chosen", .outputs = {{"*"}}, .tables = {"Pane"}, .where = "id = 1"});
      });
  const std::shared_ptr<SqlEngine> engine_ =
      SqlEngine::create(jet::Database::open(folder_ / "panes.mdb", ""));
  std::unique_ptr<SqlCursor> under_;
  int last_ = 0;
};

TEST(StatementShape, HasParametersForWhatIsCompared) {
  std::map<std::string, std::size_t> shapes;
  for (const auto& [statement, expected] : test::examplesOf("store/sql/shapes.txt", 30)) {
    std::vector<Token> tokens = tokenize(SqlText{statement});
    const StatementShape shape = takeParameters(tokens);
    std::string told =
        std::to_string(shapes.try_emplace(shape.key, shapes.size() + 1).first->second);
    for (const char* parting = ": "; const Token& token : tokens) {
      if (token.kind == Token::Kind::end) continue;
      told += parting + (token.parameter > 0 ? "?" + std::to_string(token.parameter) : token.text);
      parting = " ";
    }
    for (const char* parting = " | "; const Token& parameter : shape.parameters) {
      told += parting + parameter.text;
      parting = ", ";
    }
    EXPECT_EQ(told, expected) << statement;
  }
}

TEST(StatementReuse, GivesTheRowsOfItsOwnValues) {
  std::ifstream script(ORV_SOURCE_DIR "/tests/store/sql/reuse.txt");
  std::optional<StatementReuse> panes;
  for (std::string line; std::getline(script, line);) {
    if (line.starts_with("# ")) panes.emplace();
    const std::size_t arrow = line.find(" -> ");
    if (arrow == std::string::npos) continue;
    const std::size_t blank = line.find(' ');
    std::string found;
    const test::Raised raised = test::raisedBy([&] {
      found = panes->run(line.substr(0, blank), line.substr(blank + 1, arrow - blank - 1));
    });
    if (raised.number != 0) found = "error " + std::to_string(raised.number);
    EXPECT_EQ(found, line.substr(arrow + 4)) << line;
  }
}

}  // namespace
}  // namespace orv::store::sql
