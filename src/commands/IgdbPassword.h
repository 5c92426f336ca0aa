// Databases that have the password of the IGDB.
#pragma once

#include <string>

#include "commands/SourceOpener.h"
#include "errors/Error.h"
#include "store/StoreError.h"

namespace orv::commands {

/// What `open` gives with a password; where none is given and the file wants one, with that of the
/// IGDB.
template <class Open>
auto withPasswordOfIgdb(const std::string& password, Open open) {
  try {
    return open(password);
  } catch (const Error& error) {
    if (error.number() != store::kNotAuthenticated || !password.empty()) throw;
    return open(kIgdbPassword);
  }
}

}  // namespace orv::commands
