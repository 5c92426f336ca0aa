// Works that the user ends: what was done until then, and all that the user sees.
#include "commands/CommandsTest.h"
#include "commands/CompactDatabase.h"
#include "commands/DeleteRecords.h"
#include "commands/ExportRecords.h"
#include "commands/IntegrateRecords.h"
#include "commands/audit/Audit.h"
#include "commands/compare/Compare.h"
#include "commands/compare/CopyChanges.h"
#include "errors/Error.h"
#include "support/CaseFile.h"

namespace orv::test {
namespace {

using commands::RecordKind;

class CancelTest : public CommandsTest {
 protected:
  /// What becomes of "WORK KIND N": a work on the records of a kind that the user ends when asked
  /// for the Nth time.
  std::vector<std::string> outcome(const std::vector<std::string>& given) {
    std::istringstream words(given.at(0));
    std::string work, kind;
    words >> work >> kind >> left_;
    ui.log.clear();
    ui.steps.clear();
    ui.cancelWhen = [&] { return left_-- == 1; };
    makeSources();
    const Node records = recordSet(full_, kind == "frames"     ? RecordKind::frames
                                          : kind == "shadings" ? RecordKind::shadings
                                                               : RecordKind::panes);
    std::vector<std::string> told;
    try {
      told.push_back(done(work, records));
    } catch (const commands::Cancelled& cancelled) {
      told.emplace_back(cancelled.what());
    } catch (const Error& error) {
      told.push_back(error.description());
    }
    ui.cancelWhen = nullptr;
    std::string steps = "steps:";
    for (const auto& [done, total] : ui.steps) steps += fmt::format(" {}/{}", done, total);
    told.push_back(steps);
    for (std::string line : ui.log) {
      std::ranges::replace(line, '\n', '/');
      told.push_back(line);
    }
    return told;
  }

 private:
  void makeSources() {
    for (const auto& file : std::filesystem::directory_iterator(folder.path())) {
      std::filesystem::remove_all(file);
    }
    makeFullDatabase(folder / "full.mdb");
    full_ = opener.openAny(folder / "full.mdb");
    to_ = newDatabase("to.mdb");
  }

  std::string done(const std::string& work, const Node& records) {
    if (work == "copy") {
      const auto result = copyAll(records, to_);
      return fmt::format("{} {}", result.cancelled, result.summary(true)) + tables(to_);
    }
    if (kAnswers.contains(work)) {
      ui.answers = {kAnswers.at(work)};
      const auto result = commands::deleteRecords(session, selectAll(records), records);
      return fmt::format("{} {}", result.cancelled, result.summary(true)) + tables(full_);
    }
    if (work == "nothing") {
      const auto result = commands::deleteRecords(session, {}, nullptr);
      return fmt::format("{} {}", result.cancelled, result.summary(true));
    }
    if (work == "export") {
      const auto result = commands::exportRecords(session, selectAll(records), {folder / "out"});
      return fmt::format("{} {} {}", result.cancelled, result.failed, result.files);
    }
    if (work == "join") {
      const auto result =
          commands::exportJoined(session, selectAll(records), commands::ExportForm::json);
      return fmt::format("{} {} {}", result.cancelled, result.failed, result.dataSets);
    }
    if (work == "integrate") {
      const auto result = commands::integrateRecords(session, selectAll(records),
                                                     {.stores = true, .frozenToo = true},
                                                     [](const commands::IntegratedRow&) {});
      return fmt::format("{} {}", result.cancelled, result.summary(optics::kUsualStandard));
    }
    if (work == "audit") {
      const auto result = commands::audit::auditSource(session, full_, {}, {}, [](const auto&) {});
      return fmt::format("{} {}", result.cancelled, result.summary());
    }
    if (work == "compare") return commands::compare::compareSources(session, full_, to_).summary();
    if (work == "update") return update();
    return commands::describe(
        commands::compactDatabase({.path = folder / "full.mdb", .target = folder / "out.mdb"}, ui)
            .report);
  }

  /// Copies what is in the one and not in the other.
  std::string update() {
    using namespace commands::compare;
    const int wanted = std::exchange(left_, 0);
    const Comparison comparison = compareSources(session, full_, to_, {.isForCopy = true});
    left_ = wanted;
    ui.log.clear();
    std::string groups;
    const auto result = copyPairs(session, full_, to_, comparison, copyablePairs(comparison).pairs,
                                  {}, [&](const auto& each) { groups += each.summary() + "; "; });
    return fmt::format("{} {} ({})", result.cancelled, result.summary(true), groups) + tables(to_);
  }

  static std::string tables(const Node& node) {
    std::string text;
    for (const char* name : {"Pane", "Frame", "Shading", "Pane_integrated_data"}) {
      text += fmt::format(" {} {}", node->ADOConnection()->table(name).rowCount, name);
    }
    return text;
  }

  /// What a user says who is asked whether to delete.
  inline static const std::map<std::string, commands::Answer> kAnswers{
      {"delete", commands::Answer::yes},
      {"keep", commands::Answer::no},
      {"think", commands::Answer::cancel}};
  Node full_, to_;
  int left_ = 0;
};

TEST_F(CancelTest, LeavesWhatWasDoneAndTellsIt) {
  const std::string shown = readFile(ORV_SOURCE_DIR "/tests/commands/cancelled.txt");
  EXPECT_EQ(retold(shown, [&](const auto& given) { return outcome(given); }), shown);
}

}  // namespace
}  // namespace orv::test
