// What the transfers of all kinds of record have in common.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "commands/GroupName.h"
#include "commands/LongWork.h"
#include "commands/PasteRecords.h"
#include "commands/RecordReader.h"
#include "model/Text.h"

namespace orv::commands {

/// What became of one record.
enum class Outcome { copied, replaced, skipped, partly, failed, withoutData };

/// One run over the records of a selection.
class TransferWork {
 public:
  TransferWork(Session& session, const sources::RecordSelection& records,
               sources::datasource& destination, const PasteOptions& options);

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

  const PasteOptions& options() const { return options_; }
  const KnownRecord& known(const std::string& identifier) const;
  /// How a record takes the place of the one that is there.
  database::Replacement replacement(const std::string& identifier) const;

  /// How errors of a record are told.
  struct Wording {
    /// The error that the destination has the record already.
    std::function<std::string()> conflict = {};
    /// The part of the record that is meant, where the identifier does not say it.
    std::function<std::string()> which = [] { return std::string(); };
  };

  /// Runs one step of the work on a record and shows an error of it. When the destination has the
  /// record already and it is to be replaced, runs `replace`.
  Outcome attempt(const std::string& identifier, const std::function<void()>& step,
                  const Wording& wording, const std::function<Outcome()>& replace);

  /// Remembers the name under which a record was written.
  void wrote(const std::string& name, const std::string& identifier) {
    written_.try_emplace(upperCase(name), identifier);
  }
  /// Raises kInvalidCall when another record was written under this name: a copy replaces what it
  /// finds, not what it wrote itself.
  void requireNotWritten(const std::string& name, const std::string& identifier) const;
  bool hasWritten(const std::string& name) const { return written_.contains(upperCase(name)); }

  /// Shows that a record was not copied.
  void tellFailure(const std::string& identifier, const std::string& description);

  /// Copies each record in turn, by its identifier, unless the work is stopped, and counts what
  /// became of them.
  void forEachRecord(const std::function<Outcome(const std::string&)>& copy);

 private:
  void count(Outcome outcome);
  Outcome settleConflict(const std::string& text, const std::function<Outcome()>& replace);

  Session& session_;
  const sources::RecordSelection& records_;
  sources::datasource& destination_;
  RecordReader reader_;
  GroupName group_;
  PasteOptions options_;
  std::set<std::string> notGiven_;              ///< columns
  std::map<std::string, std::string> written_;  ///< names to identifiers
  PasteResult result_;
  LongWork progress_;
};

/// How the conflict of two records of one name is told.
std::string nameConflict(const std::string& name);

}  // namespace orv::commands
