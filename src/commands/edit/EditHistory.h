// The history of a database in the words of its records.
#pragma once

#include <string>
#include <vector>

#include "store/History.h"

namespace orv::commands::edit {

/// What a work has done to a field of a record, or to a record.
struct HistoryDetail {
  std::string set;  ///< "panes"; the table, where it is none of records
  std::string id;   ///< of the record; empty for rows that are none
  std::string name;
  std::string field;  ///< empty where the record or the rows were added or deleted
  std::string before;
  std::string after;
};

/// What a work has done, in order: a line a field of a record, and one for the rows of spectra and
/// values an angle of a record that were added or deleted.
std::vector<HistoryDetail> historyDetails(const std::vector<store::HistoryChange>& changes);

/// Why a change cannot be taken back or made again: a sentence for each record.
std::vector<std::string> conflictTexts(const std::vector<store::HistoryConflict>& conflicts);

/// What has to hold in an ORV database when a change is taken back or made again: records have the
/// names that they refer to, and spectra and values an angle have their records.
std::vector<store::RowReference> historyReferences();

/// "2026-11-26 14:05", by the local clock.
std::string historyTime(const store::HistoryWork& work);

}  // namespace orv::commands::edit
