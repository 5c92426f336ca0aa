// What there is to say of the sources after a piece of work.
#pragma once

#include <string>
#include <vector>

#include "commands/Session.h"

namespace orv::commands {

/// What was mended in text files, and the databases with damaged indexes; each is told once.
std::vector<std::string> remarks(Session& session);

/// Those of them about damaged indexes.
std::vector<std::string> newIndexRemarks(Session& session);

/// "The table Pane of orvdata.mdb has a damaged index ..."; empty for a sound database.
std::vector<std::string> indexRemarks(const store::Connection& database);

}  // namespace orv::commands
