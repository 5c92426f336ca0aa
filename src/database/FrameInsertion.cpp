// Insertion of frames.
#include "database/DatabaseErrors.h"
#include "database/Fields.h"
#include "database/ORV_DatabaseInterface.h"
#include "database/RecordCommit.h"
#include "database/Recordsets.h"

namespace orv::database {

std::int32_t ORV_DatabaseInterface::InsertFrame(FrameDataClass& fData,
                                                store::Connection& dc) const {
  if (fData.supplier().empty()) fData.supplier("Unknown");
  if (fData.group().empty()) fData.group("Unknown");
  if (fData.frametype().empty()) fData.frametype("Unknown");
  std::int32_t key = 0;
  commitRecord(dc, [&] {
    RaiseUnless(RetrieveFrameORV_30(dc, 0, fData.name(), fData.group()) == nullptr, kRecordExists);

    const std::int32_t supplier = InsertSupplier(fData.supplier(), dc);
    const std::int32_t group = InsertGroup(fData.group(), dc);
    const std::int32_t type = InsertFrameType(fData.frametype(), dc);

    auto rows = openUpdatable(dc, "Frame");
    rows->addNew();
    rows->setValue("name", fData.name());
    rows->setValue("groupID", group);
    rows->setValue("supplierID", supplier);
    rows->setValue("u_value", fData.u_value());
    rows->setValue("FrameTypeID", type);
    const std::size_t picture = rows->fieldIndex("picture");
    rows->setValue(picture, pictureToField(fData.picture(), fData.pictureText(),
                                           rows->fields()[picture].type));
    rows->setValue("width", fData.width());
    rows->setValue("Info", fData.Info());
    key = rows->value("FrameID").toLong();
    rows->update();
    rows->close();
  });
  return key;
}

}  // namespace orv::database
