#include "commands/UserInterface.h"

namespace orv::commands {

bool UserInterface::confirm(const std::string& text, const std::string& caption) {
  return ask({text, caption, Buttons::yesNo, Answer::yes}) == Answer::yes;
}

bool UserInterface::acceptRisk(const std::string& warning) {
  return ask({warning + "\n\nDo you want to go on all the same?", kProductName, Buttons::yesNo,
              Answer::no}) == Answer::yes;
}

}  // namespace orv::commands
