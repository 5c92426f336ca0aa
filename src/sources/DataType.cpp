#include "sources/DataType.h"

namespace orv::sources {

RecordSetNames recordSetNames(DataTypeCode type) {
  switch (type) {
    case DataType::orv2Panes:
      return {"Pane", "Pane"};
    case DataType::orv2Frames:
      return {"Frame", "Frame"};
    case DataType::orv3Panes:
      return {"Pane", "qryPaneImport"};
    case DataType::orv3Frames:
      return {"Frame", "qryFrameImport"};
    case DataType::optics5Panes:
      return {"qryOptics5Grid", "qryOptics5Grid"};
    case DataType::orv2Shadings:
      return {"Shading", "Shading"};
    case DataType::orv3Shadings:
      return {"Shading", "qryShadingImport"};
    default:
      return {};
  }
}

}  // namespace orv::sources
