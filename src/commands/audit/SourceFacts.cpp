#include "commands/audit/SourceFacts.h"

namespace orv::commands::audit {

const char* setName(RecordKind kind) {
  switch (kind) {
    case RecordKind::panes:
      return "panes";
    case RecordKind::frames:
      return "frames";
    case RecordKind::shadings:
      break;
  }
  return "shadings";
}

PlacedFault at(const RecordFacts& record, Fault fault) {
  return {.set = setName(record.kind),
          .kind = record.kind,
          .identifier = record.identifier,
          .name = record.name,
          .fault = std::move(fault)};
}

}  // namespace orv::commands::audit
