#include "cli/Arguments.h"

#include <fmt/format.h>

#include <algorithm>
#include <fstream>
#include <iostream>

#include "cli/Failure.h"
#include "commands/RecordList.h"
#include "commands/RecordReader.h"

namespace orv::cli {

using commands::RecordKind;
using commands::TextFileKind;

namespace {

const std::map<std::string, RecordKind> kSets = {{"panes", RecordKind::panes},
                                                 {"frames", RecordKind::frames},
                                                 {"shadings", RecordKind::shadings}};
const std::map<std::string, TextFileKind> kTextKinds = {{"panes", TextFileKind::panes},
                                                        {"shadings", TextFileKind::shadings}};
const std::map<std::string, Format> kFormats = {
    {"table", Format::table}, {"tsv", Format::tsv}, {"csv", Format::csv}, {"json", Format::json}};

std::string nameOf(RecordKind kind) {
  for (const auto& [name, each] : kSets) {
    if (each == kind) return name;
  }
  return {};
}

}  // namespace

const std::map<std::string, optics::Standard> kStandards = [] {
  std::map<std::string, optics::Standard> standards;
  for (const auto& [standard, word, name] : optics::kStandardNames) {
    standards.emplace(word, standard);
  }
  return standards;
}();

void addFormat(CLI::App& command, Format& format) {
  command.add_option("--format", format, "Form of the result: table (default), tsv, csv or json")
      ->transform(oneOf(kFormats))
      ->type_name("FORM");
}

void addQuiet(CLI::App& command, bool& quiet) {
  command.add_flag("--quiet", quiet, "Tell failures only: no summary, no remarks, no progress");
}

CLI::Option* addForce(CLI::App& command, bool& force) {
  return command.add_flag("--force", force,
                          "Change the database even when Access seems to have it open");
}

void PasswordArgument::addTo(CLI::App& command) {
  auto* text = command
                   .add_option("--password", text_,
                               "Password of the database (that of the IGDB need not be given); "
                               "other users of the machine can see it while the program runs")
                   ->type_name("TEXT");
  command
      .add_option("--password-file", file_,
                  "File whose first line is the password. Without either, it is asked for on a "
                  "terminal")
      ->type_name("FILE")
      ->excludes(text);
}

std::string PasswordArgument::value() const {
  if (file_.empty()) return text_;
  std::ifstream file(file_, std::ios::binary);
  std::string line;
  if (!std::getline(file, line)) {
    throw Failure(kCannotOpen, "No password can be read from \"" + file_ + "\".");
  }
  if (line.ends_with('\r')) line.pop_back();
  return line;
}

std::shared_ptr<store::Connection> openDatabase(const std::string& path,
                                                const PasswordArgument& password) {
  return opening([&] {
    return password.use(
        [&](const std::string& word) { return commands::openDatabaseFile(path, word).connection; });
  });
}

CLI::Option* SourceArgument::addSource(CLI::App& command) {
  addPassword(command);
  return command
      .add_option(
          "SOURCE", path_,
          "A database (ORV, IGDB or Optics5), a text file or a file of products (.json), or a "
          "folder of such files")
      ->required()
      ->type_name("");
}

void SourceArgument::addOptions(CLI::App& command, const char* helpOfSet) {
  command.add_option("--set", set_, helpOfSet)->transform(oneOf(kSets))->type_name("KIND");
  command
      .add_option("--text", textKind_,
                  "What text files are: panes or shadings (default: as the first files look)")
      ->transform(oneOf(kTextKinds))
      ->type_name("KIND");
}

void SourceArgument::addTolerant(CLI::App& command) {
  command.add_flag("--tolerant", isTolerant_,
                   "Read pane files that differ from the format where that has one meaning: "
                   "decimal commas, semicolons, headings, nm, percent and the like");
}

Node SourceArgument::open(Console& console) const {
  applyTo(console);
  const Node source = opening([&] {
    return withPassword(
        console, [&] { return commands::SourceOpener(console.session).openAny(path_, textKind_); });
  });
  requireTexts({source});
  return source;
}

void SourceArgument::requireTexts(const std::vector<Node>& sources) const {
  const auto isText = [](const Node& source) {
    return source->DataType() == sources::DataType::textFolder;
  };
  if (textKind_ && std::none_of(sources.begin(), sources.end(), isText)) {
    throw wrongUse("--text tells what text files are; here are none.");
  }
}

Node SourceArgument::recordSet(const Node& source) const {
  const bool isFolder = source->DataType() == sources::DataType::textFolder;
  const auto kind = set_ ? *set_ : isFolder ? *commands::recordKind(*source) : RecordKind::panes;
  const Node node = commands::recordSetOf(source, kind);
  if (!node) throw wrongUse("\"" + source->text() + "\" has no " + nameOf(kind) + ".");
  return node;
}

void SourceArgument::addWhere(CLI::App& command) {
  command
      .add_option("--where", where_,
                  "Only records of which a column meets a condition, such as \"thickness>5\", "
                  "\"thickness:3..6\", \"group=Demo\" or \"name:clear\"; of several conditions all")
      ->type_name("CONDITION")
      ->allow_extra_args(false);
}

std::vector<std::size_t> SourceArgument::rows(commands::RecordTable& table) const {
  return usedRightly([&] {
    std::vector<commands::ColumnCondition> conditions;
    for (const std::string& text : where_) conditions.push_back(commands::parseCondition(text));
    return commands::matchingRows(table, conditions);
  });
}

sources::RecordSelection SourceArgument::select(const Node& node,
                                                const std::vector<std::string>& identifiers) const {
  std::vector<std::string> chosen = identifiers;
  if (hasConditions()) {
    if (!identifiers.empty()) throw wrongUse("Give either identifiers of records or --where.");
    const auto table = commands::openRecordTable(node);
    for (const std::size_t row : rows(*table)) {
      chosen.push_back(table->value(row, 0).toText());
    }
  } else if (identifiers.empty()) {
    chosen = commands::recordIdentifiers(*node);
  }
  sources::RecordSelection selection;
  selection.RecordsCount(static_cast<std::int32_t>(chosen.size()));
  selection.DataSourcePtr(node);
  for (std::size_t i = 0; i < chosen.size(); ++i) {
    selection.SelectedRecordID(static_cast<std::int32_t>(i + 1), chosen[i]);
  }
  return selection;
}

store::Value identifierValue(const sources::datasource& node, const std::string& identifier) {
  const bool isNumber = node.ADOConnection() && node.DataType() != sources::DataType::optics5Panes;
  return isNumber ? store::Value(commands::recordNumber(identifier)) : store::Value(identifier);
}

void tellNotKept(const commands::Notes& notes, const char* destination) {
  if (notes.list().empty()) return;
  std::cerr << fmt::format("orv: not kept, since {} has no place for it: {}.\n", destination,
                           notes.counts());
}

std::string counted(std::size_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

}  // namespace orv::cli
