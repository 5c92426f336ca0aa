// What is shown of a node of the registry.
#pragma once

#include <string>

#include "sources/datasource.h"

namespace orv::commands {

enum class NodeView {
  nothing,  ///< neither records nor text
  text,
  records,
};

/// How a node is shown; null, when no node is, as a text.
NodeView nodeView(const sources::datasource* node);

/// The text that shows a node with NodeView::text: of a text file its content, else what to do.
std::string nodeText(const sources::datasource* node);

/// Where a node comes from, in one line: file or folder, then the record set.
std::string nodeTitle(const sources::datasource* node);

}  // namespace orv::commands
