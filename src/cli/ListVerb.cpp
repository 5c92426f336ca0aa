#include <iostream>

#include "cli/Arguments.h"
#include "cli/Verb.h"
#include "commands/RecordList.h"

namespace orv::cli {

namespace {

/// Identifiers of databases are numbers, those of text files and of the IGDB texts.
store::Value identifierValue(const std::string& identifier) {
  const bool isNumber = !identifier.empty() && identifier.size() < 10 &&
                        identifier.find_first_not_of("0123456789") == std::string::npos;
  return isNumber ? store::Value(std::stoi(identifier)) : store::Value(identifier);
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
      writer->row({identifierValue(entry.identifier), entry.name, entry.product, entry.group,
                   entry.supplier});
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
