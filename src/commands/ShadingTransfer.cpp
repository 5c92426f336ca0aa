#include "commands/CopyRules.h"
#include "commands/RecordNames.h"
#include "commands/Transfer.h"
#include "database/DatabaseErrors.h"

namespace orv::commands {

namespace {

/// Writes the shading as the caller wants it treated where one of its name is there. By itself a
/// database may have several shadings of one name.
Outcome write(TransferWork& work, const std::string& identifier, ShadingDataClass& shading) {
  auto& database = work.session().database;
  Outcome outcome = Outcome::copied;
  const auto isThere = [&] {
    return database.FindShading(shading.name(), shading.group(), work.destination()) != 0;
  };
  if (work.options().ifThere == IfThere::skip && isThere()) return Outcome::skipped;
  // The source may have several of one name, which are copied one after the other.
  if (work.options().ifThere == IfThere::fail && !work.hasWritten(shading.name()) && isThere()) {
    throw Error(database::kRecordExists, nameConflict(shading.name()));
  }
  if (work.options().ifThere == IfThere::replace) {
    auto how = work.replacement(identifier);
    how.notGiven.merge(work.reader().columnsNotGiven(identifier, shading));
    // A file need not have what a database has in tables of its own.
    const bool isFile = !work.records().DataSourcePtr()->ADOConnection();
    if (isFile && shading.spectrum().empty()) how.notGiven.insert("Shading_spectral_data");
    if (isFile && shading.integrated().empty()) {
      how.notGiven.insert("Shading_integrated_data_temp");
    }
    if (how.key == 0) work.requireNotWritten(shading.name(), identifier);
    if (database.ReplaceShading(shading, how, work.destination())) outcome = Outcome::replaced;
  } else {
    database.InsertShading(shading, work.destination());
  }
  work.wrote(shading.name(), identifier);
  for (const auto& name : lossesOf(shading)) work.result().notKept.add(name, shading.name());
  return outcome;
}

Outcome copyShading(TransferWork& work, const std::string& identifier) {
  Outcome outcome = Outcome::copied;
  const Outcome attempted = work.attempt(
      identifier,
      [&] {
        work.status("Reading " + identifier + "...");
        const auto shading = work.reader().shading(identifier);
        const auto group = work.chooseGroup();
        if (!group) return;
        shading->group(*group);
        work.status("Writing " + identifier + "...");
        requireUsableNames(*shading);
        outcome = write(work, identifier, *shading);
      },
      {.conflict = [] { return "A record with this name already exists."; }},
      [] { return Outcome::failed; });
  return attempted == Outcome::copied ? outcome : attempted;
}

}  // namespace

void transferShadings(TransferWork& work) {
  work.progress().expect(work.records().RecordsCount());
  work.forEachRecord([&](const std::string& identifier) { return copyShading(work, identifier); });
}

}  // namespace orv::commands
