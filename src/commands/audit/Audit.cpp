#include "commands/audit/Audit.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>

#include "commands/ErrorText.h"
#include "commands/LongWork.h"
#include "commands/RecordList.h"
#include "commands/audit/SourceRules.h"
#include "errors/Counted.h"
#include "model/IntegratedColumns.h"

namespace orv::commands::audit {

namespace DataType = sources::DataType;

namespace {

using Node = std::shared_ptr<sources::datasource>;

/// Records of one record set that are to be looked at.
struct Part {
  Node node;
  RecordKind kind;
  std::vector<RecordListEntry> entries;
};

bool isFolder(const sources::datasource& node) {
  return node.DataType() == DataType::textFolder;
}

/// Files of panes are listed by name only: they are read once, when they are looked at.
std::vector<RecordListEntry> entriesOf(Session& session, const Node& node, RecordKind kind) {
  if (!isFolder(*node) || kind != RecordKind::panes) return listRecords(session, node);
  std::vector<RecordListEntry> entries;
  for (const std::string& identifier : recordIdentifiers(*node)) {
    entries.push_back({identifier, identifier, "", "", ""});
  }
  return entries;
}

std::vector<const Rule*> chosenRules(const AuditOptions& options) {
  std::vector<const Rule*> chosen;
  for (const std::string& name : options.rules) chosen.push_back(&ruleNamed(name));
  if (chosen.empty()) {
    for (const Rule& rule : rules()) chosen.push_back(&rule);
  }
  for (const std::string& name : options.without) std::erase(chosen, &ruleNamed(name));
  std::erase_if(chosen, [&](const Rule* rule) { return rule->severity < options.least; });
  for (const std::string& name : options.rules) {
    const Severity severity = ruleNamed(name).severity;
    if (severity >= options.least) continue;
    throw Error(kInvalidCall,
                fmt::format("The rule \"{}\" finds {}s only, which are not asked for.", name,
                            nameOf(severity)));
  }
  return chosen;
}

std::optional<double> visibleTransmittance(const DataSet& set) {
  return set.integrations.empty() ? std::nullopt : set.integrations.front()["Tf_vis"];
}

class Auditor {
 public:
  Auditor(Session& session, const AuditOptions& options, const EachFinding& each)
      : session_(session), named_(options.rules), rules_(chosenRules(options)), each_(each) {}

  /// Of records of all kinds where none is given; `isWhole` when they are all of theirs.
  AuditResult run(const std::vector<Part>& parts, const Node& database,
                  std::optional<RecordKind> kind, bool isWhole) {
    facts_.database = database;
    facts_.kind = kind;
    facts_.isWhole = isWhole;
    refuseWhatCannotBeAsked();
    {
      LongWork work(session_.ui, "Auditing records...");
      std::size_t count = 0;
      for (const Part& part : parts) count += part.entries.size();
      work.expect(static_cast<int>(count));
      for (const Part& part : parts) lookAt(part, work);
    }
    if (!result_.cancelled) lookAtAll();
    return result_;
  }

 private:
  /// Rules that are named, but would be silent whatever the data.
  void refuseWhatCannotBeAsked() const {
    for (const std::string& name : named_) {
      const auto* on = std::get_if<OnSource>(&ruleNamed(name).check);
      if (on == nullptr || !isOfTables(on->look)) continue;
      if (!facts_.database) {
        throw Error(kInvalidCall,
                    fmt::format("The rule \"{}\" is of the tables of ORV databases only.", name));
      }
      if (facts_.isWhole || on->look == danglingKeys) continue;
      throw Error(kInvalidCall,
                  fmt::format("The rule \"{}\" is of all records, and some are chosen.", name));
    }
  }

  void lookAt(const Part& part, LongWork& work) {
    AuditReader reader(session_, part.node);
    for (const RecordListEntry& entry : part.entries) {
      if (result_.cancelled) return;
      session_.ui.status("Auditing " + entry.identifier + "...");
      lookAtRecord(part, entry, reader);
      ++result_.records;
      work.stepDone();
      result_.cancelled = session_.ui.cancelled();
    }
  }

  void lookAtRecord(const Part& part, const RecordListEntry& entry, AuditReader& reader) {
    RecordFacts& record = facts_.records.emplace_back(
        RecordFacts{.kind = part.kind,
                    .identifier = entry.identifier,
                    .name = entry.name,
                    .group = entry.group,
                    .supplier = entry.supplier,
                    .knowsMaker = part.node->DataType() != DataType::orv2Panes &&
                                  part.node->DataType() != DataType::orv2Frames &&
                                  part.node->DataType() != DataType::orv2Shadings});
    Content content;
    try {
      if (!entry.failure.empty()) throw Error(kInvalidCall, entry.failure);
      if (readsData()) content = contentOf(part.kind, entry.identifier, reader);
    } catch (const std::exception& error) {
      facts_.records.pop_back();
      return tellUnreadable(part, entry, reader, error);
    }
    if (content.pane) takeOver(*content.pane, isFolder(*part.node), record);
    for (const Rule* rule : rules_) {
      if (const auto* on = std::get_if<OnRecord>(&rule->check))
        tell(*rule, record, on->look(record));
      if (content.pane) lookAtPane(*rule, *content.pane, record);
      if (content.shading) lookAtShading(*rule, *content.shading, record);
      if (content.frame) {
        const auto* on = std::get_if<OnData>(&rule->check);
        if (on != nullptr && on->frame != nullptr) tell(*rule, record, on->frame(*content.frame));
      }
    }
  }

  /// One of these, or none where only a list of the records is looked at.
  struct Content {
    std::optional<AuditedPane> pane = {};
    std::optional<AuditedShading> shading = {};
    std::shared_ptr<const FrameDataClass> frame = {};
  };

  static Content contentOf(RecordKind kind, const std::string& identifier, AuditReader& reader) {
    switch (kind) {
      case RecordKind::panes:
        return {.pane = reader.pane(identifier)};
      case RecordKind::shadings:
        return {.shading = reader.shading(identifier)};
      case RecordKind::frames:
        break;
    }
    return {.frame = reader.frame(identifier)};
  }

  /// Whether a rule wants more of records than what a list of them has.
  bool readsData() const {
    return std::ranges::any_of(rules_, [](const Rule* rule) {
      if (std::holds_alternative<OnRecord>(rule->check)) return true;
      const auto* on = std::get_if<OnSource>(&rule->check);
      return on == nullptr || !isOfTables(on->look);
    });
  }

  static bool isOfTables(std::vector<PlacedFault> (*look)(const SourceFacts&)) {
    return look == unusedNames || look == orphans || look == danglingKeys;
  }

  void takeOver(const AuditedPane& pane, bool isFile, RecordFacts& record) {
    const GlazingData& data = pane.record();
    if (isFile) {
      record.name = data.filename();
      record.supplier = data.supplier();
      record.angle = data.ORV_Angle();
    }
    if (data.Thickness() > 0) record.thickness = data.ConvertedThickness(kSI);
    for (const DataSet& set : pane.sets) {
      if (set.pane->ORV_Angle() == 0) record.transmittance = visibleTransmittance(set);
      keep(set);
    }
  }

  /// For the rule on duplicates.
  void keep(const DataSet& set) {
    constexpr std::size_t kLeastPoints = 5;
    const auto& wavelengths = set.spectrum.wavelengths;
    if (wavelengths.size() < kLeastPoints) return;
    KeptSpectrum kept{.record = facts_.records.size() - 1,
                      .angle = set.pane->ORV_Angle(),
                      .grid = grids_.emplace(wavelengths, grids_.size()).first->second,
                      .values = {}};
    for (const Curve curve : {Curve::Tf, Curve::Rf, Curve::Rb, Curve::Tb}) {
      const auto& values = set.spectrum[curve];
      kept.values.insert(kept.values.end(), values.begin(), values.end());
    }
    facts_.spectra.push_back(std::move(kept));
  }

  void lookAtPane(const Rule& rule, const AuditedPane& pane, const RecordFacts& record) {
    const auto* onData = std::get_if<OnData>(&rule.check);
    if (onData != nullptr && onData->pane != nullptr) tell(rule, record, onData->pane(pane));
    for (const DataSet& set : pane.sets) {
      auto faults = faultsOf(rule, set);
      for (Fault& fault : faults) fault.angle = set.pane->ORV_Angle();
      tell(rule, record, std::move(faults));
    }
  }

  static std::vector<Fault> faultsOf(const Rule& rule, const DataSet& set) {
    const auto* on = std::get_if<OnDataSet>(&rule.check);
    return on != nullptr ? on->pane(set) : faultsOfSpectrum(rule, set);
  }

  void lookAtShading(const Rule& rule, const AuditedShading& shading, const RecordFacts& record) {
    const auto* onData = std::get_if<OnData>(&rule.check);
    const auto* onSet = std::get_if<OnDataSet>(&rule.check);
    const auto look = onData != nullptr  ? onData->shading
                      : onSet != nullptr ? onSet->shading
                                         : nullptr;
    tell(rule, record, look != nullptr ? look(shading) : faultsOfSpectrum(rule, shading.data));
  }

  static std::vector<Fault> faultsOfSpectrum(const Rule& rule, const DataSet& set) {
    if (!set.hasSpectrum()) return {};
    if (const auto* on = std::get_if<OnAnySpectrum>(&rule.check)) return on->look(set);
    const auto* on = std::get_if<OnSpectrum>(&rule.check);
    return on != nullptr && set.units == UnitFault::none ? on->look(set) : std::vector<Fault>();
  }

  const Rule* chosen(std::string_view name) const {
    const auto found = std::ranges::find(rules_, name, &Rule::name);
    return found == rules_.end() ? nullptr : *found;
  }

  /// The readers of databases refuse values below 0. Where nobody asks for these, the record is
  /// one that cannot be read all the same.
  void tellUnreadable(const Part& part, const RecordListEntry& entry, const AuditReader& reader,
                      const std::exception& error) {
    const RecordFacts record{.kind = part.kind, .identifier = entry.identifier, .name = entry.name};
    const auto type = part.node->DataType();
    const Rule* const outside = chosen(kOutside);
    if (outside != nullptr && (type == DataType::orv3Panes || type == DataType::orv2Panes)) {
      if (auto faults = negativePointsOf(*part.node, entry.identifier); !faults.empty()) {
        return tell(*outside, record, std::move(faults));
      }
    }
    const bool isShading = reader.isShadingProduct(entry.identifier);
    if (const Rule* const rule = chosen(isShading ? kNotRead : kUnreadable)) {
      tell(*rule, record, {{.message = describe(error)}});
    }
  }

  static std::vector<Fault> negativePointsOf(const sources::datasource& node,
                                             const std::string& identifier) {
    try {
      return negativePoints(node, identifier);
    } catch (const Error&) {
      return {};  // that the record cannot be read is told in any case
    }
  }

  void lookAtAll() {
    for (const Rule* rule : rules_) {
      const auto* on = std::get_if<OnSource>(&rule->check);
      if (on == nullptr) continue;
      for (PlacedFault& each : on->look(facts_)) tell(*rule, std::move(each));
    }
  }

  void tell(const Rule& rule, const RecordFacts& record, std::vector<Fault> faults) {
    for (Fault& fault : faults) tell(rule, at(record, std::move(fault)));
  }

  void tell(const Rule& rule, PlacedFault placed) {
    ++result_.found[static_cast<std::size_t>(rule.severity)];
    each_({.severity = rule.severity,
           .rule = rule.name,
           .set = std::move(placed.set),
           .kind = placed.kind,
           .identifier = std::move(placed.identifier),
           .name = std::move(placed.name),
           .fault = std::move(placed.fault)});
  }

  Session& session_;
  std::vector<std::string> named_;
  std::vector<const Rule*> rules_;
  const EachFinding& each_;
  std::map<std::vector<double>, std::size_t> grids_;
  SourceFacts facts_;
  AuditResult result_;
};

Node databaseOf(const Node& node) {
  const Node source = node->Parent() ? node->Parent() : node;
  const auto type = source->DataType();
  return type == DataType::orvDatabase2 || type == DataType::orvDatabase3 ? source : nullptr;
}

std::string countedOrNo(std::size_t count, const char* noun) {
  return count == 0 ? fmt::format("no {}s", noun) : counted(count, noun);
}

}  // namespace

std::string AuditResult::summary() const {
  return fmt::format(
      "{}{}: {}, {}, {}.", countedOrNo(records, "record"), cancelled ? ", then cancelled" : "",
      countedOrNo(count(Severity::error), "error"),
      countedOrNo(count(Severity::warning), "warning"), countedOrNo(count(Severity::note), "note"));
}

AuditResult auditSource(Session& session, const std::shared_ptr<sources::datasource>& source,
                        std::optional<RecordKind> kind, const AuditOptions& options,
                        const EachFinding& each) {
  Auditor auditor(session, options, each);
  std::vector<Part> parts;
  for (const RecordKind any : {RecordKind::panes, RecordKind::frames, RecordKind::shadings}) {
    if (any != kind.value_or(any)) continue;
    if (const Node node = recordSetOf(source, any)) {
      parts.push_back({node, any, entriesOf(session, node, any)});
    }
  }
  if (parts.empty()) {
    throw Error(kInvalidCall, fmt::format("\"{}\" has no {}.", source->text(),
                                          kind ? setName(*kind) : "records"));
  }
  return auditor.run(parts, databaseOf(source), kind, true);
}

AuditResult auditRecords(Session& session, const sources::RecordSelection& records,
                         const AuditOptions& options, const EachFinding& each) {
  Auditor auditor(session, options, each);
  const Node node = records.DataSourcePtr();
  Part part{node, recordKind(*node).value_or(RecordKind::panes), {}};
  std::map<std::string, RecordListEntry> known;
  for (auto& entry : entriesOf(session, node, part.kind)) known[entry.identifier] = entry;
  for (std::int32_t i = 1; i <= records.RecordsCount(); ++i) {
    const std::string& identifier = records.SelectedRecordID(i);
    const auto entry = known.find(identifier);
    part.entries.push_back(entry != known.end()
                               ? entry->second
                               : RecordListEntry{identifier, identifier, "", "", "",
                                                 "This record was not found in its data source."});
  }
  return auditor.run({part}, databaseOf(node), part.kind, false);
}

}  // namespace orv::commands::audit
