#include "commands/RecordKind.h"

namespace orv::commands {

namespace DataType = sources::DataType;

std::optional<RecordKind> recordKind(const sources::datasource& node) {
  switch (node.DataType()) {
    case DataType::orv2Panes:
    case DataType::orv3Panes:
    case DataType::optics5Panes:
    case DataType::paneTextFile:
      return RecordKind::panes;
    case DataType::orv2Frames:
    case DataType::orv3Frames:
      return RecordKind::frames;
    case DataType::orv2Shadings:
    case DataType::orv3Shadings:
    case DataType::shadingTextFile:
      return RecordKind::shadings;
    case DataType::textFolder:
      if (node.DataSources().count() > 0) return recordKind(*node.DataSources().Item(1));
      return std::nullopt;
    default:
      return std::nullopt;
  }
}

const char* setName(RecordKind kind) {
  switch (kind) {
    case RecordKind::panes:
      return "panes";
    case RecordKind::frames:
      return "frames";
    case RecordKind::shadings:
      break;
  }
  return "shadings";
}

std::string countedRecords(const sources::datasource& node, std::int32_t count) {
  std::string several = setName(recordKind(node).value());
  if (count == 1) several.pop_back();
  return std::to_string(count) + " " + several;
}

std::shared_ptr<sources::datasource> recordSetOf(const std::shared_ptr<sources::datasource>& node,
                                                 RecordKind kind) {
  if (node->DataType() == DataType::textFolder) {
    return recordKind(*node) == kind ? node : nullptr;
  }
  for (const auto& child : node->DataSources()) {
    if (recordKind(*child) == kind) return child;
  }
  return nullptr;
}

}  // namespace orv::commands
