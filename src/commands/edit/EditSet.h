// The record sets whose records can be edited, and their tables.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "commands/RecordKind.h"

namespace orv::commands::edit {

/// Groups, suppliers and frame types are records too: names that other records refer to.
enum class EditSet { panes, frames, shadings, groups, suppliers, frameTypes };

inline constexpr std::array kEditSets{EditSet::panes,  EditSet::frames,    EditSet::shadings,
                                      EditSet::groups, EditSet::suppliers, EditSet::frameTypes};

/// A column in which the records of a table hold the key of a name.
struct Reference {
  EditSet from;
  const char* column;
};

/// Where the records of a set are in an ORV database of version 3.0.0.
struct SetDesign {
  EditSet set;
  const char* name;  ///< as the command line has it: "panes", "frame types"
  const char* one;   ///< of one record: "pane"
  const char* table;
  const char* key;  ///< the column of the identifiers
  const char* nameColumn;
  const char* shownName;  ///< of a name that others refer to: its column where they are shown
  std::span<const Reference> references;  ///< to a name
};

const SetDesign& designOf(EditSet set);
EditSet editSetOf(RecordKind kind);
/// Whether it is one of names that other records refer to.
inline bool isLookup(EditSet set) {
  return set >= EditSet::groups;
}
/// The column in which the records of `from` hold the key of a name; null where they have none.
const char* referenceColumn(EditSet names, EditSet from);

}  // namespace orv::commands::edit
