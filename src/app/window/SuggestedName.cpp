#include "app/window/SuggestedName.h"

#include <QFileInfo>

#include "app/Text.h"
#include "commands/NodeContent.h"

namespace orv::app {

QString suggestedName(const sources::datasource& node) {
  const auto parent = node.Parent();
  const bool isRecordSet = parent && !node.DisplayRecordSetName().empty();
  const QFileInfo source(qt(commands::nodeTitle(isRecordSet ? parent.get() : &node)));
  const QString name = source.isDir() ? source.fileName() : source.completeBaseName();
  return isRecordSet ? name + ' ' + qt(node.text()).toLower() : name;
}

}  // namespace orv::app
