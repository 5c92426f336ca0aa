#include "commands/UserInterface.h"

namespace orv::commands {

bool UserInterface::confirm(const std::string& text, const std::string& caption) {
  return ask({text, caption, Buttons::yesNo, Answer::yes}) == Answer::yes;
}

}  // namespace orv::commands
