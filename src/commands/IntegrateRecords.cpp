#include "commands/IntegrateRecords.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "commands/AccessUse.h"
#include "commands/ChangeHistory.h"
#include "commands/ErrorText.h"
#include "commands/LongWork.h"
#include "commands/RecordKind.h"
#include "commands/RecordReader.h"
#include "commands/StoredValues.h"
#include "errors/Counted.h"
#include "model/IntegratedColumns.h"

namespace orv::commands {

namespace DataType = sources::DataType;

namespace {

void requirePanes(const sources::datasource& node, const IntegrationOptions& options) {
  if (recordKind(node) != RecordKind::panes) {
    throw Error(kInvalidCall,
                "Only panes are integrated. The values of a shading are computed when its file is "
                "read.");
  }
  if ((options.stores || options.rehearses) && node.DataType() != DataType::orv3Panes) {
    throw Error(kInvalidCall,
                "Integrated values can only be stored in an ORV database of version 3.0.0.");
  }
}

class Integration {
 public:
  using Each = std::function<void(const IntegratedRow&)>;
  using PanePtr = std::shared_ptr<GlazingData>;

  Integration(Session& session, const sources::RecordSelection& records,
              const IntegrationOptions& options, const Each& each)
      : session_(session),
        records_(records),
        reader_(session, records.DataSourcePtr()),
        options_(options),
        each_(each),
        integrator_(options.standard) {}

  IntegrationResult run() {
    LongWork work(session_.ui, "Integrating spectra...");
    work.expect(records_.RecordsCount());
    for (std::int32_t i = 1; i <= records_.RecordsCount() && !result_.cancelled; ++i) {
      const std::string& identifier = records_.SelectedRecordID(i);
      session_.ui.status("Integrating " + identifier + "...");
      integrateRecord(identifier);
      work.stepDone();
      result_.cancelled = session_.ui.cancelled();
    }
    return result_;
  }

 private:
  void integrateRecord(const std::string& identifier) {
    std::vector<std::int16_t> angles;
    try {
      angles = anglesOf(identifier);
    } catch (const std::exception& error) {
      return tell(failed(identifier, 0, describe(error)));
    }
    std::vector<IntegratedRow> rows;
    std::vector<PanePtr> changed;
    for (const std::int16_t angle : angles) {
      if (isOfDatabase() && !isWanted(angle)) continue;
      IntegratedRow row = rowAt(identifier, angle, changed);
      if (isWanted(row.angle) || !row.failure.empty()) rows.push_back(std::move(row));
    }
    if (options_.stores && !changed.empty()) write(changed, rows);
    for (const IntegratedRow& row : rows) tell(row);
  }

  /// A database tells the angles of a pane before it is read, a file does not.
  bool isOfDatabase() const { return records_.DataSourcePtr()->ADOConnection() != nullptr; }
  bool isWanted(std::int16_t angle) const { return angle == options_.angle.value_or(angle); }

  /// A pane without any data is told to have none.
  std::vector<std::int16_t> anglesOf(const std::string& identifier) {
    auto angles = reader_.dataAngles(identifier);
    return angles.empty() ? std::vector<std::int16_t>{0} : angles;
  }

  IntegratedRow failed(const std::string& identifier, std::int16_t angle,
                       const std::string& reason) {
    return {.identifier = identifier,
            .name = identifier,
            .angle = angle,
            .integration = integrator_.integrate(optics::Spectrum(), optics::Surfaces()),
            .failure = reason};
  }

  /// Adds the pane to `changed` where it has new values that are to be stored.
  IntegratedRow rowAt(const std::string& identifier, std::int16_t angle,
                      std::vector<PanePtr>& changed) {
    try {
      const auto pane = reader_.pane(identifier, angle);
      IntegratedRow row{.identifier = identifier,
                        .name = pane->filename(),
                        .angle = pane->ORV_Angle(),
                        .integration = integrator_.integrate(*pane),
                        .otherDirections = reader_.otherDirections(identifier, *pane)};
      for (const std::string_view name : storedValueNames()) {
        if (const auto value = storedValue(*pane, name)) row.stored[name] = *value;
      }
      if (options_.stores || options_.rehearses) row.storing = change(*pane, row.integration);
      if (row.storing == Storing::written) changed.push_back(pane);
      return row;
    } catch (const std::exception& error) {
      return failed(identifier, angle, describe(error));
    }
  }

  /// Puts the values into the record, where they are wanted, and says what is to become of it.
  Storing change(GlazingData& pane, const optics::Integration& integration) const {
    const bool isMissing = !hasIntegratedData(pane) || lacksIntegratedValues(pane);
    if (options_.onlyMissing && !isMissing) return Storing::isThere;
    if (pane.ORV_Frozen() && !options_.frozenToo) return Storing::isFrozen;
    return optics::store(integration, pane) == 0 ? Storing::nothing : Storing::written;
  }

  void write(const std::vector<PanePtr>& changed, std::vector<IntegratedRow>& rows) {
    try {
      session_.database.StoreIntegratedData(changed, *records_.DataSourcePtr()->ADOConnection());
    } catch (const std::exception& error) {
      for (IntegratedRow& row : rows) {
        if (row.storing != Storing::written) continue;
        row.storing = Storing::failed;
        row.failure = describe(error);
      }
    }
  }

  void tell(const IntegratedRow& row) {
    ++result_.rows;
    if (!row.isWhole()) ++result_.incomplete;
    if (row.storing == Storing::written) ++result_.written;
    if (row.storing == Storing::isFrozen) ++result_.frozen;
    if (row.storing == Storing::isThere) ++result_.present;
    each_(row);
  }

  Session& session_;
  const sources::RecordSelection& records_;
  RecordReader reader_;
  const IntegrationOptions& options_;
  const Each& each_;
  optics::Integrator integrator_;
  IntegrationResult result_;
};

}  // namespace

std::string IntegratedRow::note() const {
  if (!failure.empty()) return failure;
  std::vector<std::string> texts = integration.reasons();
  texts.insert(texts.end(), integration.remarks.begin(), integration.remarks.end());
  if (!otherDirections.empty()) {
    texts.push_back(
        fmt::format("without the spectrum of direction {}", fmt::join(otherDirections, ", ")));
  }
  return fmt::format("{}", fmt::join(texts, "; "));
}

std::string IntegrationResult::summary(optics::Standard standard) const {
  std::string text = fmt::format("{} of integrated values written by {}", counted(written, "row"),
                                 optics::nameOf(standard).name);
  if (present > 0) text += fmt::format(", {} left with the values that they have", present);
  if (frozen > 0) text += fmt::format(", {} left alone since the pane is frozen", frozen);
  if (incomplete > 0)
    text += fmt::format(", {} with too little of a spectrum or failed", incomplete);
  return text + (cancelled ? ", then cancelled." : ".");
}

IntegrationResult integrateRecords(Session& session, const sources::RecordSelection& records,
                                   const IntegrationOptions& options,
                                   const std::function<void(const IntegratedRow&)>& each) {
  const auto node = records.DataSourcePtr();
  requirePanes(*node, options);
  if (options.stores && !mayBeChanged(*node->ADOConnection(), session.ui)) {
    return {.refused = true};
  }
  std::optional<HistoryScope> history;
  if (options.stores) {
    history.emplace(session.ui, *node->ADOConnection(),
                    "Store integrated values of " + countedRecords(*node, records.RecordsCount()));
  }
  return Integration(session, records, options, each).run();
}

}  // namespace orv::commands
