#include "commands/UserInterface.h"

namespace orv::commands {

bool UserInterface::confirm(const std::string& text, const std::string& caption) {
  return ask({text, caption, Buttons::yesNo, Answer::yes}) == Answer::yes;
}

IfThere UserInterface::recordExists(const std::string& text, const std::string& title) {
  message(MessageKind::recordFailure, text, title);
  return IfThere::fail;
}

void UserInterface::list(const std::string& heading, const std::vector<std::string>& parts,
                         const std::string& title) {
  std::string text = heading;
  for (const std::string& part : parts) text += "\n\n" + part;
  message(MessageKind::information, text, title);
}

bool UserInterface::acceptRisk(const std::string& warning) {
  return ask({warning + "\n\nDo you want to go on all the same?", kProductName, Buttons::yesNo,
              Answer::no}) == Answer::yes;
}

}  // namespace orv::commands
