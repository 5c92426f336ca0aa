#include <iostream>

#include "cli/Arguments.h"
#include "cli/Verb.h"
#include "commands/RecordList.h"
#include "commands/RecordReader.h"

namespace orv::cli {

namespace {

class ListVerb : public Verb {
 public:
  explicit ListVerb(CLI::App& app)
      : Verb(app, "list", "List the records of a data source",
             "  orv list orvdata.mdb\n"
             "  orv list orvdata.mdb --set frames --format tsv\n"
             "  orv list orvdata.mdb --where \"thickness>5\" --columns name,thickness\n"
             "  orv list glazing.mdb --format json\n") {
    source_.addSource(command());
    source_.addOptions(command());
    source_.addTolerant(command());
    source_.addWhere(command());
    command()
        .add_option("--columns", columns_,
                    "Columns to show, parted by commas, as the window has them (all of them where "
                    "only --where is given)")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->type_name("NAMES");
    addFormat(command(), format_);
  }

  ExitCode run(Console& console) override {
    const Node node = source_.openRecordSet(console);
    return columns_.empty() && !source_.hasConditions() ? listAll(console, node)
                                                        : listColumns(node);
  }

 private:
  ExitCode listAll(Console& console, const Node& node) const {
    ExitCode exit = kAllWell;
    const auto writer =
        makeRowWriter(format_, {"id", "name", "product", "group", "supplier"}, std::cout);
    for (const auto& entry : commands::listRecords(console.session, node)) {
      writer->row({identifierValue(*node, entry.identifier), entry.name, entry.product, entry.group,
                   entry.supplier});
      if (entry.failure.empty()) continue;
      std::cerr << "orv: " << entry.identifier << " cannot be read: " << entry.failure << '\n';
      exit = kRecordsFailed;
    }
    writer->end();
    return exit;
  }

  /// Some columns of the table that the window shows, or all, of the records that are wanted.
  ExitCode listColumns(const Node& node) const {
    const auto table = commands::openRecordTable(node);
    const std::vector<std::size_t> columns = chosenColumns(*table);
    std::vector<std::string> names;
    for (const std::size_t column : columns) names.push_back(table->columns()[column].name);
    const auto writer = makeRowWriter(format_, names, std::cout);
    for (const std::size_t row : source_.rows(*table)) {
      std::vector<store::Value> values;
      for (const std::size_t column : columns) values.push_back(table->value(row, column));
      writer->row(values);
    }
    writer->end();
    return kAllWell;
  }

  std::vector<std::size_t> chosenColumns(const commands::RecordTable& table) const {
    std::vector<std::size_t> columns;
    for (const std::string& name : columns_) {
      columns.push_back(usedRightly([&] { return commands::columnNamed(table, name); }));
    }
    for (std::size_t i = 0; columns_.empty() && i < table.columns().size(); ++i) {
      columns.push_back(i);
    }
    return columns;
  }

  SourceArgument source_;
  std::vector<std::string> columns_;
  Format format_ = Format::table;
};

}  // namespace

std::unique_ptr<Verb> makeListVerb(CLI::App& app) {
  return std::make_unique<ListVerb>(app);
}

}  // namespace orv::cli
