// Changes of many fields, looked at before they are made.
#pragma once

#include <string>
#include <vector>

#include "commands/edit/Editor.h"

namespace orv::app {

class RecordEdits;

/// What a field of a record is to become.
struct PlannedChange {
  commands::edit::TypedValue typed;
  std::string name;          ///< of the record
  std::string before;        ///< what the grid has, with all its digits; changed or not
  std::string after = {};    ///< what the text comes to
  std::string refusal = {};  ///< why it cannot be, a sentence; empty where it can
};
using ChangePlan = std::vector<PlannedChange>;

/// Finds out what planned changes come to, together and with what is changed already, and why some
/// of them cannot be. Those that would change nothing are left out. Raises what reading raises.
ChangePlan judged(const RecordEdits& edits, ChangePlan plan);

/// What is said of a field that somebody else has changed since the grid has read it.
std::string changedMeanwhile(const commands::edit::Change& change);

}  // namespace orv::app
