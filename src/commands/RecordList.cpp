#include "commands/RecordList.h"

#include "commands/ErrorText.h"
#include "commands/RecordKind.h"
#include "commands/RecordReader.h"
#include "database/Fields.h"

namespace orv::commands {

namespace DataType = sources::DataType;
using database::FieldToString;

namespace {

/// A statement whose columns are identifier, name, product, group and supplier, or the first of
/// them.
const char* listStatement(sources::DataTypeCode type) {
  switch (type) {
    case DataType::orv2Panes:
      return "SELECT Pane_id, name FROM Pane ORDER BY Pane_id";
    case DataType::orv2Frames:
      return "SELECT Frame_id, name FROM Frame ORDER BY Frame_id";
    case DataType::orv2Shadings:
      return "SELECT Shading_id, name FROM Shading ORDER BY Shading_id";
    case DataType::orv3Panes:
      return "SELECT Pane.PaneID, Pane.name, Pane.product_name, Groups.GroupName, "
             "Suppliers.SupplierName FROM (Pane LEFT JOIN Groups ON Pane.groupID = Groups.GroupID) "
             "LEFT JOIN Suppliers ON Pane.supplierID = Suppliers.supplierID ORDER BY Pane.PaneID";
    case DataType::orv3Frames:
      return "SELECT Frame.FrameID, Frame.name, Frame.product_name, Groups.GroupName, "
             "Suppliers.SupplierName FROM (Frame LEFT JOIN Groups ON Frame.groupID = "
             "Groups.GroupID) LEFT JOIN Suppliers ON Frame.supplierID = Suppliers.supplierID "
             "ORDER BY Frame.FrameID";
    case DataType::orv3Shadings:
      return "SELECT Shading.Shading_id, Shading.name, Shading.productname, Groups.GroupName, "
             "Suppliers.SupplierName FROM (Shading LEFT JOIN Groups ON Shading.groupnameID = "
             "Groups.GroupID) LEFT JOIN Suppliers ON Shading.supplierID = Suppliers.supplierID "
             "ORDER BY Shading.Shading_id";
    default:  // optics5Panes
      return "SELECT FileName, FileName AS name, ProductName, '' AS GroupName, Manufacturer "
             "FROM qryOptics5Grid ORDER BY FileName";
  }
}

std::vector<RecordListEntry> listDatabaseRecords(const sources::datasource& node) {
  std::vector<RecordListEntry> entries;
  auto rows = node.ADOConnection()->openRecordset(listStatement(node.DataType()));
  const auto text = [&](std::size_t field) {
    return field < rows->fields().size() ? FieldToString(rows->value(field)) : std::string();
  };
  for (; !rows->eof(); rows->moveNext()) {
    entries.push_back({text(0), text(1), text(2), text(3), text(4)});
  }
  return entries;
}

RecordListEntry readTextFile(const RecordReader& reader, RecordKind kind, const std::string& file) {
  RecordListEntry entry;
  entry.identifier = file;
  try {
    if (kind == RecordKind::panes) {
      const auto pane = reader.pane(file, reader.angles(file).front());
      entry.name = pane->filename();
      entry.product = pane->productname();
      entry.supplier = pane->supplier();
    } else {
      const auto shading = reader.shading(file);
      entry.name = shading->name();
      entry.product = shading->productname();
      entry.supplier = shading->supplier();
    }
  } catch (const Error& error) {
    entry.failure = describe(error);
  }
  return entry;
}

}  // namespace

const char* identifierColumn(sources::DataTypeCode type) {
  switch (type) {
    case DataType::orv2Panes:
      return "Pane_id";
    case DataType::orv2Frames:
      return "Frame_id";
    case DataType::orv3Panes:
      return "PaneID";
    case DataType::orv3Frames:
      return "FrameID";
    case DataType::orv2Shadings:
    case DataType::orv3Shadings:
      return "Shading_id";
    default:  // optics5Panes
      return "FileName";
  }
}

std::vector<std::string> recordIdentifiers(const sources::datasource& node) {
  std::vector<std::string> identifiers;
  if (!node.ADOConnection()) {
    for (const auto& file : node.DataSources()) identifiers.push_back(file->filename());
    return identifiers;
  }
  auto rows = node.ADOConnection()->openRecordset(node.RecordSetName());
  const std::size_t field = rows->fieldIndex(identifierColumn(node.DataType()));
  for (; !rows->eof(); rows->moveNext()) identifiers.push_back(rows->value(field).toText());
  return identifiers;
}

std::vector<RecordListEntry> listRecords(Session& session,
                                         const std::shared_ptr<sources::datasource>& node) {
  if (node->ADOConnection()) return listDatabaseRecords(*node);
  const auto kind = recordKind(*node);
  const RecordReader reader(session, node);
  std::vector<RecordListEntry> entries;
  for (const auto& file : node->DataSources()) {
    entries.push_back(readTextFile(reader, kind.value_or(RecordKind::panes), file->filename()));
  }
  return entries;
}

std::int64_t countRecords(const sources::datasource& node) {
  if (!node.ADOConnection()) return node.DataSources().count();
  return node.ADOConnection()
      ->openRecordset(node.RecordSetName(), store::CursorType::static_)
      ->recordCount();
}

}  // namespace orv::commands
