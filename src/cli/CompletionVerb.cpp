#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <iostream>
#include <map>

#include "cli/Arguments.h"
#include "cli/Verb.h"

namespace orv::cli {

namespace {

enum class Shell { bash, zsh, fish };

const std::map<std::string, Shell> kShells = {
    {"bash", Shell::bash}, {"zsh", Shell::zsh}, {"fish", Shell::fish}};

/// A text between apostrophes, for any of the shells.
std::string quoted(const std::string& text) {
  std::string result = "'";
  for (const char c : text) result += c == '\'' ? "'\\''" : std::string(1, c);
  return result + "'";
}

/// A text that zsh shows behind a word of a list of choices.
std::string forZsh(const std::string& text) {
  std::string result;
  for (const char c : text) result += c == ':' ? "\\:" : std::string(1, c);
  return result;
}

/// Writes what a shell has to know of the verbs and their options, as their help has them.
class CompletionVerb : public Verb {
 public:
  explicit CompletionVerb(CLI::App& app)
      : Verb(app, "completion", "Write the completion script of a shell",
             "  orv completion bash > ~/.local/share/bash-completion/completions/orv\n"),
        app_(app) {
    command()
        .add_option("SHELL", shell_, "bash, zsh or fish")
        ->required()
        ->transform(oneOf(kShells))
        ->type_name("");
  }

  ExitCode run(Console& /*console*/) override {
    switch (shell_) {
      case Shell::bash:
        writeBash();
        break;
      case Shell::zsh:
        writeZsh();
        break;
      case Shell::fish:
        writeFish();
        break;
    }
    return kAllWell;
  }

 private:
  std::vector<CLI::App*> verbs() const {
    return app_.get_subcommands([](const CLI::App*) { return true; });
  }

  /// The options with two dashes that the help has.
  static std::vector<CLI::Option*> optionsOf(CLI::App& command) {
    return command.get_options([](const CLI::Option* each) {
      return !each->get_lnames().empty() && !each->get_group().empty();
    });
  }

  static std::string nameOf(const CLI::Option& option) {
    return "--" + option.get_lnames().front();
  }

  /// The words that are the values of an option, with blanks between them; empty where it takes
  /// others.
  static std::string wordsOf(CLI::Option& option) {
    try {
      return option.get_validator(0)->get_name();
    } catch (const CLI::OptionNotFound&) {
      return {};
    }
  }

  /// Whether the value of an option is several of its words with commas between them.
  static bool isList(const CLI::Option& option) { return option.get_delimiter() == ','; }

  /// A case of a shell for each verb and option with words for values: "list --format".
  void writeWordCases(const std::string& form, const std::string& formOfLists) const {
    for (CLI::App* verb : verbs()) {
      for (CLI::Option* option : optionsOf(*verb)) {
        const std::string words = wordsOf(*option);
        if (words.empty()) continue;
        std::cout << fmt::format(fmt::runtime(isList(*option) ? formOfLists : form),
                                 verb->get_name() + " " + nameOf(*option), words);
      }
    }
  }

  void writeBash() const {
    std::vector<std::string> names;
    std::cout << "# Completion of orv for bash.\n_orv() {\n"
                 "  local word=${COMP_WORDS[COMP_CWORD]} words=\n"
                 "  case ${COMP_WORDS[1]} in\n";
    for (CLI::App* verb : verbs()) {
      names.push_back(verb->get_name());
      std::vector<std::string> options;
      for (CLI::Option* option : optionsOf(*verb)) options.push_back(nameOf(*option));
      std::cout << fmt::format("    {}) words={} ;;\n", verb->get_name(),
                               quoted(fmt::format("{}", fmt::join(options, " "))));
    }
    std::cout << "  esac\n  local values= before=\n"
                 "  case \"${COMP_WORDS[1]} ${COMP_WORDS[COMP_CWORD - 1]}\" in\n";
    writeWordCases("    '{}') values='{}' ;;\n",
                   "    '{}') values='{}' before=${{word%\"${{word##*,}}\"}} ;;\n");
    std::cout << fmt::format(
        "  esac\n"
        "  [[ $COMP_CWORD -eq 1 ]] && words={}\n"
        "  if [[ -n $values && $COMP_CWORD -gt 1 ]]; then\n"
        "    mapfile -t COMPREPLY < <(compgen -P \"$before\" -W \"$values\" -- "
        "\"${{word#\"$before\"}}\")\n"
        "  elif [[ $COMP_CWORD -eq 1 || $word == -* ]]; then\n"
        "    mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$word\")\n"
        "  else\n"
        "    compopt -o filenames\n"
        "    mapfile -t COMPREPLY < <(compgen -f -- \"$word\")\n"
        "  fi\n"
        "}}\n"
        "complete -F _orv orv\n",
        quoted(fmt::format("{} --help --version", fmt::join(names, " "))));
  }

  void writeZsh() const {
    std::cout << "#compdef orv\n# Completion of orv for zsh.\n_orv() {\n"
                 "  if (( CURRENT == 2 )); then\n    local -a verbs=(\n";
    for (CLI::App* verb : verbs()) {
      std::cout << "      " << quoted(verb->get_name() + ":" + forZsh(verb->get_description()))
                << '\n';
    }
    std::cout << "    )\n    _describe verb verbs\n    return\n  fi\n  local -a options\n"
                 "  case $words[2] in\n";
    for (CLI::App* verb : verbs()) {
      std::cout << "    " << verb->get_name() << ") options=(";
      for (CLI::Option* option : optionsOf(*verb)) {
        std::cout << ' ' << quoted(nameOf(*option) + ":" + forZsh(option->get_description()));
      }
      std::cout << " ) ;;\n";
    }
    std::cout << "  esac\n  local -a values\n  case \"$words[2] $words[CURRENT-1]\" in\n";
    writeWordCases("    '{}') values=({}) ;;\n", "    '{}') values=({}); compset -P '*,' ;;\n");
    std::cout << "  esac\n  if (( $#values )); then\n    compadd -a values\n"
                 "  elif [[ $PREFIX == -* ]]; then\n    _describe option options\n"
                 "  else\n    _files\n  fi\n}\n_orv \"$@\"\n";
  }

  /// What fish is told of the values of an option.
  static std::string valuesForFish(CLI::Option& option) {
    std::string words = wordsOf(option);
    if (words.empty()) return {};
    if (!isList(option)) return fmt::format(" -x -a '{}'", words);
    std::ranges::replace(words, ' ', ':');
    return fmt::format(" -x -a '(__fish_complete_list , \"string split : {}\")'", words);
  }

  void writeFish() const {
    std::cout << "# Completion of orv for fish.\n";
    for (CLI::App* verb : verbs()) {
      std::cout << fmt::format("complete -c orv -n __fish_use_subcommand -a {} -d {}\n",
                               verb->get_name(), quoted(verb->get_description()));
      for (CLI::Option* option : optionsOf(*verb)) {
        std::cout << fmt::format(
            "complete -c orv -n '__fish_seen_subcommand_from {}' -l {} -d {}{}\n", verb->get_name(),
            option->get_lnames().front(), quoted(option->get_description()),
            valuesForFish(*option));
      }
    }
  }

  CLI::App& app_;
  Shell shell_ = Shell::bash;
};

}  // namespace

std::unique_ptr<Verb> makeCompletionVerb(CLI::App& app) {
  return std::make_unique<CompletionVerb>(app);
}

}  // namespace orv::cli
