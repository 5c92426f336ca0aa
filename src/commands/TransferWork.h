// What the transfers of all kinds of record have in common.
#pragma once

#include <functional>
#include <string>

#include "commands/GroupName.h"
#include "commands/LongWork.h"
#include "commands/PasteRecords.h"
#include "commands/RecordReader.h"

namespace orv::commands {

/// What became of one record.
enum class Outcome { copied, partly, failed, withoutData };

/// One run over the records of a selection.
class TransferWork {
 public:
  TransferWork(Session& session, const sources::RecordSelection& records,
               sources::datasource& destination);

  Session& session() { return session_; }
  const sources::RecordSelection& records() const { return records_; }
  const RecordReader& reader() const { return reader_; }
  store::Connection& destination() { return *destination_.ADOConnection(); }
  GroupName& group() { return group_; }
  PasteResult& result() { return result_; }
  LongWork& progress() { return progress_; }

  void status(const std::string& text) { session_.ui.status(text); }

  /// The group for the next record; none ends the paste.
  std::optional<std::string> chooseGroup();

  /// Whether the work has to end before its end.
  bool stopped();

  /// Runs one step of the work on a record and shows an error of it. `conflict` words the error
  /// that the destination has the record already; `which` names the part of the record, where the
  /// identifier does not say it.
  Outcome attempt(
      const std::string& identifier, const std::function<void()>& step,
      const std::function<std::string()>& conflict,
      const std::function<std::string()>& which = [] { return std::string(); });

  /// Shows that a record was not copied.
  void tellFailure(const std::string& identifier, const std::string& description);

  /// Copies each record in turn, by its identifier, unless the work is stopped, and counts what
  /// became of them.
  void forEachRecord(const std::function<Outcome(const std::string&)>& copy);

 private:
  Session& session_;
  const sources::RecordSelection& records_;
  sources::datasource& destination_;
  RecordReader reader_;
  GroupName group_;
  PasteResult result_;
  LongWork progress_;
};

/// How the conflict of two records of one name is told.
std::string nameConflict(const std::string& name);

}  // namespace orv::commands
