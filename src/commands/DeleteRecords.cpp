#include "commands/DeleteRecords.h"

#include "commands/AccessUse.h"
#include "commands/ChangeHistory.h"
#include "commands/ErrorText.h"
#include "commands/LongWork.h"
#include "commands/RecordKind.h"
#include "commands/RecordReader.h"

namespace orv::commands {

namespace DataType = sources::DataType;

namespace {

bool confirmed(UserInterface& ui) {
  return ui.ask({"Are you sure you want to remove these records? This action cannot be undone.",
                 kApplicationTitle, Buttons::yesNoCancel, Answer::no}) == Answer::yes;
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

enum class Outcome { deleted, givenUp, aborted };

/// Tries until the record is deleted, or the user gives it up or ends everything.
Outcome deleteWithRetries(Session& session, const sources::datasource& node,
                          const std::string& identifier) {
  while (true) {
    std::string description;
    try {
      deleteRecord(session, node, identifier);
      return Outcome::deleted;
    } catch (const std::exception& error) {
      description = describe(error);
    }
    const Answer answer =
        session.ui.ask({"The record " + identifier + " could not be deleted: " + description,
                        kProductName, Buttons::abortRetryIgnore, Answer::abort});
    if (answer == Answer::abort) return Outcome::aborted;
    if (answer == Answer::ignore) return Outcome::givenUp;
  }
}

}  // namespace

DeletionResult deleteRecords(Session& session, const sources::RecordSelection& current,
                             const std::shared_ptr<sources::datasource>& shown) {
  DeletionResult result;
  if (!current.HasRecords()) return result;
  if (!shown || !shown->isInVersion3()) {
    session.ui.message(MessageKind::critical,
                       "This datasource does not allow deleting any records.", kProductName);
    result.refused = true;
    return result;
  }
  if (!confirmed(session.ui)) {
    result.cancelled = true;
    return result;
  }
  if (!mayBeChanged(*shown->ADOConnection(), session.ui)) {
    result.refused = true;
    return result;
  }
  const HistoryScope history(session.ui, *shown->ADOConnection(),
                             "Delete " + countedRecords(*shown, current.RecordsCount()));
  LongWork work(session.ui, "Deleting records...");
  session.ui.status("Opening database...");
  work.expect(current.RecordsCount());
  for (std::int32_t i = 1; i <= current.RecordsCount() && !result.cancelled; ++i) {
    const std::string& identifier = current.SelectedRecordID(i);
    session.ui.status("Deleting " + identifier + "...");
    const Outcome outcome = deleteWithRetries(session, *current.DataSourcePtr(), identifier);
    ++(outcome == Outcome::deleted ? result.deleted : result.failed);
    result.cancelled = outcome == Outcome::aborted || session.ui.cancelled();
    work.stepDone();
  }
  return result;
}

}  // namespace orv::commands
