#include "commands/edit/Editor.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <charconv>
#include <set>
#include <tuple>

#include "commands/ChangeHistory.h"
#include "commands/ColumnTitle.h"
#include "commands/edit/ChangeReview.h"
#include "commands/edit/ChangeWriter.h"
#include "commands/edit/StoredRecords.h"
#include "database/OrvSchema.h"
#include "errors/Counted.h"
#include "errors/Error.h"
#include "model/Text.h"

namespace orv::commands::edit {

namespace {

/// A name without what people write in several ways.
std::string plain(std::string_view name) {
  std::string result = lowerCase(name);
  std::erase_if(result, [](char c) { return c == ' ' || c == '_' || c == '-'; });
  return result;
}

/// "NAME at 60°" parted; none where the name does not end so.
std::optional<std::pair<std::string, std::int16_t>> angleIn(const std::string& name) {
  const auto at = lowerCase(name).rfind(" at ");
  if (at == std::string::npos) return std::nullopt;
  std::string_view digits = trimmed(std::string_view(name).substr(at + 4));
  if (constexpr std::string_view kDegree = "°"; digits.ends_with(kDegree)) {
    digits.remove_suffix(kDegree.size());
  }
  std::int16_t angle = 0;
  const char* end = digits.data() + digits.size();
  const auto [last, error] = std::from_chars(digits.data(), end, angle);
  if (error != std::errc() || last != end) return std::nullopt;
  return std::pair(std::string(trimmed(name.substr(0, at))), angle);
}

}  // namespace

Editor::Editor(Session& session, std::shared_ptr<store::Connection> database, EditSet set)
    : session_(session), database_(std::move(database)), set_(set) {
  const std::string version = session_.database.LookupDatabaseVersion(*database_);
  if (version != database::kVersion3) {
    throw Error(kInvalidCall, "Records are edited in ORV databases of version 3.0.0 only.");
  }
  fields_ = editFields(set, *database_);
}

FieldPlace Editor::place(const std::string& name) const {
  const auto named = [&](const std::string& text) {
    const std::string wanted = plain(text);
    std::vector<const EditField*> found;
    for (const EditField& field : fields_) {
      const std::string shown = field.name.substr(field.name.find(": ") + 1);
      if (plain(field.name) == wanted || equalIgnoringCase(field.column, text))
        return std::vector{&field};
      if (plain(shown) == wanted || plain(field.shownColumn) == wanted ||
          plain(columnTitle(field.shownColumn).text) == wanted) {
        found.push_back(&field);
      }
    }
    return found;
  };
  auto found = named(name);
  std::optional<std::int16_t> angle;
  if (found.empty()) {
    if (const auto parted = angleIn(name)) {
      found = named(parted->first);
      std::erase_if(found, [](const EditField* field) { return !field->perAngle; });
      angle = parted->second;
    }
  }
  if (found.size() == 1) return {found.front(), angle};
  std::vector<std::string_view> names;
  for (const EditField& field : fields_) {
    if (found.empty() || std::ranges::find(found, &field) != found.end())
      names.push_back(field.name);
  }
  throw Error(
      kInvalidCall,
      fmt::format("{} \"{}\". {}: {}.", found.empty() ? "There is no field" : "Several fields are",
                  name, found.empty() ? "There are" : "Name one", fmt::join(names, ", ")));
}

const EditField* Editor::fieldOfColumn(const std::string& column) const {
  const auto found = std::ranges::find_if(fields_, [&](const EditField& field) {
    return !field.shownColumn.empty() && equalIgnoringCase(field.shownColumn, column);
  });
  return found == fields_.end() ? nullptr : &*found;
}

std::vector<std::string> Editor::choices(const EditField& field) const {
  std::vector<std::string> names;
  if (!field.choices) return names;
  StoredRecords records(*database_, set_);
  for (const auto& [key, name] : records.names(*field.choices)) names.push_back(name);
  std::ranges::sort(names, {}, [](const std::string& name) { return lowerCase(name); });
  return names;
}

std::vector<std::int16_t> Editor::angles(std::int32_t record) const {
  return StoredRecords(*database_, set_).angles(record);
}

store::Value Editor::value(std::int32_t record, const EditField& field,
                           std::optional<std::int16_t> angle) const {
  return StoredRecords(*database_, set_).value(record, field, angle);
}

Change Editor::change(std::int32_t record, const FieldPlace& place, const std::string& text) const {
  StoredRecords records(*database_, set_);
  return change(records, record, place, text);
}

Change Editor::change(StoredRecords& records, std::int32_t record, const FieldPlace& place,
                      const std::string& text) const {
  const EditField& field = *place.field;
  Change change{record, field.name, place.angle, {}, {}};
  if (field.perAngle && !change.angle) {
    const auto angles = records.angles(record);
    if (angles.size() > 1) {
      throw Error(kInvalidCall,
                  fmt::format("The {} {} has values at {} angles: say at which, as in \"{} at 0\".",
                              designOf(set_).one, record, angles.size(), field.name));
    }
    change.angle = angles.empty() ? std::int16_t{0} : angles.front();
  }
  change.before = records.value(record, field, change.angle);
  const bool staysEmpty = trimmed(text).empty() && fieldText(change.before).empty();
  change.after = staysEmpty ? change.before : fieldValue(field, text);
  if (field.choices) change.after = records.knownName(*field.choices, change.after.toText());
  return change;
}

Draft Editor::draft(const std::vector<TypedValue>& values) const {
  Draft draft;
  StoredRecords records(*database_, set_);
  std::set<std::tuple<std::int32_t, std::string, std::optional<std::int16_t>>> places;
  for (const TypedValue& typed : values) {
    try {
      Change made = change(records, typed.record, typed.place, typed.text);
      if (!places.emplace(made.record, made.field, made.angle).second) {
        throw Error(kInvalidCall, fmt::format("{} is given twice.", made.field));
      }
      if (made.before == made.after) continue;
      draft.changes.push_back(std::move(made));
      draft.names.push_back(records.text(typed.record, designOf(set_).nameColumn));
    } catch (const Error& error) {
      if (error.number() != kInvalidCall) throw;
      draft.refusals.push_back(
          fmt::format("{} {}: {}", designOf(set_).one, typed.record, error.description()));
    }
  }
  return draft;
}

Review Editor::review(const std::vector<Change>& changes) const {
  StoredRecords records(*database_, set_);
  return ChangeReview(session_, *database_, set_, fields_, records).of(changes);
}

/// "Edit 3 values of 2 panes"
std::string Editor::titleOf(const std::vector<Change>& changes) const {
  std::set<std::int32_t> records;
  for (const Change& change : changes) records.insert(change.record);
  return fmt::format("Edit {} of {}", counted(changes.size(), "value"),
                     counted(records.size(), designOf(set_).one));
}

Review Editor::save(const std::vector<Change>& changes) {
  Review result;
  const HistoryScope history(session_.ui, *database_, titleOf(changes));
  database_->inOneCommit([&] {
    result = review(changes);
    if (result.isFine()) writeChanges(session_, *database_, set_, fields_, changes);
  });
  return result;
}

}  // namespace orv::commands::edit
