#include <iostream>

#include "cli/Verb.h"
#include "commands/SourceOpener.h"

namespace orv::cli {

namespace {

class NewVerb : public Verb {
 public:
  explicit NewVerb(CLI::App& app)
      : Verb(app, "new", "Make an empty ORV database of version 3.0.0", "  orv new orvdata.mdb\n") {
    command()
        .add_option("DB", path_, "File to make; one that is there is never replaced")
        ->required()
        ->type_name("");
  }

  ExitCode run(Console& /*console*/) override {
    refuseStandardStream(path_);
    opening([&] { commands::createDatabaseFile(path_); });
    std::cout << "Made the empty ORV database " << path_ << ".\n";
    return kAllWell;
  }

 private:
  std::string path_;
};

}  // namespace

std::unique_ptr<Verb> makeNewVerb(CLI::App& app) {
  return std::make_unique<NewVerb>(app);
}

}  // namespace orv::cli
