#include "commands/NodeContent.h"

#include <filesystem>

#include "errors/Error.h"
#include "productfile/ProductFile.h"
#include "sources/DataSources.h"
#include "textfile/TextFile.h"

namespace orv::commands {

namespace DataType = sources::DataType;

namespace {

std::string fileText(const sources::datasource& node) {
  const auto name = productfile::ProductName::of(node.filename());
  const std::filesystem::path folder(node.Folder());
  try {
    if (!name.pointer.empty()) {
      return productfile::ProductFile::read(folder / name.file).text(name.pointer);
    }
    return textfile::readText(folder / node.filename());
  } catch (const Error&) {
    return "This file could not be read.";
  }
}

}  // namespace

NodeView nodeView(const sources::datasource* node) {
  if (node == nullptr) return NodeView::text;
  const sources::DataTypeCode type = node->DataType();
  if (type < DataType::orvDatabase2 || type > DataType::shadingTextFile) return NodeView::nothing;
  const bool isRecordSet = !node->DisplayRecordSetName().empty();
  return isRecordSet || type == DataType::textFolder ? NodeView::records : NodeView::text;
}

std::string nodeText(const sources::datasource* node) {
  if (node == nullptr) return "(no data...)";
  const bool isDatabase = node->DataType() <= DataType::optics5User;
  return isDatabase ? "Select one of the recordsets." : fileText(*node);
}

std::string nodeTitle(const sources::datasource* node) {
  if (node == nullptr) return {};
  const auto parent = node->Parent();
  const bool isRecordSet = !node->DisplayRecordSetName().empty();
  if (isRecordSet && parent) return nodeTitle(parent.get()) + " – " + node->text();
  if (node->filename().empty()) return node->Folder();
  return (std::filesystem::path(node->Folder()) / node->filename()).string();
}

}  // namespace orv::commands
