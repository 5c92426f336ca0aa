#include <cmath>
#include <iostream>

#include "cli/Arguments.h"
#include "cli/Verb.h"
#include "commands/IntegrateRecords.h"
#include "commands/StoredValues.h"

namespace orv::cli {

namespace {

using commands::IntegratedRow;

class IntegrateVerb : public Verb {
 public:
  explicit IntegrateVerb(CLI::App& app)
      : Verb(
            app, "integrate", "Compute the solar, visible and other values of panes from spectra",
            "  orv integrate measured-panes/\n"
            "  orv integrate glazing.mdb CLEAR_3.DAT --standard nfrc300 --difference\n"
            "  orv integrate orvdata.mdb --angle 0 --format tsv\n"
            "  orv integrate orvdata.mdb --store --missing\n",
            "Shows the solar, visible, ultraviolet and further values, a row a pane and angle. The "
            "exit status is 1 when a pane has no spectrum or too little of it; the column note "
            "says why.") {
    source_.addSource(command());
    addIdentifiers(command(), identifiers_);
    source_.addOptions(command());
    source_.addTolerant(command());
    source_.addWhere(command());
    command()
        .add_option("--standard", options_.standard,
                    "Standard by which values are computed: nfrc300, en410 (default) or iso9050")
        ->transform(oneOf(kStandards))
        ->type_name("NAME");
    command()
        .add_option("--angle", options_.angle, "Only data at this angle of incidence, in degrees")
        ->type_name("DEGREES");
    command().add_flag("--difference", difference_,
                       "Show the values that the source stores, and how far the computed ones "
                       "differ");
    addStoring();
    addQuiet(command(), answers_.quiet);
    addFormat(command(), format_);
  }

  ExitCode run(Console& console) override {
    console.ui.answers(answers_);
    const Node node = source_.openRecordSet(console);
    columns_ = columnsOf(format_, options_.standard);
    std::unique_ptr<RowWriter> writer;  // which begins to write when it is made
    const auto begin = [&] {
      if (!writer) writer = makeRowWriter(format_, headings(), std::cout);
    };
    const auto selection = source_.select(console, node, identifiers_);
    const bool hasNone = source_.hasConditions() && selection.RecordsCount() == 0;
    if (hasNone && !answers_.quiet) std::cerr << "orv: No record meets the conditions.\n";
    const auto result = usedRightly([&] {
      return commands::integrateRecords(console.session, selection, options_,
                                        [&](const IntegratedRow& row) {
                                          begin();
                                          writer->row(cells(*node, row));
                                        });
    });
    if (result.refused) return kWrongUse;
    begin();
    writer->end();
    if (hasNone) return kAllWell;
    tell(result);
    const bool allWell = result.rows > 0 && result.incomplete == 0 && !result.cancelled;
    return allWell ? kAllWell : kRecordsFailed;
  }

 private:
  void addStoring() {
    auto* store = command().add_flag(
        "--store", options_.stores,
        "Write the solar, visible and ultraviolet values into the database, those of a pane in "
        "one commit; the values that were there are shown. Panes that are frozen are left alone");
    command()
        .add_flag("--missing", options_.onlyMissing,
                  "With --store: only where there are no values, or all are 0")
        ->needs(store);
    command()
        .add_flag("--frozen", options_.frozenToo, "With --store: change panes that are frozen, too")
        ->needs(store);
    addForce(command(), answers_.force)->needs(store);
  }

  /// A table has room for the values of the standard, in transmission; JSON for all.
  static std::vector<std::string_view> columnsOf(Format format, optics::Standard standard) {
    std::vector<std::string_view> columns;
    if (format == Format::table) {
      columns = optics::valueNames(standard);
    } else {
      columns.assign(std::begin(optics::kValueNames), std::end(optics::kValueNames));
    }
    if (format != Format::json) {
      std::erase_if(columns,
                    [](std::string_view name) { return optics::isOfReflectedColour(name); });
    }
    return columns;
  }

  bool comparesStored() const { return difference_ || options_.stores; }

  std::vector<std::string> headings() const {
    std::vector<std::string> names{"id", "name", "angle", "standard"};
    names.insert(names.end(), columns_.begin(), columns_.end());
    names.emplace_back("note");
    if (!comparesStored()) return names;
    for (const std::string_view name : commands::storedValueNames()) {
      names.push_back(std::string(name) + "_stored");
      names.push_back(std::string(name) + "_difference");
    }
    return names;
  }

  std::vector<store::Value> cells(const sources::datasource& node, const IntegratedRow& row) const {
    std::vector<store::Value> values{identifierValue(node, row.identifier), row.name,
                                     std::int32_t{row.angle},
                                     std::string(optics::nameOf(options_.standard).name)};
    for (const std::string_view name : columns_) values.push_back(number(row.integration[name]));
    values.emplace_back(noteOf(row));
    if (!comparesStored()) return values;
    for (const std::string_view name : commands::storedValueNames()) addStored(row, name, values);
    return values;
  }

  void addStored(const IntegratedRow& row, std::string_view name,
                 std::vector<store::Value>& values) const {
    const auto stored = row.stored.find(name);
    const auto computed = row.integration[name];
    const bool isThere = stored != row.stored.end();
    values.push_back(isThere ? number(stored->second) : store::Value());
    values.push_back(isThere && computed ? number(*computed - stored->second) : store::Value());
  }

  /// A table is for reading, the other forms keep all digits. What is rounded to 0 has no sign.
  store::Value number(const std::optional<double>& value) const {
    constexpr double kTenThousandths = 1e4;
    if (!value) return {};
    return format_ == Format::table ? std::round(*value * kTenThousandths) / kTenThousandths + 0.0
                                    : *value;
  }

  static std::string noteOf(const IntegratedRow& row) {
    const std::string note = row.note();
    const char* what = row.storing == commands::Storing::isFrozen  ? "not stored: frozen"
                       : row.storing == commands::Storing::isThere ? "not stored: has values"
                                                                   : "";
    return note.empty() || *what == '\0' ? what + note : std::string(what) + "; " + note;
  }

  void tell(const commands::IntegrationResult& result) const {
    if (answers_.quiet) return;
    if (result.rows == 0 && options_.angle) {
      std::cerr << "orv: No pane has data at " << *options_.angle << " degrees.\n";
    }
    if (options_.stores) std::cerr << "orv: " << result.summary(options_.standard) << '\n';
  }

  SourceArgument source_;
  std::vector<std::string> identifiers_;
  commands::IntegrationOptions options_;
  std::vector<std::string_view> columns_;
  Answers answers_;
  bool difference_ = false;
  Format format_ = Format::table;
};

}  // namespace

std::unique_ptr<Verb> makeIntegrateVerb(CLI::App& app) {
  return std::make_unique<IntegrateVerb>(app);
}

}  // namespace orv::cli
