#pragma once

#include <memory>
#include <string>

#include "model/Property.h"

namespace orv {

/// Where a product is available, and under which other name.
class Availability {
 public:
  Property<std::string> Region;
  Property<std::string> AlternateProductName;

  std::shared_ptr<Availability> ShallowClone() const {
    return std::make_shared<Availability>(*this);
  }
};

}  // namespace orv
