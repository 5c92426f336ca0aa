// Keys for names and names for keys.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "store/Connection.h"

namespace orv::database {

// A name that is not found has the key 0, a key that is not found the empty name. The first row in
// table order counts when a name is there twice.

std::string GroupNameById(std::int32_t id, store::Connection& dc);
std::int32_t GroupIdByName(const std::string& name, store::Connection& dc);
/// The names of all groups, in alphabetical order without regard to case.
std::vector<std::string> GroupNames(store::Connection& dc);
std::string SupplierNameById(std::int32_t id, store::Connection& dc);
std::int32_t SupplierIdByName(const std::string& name, store::Connection& dc);
std::string FrameTypeNameById(std::int32_t id, store::Connection& dc);
std::int32_t FrameTypeIdByName(const std::string& name, store::Connection& dc);
/// The `GlazingID` of a glazing of the IGDB or of an Optics5 user database.
std::int32_t GlazingIdByFileName(const std::string& name, store::Connection& dc);

}  // namespace orv::database
