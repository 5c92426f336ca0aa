// Frames of ORV databases of versions 3.0.0 and 2.0.1.
#include "database/DatabaseErrors.h"
#include "database/Fields.h"
#include "database/Lookups.h"
#include "database/ORV_DatabaseInterface.h"
#include "database/Recordsets.h"
#include "model/Text.h"

namespace orv::database {

namespace {

/// A frame keeps the group it has in the database only when that is one of the maker's own.
std::string groupOfFrame(std::int32_t groupId, store::Connection& dc) {
  const std::string name = GroupNameById(groupId, dc);
  return upperCase(name).starts_with("TARVEN") ? name : "Unknown";
}

void readPicture(FrameDataClass& frame, const store::Value& value) {
  frame.picture(fieldToPicture(value));
  frame.pictureText(fieldToPictureText(value));
}

}  // namespace

ORV_DatabaseInterface::FramePtr ORV_DatabaseInterface::RetrieveFrameORV_30(
    store::Connection& dc, std::int32_t FrameID, const std::string& FrameName,
    const std::string& GroupName) const {
  RaiseUnless(FrameID >= 1 || !FrameName.empty(), kRetrievalFailed);
  std::string statement = "Select * FROM Frame WHERE ";
  if (FrameID >= 1) {
    statement += "FrameID = " + std::to_string(FrameID);
  } else {
    statement += "name = " + quoted(FrameName);
    if (!GroupName.empty()) {
      statement += " AND GroupID = " + std::to_string(GroupIdByName(GroupName, dc));
    }
  }
  auto row = openSql(dc, statement);
  if (row->eof()) return nullptr;

  auto frame = std::make_shared<FrameDataClass>();
  frame->id(row->value("FrameID").toLong());
  frame->name(FieldToString(row->value("name")));
  frame->productname(FieldToString(row->value("product_name")));
  frame->group(groupOfFrame(FieldToLong(row->value("groupID")), dc));
  frame->supplier(SupplierNameById(FieldToLong(row->value("supplierID")), dc));
  frame->frametype(FrameTypeNameById(FieldToLong(row->value("FrameTypeID")), dc));
  frame->u_value(FieldToDouble(row->value("u_value")));
  frame->width(FieldToDouble(row->value("width")));
  readPicture(*frame, row->value("picture"));
  frame->Info(FieldToString(row->value("Info")));
  return frame;
}

ORV_DatabaseInterface::FramePtr ORV_DatabaseInterface::RetrieveFrameORV_20(
    store::Connection& dc, std::int32_t Frame_id, const std::string& FrameName) const {
  RaiseUnless(Frame_id >= 1 || !FrameName.empty(), kRetrievalFailed);
  std::string statement = "Select * FROM Frame WHERE ";
  statement +=
      Frame_id >= 1 ? "Frame_id = " + std::to_string(Frame_id) : "name = " + quoted(FrameName);
  auto row = openSql(dc, statement);
  if (row->eof()) return nullptr;

  auto frame = std::make_shared<FrameDataClass>();
  frame->id(FieldToLong(row->value("Frame_id")));
  frame->group("Unknown");
  frame->supplier("Unknown");
  frame->name(FieldToString(row->value("name")));
  frame->u_value(FieldToDouble(row->value("u_value")));
  frame->width(FieldToDouble(row->value("width")));
  frame->frametype(FieldToString(row->value("material_type")));
  readPicture(*frame, row->value("picture"));
  frame->Info(FieldToString(row->value("Info")));
  return frame;
}

}  // namespace orv::database
