#include "cli/Arguments.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <fstream>
#include <iostream>
#include <set>

#include "cli/Failure.h"
#include "commands/FileTable.h"
#include "commands/RecordList.h"
#include "commands/RecordReader.h"

namespace orv::cli {

using commands::RecordKind;
using commands::TextFileKind;
using commands::edit::EditSet;

namespace {

const std::map<std::string, EditSet> kSets = {
    {"panes", EditSet::panes}, {"frames", EditSet::frames}, {"shadings", EditSet::shadings}};
const std::map<std::string, EditSet> kSetsAndNames = [] {
  std::map<std::string, EditSet> sets;
  for (const EditSet set : commands::edit::kEditSets) {
    sets.emplace(commands::edit::designOf(set).name, set);
  }
  return sets;
}();
const std::map<std::string, TextFileKind> kTextKinds = {{"panes", TextFileKind::panes},
                                                        {"shadings", TextFileKind::shadings}};
const std::map<std::string, Format> kFormats = {
    {"table", Format::table}, {"tsv", Format::tsv}, {"csv", Format::csv}, {"json", Format::json}};

}  // namespace

const std::map<std::string, optics::Standard> kStandards = [] {
  std::map<std::string, optics::Standard> standards;
  for (const auto& [standard, word, name] : optics::kStandardNames) {
    standards.emplace(word, standard);
  }
  return standards;
}();

CLI::Option* addFormat(CLI::App& command, Format& format) {
  return command
      .add_option("--format", format, "Form of the result: table (default), tsv, csv or json")
      ->transform(oneOf(kFormats))
      ->type_name("FORM");
}

CLI::Option* addNames(CLI::App& command, const std::string& option, std::vector<std::string>& names,
                      const std::string& description) {
  return command.add_option(option, names, description)
      ->delimiter(',')
      ->allow_extra_args(false)
      ->type_name("NAMES");
}

CLI::Option* addQuiet(CLI::App& command, bool& quiet) {
  return command.add_flag("--quiet", quiet,
                          "Tell failures only: no summary, no remarks, no progress");
}

CLI::Option* addForce(CLI::App& command, bool& force) {
  return command.add_flag("--force", force,
                          "Change the database although Access seems to have it open: beside it "
                          "lies the file in which Access notes its users, and a program holds that "
                          "file or it was written within the last day");
}

void addIdentifiers(CLI::App& command, std::vector<std::string>& identifiers) {
  command
      .add_option("ID", identifiers,
                  "Identifiers of the records, as list shows them; all when none is given")
      ->type_name("");
}

void PasswordArgument::addTo(CLI::App& command) {
  auto* text = command
                   .add_option("--password", text_,
                               "Password of the database (that of the IGDB need not be given); "
                               "other users of the machine can see it while the program runs")
                   ->type_name("TEXT");
  command
      .add_option("--password-file", file_,
                  "File whose first line is the password, - for the standard input. Without "
                  "either, a password that is needed is asked for on a terminal, and not shown")
      ->type_name("FILE")
      ->excludes(text);
}

void PasswordArgument::refuseInput() const {
  if (file_ != kStandardStream) return;
  throw wrongUse(
      "The standard input (-) can be one thing only, and --password-file - wants it, too. Give the "
      "password by a file.");
}

const std::string& PasswordArgument::value() const {
  if (file_.empty()) return text_;
  if (read_) return *read_;
  std::ifstream file;
  const bool isInput = file_ == kStandardStream;
  if (!isInput) file.open(file_, std::ios::binary);
  std::string line;
  if (!std::getline(isInput ? std::cin : file, line)) {
    throw Failure(kCannotOpen, "No password can be read from \"" + file_ + "\".");
  }
  if (line.ends_with('\r')) line.pop_back();
  return read_.emplace(std::move(line));
}

void DatabaseArgument::addTo(CLI::App& command) {
  command.add_option("FILE", path_, "Any Access database")->required()->type_name("");
  password_.addTo(command);
}

std::shared_ptr<store::Connection> DatabaseArgument::open() const {
  return use(
      [&](const std::string& word) { return commands::openDatabaseFile(path_, word).connection; });
}

CLI::Option* SourceArgument::addSource(CLI::App& command) {
  CLI::Option* source =
      command
          .add_option(
              "SOURCE", path_,
              "A database (ORV, IGDB or Optics5), a text file or a file of products (.json), a "
              "folder of such files, or - for such a file from the standard input")
          ->required()
          ->type_name("");
  addSourceOptions(command);
  return source;
}

void SourceArgument::addDatabase(CLI::App& command) {
  isDatabase_ = true;
  command.add_option("DB", path_, "An ORV database of version 3.0.0")->required()->type_name("");
  password_.addTo(command);
}

void SourceArgument::addSourceOptions(CLI::App& command) {
  command
      .add_option("--name", name_,
                  "Name of the file that comes from the standard input; stdin.txt unless given. "
                  "Products get .json behind it")
      ->type_name("NAME");
  password_.addTo(command);
}

void SourceArgument::addSet(CLI::App& command, const char* help) {
  command.add_option("--set", set_, help)->transform(oneOf(kSets))->type_name("KIND");
}

void SourceArgument::addSetOfNames(CLI::App& command) {
  command
      .add_option("--set", set_,
                  "Which records: panes (default), frames, shadings, groups, suppliers or "
                  "frametypes")
      ->transform(oneOf(kSetsAndNames))
      ->type_name("KIND");
}

std::optional<RecordKind> SourceArgument::kind() const {
  if (!set_) return std::nullopt;
  return *set_ == EditSet::panes    ? RecordKind::panes
         : *set_ == EditSet::frames ? RecordKind::frames
                                    : RecordKind::shadings;
}

std::optional<EditSet> SourceArgument::names() const {
  return set_ && commands::edit::isLookup(*set_) ? set_ : std::nullopt;
}

void SourceArgument::addOptions(CLI::App& command, const char* helpOfSet) {
  addSet(command, helpOfSet);
  addText(command);
}

void SourceArgument::addText(CLI::App& command) {
  command
      .add_option("--text", textKind_,
                  "What text files are: panes or shadings (default: as the first files look)")
      ->transform(oneOf(kTextKinds))
      ->type_name("KIND");
}

void SourceArgument::addTolerant(CLI::App& command) {
  command.add_flag("--tolerant", isTolerant_,
                   "Read pane files that differ from the format where that has one meaning: "
                   "decimal commas, semicolons and commas between columns, headings, \"nm\" and "
                   "\"\u00b5m\", \"4.0 mm\", percent, no-break spaces, exponents with D, an "
                   "end-of-file character, descending wavelengths. What was done is told, a line a "
                   "file");
}

std::vector<std::string> SourceArgument::withInput(Console& console,
                                                   std::vector<std::string> paths) const {
  for (std::string& path : paths) {
    if (path != kStandardStream) continue;
    password_.refuseInput();
    path = console.input.read(name_);
  }
  console.session.inputFolder = console.input.folder();
  if (!name_.empty() && console.input.folder().empty()) {
    throw wrongUse("--name is for what comes from the standard input; no source is -.");
  }
  return paths;
}

Node SourceArgument::open(Console& console) const {
  if (isDatabase_) refuseStandardStream(path_);
  applyTo(console);
  const std::string path = withInput(console, {path_}).front();
  const Node source = opening([&] {
    return withPassword(
        console, [&] { return commands::SourceOpener(console.session).openAny(path, textKind_); });
  });
  requireTexts({source});
  return source;
}

std::shared_ptr<store::Connection> SourceArgument::openDatabase(Console& console,
                                                                Node* opened) const {
  const Node source = open(console);
  if (source->DataType() != sources::DataType::orvDatabase3) {
    throw wrongUse("\"" + source->text() + "\" is no ORV database of version 3.0.0.");
  }
  if (opened) *opened = source;
  return source->ADOConnection();
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
  const auto kind = set_       ? *this->kind()
                    : isFolder ? *commands::recordKind(*source)
                               : RecordKind::panes;
  const Node node = commands::recordSetOf(source, kind);
  if (!node) {
    const char* name = commands::edit::designOf(commands::edit::editSetOf(kind)).name;
    throw wrongUse("\"" + source->text() + "\" has no " + name + ".");
  }
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

sources::RecordSelection SourceArgument::select(Console& console, const Node& node,
                                                const std::vector<std::string>& identifiers) const {
  std::vector<std::string> chosen = identifiers;
  if (hasConditions()) {
    if (!identifiers.empty()) throw wrongUse("Give either identifiers of records or --where.");
    std::vector<std::string> failures;
    const auto table = commands::openFieldTable(console.session, node, failures);
    for (const std::size_t row : rows(*table)) {
      chosen.push_back(table->value(row, 0).toText());
    }
    tellFailures(failures);
  } else if (identifiers.empty()) {
    chosen = commands::recordIdentifiers(*node);
  }
  return sources::RecordSelection::of(node, chosen);
}

store::Value identifierValue(const sources::datasource& node, const std::string& identifier) {
  const bool isNumber = node.ADOConnection() && node.DataType() != sources::DataType::optics5Panes;
  return isNumber ? store::Value(commands::recordNumber(identifier)) : store::Value(identifier);
}

std::vector<std::int32_t> recordNumbers(const std::vector<std::string>& identifiers) {
  std::vector<std::int32_t> numbers;
  std::set<std::int32_t> known;
  for (const std::string& identifier : identifiers) {
    std::int32_t number = 0;
    const char* end = identifier.data() + identifier.size();
    const auto [last, error] = std::from_chars(identifier.data(), end, number);
    if (error != std::errc() || last != end) {
      throw wrongUse("\"" + identifier + "\" is no identifier: they are numbers, as list shows.");
    }
    if (known.insert(number).second) numbers.push_back(number);
  }
  return numbers;
}

void tellFailures(const std::vector<std::string>& failures) {
  for (const std::string& failure : failures) std::cerr << "orv: " << failure << '\n';
}

void tellNotKept(const commands::Notes& notes, const char* destination) {
  if (notes.list().empty()) return;
  std::cerr << fmt::format("orv: not kept, since {} has no place for it: {}.\n", destination,
                           notes.counts());
}

}  // namespace orv::cli
