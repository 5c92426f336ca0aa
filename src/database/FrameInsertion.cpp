// Insertion and replacement of frames.
#include "database/DatabaseErrors.h"
#include "database/Fields.h"
#include "database/MissingNames.h"
#include "database/ORV_DatabaseInterface.h"
#include "database/RecordCommit.h"
#include "database/Rows.h"

namespace orv::database {

namespace {

void setMissingNamesOfFrame(FrameDataClass& frame) {
  setMissingNames(frame);
  if (frame.frametype().empty()) frame.frametype(std::string(kUnknown));
}

struct FrameKeys {
  std::int32_t supplier;
  std::int32_t group;
  std::int32_t type;
};

FrameKeys keysOf(const FrameDataClass& frame, const ORV_DatabaseInterface& database,
                 store::Connection& dc) {
  return {.supplier = database.InsertSupplier(frame.supplier(), dc),
          .group = database.InsertGroup(frame.group(), dc),
          .type = database.InsertFrameType(frame.frametype(), dc)};
}

void setFrameColumns(store::Recordset& row, const FrameDataClass& frame, const FrameKeys& keys) {
  row.setValue("name", frame.name());
  row.setValue("groupID", keys.group);
  row.setValue("supplierID", keys.supplier);
  row.setValue("u_value", frame.u_value());
  row.setValue("FrameTypeID", keys.type);
  const std::size_t picture = row.fieldIndex("picture");
  row.setValue(picture,
               pictureToField(frame.picture(), frame.pictureText(), row.fields()[picture].type));
  row.setValue("width", frame.width());
  row.setValue("Info", frame.Info());
}

}  // namespace

std::int32_t ORV_DatabaseInterface::InsertFrame(FrameDataClass& fData,
                                                store::Connection& dc) const {
  setMissingNamesOfFrame(fData);
  std::int32_t key = 0;
  commitRecord(dc, [&] {
    RaiseUnless(RetrieveFrameORV_30(dc, 0, fData.name(), fData.group()) == nullptr, kRecordExists);
    const FrameKeys keys = keysOf(fData, *this, dc);
    auto row = openUpdatable(dc, "Frame");
    row->addNew();
    setFrameColumns(*row, fData, keys);
    key = row->value("FrameID").toLong();
    row->update();
  });
  return key;
}

/// The product name, which no copy brings, stays as it is.
bool ORV_DatabaseInterface::ReplaceFrame(FrameDataClass& fData, store::Connection& dc) const {
  setMissingNamesOfFrame(fData);
  const FramePtr known = RetrieveFrameORV_30(dc, 0, fData.name(), fData.group());
  if (!known) {
    InsertFrame(fData, dc);
    return false;
  }
  dc.inOneCommit([&] {
    const FrameKeys keys = keysOf(fData, *this, dc);
    auto row = findRecord(dc, "Frame", "FrameID", known->id());
    setFrameColumns(*row, fData, keys);
    row->update();
  });
  return true;
}

}  // namespace orv::database
