#include "database/RowUpdate.h"

#include "database/Fields.h"
#include "database/Recordsets.h"
#include "model/Text.h"

namespace orv::database {

bool RowUpdate::mayBeSet(const std::string& column) const {
  return how_.gives(table_, column) && findField(row_, column.c_str());
}

void RowUpdate::set(const std::string& column, const store::Value& value, bool isCode) {
  if (!mayBeSet(column)) return;
  const Likeness likeness{.tolerance = how_.tolerance, .isCode = isCode};
  if (areSameValues(row_.value(column), value, likeness)) return;
  row_.setValue(column, value);
  isChanged_ = true;
}

void RowUpdate::setCaseless(const std::string& column, const std::string& text) {
  if (!mayBeSet(column) || equalIgnoringCase(FieldToString(row_.value(column)), text)) return;
  row_.setValue(column, text);
  isChanged_ = true;
}

bool RowUpdate::isOther(const std::string& column, const std::string& present,
                        const std::string& name) const {
  return how_.gives(table_, column) && !areSameNames(present, name);
}

bool RowUpdate::store() {
  if (isChanged_) row_.update();
  return isChanged_;
}

}  // namespace orv::database
