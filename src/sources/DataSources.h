// The registry of data sources: an ordered collection of nodes.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "sources/DataType.h"
#include "sources/KeyCounter.h"
#include "sources/datasource.h"

namespace orv::sources {

/// The children of a node, or the top level of the tree, in the order in which they were added.
class DataSources {
 public:
  using Node = std::shared_ptr<datasource>;

  /// All collections of one tree share one counter.
  explicit DataSources(std::shared_ptr<KeyCounter> keys) : keys_(std::move(keys)) {}

  /// Appends a new node with the next key and with the record-set names of its type. Its Parent
  /// stays unset: the caller sets it.
  Node AddDataSource(DataTypeCode type, const std::string& text,
                     std::shared_ptr<store::Connection> connection, const std::string& folder,
                     const std::string& filename);

  /// Takes the node with this key out of this collection and returns the node that is first now,
  /// null when none is left. Raises kInvalidCall for a key that is not in the collection.
  Node RemoveDataSource(const std::string& key);

  /// Raises kSubscriptOutOfRange outside 1 to count().
  Node Item(std::int32_t position) const;
  /// Raises kInvalidCall for a key that is not in the collection.
  Node Item(const std::string& key) const;

  std::int32_t count() const { return static_cast<std::int32_t>(nodes_.size()); }

  /// The direct children in order.
  auto begin() const { return nodes_.begin(); }
  auto end() const { return nodes_.end(); }

  /// The node with this key in this collection or below it, searched depth first; null when there
  /// is none.
  Node findByKey(const std::string& key) const;

 private:
  std::vector<Node>::const_iterator position(const std::string& key) const;

  std::shared_ptr<KeyCounter> keys_;
  std::vector<Node> nodes_;
};

}  // namespace orv::sources
