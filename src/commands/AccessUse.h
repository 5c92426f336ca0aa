// Whether Access has a database open.
#pragma once

#include <string>

#include "commands/UserInterface.h"
#include "store/Connection.h"

namespace orv::commands {

/// What speaks for it that Access has the database file open at this moment: beside it lies the
/// file in which Access notes who uses it, and somebody holds that file, or it was written within
/// the last day. One sentence; empty when nothing does.
std::string signOfAccess(const std::string& path);

/// Whether the file of a database can be changed; says why where it cannot.
bool canBeChanged(const store::Connection& database, UserInterface& ui);

/// Whether the records of a database may be changed; says where they cannot. Asks when Access seems
/// to have it open, since Access knows nothing of this program's locks.
bool mayBeChanged(const store::Connection& database, UserInterface& ui);

}  // namespace orv::commands
