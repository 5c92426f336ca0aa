// Databases that have the password of the IGDB.
#pragma once

#include <string>

#include "commands/SourceOpener.h"
#include "errors/Error.h"
#include "store/StoreError.h"

namespace orv::commands {

/// What `open` gives with a password; where the file wants another, with that of the IGDB. Raises
/// the first error where that is not it either.
template <class Open>
auto withPasswordOfIgdb(const std::string& password, Open open) {
  try {
    return open(password);
  } catch (const Error& error) {
    if (error.number() != store::kNotAuthenticated) throw;
    try {
      return open(kIgdbPassword);
    } catch (const Error& second) {
      if (second.number() != store::kNotAuthenticated) throw;
    }
    throw;
  }
}

}  // namespace orv::commands
