#include "commands/compare/RecordReading.h"

#include "commands/CompactDatabase.h"

namespace orv::commands::compare {

namespace DataType = sources::DataType;

void Reading::goOn() const {
  if (session.ui.cancelled()) throw Cancelled("The comparison was cancelled.");
}

RecordSet readRecordSet(const Reading& reading) {
  switch (reading.node->DataType()) {
    case DataType::textFolder:
      return readFiles(reading);
    case DataType::optics5Panes:
      return readGlazingDatabase(reading);
    default:
      return readOrvRecords(reading);
  }
}

}  // namespace orv::commands::compare
