#include "commands/PasswordQuestion.h"

#include "store/StoreError.h"

namespace orv::commands {

bool withPassword(Session& session, const std::string& filename,
                  const std::function<void()>& work) {
  std::string prompt = "\"" + filename + "\" has a database password:";
  while (true) {
    try {
      work();
      return true;
    } catch (const Error& error) {
      if (error.number() != store::kNotAuthenticated) throw;
    }
    session.password = session.ui.input(
        {.prompt = prompt,
         .title = kProductName,
         .help = "The database password that the file was given in Access. It is kept in memory "
                 "until the program ends, for the next database that has the same.",
         .isSecret = true});
    if (session.password.empty()) return false;
    prompt = "This is not the password of \"" + filename + "\". Please try again:";
  }
}

}  // namespace orv::commands
