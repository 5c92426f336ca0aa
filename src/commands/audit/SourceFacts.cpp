#include "commands/audit/SourceFacts.h"

namespace orv::commands::audit {

PlacedFault at(const RecordFacts& record, Fault fault) {
  return {.set = setName(record.kind),
          .kind = record.kind,
          .identifier = record.identifier,
          .name = record.name,
          .fault = std::move(fault)};
}

}  // namespace orv::commands::audit
