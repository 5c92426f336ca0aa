// The commands' user interface on a terminal, or without one.
#pragma once

#include <optional>
#include <string>

#include "cli/Interrupts.h"
#include "commands/UserInterface.h"

namespace orv::cli {

/// What is done with a pane whose substrate's spectrum does not fit its own.
enum class SubstratePolicy {
  ask,
  drop,    ///< copy it without the substrate, and say so
  refuse,  ///< do not copy it
};

/// The answers that the command line gives beforehand.
struct Answers {
  bool yes = false;    ///< to the confirmation of a deletion
  bool quiet = false;  ///< nothing but failures is told
  bool force = false;  ///< to the warning that a file is in use elsewhere
  std::string group;   ///< to the question for a group name
  SubstratePolicy substrate = SubstratePolicy::refuse;
};

/// Whether there is somebody who can be asked.
bool canAsk();

/// Messages go to standard error, where a terminal also shows a progress bar. A signal that asks
/// the program to end ends a long work after the record that is being worked on.
class CliUserInterface : public commands::UserInterface {
 public:
  CliUserInterface();

  /// For the verbs, which know them only once the command line is read.
  void answers(Answers value) { answers_ = std::move(value); }
  bool isQuiet() const { return answers_.quiet; }

  void status(const std::string& text) override;
  void beginProgress(const std::string& text) override;
  void progressText(const std::string& text) override;
  void progressSteps(int done, int total) override;
  void endProgress() override;
  bool cancelled() override;
  void message(commands::MessageKind kind, const std::string& text,
               const std::string& title) override;
  commands::Answer ask(const commands::Question& question) override;
  std::string input(const commands::InputRequest& request) override;
  bool confirm(const std::string& text, const std::string& caption) override;
  bool acceptRisk(const std::string& warning) override;

 private:
  void draw();
  void clear();
  void print(const std::string& text);

  Answers answers_;
  bool showsBar_;
  std::string text_;
  int done_ = 0;
  int total_ = 0;
  std::optional<Interrupts> interrupts_;  ///< during a long work
};

}  // namespace orv::cli
