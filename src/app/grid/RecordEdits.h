// The editing of the records of one record set.
#pragma once

#include <QObject>
#include <functional>
#include <memory>

#include "commands/RecordTable.h"
#include "commands/edit/PendingEdits.h"

namespace orv::app {

/// What the grid, the dock of the changes and the window share of it: the fields, and the changes
/// that are not saved yet.
class RecordEdits : public QObject {
  Q_OBJECT

 public:
  using Node = std::shared_ptr<sources::datasource>;

  /// The session outlives it. Raises kInvalidCall for records that cannot be edited.
  RecordEdits(commands::Session& session, const Node& node);

  const Node& node() const { return node_; }
  const commands::edit::Editor& editor() const { return editor_; }
  const commands::edit::PendingEdits& pending() const { return pending_; }
  /// Changes the changes, and tells.
  void change(const std::function<void(commands::edit::PendingEdits&)>& step);

 signals:
  void changed();

 private:
  Node node_;
  commands::edit::Editor editor_;
  commands::edit::PendingEdits pending_;
};

}  // namespace orv::app
