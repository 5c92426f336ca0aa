#include "commands/PasteRecords.h"

#include <fmt/format.h>

#include "commands/AccessUse.h"
#include "commands/ChangeHistory.h"
#include "commands/RecordKind.h"
#include "commands/Transfer.h"
#include "errors/Counted.h"

namespace orv::commands {

namespace DataType = sources::DataType;
using sources::datasource;
using Node = std::shared_ptr<datasource>;

namespace {

/// The node itself; for a database of version 3.0.0 its record set of the kind of the records.
Node resolveDestination(const Node& current, const Node& source) {
  if (!current || current->DataType() != DataType::orvDatabase3) return current;
  return recordSetOf(current, recordKind(*source).value());
}

/// Why records of `source` cannot be copied to `destination`; empty when they can.
std::string refusal(const Node& destination, const Node& source) {
  const std::string refused = "Data cannot be copied to this destination. ";
  if (destination == source) return refused + "Source and destination are the same.";
  if (!destination || !destination->isInVersion3()) {
    return refused + "Data can only be copied to a ORV database version 3 or higher.";
  }
  return {};
}

}  // namespace

void PasteResult::add(const PasteResult& other) {
  refused = refused || other.refused;
  cancelled = cancelled || other.cancelled;
  copied += other.copied;
  replaced += other.replaced;
  skipped += other.skipped;
  partly += other.partly;
  failed += other.failed;
  withoutData += other.withoutData;
  integrated += other.integrated;
  notes.add(other.notes);
  zeros.add(other.zeros);
  notKept.add(other.notKept);
  if (!other.standard.empty()) standard = other.standard;
}

std::string PasteResult::summary(bool saysNoneFailed) const {
  std::string text = counted(copied, "record") + " copied";
  if (replaced > 0) text += fmt::format(", {} replaced", replaced);
  if (skipped > 0) text += fmt::format(", {} skipped", skipped);
  if (partly > 0) text += fmt::format(", {} in part", partly);
  if (failed > 0 || saysNoneFailed) text += fmt::format(", {} failed", failed);
  if (withoutData > 0) text += fmt::format(", {} without data at any angle", withoutData);
  text += cancelled ? ", then cancelled." : ".";
  if (integrated == 0) return text;
  return text + fmt::format(" Integrated values of {} computed by {}.", counted(integrated, "pane"),
                            standard);
}

PasteResult pasteRecords(Session& session, const sources::RecordSelection& pending,
                         const Node& current, const PasteOptions& options) {
  if (!pending.HasRecords()) return {};
  const Node source = pending.DataSourcePtr();
  const Node destination = resolveDestination(current, source);
  if (const std::string text = refusal(destination, source); !text.empty()) {
    session.ui.message(MessageKind::critical, text, kProductName);
    return {.refused = true};
  }
  if (!mayBeChanged(*destination->ADOConnection(), session.ui)) return {.refused = true};
  const HistoryScope history(session.ui, *destination->ADOConnection(),
                             "Copy " + countedRecords(*destination, pending.RecordsCount()));
  TransferWork work(session, pending, *destination, options);
  const std::string& kind = destination->RecordSetName();
  kind == "Pane"    ? transferPanes(work)
  : kind == "Frame" ? transferFrames(work)
                    : transferShadings(work);
  return work.result();
}

}  // namespace orv::commands
