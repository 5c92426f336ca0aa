// A record beside others in the details.
#pragma once

#include <QString>
#include <memory>
#include <vector>

#include "commands/RecordDetails.h"

namespace orv::app {

/// A pane by its records at each stored angle, or the fields of another record.
struct DetailsRecord {
  QString title;
  std::vector<std::shared_ptr<const GlazingData>> panes;
  std::vector<commands::DetailField> fields;
};

}  // namespace orv::app
