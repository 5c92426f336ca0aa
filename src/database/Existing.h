// Records that are in a database already when one of their name and group comes.
#pragma once

#include <cstdint>
#include <vector>

namespace orv::database {

/// What is to become of a pane that is there already.
enum class Existing { refused, replaced };

/// What is to become of its data at angles at which the new pane has none.
enum class OtherAngles { kept, deleted };

/// What ORV_DatabaseInterface::ReplacePane did.
struct ReplacedPane {
  bool wasThere = false;
  /// Angles at which only the old pane had data.
  std::vector<std::int16_t> otherAngles = {};
};

}  // namespace orv::database
