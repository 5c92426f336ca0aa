#include "commands/edit/EditHistory.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <unordered_set>

#include "commands/edit/EditSet.h"
#include "commands/edit/Field.h"
#include "errors/Counted.h"
#include "model/Text.h"

namespace orv::commands::edit {

namespace {

constexpr std::size_t kLongestShown = 60;

const SetDesign* designOfTable(const std::string& table) {
  for (const EditSet set : kEditSets) {
    if (equalIgnoringCase(designOf(set).table, table)) return &designOf(set);
  }
  return nullptr;
}

std::string shortText(const store::Value& value) {
  if (const auto* bytes = value.getIf<store::Bytes>()) {
    return fmt::format("{} bytes", bytes->size());
  }
  std::string text = fieldText(value);
  if (text.size() <= kLongestShown) return text;
  std::size_t end = kLongestShown;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
  return text.substr(0, end) + "...";
}

/// A row with the names of its columns.
struct NamedRow {
  const std::vector<std::string>& columns;
  const std::vector<store::Value>& values;

  std::string text(const std::string& column) const {
    for (std::size_t i = 0; i < columns.size() && i < values.size(); ++i) {
      if (equalIgnoringCase(columns[i], column)) return shortText(values[i]);
    }
    return {};
  }
};

/// The key of the record that a row of details belongs to; it is their first column.
std::string ownerOf(const store::HistoryChange& change) {
  const auto& values = change.before.empty() ? change.after : change.before;
  return values.empty() ? std::string() : shortText(values.front());
}

class Details {
 public:
  void add(const store::HistoryChange& change) {
    const SetDesign* design = designOfTable(change.table);
    if (!design) return addRow(change);
    const NamedRow row{change.columns, change.before.empty() ? change.after : change.before};
    HistoryDetail detail{
        design->name, row.text(design->key), row.text(design->nameColumn), {}, {}, {}};
    if (change.before.empty() || change.after.empty()) {
      detail.after = change.before.empty() ? "added" : "deleted";
      details_.push_back(std::move(detail));
      return;
    }
    addFields(change, detail);
  }

  std::vector<HistoryDetail> take() { return std::move(details_); }

 private:
  void addFields(const store::HistoryChange& change, HistoryDetail detail) {
    for (std::size_t i = 0; i < change.before.size() && i < change.after.size(); ++i) {
      if (change.before[i] == change.after[i]) continue;
      detail.field = i < change.columns.size() ? change.columns[i] : "?";
      detail.before = shortText(change.before[i]);
      detail.after = shortText(change.after[i]);
      details_.push_back(detail);
    }
  }

  /// Rows of spectra and of values an angle are counted.
  void addRow(const store::HistoryChange& change) {
    HistoryDetail detail{change.table, ownerOf(change), {}, {}, {}, {}};
    if (!change.before.empty() && !change.after.empty()) return addFields(change, detail);
    const bool isAdded = change.before.empty();
    const bool goesOn = !details_.empty() && details_.back().set == detail.set &&
                        details_.back().id == detail.id && details_.back().field.empty() &&
                        wasAdded_ == isAdded;
    if (!goesOn) {
      rows_ = 0;
      wasAdded_ = isAdded;
      details_.push_back(std::move(detail));
    }
    ++rows_;
    details_.back().after = counted(rows_, "row") + (isAdded ? " added" : " deleted");
  }

  std::vector<HistoryDetail> details_;
  int rows_ = 0;
  bool wasAdded_ = false;
};

std::string withArticle(const SetDesign& design, const NamedRow& row) {
  return fmt::format("The {} {} \"{}\"", design.one, row.text(design.key),
                     row.text(design.nameColumn));
}

/// "panes"; the name of the table, where it is none of records.
std::string tableText(const std::string& table) {
  const SetDesign* design = designOfTable(table);
  return design ? design->name : table;
}

/// Of a record that has been changed since.
std::string differences(const store::HistoryConflict& conflict) {
  std::string fields;
  for (std::size_t i = 0; i < conflict.wanted.size() && i < conflict.present.size(); ++i) {
    if (conflict.wanted[i] == conflict.present[i]) continue;
    fields += fmt::format("{}{} is \"{}\" now and was \"{}\"", fields.empty() ? "" : ", ",
                          conflict.columns[i], shortText(conflict.present[i]),
                          shortText(conflict.wanted[i]));
  }
  return fields;
}

std::string conflictText(const store::HistoryConflict& conflict) {
  using Kind = store::HistoryConflict::Kind;
  if (conflict.columns.empty()) {
    return fmt::format("The table {} is gone, or has other columns now.", conflict.table);
  }
  const SetDesign* design = designOfTable(conflict.table);
  const NamedRow wanted{conflict.columns, conflict.wanted};
  const std::string record =
      design ? withArticle(*design, wanted)
             : fmt::format("{}: what belongs to {} {}", conflict.table, conflict.columns.front(),
                           shortText(conflict.wanted.front()));
  switch (conflict.kind) {
    case Kind::isThere:
      return record + " is there already.";
    case Kind::lacks:
      return fmt::format("{} refers to one of the {} that is not there any more.", record,
                         tableText(conflict.other));
    case Kind::used:
      return fmt::format("{} has got other {} since.", record, tableText(conflict.other));
    case Kind::changed:
      break;
  }
  if (!design || conflict.present.empty()) return record + " has been deleted or changed since.";
  return record + " has been changed since: " + differences(conflict) + ".";
}

}  // namespace

std::vector<HistoryDetail> historyDetails(const std::vector<store::HistoryChange>& changes) {
  Details details;
  for (const store::HistoryChange& change : changes) details.add(change);
  return details.take();
}

std::vector<std::string> conflictTexts(const std::vector<store::HistoryConflict>& conflicts) {
  std::vector<std::string> texts;
  std::unordered_set<std::string> told;
  for (const store::HistoryConflict& conflict : conflicts) {
    std::string text = conflictText(conflict);
    if (told.insert(text).second) texts.push_back(std::move(text));
  }
  return texts;
}

std::vector<store::RowReference> historyReferences() {
  std::vector<store::RowReference> all{
      {"Pane_integrated_data", "PaneID", "Pane", "PaneID"},
      {"Pane_spectral_data", "PaneID", "Pane", "PaneID"},
      {"Shading_integrated_data_temp", "Shading_id", "Shading", "Shading_id"},
      {"Shading_spectral_data", "Shading_ID", "Shading", "Shading_id"},
  };
  for (const EditSet set : kEditSets) {
    const SetDesign& names = designOf(set);
    for (const Reference& reference : names.references) {
      all.push_back({designOf(reference.from).table, reference.column, names.table, names.key});
    }
  }
  return all;
}

std::string historyTime(const store::HistoryWork& work) {
  return fmt::format("{:%Y-%m-%d %H:%M}", fmt::localtime(static_cast<std::time_t>(work.time)));
}

}  // namespace orv::commands::edit
