// Properties of a table and its columns: defaults, required columns and the like.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "store/Value.h"
#include "store/jet/definition/TableDefinition.h"

namespace orv::store::jet {

class Pager;

/// One property as it is kept in the `LvProp` column of MSysObjects.
struct Property {
  std::string name;
  ColumnType type = ColumnType::text;
  Bytes value;
  bool isDefinition = false;  ///< set by the engine's own definition of the object
};

/// The properties of an object (under an empty name) and of its columns (under theirs).
using PropertyMap = std::map<std::string, std::vector<Property>>;

/// Reads a block: its marker ("MR2" in Jet 4, "KKD" in Jet 3), a list of names, and for each
/// object a list of values. An unknown or malformed block gives what could be read of it:
/// properties refine a table, they do not make it.
PropertyMap readProperties(const Pager& pager, std::span<const std::uint8_t> block);

/// The block of Jet 4 for a map.
Bytes writeProperties(const PropertyMap& properties);

/// Takes the properties that the store heeds into the columns: "Required", "AllowZeroLength",
/// "DefaultValue" and, of a calculated column, "ResultType", the type of what is stored.
void applyProperties(const Pager& pager, const PropertyMap& properties, TableDefinition& table);

}  // namespace orv::store::jet
