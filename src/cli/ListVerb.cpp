#include <iostream>

#include "cli/Arguments.h"
#include "cli/ColumnsArgument.h"
#include "cli/Verb.h"
#include "commands/FileTable.h"
#include "commands/RecordList.h"
#include "commands/RecordReader.h"
#include "commands/edit/LookupRecords.h"

namespace orv::cli {

namespace {

class ListVerb : public Verb {
 public:
  explicit ListVerb(CLI::App& app)
      : Verb(app, "list", "List the records of a data source",
             "  orv list orvdata.mdb\n"
             "  orv list orvdata.mdb --set frames --format tsv\n"
             "  orv list orvdata.mdb --set suppliers\n"
             "  orv list orvdata.mdb --where \"thickness>5\" --columns name,thickness\n"
             "  orv list glazing.mdb --format json\n",
             "Shows of each record its identifier, name, product, group and supplier, or the "
             "columns that are chosen; of each group, supplier and frame type how many records "
             "have it.") {
    source_.addSource(command());
    source_.addSetOfNames(command());
    source_.addText(command());
    source_.addTolerant(command());
    source_.addWhere(command());
    columns_.addTo(command(),
                   "Columns to show, parted by commas, as the window has them (all of them where "
                   "only --where is given)");
    addFormat(command(), format_);
  }

  ExitCode run(Console& console) override {
    if (source_.names()) return listNames(console);
    const Node node = source_.openRecordSet(console);
    if (!columns_.isGiven() && !source_.hasConditions()) return listAll(console, node);
    std::vector<std::string> failures;
    const auto table = commands::openFieldTable(console.session, node, failures);
    columns_.write(*table, source_.rows(*table), format_, std::cout);
    tellFailures(failures);
    return failures.empty() ? kAllWell : kRecordsFailed;
  }

 private:
  /// Groups, suppliers or frame types, with how many records have each.
  ExitCode listNames(Console& console) const {
    if (columns_.isGiven() || source_.hasConditions()) {
      throw wrongUse("--columns and --where are for panes, frames and shadings.");
    }
    const auto database = source_.openDatabase(console);
    const auto writer =
        makeRowWriter(format_, {"id", "name", "panes", "frames", "shadings"}, std::cout);
    for (const auto& record : commands::edit::lookupRecords(*source_.names(), *database)) {
      writer->row({record.id, record.name, record.panes, record.frames, record.shadings});
    }
    writer->end();
    return kAllWell;
  }

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

  SourceArgument source_;
  ColumnsArgument columns_;
  Format format_ = Format::table;
};

}  // namespace

std::unique_ptr<Verb> makeListVerb(CLI::App& app) {
  return std::make_unique<ListVerb>(app);
}

}  // namespace orv::cli
