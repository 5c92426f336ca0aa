// Insertion and replacement of frames.
#include <functional>

#include "database/DatabaseErrors.h"
#include "database/Fields.h"
#include "database/Lookups.h"
#include "database/MissingNames.h"
#include "database/ORV_DatabaseInterface.h"
#include "database/RecordCommit.h"
#include "database/RowUpdate.h"
#include "database/Rows.h"

namespace orv::database {

namespace {

void setMissingNamesOfFrame(FrameDataClass& frame) {
  setMissingNames(frame);
  if (frame.frametype().empty()) frame.frametype(std::string(kUnknown));
}

using SetColumn = std::function<void(const char* column, const store::Value&)>;

/// All columns but the keys. A picture's column takes what its type allows.
void setFrameColumns(const store::Recordset& row, const FrameDataClass& frame,
                     const SetColumn& set) {
  set("name", frame.name());
  set("u_value", frame.u_value());
  const store::ColumnType type = row.fields()[row.fieldIndex("picture")].type;
  set("picture", pictureToField(frame.picture(), frame.pictureText(), type));
  set("width", frame.width());
  set("Info", frame.Info());
}

}  // namespace

std::int32_t ORV_DatabaseInterface::InsertFrame(FrameDataClass& fData,
                                                store::Connection& dc) const {
  setMissingNamesOfFrame(fData);
  std::int32_t key = 0;
  commitRecord(dc, [&] {
    RaiseUnless(RetrieveFrameORV_30(dc, 0, fData.name(), fData.group()) == nullptr, kRecordExists);
    const std::int32_t supplier = InsertSupplier(fData.supplier(), dc);
    const std::int32_t group = InsertGroup(fData.group(), dc);
    const std::int32_t type = InsertFrameType(fData.frametype(), dc);
    auto row = openUpdatable(dc, "Frame");
    row->addNew();
    setFrameColumns(*row, fData, [&](const char* column, const store::Value& value) {
      row->setValue(column, value);
    });
    row->setValue("groupID", group);
    row->setValue("supplierID", supplier);
    row->setValue("FrameTypeID", type);
    key = row->value("FrameID").toLong();
    row->update();
  });
  return key;
}

/// The group, by which the frame was found, and the product name, which no copy brings, stay.
bool ORV_DatabaseInterface::ReplaceFrame(FrameDataClass& fData, const Replacement& how,
                                         store::Connection& dc) const {
  setMissingNamesOfFrame(fData);
  std::int32_t key = how.key;
  if (key == 0) {
    const FramePtr known = RetrieveFrameORV_30(dc, 0, fData.name(), fData.group());
    key = known ? known->id() : 0;
  }
  if (key == 0) {
    InsertFrame(fData, dc);
    return false;
  }
  dc.inOneCommit([&] {
    auto row = findRecord(dc, "Frame", "FrameID", key);
    RowUpdate update(*row, "Frame", how);
    setFrameColumns(*row, fData, [&](const char* column, const store::Value& value) {
      update.set(column, value);
    });
    const auto keyIn = [&](const char* column) { return FieldToLong(row->value(column)); };
    if (update.isOther("supplierID", SupplierNameById(keyIn("supplierID"), dc), fData.supplier())) {
      update.set("supplierID", InsertSupplier(fData.supplier(), dc), true);
    }
    if (update.isOther("FrameTypeID", FrameTypeNameById(keyIn("FrameTypeID"), dc),
                       fData.frametype())) {
      update.set("FrameTypeID", InsertFrameType(fData.frametype(), dc), true);
    }
    update.store();
  });
  return true;
}

}  // namespace orv::database
