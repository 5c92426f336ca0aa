#include "commands/edit/ChangeWriter.h"

#include <fmt/format.h>

#include <map>
#include <utility>

#include "commands/edit/ChangeReview.h"
#include "database/Rows.h"
#include "errors/Error.h"

namespace orv::commands::edit {

namespace {

/// The key of a name, which is made when it is new.
std::int32_t keyOf(const Session& session, store::Connection& database, EditSet names,
                   const std::string& name) {
  switch (names) {
    case EditSet::groups:
      return session.database.InsertGroup(name, database);
    case EditSet::suppliers:
      return session.database.InsertSupplier(name, database);
    default:
      return session.database.InsertFrameType(name, database);
  }
}

/// The one row of values at an angle.
database::RecordsetPtr openAngle(store::Connection& database, EditSet set, std::int32_t record,
                                 std::int16_t angle) {
  return database::openForChange(
      database, fmt::format("SELECT * FROM {} WHERE {} = {} AND angle = {}", angleTable(set),
                            designOf(set).key, record, angle));
}

}  // namespace

void writeChanges(const Session& session, store::Connection& database, EditSet set,
                  const std::vector<EditField>& fields, const std::vector<Change>& changes) {
  const SetDesign& design = designOf(set);
  // The fields of a row are written together.
  std::map<std::pair<std::int32_t, std::optional<std::int16_t>>, std::vector<const Change*>> rows;
  for (const Change& change : changes) rows[{change.record, change.angle}].push_back(&change);
  for (const auto& [place, ofRow] : rows) {
    const auto& [record, angle] = place;
    auto row = angle ? openAngle(database, set, record, *angle)
                     : database::findRecord(database, design.table, design.key, record);
    for (const Change* change : ofRow) {
      const EditField& field = fieldNamed(fields, change->field);
      row->setValue(field.column, field.choices
                                      ? store::Value(keyOf(session, database, *field.choices,
                                                           change->after.toText()))
                                      : change->after);
    }
    row->update();
  }
}

}  // namespace orv::commands::edit
