#include <iostream>

#include "cli/Arguments.h"
#include "cli/Verb.h"
#include "commands/RecordList.h"
#include "commands/RecordReader.h"

namespace orv::cli {

namespace {

/// The identifiers of ORV databases are numbers, those of text files and of the IGDB texts.
bool hasNumbers(const sources::datasource& node) {
  return node.ADOConnection() && node.DataType() != sources::DataType::optics5Panes;
}

class ListVerb : public Verb {
 public:
  explicit ListVerb(CLI::App& app)
      : Verb(app, "list", "List the records of a data source",
             "  orv list orvdata.mdb\n"
             "  orv list orvdata.mdb --set frames --format tsv\n"
             "  orv list glazing.mdb --format json\n") {
    source_.addSource(command());
    source_.addOptions(command());
    addFormat(command(), format_);
  }

  ExitCode run(Console& console) override {
    const Node node = source_.openRecordSet(console);
    const auto writer =
        makeRowWriter(format_, {"id", "name", "product", "group", "supplier"}, std::cout);
    for (const auto& entry : commands::listRecords(console.session, node)) {
      const store::Value identifier = hasNumbers(*node)
                                          ? store::Value(commands::recordNumber(entry.identifier))
                                          : store::Value(entry.identifier);
      writer->row({identifier, entry.name, entry.product, entry.group, entry.supplier});
    }
    writer->end();
    return kAllWell;
  }

 private:
  SourceArgument source_;
  Format format_ = Format::table;
};

}  // namespace

std::unique_ptr<Verb> makeListVerb(CLI::App& app) {
  return std::make_unique<ListVerb>(app);
}

}  // namespace orv::cli
