// Records that are in a database already when one of their name and group comes.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace orv::database {

/// What is to become of a pane that is there already.
enum class Existing { refused, replaced };

/// What is to become of its data at angles at which the new pane has none.
enum class OtherAngles { kept, deleted };

/// What the source of a pane gives at an angle.
struct GivenAngle {
  /// Columns of integrated values that were computed: they are stored where the spectrum is
  /// another.
  std::set<std::string> computed = {};
  std::int32_t direction = 0;      ///< of the spectrum; 0 where it has none
  bool hasUnreadSpectrum = false;  ///< a spectrum that was not read: the one that is there stays
};

/// How a record takes the place of one that is there. Only what differs is written; of columns and
/// rows that the source does not give, the record keeps what it has.
struct Replacement {
  std::int32_t key = 0;  ///< of the record; 0 for that of the name and group of the new one
  double tolerance = 0;  ///< numbers that are no further apart are the same
  std::set<std::string> notGiven = {};  ///< "Table.column", or "Table" for all of it
  OtherAngles others = OtherAngles::kept;
  std::map<std::int16_t, GivenAngle> angles = {};
  /// Angles at which the source has data that no copy brings: those that are there stay.
  std::set<std::int16_t> unbrought = {};

  bool gives(const std::string& table) const { return !notGiven.contains(table); }
  bool gives(const std::string& table, const std::string& column) const {
    return gives(table) && !notGiven.contains(table + "." + column);
  }
  GivenAngle at(std::int16_t angle) const {
    const auto found = angles.find(angle);
    return found == angles.end() ? GivenAngle() : found->second;
  }
};

/// What ORV_DatabaseInterface::ReplacePane did.
struct ReplacedPane {
  bool wasThere = false;
  /// Values that were computed, of GivenAngle::computed, have been stored in the old pane.
  bool tookComputed = false;
  /// The old pane had a substrate, and the new one has none.
  bool lostSubstrate = false;
  /// Angles at which only the old pane had data.
  std::vector<std::int16_t> otherAngles = {};
};

}  // namespace orv::database
