// The schema of an ORV database of version 3.0.0, and the making of an empty one.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "store/Connection.h"
#include "store/Schema.h"

namespace orv::database {

inline constexpr const char* kVersion2 = "2.0.1";
inline constexpr const char* kVersion3 = "3.0.0";

/// The tables in the order in which they are made. Names are looked up through an index, and the
/// rows of one pane, angle or shading are found through one, so that the cost of an insertion does
/// not grow with the number of records.
std::vector<store::TableInfo> orvTables();

/// The saved queries that show panes, frames and shadings to a user, the key first. A record whose
/// group or supplier is missing is shown all the same.
std::vector<store::QueryDesign> orvQueries();

/// Makes an empty ORV database at `path` and returns a connection to it. Raises kStoreFailure
/// when a file stands there already; what fails leaves no file behind.
std::shared_ptr<store::Connection> CreateEmptyDatabase(const std::string& path);

}  // namespace orv::database
