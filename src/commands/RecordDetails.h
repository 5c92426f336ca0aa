// Every field of a record, to be shown.
#pragma once

#include <string>
#include <vector>

#include "model/FrameDataClass.h"
#include "model/GlazingData.h"
#include "model/ShadingDataClass.h"
#include "store/Value.h"

namespace orv::commands {

/// A field with its value in words and its unit; the unit is empty for texts and pure numbers.
/// Fields that belong together follow each other and have the same section.
struct DetailField {
  std::string section;
  std::string name;
  std::string value;
  std::string unit;
  /// The value as what it is: a number, a truth, a text; Null where there is none.
  store::Value raw;
};

std::vector<DetailField> paneDetails(const GlazingData& pane);
std::vector<DetailField> frameDetails(const FrameDataClass& frame);
std::vector<DetailField> shadingDetails(const ShadingDataClass& shading);

}  // namespace orv::commands
