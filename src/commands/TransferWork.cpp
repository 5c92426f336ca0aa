#include "commands/TransferWork.h"

#include "commands/CopyRules.h"
#include "commands/ErrorText.h"
#include "database/DatabaseErrors.h"

namespace orv::commands {

namespace {

std::string failureText(const std::string& identifier, const std::string& description) {
  return "The record " + identifier + " could not be copied: \n" + description +
         "\nIf this is a text file, check its format.";
}

}  // namespace

TransferWork::TransferWork(Session& session, const sources::RecordSelection& records,
                           sources::datasource& destination, const PasteOptions& options)
    : session_(session),
      records_(records),
      destination_(destination),
      reader_(session, records.DataSourcePtr()),
      group_(session, *destination.ADOConnection()),
      options_(options),
      notGiven_(columnsNotGiven(*records.DataSourcePtr())),
      progress_(session.ui, "Pasting records...") {
  if (!options.group.empty()) group_.settle(options.group);
  session_.ui.progressText("Opening database...");
}

std::optional<std::string> TransferWork::chooseGroup() {
  auto name = group_.choose();
  if (!name) result_.cancelled = true;
  return name;
}

const KnownRecord& TransferWork::known(const std::string& identifier) const {
  static const KnownRecord nothing;
  const auto found = options_.known.find(identifier);
  return found == options_.known.end() ? nothing : found->second;
}

database::Replacement TransferWork::replacement(const std::string& identifier) const {
  return {
      .key = known(identifier).replaces, .tolerance = options_.tolerance, .notGiven = notGiven_};
}

bool TransferWork::stopped() {
  if (session_.ui.cancelled()) result_.cancelled = true;
  return result_.cancelled;
}

Outcome TransferWork::attempt(const std::string& identifier, const std::function<void()>& step,
                              const Wording& wording, const std::function<Outcome()>& replace) {
  std::string description;
  bool conflict = false;
  try {
    step();
    return Outcome::copied;
  } catch (const Error& error) {
    conflict = error.number() == database::kRecordExists;
    description = conflict ? wording.conflict() : describe(error);
  } catch (const std::exception& error) {
    description = describe(error);
  }
  const std::string part = wording.which();
  if (!part.empty()) description += "\n(" + part + ")";
  if (conflict) return settleConflict(failureText(identifier, description), replace);
  tellFailure(identifier, description);
  return Outcome::failed;
}

Outcome TransferWork::settleConflict(const std::string& text,
                                     const std::function<Outcome()>& replace) {
  switch (options_.ifThere ? *options_.ifThere : session_.ui.recordExists(text, kProductName)) {
    case IfThere::skip:
      return Outcome::skipped;
    case IfThere::replace:
      return replace();
    case IfThere::fail:  // which a user who was asked has seen
      if (options_.ifThere) session_.ui.message(MessageKind::recordFailure, text, kProductName);
      break;
  }
  return Outcome::failed;
}

void TransferWork::requireNotWritten(const std::string& name, const std::string& identifier) const {
  const auto found = written_.find(upperCase(name));
  if (found == written_.end() || found->second == identifier) return;
  throw Error(kInvalidCall, "This copy has written the record " + found->second +
                                " under the same name (" + name + ") already.");
}

void TransferWork::tellFailure(const std::string& identifier, const std::string& description) {
  session_.ui.message(MessageKind::recordFailure, failureText(identifier, description),
                      kProductName);
}

void TransferWork::count(Outcome outcome) {
  switch (outcome) {
    case Outcome::copied:
      result_.copied += result_.cancelled ? 0 : 1;
      break;
    case Outcome::replaced:
      ++result_.replaced;
      break;
    case Outcome::skipped:
      ++result_.skipped;
      break;
    case Outcome::partly:
      ++result_.partly;
      break;
    case Outcome::failed:
      ++result_.failed;
      break;
    case Outcome::withoutData:
      ++result_.withoutData;
      break;
  }
}

void TransferWork::forEachRecord(const std::function<Outcome(const std::string&)>& copy) {
  for (std::int32_t i = 1; i <= records_.RecordsCount() && !stopped(); ++i) {
    const Outcome outcome = copy(records_.SelectedRecordID(i));
    count(outcome);
    progress_.stepDone();
  }
}

std::string nameConflict(const std::string& name) {
  return "A record with this name (" + name + ") already exists.\n";
}

}  // namespace orv::commands
