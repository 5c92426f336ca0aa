// One node of the tree of opened data sources.
#pragma once

#include <memory>
#include <string>

#include "sources/DataType.h"

namespace orv::store {
class Connection;
}

namespace orv::sources {

class DataSources;
class KeyCounter;

/// A database, one of its record sets, a folder of text files, or one of these files. Nodes are
/// made by DataSources::AddDataSource.
///
/// A database node and its record sets share one connection, which lives as long as the last of
/// them. A node owns its children and does not own its parent: whoever keeps a child apart from
/// its tree keeps the parent too where it needs one (RecordSelection does).
class datasource {
 public:
  explicit datasource(std::shared_ptr<KeyCounter> keys);
  datasource(const datasource&) = delete;
  datasource& operator=(const datasource&) = delete;
  ~datasource();

  /// The node whose DataSources holds this one; null for a top-level node.
  std::shared_ptr<datasource> Parent() const { return parent_.lock(); }
  void Parent(const std::shared_ptr<datasource>& value) { parent_ = value; }
  /// Whether it is a record set of a database of version 3.0.0, which can be changed.
  bool isInVersion3() const {
    const auto parent = Parent();
    return parent && parent->DataType() == DataType::orvDatabase3;
  }

  /// Table or query that holds the records: `Pane`, `Frame`, `Shading`, `qryOptics5Grid`, or empty.
  const std::string& RecordSetName() const { return recordSetName_; }
  void RecordSetName(std::string value) { recordSetName_ = std::move(value); }

  /// Table or query that is opened to show the records.
  const std::string& DisplayRecordSetName() const { return displayRecordSetName_; }
  void DisplayRecordSetName(std::string value) { displayRecordSetName_ = std::move(value); }

  /// Unique among all nodes of the run.
  const std::string& key() const { return key_; }
  void key(std::string value) { key_ = std::move(value); }

  /// Caption in the tree.
  const std::string& text() const { return text_; }
  void text(std::string value) { text_ = std::move(value); }

  /// The children; always there, possibly none.
  sources::DataSources& DataSources() { return *children_; }
  const sources::DataSources& DataSources() const { return *children_; }

  DataTypeCode DataType() const { return dataType_; }
  void DataType(DataTypeCode value) { dataType_ = value; }

  /// File name without its folder; empty for record sets and folders.
  const std::string& filename() const { return filename_; }
  void filename(std::string value) { filename_ = std::move(value); }

  /// Folder of the file, or the folder itself; empty for record sets.
  const std::string& Folder() const { return folder_; }
  void Folder(std::string value) { folder_ = std::move(value); }

  /// Null for folders and text files.
  const std::shared_ptr<store::Connection>& ADOConnection() const { return connection_; }
  void ADOConnection(std::shared_ptr<store::Connection> value) { connection_ = std::move(value); }

 private:
  std::weak_ptr<datasource> parent_;
  std::string recordSetName_;
  std::string displayRecordSetName_;
  std::string key_;
  std::string text_;
  std::unique_ptr<sources::DataSources> children_;
  DataTypeCode dataType_ = 0;
  std::string filename_;
  std::string folder_;
  // Declared last, so that a dying node lets go of its connection before its children.
  std::shared_ptr<store::Connection> connection_;
};

}  // namespace orv::sources
