#include <fmt/format.h>
#include <fmt/ranges.h>

#include <iostream>
#include <iterator>

#include "cli/Arguments.h"
#include "cli/Verb.h"
#include "commands/Remarks.h"

namespace orv::cli {

namespace {

class SqlVerb : public Verb {
 public:
  explicit SqlVerb(CLI::App& app)
      : Verb(app, "sql", "Run a SELECT statement or a saved query of any Access database",
             "  orv sql orvdata.mdb \"SELECT name, thickness FROM Pane WHERE thickness > 5\"\n"
             "  orv sql glazing.mdb qryOptics5Grid --format tsv\n"
             "  orv sql orvdata.mdb --queries\n"
             "  echo \"SELECT name FROM Pane\" | orv sql orvdata.mdb -\n") {
    file_.addTo(command());
    command()
        .add_option("SELECT", statement_,
                    "A SELECT statement, or the name of a saved query or table; - reads it from "
                    "the standard input")
        ->type_name("");
    command().add_flag("--queries", listsQueries_, "List the saved queries with their SQL");
    addFormat(command(), format_);
  }

  ExitCode run(Console& /*console*/) override {
    if (statement_.empty() != listsQueries_) {
      throw wrongUse("Give either a SELECT statement, the name of a query, or --queries.");
    }
    if (statement_ == kStandardStream) {
      file_.refusePasswordFromInput();
      statement_.assign(std::istreambuf_iterator<char>(std::cin), {});
    }
    const auto connection = file_.open();
    listsQueries_ ? listQueries(*connection) : select(*connection);
    for (const std::string& line : commands::indexRemarks(*connection)) {
      std::cerr << "orv: " << line << '\n';
    }
    return kAllWell;
  }

 private:
  void listQueries(store::Connection& connection) const {
    const auto writer = makeRowWriter(format_, {"query", "SQL"}, std::cout);
    for (const std::string& name : connection.queryNames()) {
      writer->row({name, connection.querySql(name)});
    }
    writer->end();
  }

  void select(store::Connection& connection) const {
    const auto rows = open(connection);
    std::vector<std::string> columns;
    for (const auto& field : rows->fields()) columns.push_back(field.name);
    const auto writer = makeRowWriter(format_, columns, std::cout);
    std::vector<store::Value> values(columns.size());
    for (; !rows->eof(); rows->moveNext()) {
      for (std::size_t i = 0; i < values.size(); ++i) values[i] = rows->value(i);
      writer->row(values);
    }
    writer->end();
  }

  /// A statement that cannot be run is a mistake of whoever wrote it.
  std::unique_ptr<store::Recordset> open(store::Connection& connection) const {
    try {
      return connection.openRecordset(statement_);
    } catch (const Error& error) {
      switch (error.number()) {
        case store::kObjectNotFound:
          throw wrongUse(sentence(commands::describe(error)) + knownTables(connection));
        case store::kSyntaxError:
        case store::kNotSupported:
        case store::kItemNotFound:
          throw wrongUse(commands::describe(error));
        default:
          throw;
      }
    }
  }

  static std::string sentence(const std::string& text) {
    return text.ends_with('.') ? text : text + '.';
  }

  static std::string knownTables(const store::Connection& connection) {
    std::vector<std::string> names = connection.tableNames();
    const auto queries = connection.queryNames();
    names.insert(names.end(), queries.begin(), queries.end());
    return fmt::format(" There are: {}.", fmt::join(names, ", "));
  }

  DatabaseArgument file_;
  std::string statement_;
  bool listsQueries_ = false;
  Format format_ = Format::table;
};

}  // namespace

std::unique_ptr<Verb> makeSqlVerb(CLI::App& app) {
  return std::make_unique<SqlVerb>(app);
}

}  // namespace orv::cli
