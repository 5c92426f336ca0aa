#include "commands/CopyRecords.h"

namespace orv::commands {

std::optional<sources::RecordSelection> copyRecords(const sources::RecordSelection& current,
                                                    UserInterface& ui) {
  if (!current.HasRecords()) {
    ui.message(MessageKind::information,
               "No records selected. Please select one or more data records first.", kProductName);
    return std::nullopt;
  }
  return current.Clone();
}

}  // namespace orv::commands
