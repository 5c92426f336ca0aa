// Keys for names and names for keys.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "store/Connection.h"

namespace orv::database {

/// A table that gives names to keys.
struct LookupTable {
  const char* table;
  const char* key;
  const char* name;
};

inline constexpr LookupTable kGroups{"Groups", "GroupID", "GroupName"};
inline constexpr LookupTable kSuppliers{"Suppliers", "supplierID", "SupplierName"};
inline constexpr LookupTable kFrameTypes{"FrameTypes", "FrameTypeID", "FrameTypeName"};

/// Moves to the row of a name: of this spelling, or else the first that a database takes for the
/// same (see store::textKey()). To the end where there is none.
void findName(store::Recordset& rows, const LookupTable& table, const std::string& name);

/// All names of a table, by their keys.
std::unordered_map<std::int32_t, std::string> allNames(const LookupTable& table,
                                                       store::Connection& dc);

// A name is found as findName() does. One that is not found has the key 0, a key that is not found
// the empty name. The first row in table order counts when a name is there twice.

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
