#include "sources/DataSources.h"

#include <algorithm>

#include "errors/Error.h"

namespace orv::sources {

DataSources::Node DataSources::AddDataSource(DataTypeCode type, const std::string& text,
                                             std::shared_ptr<store::Connection> connection,
                                             const std::string& folder,
                                             const std::string& filename) {
  auto node = std::make_shared<datasource>(keys_);
  node->ADOConnection(std::move(connection));
  node->Folder(folder);
  node->filename(filename);
  node->DataType(type);
  node->key(keys_->current());
  node->text(text);
  const RecordSetNames names = recordSetNames(type);
  node->RecordSetName(std::string(names.recordSet));
  node->DisplayRecordSetName(std::string(names.display));
  nodes_.push_back(node);
  keys_->advance();
  return node;
}

DataSources::Node DataSources::RemoveDataSource(const std::string& key) {
  nodes_.erase(position(key));
  return nodes_.empty() ? nullptr : nodes_.front();
}

DataSources::Node DataSources::Item(std::int32_t position) const {
  if (position < 1 || position > count()) {
    throw Error(kSubscriptOutOfRange,
                "There is no data source at position " + std::to_string(position) + ".");
  }
  return nodes_[static_cast<std::size_t>(position - 1)];
}

DataSources::Node DataSources::Item(const std::string& key) const {
  return *position(key);
}

DataSources::Node DataSources::findByKey(const std::string& key) const {
  for (const Node& node : nodes_) {
    if (node->key() == key) return node;
    if (Node found = node->DataSources().findByKey(key)) return found;
  }
  return nullptr;
}

std::vector<DataSources::Node>::const_iterator DataSources::position(const std::string& key) const {
  const auto found = std::find_if(nodes_.begin(), nodes_.end(),
                                  [&](const Node& node) { return node->key() == key; });
  if (found == nodes_.end()) {
    throw Error(kInvalidCall, "There is no data source with the key \"" + key + "\".");
  }
  return found;
}

}  // namespace orv::sources
