#include <iostream>

#include "cli/Arguments.h"
#include "cli/Verb.h"

namespace orv::cli {

namespace {

class TablesVerb : public Verb {
 public:
  explicit TablesVerb(CLI::App& app)
      : Verb(app, "tables", "List the tables and saved queries of any Access database",
             "  orv tables orvdata.mdb\n  orv tables glazing.mdb --format json\n",
             "Tables are listed with their numbers of rows.") {
    file_.addTo(command());
    addFormat(command(), format_);
  }

  ExitCode run(Console& /*console*/) override {
    const auto connection = file_.open();
    const auto writer = makeRowWriter(format_, {"name", "kind", "rows"}, std::cout);
    for (const std::string& name : connection->tableNames()) {
      writer->row({name, "table", std::int64_t{connection->table(name).rowCount}});
    }
    for (const std::string& name : connection->queryNames()) writer->row({name, "query", {}});
    for (const auto& linked : connection->linkedTables()) {
      writer->row({linked.name, "linked table", {}});
    }
    writer->end();
    return kAllWell;
  }

 private:
  DatabaseArgument file_;
  Format format_ = Format::table;
};

}  // namespace

std::unique_ptr<Verb> makeTablesVerb(CLI::App& app) {
  return std::make_unique<TablesVerb>(app);
}

}  // namespace orv::cli
