// The writing of changes that can be made.
#pragma once

#include <vector>

#include "commands/Session.h"
#include "commands/edit/Change.h"
#include "commands/edit/Field.h"

namespace orv::commands::edit {

/// Writes the changes, and the names that they bring, within a commit of the caller's.
void writeChanges(const Session& session, store::Connection& database, EditSet set,
                  const std::vector<EditField>& fields, const std::vector<Change>& changes);

}  // namespace orv::commands::edit
