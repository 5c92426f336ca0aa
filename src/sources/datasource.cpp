#include "sources/datasource.h"

#include "sources/DataSources.h"

namespace orv::sources {

datasource::datasource(std::shared_ptr<KeyCounter> keys)
    : children_(std::make_unique<sources::DataSources>(std::move(keys))) {}

datasource::~datasource() = default;

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
