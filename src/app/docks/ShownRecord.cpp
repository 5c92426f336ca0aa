#include "app/docks/ShownRecord.h"

#include "app/Text.h"
#include "app/docks/spectra/ShadingSpectrum.h"

namespace orv::app {

using commands::RecordKind;

std::shared_ptr<sources::datasource> RecordPlace::source() const {
  const auto parent = node->Parent();
  return parent ? parent : node;
}

QString ShownRecord::name() const {
  if (shading) return qt(shading->name());
  if (frame) return qt(frame->name());
  if (panes.empty()) return qt(place.identifier);
  for (const std::string& name : {panes.front()->filename(), panes.front()->productname()}) {
    if (!name.empty()) return qt(name);
  }
  return qt(place.identifier);
}

ShownRecord readShown(commands::Session& session, const RecordPlace& place) {
  ShownRecord shown{.place = place};
  const commands::RecordReader reader(session, place.node);
  shown.kind = commands::recordKind(*place.node).value_or(RecordKind::panes);
  // A pane that is gone has data at no angle, and a frame cannot be read: this says it of both.
  shown.isThere = reader.isThere(place.identifier);
  if (!shown.isThere) return shown;
  switch (shown.kind) {
    case RecordKind::panes:
      for (const auto& pane : reader.dataSets(place.identifier)) {
        reader.tellGroup(place.identifier, *pane);
        shown.panes.push_back(pane);
      }
      break;
    case RecordKind::shadings: {
      const auto shading = reader.shading(place.identifier);
      reader.tellGroup(place.identifier, *shading);
      shown.shading = shading;
      shown.panes.push_back(paneOf(*shading));
      break;
    }
    case RecordKind::frames: {
      const auto frame = reader.frame(place.identifier);
      reader.tellGroup(place.identifier, *frame);
      shown.frame = frame;
      break;
    }
  }
  return shown;
}

}  // namespace orv::app
