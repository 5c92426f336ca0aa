// The tree of data sources.
#pragma once

#include <QTreeWidget>
#include <string>
#include <vector>

#include "sources/DataSources.h"

namespace orv::app {

/// Mirrors the registry: an item a node, under the key of the node.
class DataSourceTree : public QTreeWidget {
  Q_OBJECT

 public:
  explicit DataSourceTree(QWidget* parent = nullptr);

  /// Fills itself anew. Nothing is selected then, and no signal is sent. What the user has folded
  /// or unfolded stays so; at first the files of a folder are folded.
  void rebuild(const sources::DataSources& registry);
  /// Selects the item of a node, without a signal; an empty key selects none.
  void select(const std::string& key);
  /// Has the item of the node stand out whose records are to be pasted; an empty key none.
  void mark(const std::string& key);
  /// The keys of the nodes that are selected, the current one first.
  std::vector<std::string> selectedKeys() const;

 signals:
  void nodeSelected(const std::string& key);
  /// Records of the grid were dropped on a node.
  void recordsDropped(const std::string& key);
  void pathsDropped(const QStringList& paths);
  void contextMenuWanted(const QPoint& globalPosition);

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void open(QTreeWidgetItem* item);
  void embolden(const std::string& key, bool bold);
  void add(QTreeWidgetItem& parent, const sources::datasource& node);
  QTreeWidgetItem* itemOf(const std::string& key) const;

  std::string marked_;
};

/// The paths of the local files among what is dragged.
QStringList localPaths(const QMimeData& data);

}  // namespace orv::app
