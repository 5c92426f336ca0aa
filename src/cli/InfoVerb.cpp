#include <filesystem>
#include <iostream>

#include "cli/Arguments.h"
#include "cli/Verb.h"
#include "commands/RecordList.h"

namespace orv::cli {

namespace {

namespace DataType = sources::DataType;

std::string kindOf(const sources::datasource& source) {
  switch (source.DataType()) {
    case DataType::orvDatabase2:
    case DataType::orvDatabase3:
      return "ORV database";
    case DataType::igdb:
      return "International Glazing Database";
    case DataType::optics5User:
      return "Optics5 user database";
    default:
      return commands::recordKind(source) == commands::RecordKind::shadings ? "Files of shadings"
                                                                            : "Files of panes";
  }
}

class InfoVerb : public Verb {
 public:
  explicit InfoVerb(CLI::App& app)
      : Verb(app, "info", "Tell what a data source is and how many records it holds",
             "  orv info orvdata.mdb\n  orv info measured-panes/ --format json\n") {
    source_.addSource(command());
    addFormat(command(), format_);
  }

  ExitCode run(Console& console) override {
    const Node source = source_.open(console);
    const auto writer = makeRowWriter(format_, {"property", "value"}, std::cout);
    writer->row({"source", placeOf(console, *source)});
    writer->row({"kind", kindOf(*source)});
    if (const auto& connection = source->ADOConnection()) {
      if (isOrv(*source)) {
        writer->row(
            {"schema version", console.session.database.LookupDatabaseVersion(*connection)});
      }
      writer->row({"file format", connection->formatName()});
      writer->row({"read only", connection->readOnly()});
      for (const auto& set : source->DataSources()) {
        writer->row({set->text(), commands::countRecords(*set)});
      }
      for (const auto& linked : connection->linkedTables()) {
        writer->row({"linked table",
                     linked.name + (linked.database.empty() ? " (in an ODBC source)"
                                                            : " (in " + linked.database + ")")});
      }
    } else {
      writer->row({"Files", commands::countRecords(*source)});
    }
    writer->end();
    return kAllWell;
  }

 private:
  static std::string placeOf(const Console& console, const sources::datasource& source) {
    if (source.Folder() == console.input.folder()) return "standard input";
    return (std::filesystem::path(source.Folder()) / source.filename()).string();
  }

  static bool isOrv(const sources::datasource& source) {
    return source.DataType() == DataType::orvDatabase2 ||
           source.DataType() == DataType::orvDatabase3;
  }

  SourceArgument source_;
  Format format_ = Format::table;
};

}  // namespace

std::unique_ptr<Verb> makeInfoVerb(CLI::App& app) {
  return std::make_unique<InfoVerb>(app);
}

}  // namespace orv::cli
