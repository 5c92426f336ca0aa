// The editing of the records of one set.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "commands/Session.h"
#include "commands/edit/Change.h"
#include "commands/edit/Field.h"

namespace orv::commands::edit {

class StoredRecords;

/// A field, and the angle of incidence that is meant.
struct FieldPlace {
  const EditField* field = nullptr;
  std::optional<std::int16_t> angle = {};
};

/// What somebody has typed for a field of a record.
struct TypedValue {
  std::int32_t record = 0;
  FieldPlace place;
  std::string text;
};

/// What typed values come to.
struct Draft {
  std::vector<Change> changes = {};        ///< where something is to become different
  std::vector<std::string> names = {};     ///< of the record of each change
  std::vector<std::string> refusals = {};  ///< a sentence each; with any, the changes are not whole
};

/// Changes of records of an ORV database of version 3.0.0 are made up with this, as a list, looked
/// at as a whole, and saved in one commit.
class Editor {
 public:
  /// The session outlives it. Raises kInvalidCall for a database of another kind.
  Editor(Session& session, std::shared_ptr<store::Connection> database, EditSet set);

  EditSet set() const { return set_; }
  const std::vector<EditField>& fields() const { return fields_; }
  /// The field of this name: that of `orv show`, of the column, or the column's title; blanks,
  /// underlines and case do not matter. "NAME at 60" is the value at that angle. Raises
  /// kInvalidCall, which names the fields that there are.
  FieldPlace place(const std::string& name) const;
  /// The field that a column of the record set that shows the records stands for; null for one
  /// that cannot be edited.
  const EditField* fieldOfColumn(const std::string& column) const;
  /// The names to choose from, in their order.
  std::vector<std::string> choices(const EditField& field) const;

  /// The angles of incidence of which a record has values, in degrees.
  std::vector<std::int16_t> angles(std::int32_t record) const;
  /// What a field holds now. Text for texts and choices ("" for none), else as its column has it;
  /// Null where a number is missing. Raises kInvalidCall where there is no such record or angle.
  store::Value value(std::int32_t record, const EditField& field,
                     std::optional<std::int16_t> angle = {}) const;
  /// The change that brings `text` into a field. A field of angles takes that of `place`, else the
  /// only one of the record. Raises kInvalidCall for a text that is no value of the field, and
  /// where it is not clear which angle is meant.
  Change change(std::int32_t record, const FieldPlace& place, const std::string& text) const;

  /// The changes that bring typed values into their fields. An empty text leaves an empty field as
  /// it is.
  Draft draft(const std::vector<TypedValue>& values) const;

  /// Looks at all changes together, as they would be afterwards: types, limits, names that are
  /// reserved or there already, and whether the records are still as the changes say.
  Review review(const std::vector<Change>& changes) const;
  /// Makes the changes in one commit. When one is refused, none is made. Raises what the store
  /// raises; then none is made either.
  Review save(const std::vector<Change>& changes);

 private:
  Change change(StoredRecords& records, std::int32_t record, const FieldPlace& place,
                const std::string& text) const;
  std::string titleOf(const std::vector<Change>& changes) const;

  Session& session_;
  std::shared_ptr<store::Connection> database_;
  EditSet set_;
  std::vector<EditField> fields_;
};

}  // namespace orv::commands::edit
