// A user interface that keeps what it is shown and gives the answers that a test prepared.
#pragma once

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "commands/UserInterface.h"

namespace orv::test {

/// Everything in order, a line each: "status: Ready", "input: prompt [preset]", ... A question or
/// an input without a prepared answer fails the test.
class RecordingUi : public commands::UserInterface {
 public:
  void status(const std::string& text) override { log.push_back("status: " + text); }
  void beginProgress(const std::string& text) override { log.push_back("progress: " + text); }
  void progressText(const std::string& text) override { log.push_back("progress: " + text); }
  void progressSteps(int done, int total) override { steps.emplace_back(done, total); }
  void endProgress() override { log.push_back("progress ends"); }
  bool cancelled() override { return cancelWhen && cancelWhen(); }

  void message(commands::MessageKind kind, const std::string& text,
               const std::string& title) override {
    const char* name = kind == commands::MessageKind::critical      ? "critical"
                       : kind == commands::MessageKind::information ? "information"
                                                                    : "failure";
    log.push_back(std::string(name) + " (" + title + "): " + text);
  }

  commands::IfThere recordExists(const std::string& text, const std::string& title) override {
    return existing ? *existing : UserInterface::recordExists(text, title);
  }

  commands::Answer ask(const commands::Question& question) override {
    log.push_back("question (" + question.title + "): " + question.text);
    if (tellsAll) {
      log.back() += fmt::format(" {{buttons {}, by itself {}, details \"{}\"}}",
                                static_cast<int>(question.buttons),
                                static_cast<int>(question.defaultAnswer), question.details);
    }
    if (answers.empty()) {
      ADD_FAILURE() << "unexpected question: " << question.text;
      return commands::Answer::no;
    }
    const commands::Answer answer = answers.front();
    answers.pop_front();
    return answer;
  }

  std::string input(const commands::InputRequest& request) override {
    log.push_back("input (" + request.title + "): " + request.prompt + " [" + request.preset + "]");
    if (tellsAll) {
      log.back() += fmt::format(" {{help \"{}\", {}, choices {}}}", request.help,
                                request.isSecret ? "secret" : "seen", request.choices);
    }
    if (inputs.empty()) {
      ADD_FAILURE() << "unexpected input: " << request.prompt;
      return {};
    }
    const std::string text = inputs.front();
    inputs.pop_front();
    return text;
  }

  bool tellsAll = false;  ///< whether the log has all of a question
  std::vector<std::string> log;
  std::vector<std::pair<int, int>> steps;
  std::deque<commands::Answer> answers;
  std::deque<std::string> inputs;
  std::function<bool()> cancelWhen;
  std::optional<commands::IfThere> existing;  ///< what the user wants done with records there
};

}  // namespace orv::test
