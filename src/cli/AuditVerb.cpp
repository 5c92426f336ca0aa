#include <iostream>

#include "cli/Arguments.h"
#include "cli/Verb.h"
#include "commands/audit/Audit.h"

namespace orv::cli {

namespace {

using commands::audit::AuditResult;
using commands::audit::Finding;
using commands::audit::Severity;

const std::map<std::string, Severity> kSeverities{
    {"error", Severity::error}, {"warning", Severity::warning}, {"note", Severity::note}};

class AuditVerb : public Verb {
 public:
  explicit AuditVerb(CLI::App& app)
      : Verb(
            app, "audit", "Find faults in the data of a source, and change nothing",
            "  orv audit orvdata.mdb\n"
            "  orv audit measured-panes/ --severity warning --format tsv\n"
            "  orv audit orvdata.mdb 12 13 --without unknown-maker,outliers\n"
            "  orv audit orvdata.mdb --set panes --rule duplicates\n"
            "  orv audit --rules\n",
            "Finds impossible values, stored values that are not those of the spectrum, records "
            "that "
            "are there twice, and rows that belong to nothing. The exit status is 1 when there are "
            "errors.") {
    sourceOption_ = source_.addSource(command())->required(false);
    addIdentifiers(command(), identifiers_);
    source_.addOptions(command(), "Only these records: panes, frames or shadings");
    source_.addTolerant(command());
    source_.addWhere(command());
    addNames(command(), "--rule", options_.rules, "Only these rules, parted by commas")
        ->transform(anyRule());
    addNames(command(), "--without", options_.without, "Not these rules, parted by commas")
        ->transform(anyRule());
    command()
        .add_option("--severity", options_.least,
                    "Only findings that are this bad at least: error, warning or note (default)")
        ->transform(oneOf(kSeverities))
        ->type_name("SEVERITY");
    command().add_flag("--strict", isStrict_, "Exit with 1 for warnings, too");
    command().add_flag("--rules", listsRules_, "List the rules, and what each is for");
    addQuiet(command(), answers_.quiet);
    addFormat(command(), format_);
  }

  ExitCode run(Console& console) override {
    if (listsRules_) return listRules();
    if (sourceOption_->count() == 0) throw wrongUse("SOURCE is required, or --rules.");
    console.ui.answers(answers_);
    const Node source = source_.open(console);
    std::unique_ptr<RowWriter> writer;  // which begins to write when it is made
    const auto begin = [&] {
      if (!writer) writer = makeRowWriter(format_, kHeadings, std::cout);
    };
    const auto result = usedRightly([&] {
      return audit(console, source, [&](const Finding& finding) {
        begin();
        writer->row(cells(*source, finding));
      });
    });
    begin();
    writer->end();
    if (!answers_.quiet) std::cerr << "orv: " << result.summary() << '\n';
    const bool isFaulty =
        result.count(Severity::error) > 0 || (isStrict_ && result.count(Severity::warning) > 0);
    return isFaulty || result.cancelled ? kRecordsFailed : kAllWell;
  }

 private:
  inline static const std::vector<std::string> kHeadings{
      "severity", "rule", "set", "id", "name", "angle", "field", "value", "expected", "message"};

  /// Tells completions the names of the rules. Which are none the audit says.
  static CLI::Validator anyRule() {
    std::string names;
    for (const auto& rule : commands::audit::rules()) {
      names += (names.empty() ? "" : " ") + std::string(rule.name);
    }
    return CLI::Validator([](std::string& /*name*/) { return std::string(); }, "", names);
  }

  ExitCode listRules() const {
    const auto writer = makeRowWriter(format_, {"name", "severity", "finds", "why"}, std::cout);
    for (const auto& rule : commands::audit::rules()) {
      writer->row({std::string(rule.name), std::string(nameOf(rule.severity)),
                   std::string(rule.finds), std::string(rule.why)});
    }
    writer->end();
    return kAllWell;
  }

  AuditResult audit(Console& console, const Node& source,
                    const commands::audit::EachFinding& each) const {
    if (identifiers_.empty() && !source_.hasConditions()) {
      return auditSource(console.session, source, source_.kind(), options_, each);
    }
    const auto records = source_.select(console, source_.recordSet(source), identifiers_);
    return auditRecords(console.session, records, options_, each);
  }

  /// Keys are numbers, but for those of files and of the IGDB.
  static store::Value identifierOf(const sources::datasource& source, const Finding& finding) {
    const auto type = source.DataType();
    const bool isOrv =
        type == sources::DataType::orvDatabase2 || type == sources::DataType::orvDatabase3;
    return isOrv ? store::Value(commands::recordNumber(finding.identifier))
                 : store::Value(finding.identifier);
  }

  static std::vector<store::Value> cells(const sources::datasource& source,
                                         const Finding& finding) {
    const auto& fault = finding.fault;
    const auto angle = fault.angle ? store::Value(std::int32_t{*fault.angle}) : store::Value();
    return {std::string(nameOf(finding.severity)),
            std::string(finding.rule),
            finding.set,
            identifierOf(source, finding),
            finding.name,
            angle,
            fault.field,
            fault.value,
            fault.expected,
            fault.message};
  }

  SourceArgument source_;
  CLI::Option* sourceOption_ = nullptr;
  std::vector<std::string> identifiers_;
  commands::audit::AuditOptions options_;
  Format format_ = Format::table;
  bool isStrict_ = false;
  bool listsRules_ = false;
  Answers answers_;
};

}  // namespace

std::unique_ptr<Verb> makeAuditVerb(CLI::App& app) {
  return std::make_unique<AuditVerb>(app);
}

}  // namespace orv::cli
