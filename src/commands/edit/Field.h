// What of a record can be edited.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "commands/edit/EditSet.h"
#include "model/Codes.h"
#include "store/Connection.h"
#include "store/Value.h"

namespace orv::commands::edit {

enum class FieldType {
  text,
  number,
  whole,   ///< a whole number
  flag,    ///< yes or no
  choice,  ///< a name of `choices`, or a new one, which is made then
};

/// A field of the records of a set.
struct EditField {
  std::string name;         ///< as `orv show` has it; no other field of the set has it
  std::string column;       ///< of the set's table, or of its rows an angle
  std::string shownColumn;  ///< of the record set that shows the records, where it is in that
  std::string unit;
  FieldType type = FieldType::text;
  std::size_t longest = 0;  ///< of a text, in characters; 0: any length, and several lines
  double least = 0;         ///< of a number, with `most`
  double most = 0;
  std::optional<EditSet> choices{};  ///< of a choice: groups, suppliers or frame types
  bool mayBeEmpty = true;
  bool perAngle = false;              ///< a value for each angle of incidence
  bool isCapital = false;             ///< a text that is kept in capital letters
  bool isSingle = false;              ///< a number that is stored in single precision
  std::span<const CodeName> codes{};  ///< of a whole number that stands for one of these
};

/// The fields of a set, as far as the tables of this database have them, in the order in which
/// `orv show` has them.
std::vector<EditField> editFields(EditSet set, const store::Connection& database);

/// The table with the rows an angle of a set; null where its records have none.
const char* angleTable(EditSet set);

/// What a text means in a field: a text, a number (with a decimal point or comma), a flag ("yes",
/// "no", "true", "false", "1", "0"), a name, or that of a code ("Screen", "Screen (3)"). Raises
/// kInvalidCall with the reason why it is no value of the field, with its limits: "thickness is
/// from 0 to 1000 mm, and 4000 is not."
store::Value fieldValue(const EditField& field, const std::string& text);

/// Why a value cannot be in a field; empty when it can.
std::string valueRefusal(const EditField& field, const store::Value& value);

/// A value as people read it, and as fieldValue() reads it again.
std::string fieldText(const store::Value& value);

}  // namespace orv::commands::edit
