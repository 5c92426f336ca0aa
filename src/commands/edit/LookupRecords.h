// Groups, suppliers and frame types, with what uses them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "commands/UserInterface.h"
#include "commands/edit/EditSet.h"
#include "store/Connection.h"

namespace orv::commands::edit {

struct LookupRecord {
  std::int32_t id = 0;
  std::string name;
  int panes = 0;  ///< how many of them have it
  int frames = 0;
  int shadings = 0;

  int uses() const { return panes + frames + shadings; }
};

/// All names of a set, in the order of their keys, counted in one pass over the records.
std::vector<LookupRecord> lookupRecords(EditSet names, store::Connection& database);

/// Puts the records that have one of the names `from` to `into`, and deletes the names `from`, in
/// one commit. Raises kInvalidCall, with the list, where there is no such name, or where two
/// records of one name would come into one group.
void mergeLookups(EditSet names, const std::vector<std::int32_t>& from, std::int32_t into,
                  store::Connection& database, UserInterface& ui);

/// Deletes names, each given once, in one commit. Raises kInvalidCall, with the list, where a record
/// has one.
void deleteLookups(EditSet names, const std::vector<std::int32_t>& ids, store::Connection& database,
                   UserInterface& ui);

}  // namespace orv::commands::edit
