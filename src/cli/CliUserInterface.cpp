#include "cli/CliUserInterface.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <vector>

#include "model/ShownText.h"
#include "model/Text.h"

namespace orv::cli {

using commands::Answer;
using commands::Buttons;

namespace {

constexpr int kBarWidth = 24;
constexpr std::size_t kTextWidth = 46;

/// The first characters of a text, no more than a bar's line has room for.
std::string shortened(const std::string& text) {
  std::size_t end = 0;
  std::size_t characters = 0;
  while (end < text.size()) {
    const bool startsCharacter = (static_cast<unsigned char>(text[end]) & 0xC0) != 0x80;
    if (startsCharacter && ++characters > kTextWidth) break;
    ++end;
  }
  return text.substr(0, end);
}

/// A text that may come from a file, within one line.
std::string oneLine(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c == '\n' || c == '\t'; }, ' ');
  return shown(text);
}

/// Writes to the terminal what std::cerr would spell out.
void steer(const std::string& text) {
  std::cerr << std::flush;
  std::fputs(text.c_str(), stderr);
}

struct Choice {
  char letter;
  const char* text;
  Answer answer;
};

std::vector<Choice> choicesOf(Buttons buttons) {
  switch (buttons) {
    case Buttons::yesNo:
      return {{'y', "yes", Answer::yes}, {'n', "no", Answer::no}};
    case Buttons::yesNoCancel:
      return {{'y', "yes", Answer::yes}, {'n', "no", Answer::no}, {'c', "cancel", Answer::cancel}};
    case Buttons::abortRetryIgnore:
      break;
  }
  return {{'a', "abort", Answer::abort},
          {'r', "retry", Answer::retry},
          {'i', "ignore", Answer::ignore}};
}

/// Reads lines until one is an answer; the end of the input gives up.
Answer readAnswer(const commands::Question& question) {
  const InterruptsEnd interruptsEnd;
  const std::vector<Choice> choices = choicesOf(question.buttons);
  std::vector<std::string> words;
  for (const Choice& choice : choices) {
    words.push_back(choice.answer == question.defaultAnswer ? upperCase(choice.text) : choice.text);
  }
  while (true) {
    std::cerr << fmt::format("({}) ", fmt::join(words, "/")) << std::flush;
    std::string line;
    if (!std::getline(std::cin, line)) return choices.back().answer;
    const std::string word = lowerCase(trimmed(line));
    if (word.empty()) return question.defaultAnswer;
    for (const Choice& choice : choices) {
      if (word == choice.text || word == std::string(1, choice.letter)) return choice.answer;
    }
  }
}

}  // namespace

bool canAsk() {
  return isatty(STDIN_FILENO) && isatty(STDERR_FILENO);
}

CliUserInterface::CliUserInterface() : showsBar_(isatty(STDERR_FILENO)) {}

void CliUserInterface::status(const std::string& text) {
  progressText(text);
}

void CliUserInterface::beginProgress(const std::string& text) {
  done_ = total_ = 0;
  interrupts_.emplace();
  progressText(text);
}

void CliUserInterface::progressText(const std::string& text) {
  text_ = text;
  draw();
}

void CliUserInterface::progressSteps(int done, int total) {
  done_ = done;
  total_ = total;
  draw();
}

void CliUserInterface::endProgress() {
  clear();
  interrupts_.reset();
}

bool CliUserInterface::cancelled() {
  return Interrupts::happened();
}

void CliUserInterface::message(commands::MessageKind kind, const std::string& text,
                               const std::string& /*title*/) {
  if (kind == commands::MessageKind::information && answers_.quiet) return;
  print("orv: " + text);
}

/// Where nobody can be asked, the answer is the one that changes least and lets the work go on.
Answer CliUserInterface::ask(const commands::Question& question) {
  if (question.buttons == Buttons::yesNoCancel && answers_.yes) return Answer::yes;
  const bool asks = canAsk();
  print(asks ? question.text : "orv: " + question.text);
  if (asks) return readAnswer(question);
  return question.buttons == Buttons::abortRetryIgnore ? Answer::ignore : Answer::no;
}

std::string CliUserInterface::input(const commands::InputRequest& request) {
  if (!answers_.group.empty()) return answers_.group;
  clear();
  const InterruptsEnd interruptsEnd;
  std::cerr << request.prompt << ' ' << std::flush;
  std::string line;
  std::getline(std::cin, line);
  return std::string(trimmed(line));
}

/// With the policy to drop, the first question is answered anew for each pane, so that each pane
/// that loses its substrate is named.
bool CliUserInterface::confirm(const std::string& text, const std::string& caption) {
  if (answers_.substrate == SubstratePolicy::ask) return UserInterface::confirm(text, caption);
  if (answers_.substrate == SubstratePolicy::refuse || caption != commands::kApplicationTitle) {
    return false;
  }
  print(text + " Yes.");
  return true;
}

bool CliUserInterface::acceptRisk(const std::string& warning) {
  print("orv: " + warning + (answers_.force ? "" : " Close it there, or go on with --force."));
  return answers_.force;
}

void CliUserInterface::draw() {
  if (!showsBar_ || answers_.quiet) return;
  const int filled = total_ > 0 ? done_ * kBarWidth / total_ : 0;
  steer(fmt::format("\r\033[K[{:.<{}}] {}/{} {}", std::string(filled, '#'), kBarWidth, done_,
                    total_, shortened(oneLine(text_))));
}

void CliUserInterface::clear() {
  if (showsBar_ && interrupts_ && !answers_.quiet) steer("\r\033[K");
}

/// Above the bar, which is drawn again with the next text.
void CliUserInterface::print(const std::string& text) {
  clear();
  std::cerr << text << std::endl;
}

}  // namespace orv::cli
