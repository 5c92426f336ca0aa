#include "commands/TransferWork.h"

#include "commands/ErrorText.h"
#include "database/DatabaseErrors.h"

namespace orv::commands {

TransferWork::TransferWork(Session& session, const sources::RecordSelection& records,
                           sources::datasource& destination)
    : session_(session),
      records_(records),
      destination_(destination),
      reader_(session, records.DataSourcePtr()),
      group_(session),
      progress_(session.ui, "Pasting records...") {
  session_.ui.progressText("Opening database...");
}

std::optional<std::string> TransferWork::chooseGroup() {
  auto name = group_.choose();
  if (!name) result_.cancelled = true;
  return name;
}

bool TransferWork::stopped() {
  if (session_.ui.cancelled()) result_.cancelled = true;
  return result_.cancelled;
}

Outcome TransferWork::attempt(const std::string& identifier, const std::function<void()>& step,
                              const std::function<std::string()>& conflict,
                              const std::function<std::string()>& which) {
  std::string description;
  try {
    step();
    return Outcome::copied;
  } catch (const Error& error) {
    description = error.number() == database::kRecordExists ? conflict() : describe(error);
  } catch (const std::exception& error) {
    description = describe(error);
  }
  const std::string part = which();
  tellFailure(identifier, part.empty() ? description : description + "\n(" + part + ")");
  return Outcome::failed;
}

void TransferWork::tellFailure(const std::string& identifier, const std::string& description) {
  session_.ui.message(MessageKind::recordFailure,
                      "The record " + identifier + " could not be copied: \n" + description +
                          "\nIf this is a text file, check its format.",
                      kProductName);
}

void TransferWork::forEachRecord(const std::function<Outcome(const std::string&)>& copy) {
  for (std::int32_t i = 1; i <= records_.RecordsCount() && !stopped(); ++i) {
    const Outcome outcome = copy(records_.SelectedRecordID(i));
    if (outcome == Outcome::failed) ++result_.failed;
    if (outcome == Outcome::withoutData) ++result_.withoutData;
    if (outcome == Outcome::partly) ++result_.partly;
    if (outcome == Outcome::copied && !result_.cancelled) ++result_.copied;
    progress_.stepDone();
  }
}

std::string nameConflict(const std::string& name) {
  return "A record with this name (" + name + ") already exists.\n";
}

}  // namespace orv::commands
