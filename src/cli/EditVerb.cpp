#include <iostream>

#include "cli/Arguments.h"
#include "cli/Verb.h"
#include "commands/AccessUse.h"
#include "commands/edit/CsvTable.h"
#include "commands/edit/Editor.h"
#include "errors/Counted.h"

namespace orv::cli {

namespace {

using commands::edit::Change;
using commands::edit::Draft;
using commands::edit::Editor;
using commands::edit::EditSet;
using commands::edit::FieldPlace;
using commands::edit::TypedValue;

class EditVerb : public Verb {
 public:
  explicit EditVerb(CLI::App& app)
      : Verb(app, "edit", "Edit fields of records of an ORV database of version 3.0.0",
             "  orv edit orvdata.mdb 12 thickness=5.9 \"product name=Clear 6\"\n"
             "  orv edit orvdata.mdb --where \"supplier=Acme\" \"supplier=Acme Glass\"\n"
             "  orv edit orvdata.mdb 12 \"solar transmittance front at 60=0.71\" --dry-run\n"
             "  orv edit orvdata.mdb 3 --set suppliers \"name=Acme Glass\"\n"
             "  orv edit orvdata.mdb --from changes.csv --yes\n",
             "Fields have the names that show gives them, or those of their columns; values at an "
             "angle of incidence end with \" at DEGREES\". Suppliers, groups and frame types are "
             "given by name, and made when new. All values are checked before the first is "
             "written: when one is wrong, nothing is changed. All changes are one commit, which "
             "\"orv undo\" takes back.") {
    source_.addDatabase(command());
    command()
        .add_option(
            "ID", words_,
            "Identifiers of the records, then FIELD=VALUE for each field that is to be changed")
        ->type_name("");
    source_.addSetOfNames(command());
    source_.addWhere(command());
    command()
        .add_option("--from", from_,
                    "Table of changes, - for the standard input, with commas, semicolons or tabs: "
                    "its first line has \"id\" and the names of fields, each further one a record. "
                    "An empty cell empties a text")
        ->type_name("FILE");
    command().add_flag("--dry-run", isRehearsal_, "Show the changes and make none");
    command().add_flag("--yes", answers_.yes, "Do not ask for a confirmation");
    addForce(command(), answers_.force);
    addFormat(command(), format_);
    addQuiet(command(), answers_.quiet);
  }

  ExitCode run(Console& console) override {
    if (!answers_.yes && !isRehearsal_ && !canAsk()) {
      throw wrongUse("Without a terminal to ask on, changes have to be confirmed with --yes.");
    }
    console.ui.answers(answers_);
    partWords();
    Node source;
    const auto database = source_.openDatabase(console, &source);
    Editor editor(console.session, database, source_.editSet().value_or(EditSet::panes));
    const Draft draft =
        usedRightly([&] { return editor.draft(typedValues(console, source, editor)); });
    tellRefusals(draft.refusals);
    if (!draft.refusals.empty()) return kWrongUse;
    if (draft.changes.empty()) {
      if (!answers_.quiet) std::cerr << "orv: Nothing is to be changed.\n";
      return kAllWell;
    }
    return make(console, editor, *database, draft);
  }

 private:
  /// Parts identifiers and assignments.
  void partWords() {
    for (const std::string& word : words_) {
      const auto equals = word.find('=');
      if (equals == std::string::npos) {
        identifiers_.push_back(word);
      } else {
        assignments_.emplace_back(trimmed(word.substr(0, equals)), word.substr(equals + 1));
      }
    }
    if (!from_.empty() && (!words_.empty() || source_.hasConditions())) {
      throw wrongUse("Give either a file with --from, or records and what their fields become.");
    }
    if (from_.empty() &&
        (assignments_.empty() || (identifiers_.empty() && !source_.hasConditions()))) {
      throw wrongUse(
          "Give the records, by identifiers or with --where, and FIELD=VALUE for each field that "
          "is to be changed.");
    }
  }

  std::vector<TypedValue> typedValues(Console& console, const Node& source,
                                      const Editor& editor) const {
    return from_.empty() ? ofAssignments(console, source, editor) : ofFile(console, editor);
  }

  std::vector<TypedValue> ofAssignments(Console& console, const Node& source,
                                        const Editor& editor) const {
    std::vector<TypedValue> values;
    std::vector<std::pair<FieldPlace, std::string>> wanted;
    for (const auto& [field, text] : assignments_) wanted.emplace_back(editor.place(field), text);
    for (const std::int32_t record : records(console, source)) {
      for (const auto& [place, text] : wanted) values.push_back({record, place, text});
    }
    return values;
  }

  std::vector<std::int32_t> records(Console& console, const Node& source) const {
    if (!source_.hasConditions()) return recordNumbers(identifiers_);
    if (source_.names()) throw wrongUse("--where is for panes, frames and shadings.");
    const auto selection = source_.select(console, source_.recordSet(source), identifiers_);
    std::vector<std::string> chosen;
    for (std::int32_t i = 1; i <= selection.RecordsCount(); ++i) {
      chosen.push_back(selection.SelectedRecordID(i));
    }
    return recordNumbers(chosen);
  }

  std::vector<TypedValue> ofFile(Console& console, const Editor& editor) const {
    const std::string file = source_.withInput(console, {from_}).front();
    const auto rows =
        opening([&] { return usedRightly([&] { return commands::edit::readCsvFile(file); }); });
    if (rows.empty()) throw wrongUse("\"" + from_ + "\" is empty.");
    const auto& names = rows.front();
    if (names.size() < 2 || !isIdentifier(editor, names.front())) {
      throw wrongUse("The first line of \"" + from_ +
                     "\" has to begin with \"id\", and to go on "
                     "with the names of fields.");
    }
    std::vector<FieldPlace> places;
    for (std::size_t i = 1; i < names.size(); ++i) {
      places.push_back(editor.place(std::string(trimmed(names[i]))));
    }
    std::vector<TypedValue> values;
    for (std::size_t row = 1; row < rows.size(); ++row) {
      if (rows[row].size() != names.size()) {
        throw wrongUse("Row " + std::to_string(row + 1) + " of \"" + from_ + "\" has " +
                       counted(rows[row].size(), "cell") + " in place of " +
                       std::to_string(names.size()) + ".");
      }
      const std::int32_t record = recordNumbers({std::string(trimmed(rows[row].front()))}).front();
      for (std::size_t i = 0; i < places.size(); ++i) {
        values.push_back({record, places[i], rows[row][i + 1]});
      }
    }
    return values;
  }

  static bool isIdentifier(const Editor& editor, const std::string& name) {
    return equalIgnoringCase(trimmed(name), "id") ||
           equalIgnoringCase(trimmed(name), commands::edit::designOf(editor.set()).key);
  }

  ExitCode make(Console& console, Editor& editor, const store::Connection& database,
                const Draft& draft) const {
    const auto review = editor.review(draft.changes);
    if (!answers_.yes || isRehearsal_) showChanges(draft);
    if (!review.isFine()) return refuse(editor, draft.changes, review);
    for (const std::string& remark : review.remarks) {
      if (!answers_.quiet) std::cerr << "orv: " << remark << '\n';
    }
    if (isRehearsal_) return kAllWell;
    const commands::Question question{"Make " + counted(draft.changes.size(), "change") + "?",
                                      commands::kApplicationTitle, commands::Buttons::yesNoCancel,
                                      commands::Answer::no};
    if (console.ui.ask(question) != commands::Answer::yes) return kRecordsFailed;
    if (!commands::mayBeChanged(database, console.ui)) return kWrongUse;
    const auto saved = editor.save(draft.changes);
    if (!saved.isFine()) return refuse(editor, draft.changes, saved);
    if (!answers_.quiet) std::cout << counted(draft.changes.size(), "change") << " made.\n";
    return kAllWell;
  }

  static std::string placeOf(const Change& change) {
    return change.angle ? change.field + " at " + std::to_string(*change.angle) : change.field;
  }

  void showChanges(const Draft& draft) const {
    const auto writer = makeRowWriter(format_, {"id", "name", "field", "old", "new"}, std::cout);
    for (std::size_t i = 0; i < draft.changes.size(); ++i) {
      const Change& change = draft.changes[i];
      writer->row({change.record, draft.names[i], placeOf(change),
                   commands::edit::fieldText(change.before),
                   commands::edit::fieldText(change.after)});
    }
    writer->end();
  }

  static ExitCode refuse(const Editor& editor, const std::vector<Change>& changes,
                         const commands::edit::Review& review) {
    std::vector<std::string> reasons;
    for (const auto& refusal : review.refusals) {
      reasons.push_back(std::string(commands::edit::designOf(editor.set()).one) + " " +
                        std::to_string(changes[refusal.change].record) + ": " + refusal.reason);
    }
    tellRefusals(reasons);
    return kWrongUse;
  }

  static void tellRefusals(const std::vector<std::string>& reasons) {
    if (reasons.empty()) return;
    constexpr std::size_t kShown = 20;
    for (std::size_t i = 0; i < reasons.size() && i < kShown; ++i) {
      std::cerr << "orv: " << reasons[i] << '\n';
    }
    if (reasons.size() > kShown)
      std::cerr << "orv: ... and " << reasons.size() - kShown << " more.\n";
    std::cerr << "orv: Nothing was changed.\n";
  }

  SourceArgument source_;
  std::vector<std::string> words_;
  std::vector<std::string> identifiers_;
  std::vector<std::pair<std::string, std::string>> assignments_;
  std::string from_;
  bool isRehearsal_ = false;
  Answers answers_;
  Format format_ = Format::table;
};

}  // namespace

std::unique_ptr<Verb> makeEditVerb(CLI::App& app) {
  return std::make_unique<EditVerb>(app);
}

}  // namespace orv::cli
