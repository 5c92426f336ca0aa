#pragma once

#include <memory>
#include <string>

#include "model/Property.h"

namespace orv {

class GlazingData;

/// One layer of a pane that is made of other panes: the file of the component, its thickness,
/// whether it is turned round and, once it has been read, the component's own record.
class GlazingStructure {
 public:
  Property<std::string> filename;   ///< file of the component pane
  Quantity Thickness{"Thickness"};  ///< in the unit system of the record that lists the layer
  Property<bool> Flipped;           ///< the component's back is to the front
  Property<std::shared_ptr<GlazingData>> FileGlazingData;  ///< the component; none until read

  bool HasReference() const { return FileGlazingData() != nullptr; }

  /// A layer of the same values that refers to the same component record.
  std::shared_ptr<GlazingStructure> ShallowClone() const {
    return std::make_shared<GlazingStructure>(*this);
  }
};

}  // namespace orv
