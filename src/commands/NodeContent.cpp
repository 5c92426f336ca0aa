#include "commands/NodeContent.h"

#include <filesystem>

#include "errors/Error.h"
#include "productfile/ProductFile.h"
#include "sources/DataSources.h"
#include "textfile/TextFile.h"

namespace orv::commands {

namespace DataType = sources::DataType;

namespace {

/// A product in lines, however its file has it; a file that holds none as it stands.
std::string productText(const std::filesystem::path& folder, const std::string& identifier) {
  const auto name = productfile::ProductName::of(identifier);
  try {
    return productfile::ProductFile::read(folder / name.file).text(name.pointer);
  } catch (const Error&) {
    return textfile::readText(folder / name.file);
  }
}

std::string fileText(const sources::datasource& node) {
  const std::filesystem::path folder(node.Folder());
  try {
    return productfile::isProduct(node.filename()) ? productText(folder, node.filename())
                                                   : textfile::readText(folder / node.filename());
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
