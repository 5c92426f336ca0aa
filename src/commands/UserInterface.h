// How the commands talk to whoever started them.
#pragma once

#include <string>
#include <vector>

#include "database/PaneQuestions.h"
#include "database/Product.h"

namespace orv::commands {

using database::kApplicationTitle;
using database::kProductName;

enum class MessageKind {
  information,
  critical,
  /// One record of many failed and the work goes on. May be collected and shown at the end.
  recordFailure,
};

enum class Buttons { yesNo, yesNoCancel, abortRetryIgnore };
enum class Answer { yes, no, cancel, abort, retry, ignore };

struct Question {
  std::string text;
  std::string title;
  Buttons buttons = Buttons::yesNo;
  /// The button that the return key presses.
  Answer defaultAnswer = Answer::yes;
  /// What it is asked of, where there is room for it below the text.
  std::string details = {};
};

/// A request for one line of text.
struct InputRequest {
  std::string prompt;
  std::string title;
  std::string preset = {};
  /// What there is to know for whoever types it.
  std::string help = {};
  /// Whether it is not to be seen while it is typed.
  bool isSecret = false;
  /// Texts to choose from; others may be typed.
  std::vector<std::string> choices = {};
};

/// What is to become of a record that the destination has already.
enum class IfThere {
  fail,     ///< it counts as a failure
  skip,     ///< it is passed over
  replace,  ///< the one that is there is replaced
};

/// A window or a command line. All texts are UTF-8, lines parted by "\n".
class UserInterface : public database::PaneQuestions {
 public:
  /// Shows what is being done now, in the place where that is always shown.
  virtual void status(const std::string& text) = 0;

  /// Shows the display of a long work, which stays until endProgress().
  virtual void beginProgress(const std::string& text) = 0;
  /// Replaces the text of the display.
  virtual void progressText(const std::string& text) = 0;
  virtual void progressSteps(int done, int total) = 0;
  virtual void endProgress() = 0;
  /// Whether the user wants the long work to end; asked between records.
  virtual bool cancelled() = 0;

  virtual void message(MessageKind kind, const std::string& text, const std::string& title) = 0;
  /// A message with a list, which may be long.
  virtual void list(const std::string& heading, const std::vector<std::string>& parts,
                    const std::string& title);
  virtual Answer ask(const Question& question) = 0;
  /// The text; empty when the user gave none or cancelled.
  virtual std::string input(const InputRequest& request) = 0;

  /// Tells that a record was not copied since the destination has it, and asks what to do. Without
  /// a question it is a failure like any other.
  virtual IfThere recordExists(const std::string& text, const std::string& title);

  /// Warns of what can harm a file; true when the work is to go on all the same.
  virtual bool acceptRisk(const std::string& warning);

  /// A question of pane insertion.
  bool confirm(const std::string& text, const std::string& caption) override;
};

}  // namespace orv::commands
