#include "app/grid/RecordEdits.h"

#include "commands/RecordKind.h"

namespace orv::app {

RecordEdits::RecordEdits(commands::Session& session, const Node& node)
    : node_(node),
      editor_(session, node->ADOConnection(),
              commands::edit::editSetOf(commands::recordKind(*node).value())),
      pending_(editor_) {}

void RecordEdits::change(const std::function<void(commands::edit::PendingEdits&)>& step) {
  try {
    step(pending_);
  } catch (...) {
    emit changed();
    throw;
  }
  emit changed();
}

}  // namespace orv::app

#include "moc_RecordEdits.cpp"
