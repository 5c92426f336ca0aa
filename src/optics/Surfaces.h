// What of a pane besides its curves its values depend on.
#pragma once

#include <optional>

#include "model/GlazingData.h"

namespace orv::optics {

enum class Coating { bare, coated, unknown };

/// One of the two surfaces of a pane.
struct Surface {
  Coating coating = Coating::unknown;
  /// Hemispherical emissivity that the record states.
  std::optional<double> emissivity = {};
};

struct Surfaces {
  Surface front;
  Surface back;
};

/// As a record has them. An emissivity of 0 counts as not stated: databases keep it where the
/// source gave none.
Surfaces surfacesOf(const GlazingData& pane);

}  // namespace orv::optics
