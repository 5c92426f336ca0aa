#include "commands/edit/EditSet.h"

namespace orv::commands::edit {

namespace {

constexpr Reference kToGroups[] = {
    {EditSet::panes, "groupID"}, {EditSet::frames, "groupID"}, {EditSet::shadings, "groupnameID"}};
constexpr Reference kToSuppliers[] = {{EditSet::panes, "supplierID"},
                                      {EditSet::frames, "supplierID"},
                                      {EditSet::shadings, "supplierID"}};
constexpr Reference kToFrameTypes[] = {{EditSet::frames, "FrameTypeID"}};

constexpr SetDesign kDesigns[] = {
    {EditSet::panes, "panes", "pane", "Pane", "PaneID", "name", "", {}},
    {EditSet::frames, "frames", "frame", "Frame", "FrameID", "name", "", {}},
    {EditSet::shadings, "shadings", "shading", "Shading", "Shading_id", "name", "", {}},
    {EditSet::groups, "groups", "group", "Groups", "GroupID", "GroupName", "GroupName", kToGroups},
    {EditSet::suppliers, "suppliers", "supplier", "Suppliers", "supplierID", "SupplierName",
     "SupplierName", kToSuppliers},
    {EditSet::frameTypes, "frametypes", "frame type", "FrameTypes", "FrameTypeID", "FrameTypeName",
     "FrameTypeName", kToFrameTypes},
};

}  // namespace

const SetDesign& designOf(EditSet set) {
  return kDesigns[static_cast<std::size_t>(set)];
}

EditSet editSetOf(RecordKind kind) {
  switch (kind) {
    case RecordKind::panes:
      return EditSet::panes;
    case RecordKind::frames:
      return EditSet::frames;
    case RecordKind::shadings:
      break;
  }
  return EditSet::shadings;
}

const char* referenceColumn(EditSet names, EditSet from) {
  for (const Reference& reference : designOf(names).references) {
    if (reference.from == from) return reference.column;
  }
  return nullptr;
}

}  // namespace orv::commands::edit
