#include "store/RecordsetBase.h"

#include "errors/Error.h"
#include "store/Criterion.h"
#include "store/StoreError.h"
#include "store/jet/page/Text.h"

namespace orv::store {

std::size_t RecordsetBase::fieldIndex(std::string_view name) const {
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    if (fields_[i].name == name) {
      return i;
    }
  }
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    if (jet::sameName(fields_[i].name, name)) {
      return i;
    }
  }
  throw Error(kItemNotFound, "The record set has no field '" + std::string(name) + "'.");
}

void RecordsetBase::find(std::string_view text) {
  needOpen();
  const Criterion parsed = Criterion::parse(text);
  const std::size_t field = fieldIndex(parsed.column);
  const Criterion criterion = parsed.forColumn(fields_[field]);
  while (!eof() && !criterion.isMetBy(value(field))) {
    moveNext();
  }
}

void RecordsetBase::close() {
  needOpen();
  open_ = false;
}

void RecordsetBase::needOpen() const {
  if (!open_) {
    throw Error(kObjectClosed, "The record set is closed.");
  }
}

void RecordsetBase::needField(std::size_t field) const {
  if (field >= fields_.size()) {
    throw Error(kItemNotFound,
                "The record set has no field of number " + std::to_string(field) + ".");
  }
}

void RecordsetBase::raiseNoCurrentRecord() {
  throw Error(kNoCurrentRecord,
              "There is no current record: the record set is at its end, or the "
              "record has been deleted.");
}

}  // namespace orv::store
