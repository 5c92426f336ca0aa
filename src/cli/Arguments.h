// Arguments that several verbs have.
#pragma once

#include <CLI/CLI.hpp>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cli/Console.h"
#include "cli/Failure.h"
#include "cli/PasswordPrompt.h"
#include "cli/RowWriter.h"
#include "cli/StandardInput.h"
#include "commands/Notes.h"
#include "commands/RecordFilter.h"
#include "commands/RecordKind.h"
#include "commands/SourceOpener.h"
#include "commands/edit/EditSet.h"
#include "model/Text.h"
#include "optics/Standard.h"
#include "sources/RecordSelection.h"
#include "store/StoreError.h"

namespace orv::cli {

using Node = commands::SourceOpener::Node;

/// The value of an option that is one of some words, each of which stands for an enumerator. The
/// words, with blanks between them, are the validator's name, from which completions take them.
template <class T>
CLI::Validator oneOf(const std::map<std::string, T>& words) {
  std::string name;
  for (const auto& each : words) name += (name.empty() ? "" : " ") + each.first;
  return CLI::Validator(
      [words](std::string& word) -> std::string {
        if (const auto found = words.find(lowerCase(word)); found != words.end()) {
          word = std::to_string(static_cast<int>(found->second));
          return {};
        }
        std::string known;
        for (const auto& each : words) known += (known.empty() ? "" : ", ") + each.first;
        return "\"" + word + "\" is none of: " + known;
      },
      "", name);
}

extern const std::map<std::string, optics::Standard> kStandards;

CLI::Option* addFormat(CLI::App& command, Format& format);
/// Declares an option that takes names, parted by commas.
CLI::Option* addNames(CLI::App& command, const std::string& option, std::vector<std::string>& names,
                      const std::string& description);
/// Declares --quiet, for the verbs that end with a summary.
CLI::Option* addQuiet(CLI::App& command, bool& quiet);
/// Declares --force, for the verbs that change a database.
CLI::Option* addForce(CLI::App& command, bool& force);
/// Declares identifiers of records, all of which are meant when there is none.
void addIdentifiers(CLI::App& command, std::vector<std::string>& identifiers);

/// The password of a database.
class PasswordArgument {
 public:
  /// Declares --password and --password-file.
  void addTo(CLI::App& command);

  /// Raises Failure where the password is to come from the standard input, for who takes that.
  void refuseInput() const;

  /// Runs `open` with the password that was given, and when the file wants one and none was given,
  /// again with one asked for on the terminal. Raises what `open` raises, and Failure for a
  /// password file that cannot be read.
  template <class Open>
  auto use(Open open) const {
    const std::string given = value();
    try {
      return open(given);
    } catch (const Error& error) {
      if (error.number() != store::kNotAuthenticated || !given.empty()) throw;
      if (!canAsk()) {
        throw Failure(kCannotOpen, commands::describe(error) +
                                       " The database needs a password: give it with "
                                       "--password-file FILE or --password TEXT.");
      }
    }
    return open(askForPassword());
  }

 private:
  const std::string& value() const;

  std::string text_;
  std::string file_;
  mutable std::optional<std::string> read_;  ///< from the file, which may be the standard input
};

/// The file of a verb that takes any database, and its password.
class DatabaseArgument {
 public:
  /// Declares FILE, --password and --password-file.
  void addTo(CLI::App& command);
  const std::string& path() const { return path_; }
  void refusePasswordFromInput() const { password_.refuseInput(); }

  /// Runs `open` with the password, as PasswordArgument does. Raises Failure for whatever it
  /// raises.
  template <class Open>
  auto use(Open open) const {
    refuseStandardStream(path_);
    return opening([&] { return password_.use(open); });
  }
  /// Opens the database. Raises Failure.
  std::shared_ptr<store::Connection> open() const;

 private:
  std::string path_;
  PasswordArgument password_;
};

/// A data source and the record set of it that is meant.
class SourceArgument {
 public:
  static constexpr const char* kSetHelp = "Which records: panes (default), frames or shadings";

  /// Declares SOURCE, --name, --password and --password-file.
  CLI::Option* addSource(CLI::App& command);
  /// Declares DB, a source that has to be a database, --password and --password-file.
  void addDatabase(CLI::App& command);
  /// Declares --set.
  void addSet(CLI::App& command, const char* help = kSetHelp);
  /// Declares --set, for a verb to which groups, suppliers and frame types are records too.
  void addSetOfNames(CLI::App& command);
  /// Declares --text.
  void addText(CLI::App& command);
  /// Declares --set and --text.
  void addOptions(CLI::App& command, const char* helpOfSet = kSetHelp);

  /// Declares --name, --password and --password-file, for sources that the verb declares itself.
  void addSourceOptions(CLI::App& command);
  /// Runs `open` with the password for databases that want one.
  template <class Open>
  auto withPassword(Console& console, Open open) const {
    return password_.use([&](const std::string& password) {
      console.session.password = password;
      return open();
    });
  }

  /// Declares --where.
  void addWhere(CLI::App& command);
  bool hasConditions() const { return !where_.empty(); }
  /// The rows of a table that --where describes; all where it is not given. Raises Failure for a
  /// condition that is none.
  std::vector<std::size_t> rows(commands::RecordTable& table) const;
  /// The named records of a node; where none is named those that --where describes, or all.
  /// Files that cannot be read meet no condition, and are told. Raises Failure where both are
  /// given, and for a condition that is none.
  sources::RecordSelection select(Console& console, const Node& node,
                                  const std::vector<std::string>& identifiers) const;

  /// Declares --tolerant.
  void addTolerant(CLI::App& command);
  /// Lets files be read tolerantly when that is asked for.
  void applyTo(Console& console) const {
    if (isTolerant_) console.session.tolerant.allowEverywhere();
  }

  /// The paths of sources, with that of a file in place of the standard input. Raises Failure for
  /// what StandardInput refuses, and for a name where there is no standard input.
  std::vector<std::string> withInput(Console& console, std::vector<std::string> paths) const;

  /// Opens SOURCE. Raises Failure.
  Node open(Console& console) const;
  /// Opens DB. Raises Failure for another than an ORV database of version 3.0.0.
  std::shared_ptr<store::Connection> openDatabase(Console& console, Node* opened = nullptr) const;
  /// The record set that --set names; without it the panes, or what the text files are. Raises
  /// Failure when the source has no such records.
  Node recordSet(const Node& source) const;
  /// What --set names.
  std::optional<commands::RecordKind> kind() const;
  std::optional<commands::edit::EditSet> editSet() const { return set_; }
  /// The same where it is groups, suppliers or frame types.
  std::optional<commands::edit::EditSet> names() const;
  Node openRecordSet(Console& console) const { return recordSet(open(console)); }

  /// Raises Failure where --text is given and none of the sources is of text files.
  void requireTexts(const std::vector<Node>& sources) const;

  const std::optional<commands::TextFileKind>& textKind() const { return textKind_; }

 private:
  std::string path_;
  bool isDatabase_ = false;
  std::string name_;  ///< of the file that comes from the standard input
  std::optional<commands::edit::EditSet> set_;
  std::optional<commands::TextFileKind> textKind_;
  bool isTolerant_ = false;
  PasswordArgument password_;
  std::vector<std::string> where_;
};

/// An identifier of a record as a value: of ORV databases they are numbers, of text files and of
/// the IGDB texts.
store::Value identifierValue(const sources::datasource& node, const std::string& identifier);

/// Identifiers of records of an ORV database, each once. Raises Failure for a text that is none.
std::vector<std::int32_t> recordNumbers(const std::vector<std::string>& identifiers);

/// Says on standard error what cannot be read.
void tellFailures(const std::vector<std::string>& failures);

/// Says on standard error what the records hold and `destination` has no place for.
void tellNotKept(const commands::Notes& notes, const char* destination);

}  // namespace orv::cli
