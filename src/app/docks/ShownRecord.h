// A record that the docks show.
#pragma once

#include <QString>
#include <memory>
#include <string>
#include <vector>

#include "commands/RecordKind.h"
#include "commands/RecordReader.h"
#include "commands/Session.h"

namespace orv::app {

/// Where a record is.
struct RecordPlace {
  std::shared_ptr<sources::datasource> node;  ///< a record set, or a folder of files
  std::string identifier;

  bool operator==(const RecordPlace&) const = default;

  /// The database or folder.
  std::shared_ptr<sources::datasource> source() const;
};

/// What its source holds of it.
struct ShownRecord {
  RecordPlace place;
  bool isPinned = false;
  bool isThere = true;
  commands::RecordKind kind = commands::RecordKind::panes;
  /// A pane at each of its angles; what can be plotted of a shading.
  std::vector<std::shared_ptr<const GlazingData>> panes = {};
  std::shared_ptr<const ShadingDataClass> shading = {};
  std::shared_ptr<const FrameDataClass> frame = {};

  /// What people call it.
  QString name() const;
};

/// Reads a record. Raises what RecordReader raises, but for one that is not there any more.
ShownRecord readShown(commands::Session& session, const RecordPlace& place);

}  // namespace orv::app
