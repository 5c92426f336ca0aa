#include "sources/datasource.h"

#include "sources/DataSources.h"

namespace orv::sources {

datasource::datasource(std::shared_ptr<KeyCounter> keys)
    : children_(std::make_unique<sources::DataSources>(std::move(keys))) {}

datasource::~datasource() = default;

}  // namespace orv::sources
