// Completes the outline of the manual of `orv` with what the help of the program says, so that both
// say the same.
// usage: orv_manual < OUTLINE > PAGE
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <iostream>
#include <sstream>

#include "cli/Verb.h"

namespace {

using orv::cli::Verb;
using Verbs = std::vector<std::unique_ptr<Verb>>;

const CLI::App& commandOf(const Verb& verb) {
  return verb.command();
}

/// A text in which nothing is a command of the typesetter.
std::string escaped(const std::string& text) {
  std::string result;
  for (const char c : text) {
    const bool startsLine = result.empty() || result.back() == '\n';
    if (startsLine && (c == '.' || c == '\'')) result += "\\&";
    result += c == '\\' ? "\\e" : c == '-' ? "\\-" : std::string(1, c);
  }
  return result;
}

/// A sentence, which the help does without a point.
std::string sentence(const std::string& text) {
  return escaped(text) + (text.ends_with('.') ? "\n" : ".\n");
}

/// The line of the help that shows how a verb is called.
std::string callOf(const Verb& verb) {
  constexpr std::string_view kBegin = "Usage: ";
  std::istringstream help(commandOf(verb).help());
  for (std::string line; std::getline(help, line);) {
    if (line.starts_with(kBegin)) return line.substr(kBegin.size());
  }
  return commandOf(verb).get_name();
}

void writeSynopsis(const Verbs& verbs) {
  for (const auto& verb : verbs) {
    const std::string name = commandOf(*verb).get_name();
    std::cout << ".B orv " << name << '\n'
              << escaped(callOf(*verb).substr(name.size() + 1)) << "\n.br\n";
  }
}

void writeVerbs(const Verbs& verbs) {
  for (const auto& verb : verbs) {
    std::cout << ".TP\n.B " << escaped(callOf(*verb)) << '\n'
              << sentence(commandOf(*verb).get_description());
    if (!verb->details().empty()) std::cout << escaped(verb->details()) << '\n';
  }
}

void writeExamples(const Verbs& verbs) {
  for (const auto& verb : verbs) {
    std::istringstream examples(verb->examples());
    for (std::string line; std::getline(examples, line);) {
      std::cout << escaped(line.substr(line.find_first_not_of(' '))) << '\n';
    }
  }
}

/// An option or argument that several verbs explain with the same words.
struct Entry {
  const CLI::Option* option;
  std::vector<std::string> verbs;

  bool isSame(const CLI::Option& other) const {
    return option->get_name(true) == other.get_name(true) &&
           option->get_description() == other.get_description();
  }
};

void addTo(std::vector<Entry>& entries, const CLI::App& command, bool isOption) {
  const std::string verb = command.get_name();
  for (const CLI::Option* option : command.get_options()) {
    if (option->get_positional() == isOption || option->get_group().empty()) continue;
    auto entry = std::ranges::find_if(entries, [&](const Entry& e) { return e.isSame(*option); });
    if (entry == entries.end()) entry = entries.insert(entry, {option, {}});
    entry->verbs.push_back(verb);
  }
}

/// The options, or the arguments, each with the verbs that have it unless all have.
void writeEntries(const CLI::App& app, const Verbs& verbs, bool isOption) {
  std::vector<Entry> entries;
  if (isOption) addTo(entries, app, isOption);
  for (const auto& verb : verbs) addTo(entries, commandOf(*verb), isOption);
  std::ranges::stable_sort(entries, {}, [](const Entry& e) {
    return e.option->get_lnames().empty() ? "" : e.option->get_lnames().front();
  });
  for (const Entry& entry : entries) {
    std::string heading = entry.option->get_name(true, true);
    std::ranges::replace(heading, ',', ' ');
    if (!entry.option->get_type_name().empty()) heading += ' ' + entry.option->get_type_name();
    std::cout << ".TP\n.B " << escaped(heading) << '\n';
    if (entry.verbs.front() != app.get_name()) {
      std::cout << escaped(fmt::format("({}) ", fmt::join(entry.verbs, ", ")));
    }
    std::cout << sentence(entry.option->get_description());
  }
}

}  // namespace

int main() {
  const auto app = orv::cli::makeApp();
  const Verbs verbs = orv::cli::makeVerbs(*app);
  for (std::string line; std::getline(std::cin, line);) {
    if (line == ".\\\" SYNOPSIS") {
      writeSynopsis(verbs);
    } else if (line == ".\\\" VERBS") {
      writeVerbs(verbs);
    } else if (line == ".\\\" ARGUMENTS") {
      writeEntries(*app, verbs, false);
    } else if (line == ".\\\" OPTIONS") {
      writeEntries(*app, verbs, true);
    } else if (line == ".\\\" EXAMPLES") {
      writeExamples(verbs);
    } else {
      std::cout << line << '\n';
    }
  }
}
