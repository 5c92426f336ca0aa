#include "commands/DeleteRecords.h"

#include <fmt/format.h>

#include "commands/AccessUse.h"
#include "commands/ChangeHistory.h"
#include "commands/ErrorText.h"
#include "commands/LongWork.h"
#include "commands/RecordKind.h"
#include "commands/RecordReader.h"
#include "errors/Counted.h"

namespace orv::commands {

namespace DataType = sources::DataType;

namespace {

bool confirmed(UserInterface& ui, const std::string& details) {
  return ui.ask({"Are you sure you want to remove these records? This action cannot be undone.",
                 kApplicationTitle, Buttons::yesNoCancel, Answer::no, details}) == Answer::yes;
}

void deleteRecord(Session& session, const sources::datasource& node,
                  const std::string& identifier) {
  store::Connection& connection = *node.ADOConnection();
  switch (node.DataType()) {
    case DataType::orv3Panes:
      session.database.DeleteGlazing(recordNumber(identifier), connection);
      break;
    case DataType::orv3Frames:
      session.database.DeleteFrame(recordNumber(identifier), connection);
      break;
    case DataType::orv3Shadings:
      session.database.DeleteShading(recordNumber(identifier), connection);
      break;
    default:
      break;
  }
}

enum class DeletionOutcome { deleted, givenUp, aborted };

/// Tries until the record is deleted, or the user gives it up or ends everything.
DeletionOutcome deleteWithRetries(Session& session, const sources::datasource& node,
                                  const std::string& identifier) {
  while (true) {
    std::string description;
    try {
      deleteRecord(session, node, identifier);
      return DeletionOutcome::deleted;
    } catch (const std::exception& error) {
      description = describe(error);
    }
    const Answer answer =
        session.ui.ask({"The record " + identifier + " could not be deleted: " + description,
                        kProductName, Buttons::abortRetryIgnore, Answer::abort});
    if (answer == Answer::abort) return DeletionOutcome::aborted;
    if (answer == Answer::ignore) return DeletionOutcome::givenUp;
  }
}

}  // namespace

std::string DeletionResult::summary(bool saysNoneFailed) const {
  std::string text = counted(deleted, "record") + " deleted";
  if (failed > 0 || saysNoneFailed) text += fmt::format(", {} failed", failed);
  return text + (cancelled ? ", then cancelled." : ".");
}

DeletionResult askToDelete(Session& session, const sources::RecordSelection& current,
                           const std::shared_ptr<sources::datasource>& shown,
                           const std::string& details) {
  if (!current.HasRecords()) return {.cancelled = true};
  if (!shown || !shown->isInVersion3()) {
    session.ui.message(MessageKind::critical,
                       "This datasource does not allow deleting any records.", kProductName);
    return {.refused = true};
  }
  if (!canBeChanged(*shown->ADOConnection(), session.ui)) return {.refused = true};
  if (!confirmed(session.ui, details)) return {.cancelled = true};
  return {.refused = !mayBeChanged(*shown->ADOConnection(), session.ui)};
}

DeletionResult deleteAskedFor(Session& session, const sources::RecordSelection& current) {
  DeletionResult result;
  const sources::datasource& node = *current.DataSourcePtr();
  const HistoryScope history(session.ui, *node.ADOConnection(),
                             "Delete " + countedRecords(node, current.RecordsCount()));
  LongWork work(session.ui, "Deleting records...");
  session.ui.status("Opening database...");
  work.expect(current.RecordsCount());
  for (std::int32_t i = 1; i <= current.RecordsCount() && !result.cancelled; ++i) {
    const std::string& identifier = current.SelectedRecordID(i);
    session.ui.status("Deleting " + identifier + "...");
    const DeletionOutcome outcome = deleteWithRetries(session, node, identifier);
    ++(outcome == DeletionOutcome::deleted ? result.deleted : result.failed);
    result.cancelled = outcome == DeletionOutcome::aborted || session.ui.cancelled();
    work.stepDone();
  }
  return result;
}

DeletionResult deleteRecords(Session& session, const sources::RecordSelection& current,
                             const std::shared_ptr<sources::datasource>& shown) {
  if (!current.HasRecords()) return {};
  const DeletionResult asked = askToDelete(session, current, shown);
  return asked.isStopped() ? asked : deleteAskedFor(session, current);
}

}  // namespace orv::commands
